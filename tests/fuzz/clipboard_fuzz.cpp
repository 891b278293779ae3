// What is pasted: a route or an aircraft comes from the text, in its order.

#include "hfdl/hfdl_row.h"
#include "tables/route_paste.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

void checkRoutes(std::string_view text) {
  const std::vector<std::string> pairs = routePairs(text);
  check(pairs.size() <= kMostRoutePairs, "too many routes");
  std::size_t at = 0;
  for (const std::string& pair : pairs) {
    check(pair.size() == 7 && pair[3] == '>', "no pair of codes");
    for (const std::size_t letter : {0U, 1U, 2U, 4U, 5U, 6U}) {
      check(pair[letter] >= 'A' && pair[letter] <= 'Z', "no code");
    }
    // Each marker, then its code, then the end of the part, one behind the other.
    for (const auto& [marker, code] :
         {std::pair("From (", pair.substr(0, 3)), std::pair("to (", pair.substr(4))}) {
      at = text.find(marker, at);
      check(at != std::string_view::npos, "a route of no marker");
      at = text.find(code, at);
      check(at != std::string_view::npos, "a code that is not in the text");
      at = text.find("))", at);
      check(at != std::string_view::npos, "a part without an end");
    }
  }
}

void checkAircraft(std::string_view text) {
  const std::optional<CopiedAircraft> aircraft = copiedAircraft(text);
  if (!aircraft) return;
  check(length(aircraft->threeLetter) == 3 && length(aircraft->twoLetter) == 2, "no codes");
  const std::string codes = aircraft->threeLetter + " [" + aircraft->twoLetter;
  check(text.find(codes) != std::string_view::npos, "codes that are not in the text");
  check(text.find(aircraft->registration) != std::string_view::npos, "another registration");
  check(text.find(aircraft->equipment) != std::string_view::npos, "another type");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  vel::fuzz::checkRoutes(text);
  vel::fuzz::checkAircraft(text);
  return 0;
}
