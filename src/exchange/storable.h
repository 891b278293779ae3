#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/text.h"

namespace vel {

/// A text as a field of a table can hold it, in the encoding's bytes: a comma or
/// a control character becomes a blank, a double quote an apostrophe, a letter
/// with a mark that the encoding does not have the letter without it. Nothing
/// where a character is left that the encoding cannot hold. `changed` is set
/// where the text is not what it was.
[[nodiscard]] std::optional<std::string> storableField(const Encoding& encoding,
                                                       std::string_view text, bool& changed);

}  // namespace vel
