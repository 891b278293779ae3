#pragma once

namespace vel::test {

/// What the user is asked while another program holds a table, word for word.
constexpr const char* kRenameRefused =
    "Can't write file. Using Excel to edit CSV? If not edited by Excel, close it to continue."
    "　ファイルの書込みができません。エクセルでCSVファイルを開いていませんか？。"
    "エクセル側で書き換えを行っていなければエクセルを閉じてから再試行を行うと継続できます。";

}  // namespace vel::test
