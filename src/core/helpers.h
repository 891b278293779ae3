#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/desktop.h"
#include "core/file.h"

namespace vel {

/// The last `width` characters (1 to 10) of "0000000000" followed by the value.
[[nodiscard]] std::string ZeroPad(std::string_view value, std::size_t width);
[[nodiscard]] std::string ZeroPad(long long value, std::size_t width);

/// The 1-based position of the first word of three capital letters A to Z that
/// stands between blanks, searched from the first blank at or after `position`
/// (at least 1); 0 if there is none. `position` takes the result, except for a
/// text of fewer than 7 characters, which gives 0 and leaves it as it was.
std::size_t FindUpperWord3(std::string_view text, std::size_t& position);

/// Opens a web address or a file with the desktop's program for it; the
/// result is that of Desktop::open.
int ShellOpen(Desktop& desktop, const std::string& target);

/// A path as message texts and openers take it: with the platform's separators.
[[nodiscard]] std::string nativeText(const std::filesystem::path& path);

}  // namespace vel
