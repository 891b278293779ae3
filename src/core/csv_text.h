#pragma once

#include <string>
#include <string_view>

namespace vel {

/// A field of comma-separated text by RFC 4180: in quotes where it holds a
/// comma, a quote or a line end, its quotes doubled.
[[nodiscard]] std::string csvField(std::string_view text);

/// A text as no spreadsheet takes it for a formula: one that begins, blanks
/// aside, with `=`, `+`, `-` or `@` in either width, or with a tab or CR, gets an
/// apostrophe in front. A lone "-", which is no formula, stays.
[[nodiscard]] std::string notAFormula(std::string_view text);

}  // namespace vel
