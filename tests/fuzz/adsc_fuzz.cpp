// ADS-C reports: the place that their bits say, as often as one is found, and
// none where the report is cut short.

#include "tests/fuzz/fuzz_support.h"
#include "tests/fuzz/plain_places.h"
#include "velweb/positions.h"

namespace vel::fuzz {
namespace {

constexpr std::size_t kLongestText = 200;

std::optional<Place> foundIn(std::string_view text) {
  const std::optional<Position> found = adscPosition(text);
  if (!found) return std::nullopt;
  const std::optional<Place> said = plainAdscPlace(text);
  const Place place{found->latitude, found->longitude};
  check(said && holds({*said}, place), "a place that the report does not say");
  return place;
}

void run(std::string_view text) {
  text = text.substr(0, kLongestText);
  const std::optional<Place> whole = foundIn(text);
  if (!whole) return;
  for (std::size_t size = 0; size < text.size(); ++size) {
    const std::optional<Place> cut = foundIn(text.substr(0, size));
    check(!cut || holds({*whole}, *cut), "a report that breaks off moves the place");
  }
  for (std::size_t at = 0; at < text.size(); ++at) {
    std::string changed(text);
    changed[at] = "0123456789ABCDEFG \n"[(at + text.size()) % 19];
    static_cast<void>(foundIn(changed));
    changed.erase(at, 1);
    static_cast<void>(foundIn(changed));
  }
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vel::fuzz::run({reinterpret_cast<const char*>(data), size});
  return 0;
}
