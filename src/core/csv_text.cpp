#include "core/csv_text.h"

#include <algorithm>
#include <array>

namespace vel {

std::string csvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string notAFormula(std::string_view text) {
  constexpr std::array<std::string_view, 10> kBeginnings = {"=",  "+",  "-",  "@",  "\t",
                                                            "\r", "＝", "＋", "－", "＠"};
  const std::string_view begin = text.substr(std::min(text.find_first_not_of(' '), text.size()));
  const bool runs = begin != "-" &&
                    std::any_of(kBeginnings.begin(), kBeginnings.end(),
                                [begin](std::string_view each) { return begin.starts_with(each); });
  return runs ? '\'' + std::string(text) : std::string(text);
}

}  // namespace vel
