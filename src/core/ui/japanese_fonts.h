#pragma once

#include <QStringList>

namespace vel {

enum class JapaneseFont {
  mincho,  ///< "ＭＳ 明朝"
  gothic,  ///< "ＭＳ ゴシック", fixed pitch
};

/// The families to draw Japanese text in, the best one first: the given one,
/// then the IPA font of that kind, then a fixed-pitch one and any one that has
/// Japanese letters. Those of the names that are known may be missing.
[[nodiscard]] const QStringList& japaneseFamilies(JapaneseFont font);

/// False where no font has Japanese letters: what is Japanese would be boxes.
[[nodiscard]] bool canShowJapanese();

/// What the user is told then.
constexpr const char* kNoJapaneseFont =
    "There is no Japanese font, so Japanese text can't be shown. Install one, such as Yu Gothic or "
    "MS Gothic.　日本語フォントがないため日本語を表示できません。"
    "游ゴシックやMS ゴシックなどをインストールしてください。";

}  // namespace vel
