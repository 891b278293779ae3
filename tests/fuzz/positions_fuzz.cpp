// Positions: never a place that the text does not say, also where it breaks
// off, where a character is another one, and where one is lost.

#include "tests/fuzz/fuzz_support.h"
#include "tests/fuzz/plain_places.h"
#include "velweb/positions.h"

namespace vel::fuzz {
namespace {

constexpr std::size_t kLongestText = 200;

std::optional<Place> foundIn(std::string_view label, std::string_view text) {
  const std::optional<Position> found = positionOf(label, text);
  if (!found) return std::nullopt;
  check(found->latitude >= -90 && found->latitude <= 90, "a latitude beyond the poles");
  check(found->longitude >= -180 && found->longitude <= 180, "a longitude beyond the earth");
  check(!found->altitudeFeet || checkedAltitude(*found->altitudeFeet), "nobody flies there");
  const Place place{found->latitude, found->longitude};
  check(holds(placesIn(text), place), "a place that the text does not say");
  return place;
}

void run(std::string_view input) {
  constexpr std::string_view kOthers = "0123456789NSEW, .-+/";
  const std::string_view label = input.substr(0, 2);
  const std::string_view text = input.substr(std::min<std::size_t>(input.size(), 3), kLongestText);
  const std::optional<Place> whole = foundIn(label, text);
  if (!whole) return;
  const std::vector<Place> said = placesIn(text);
  for (std::size_t size = 0; size < text.size(); ++size) {
    const std::optional<Place> cut = foundIn(label, text.substr(0, size));
    check(!cut || holds(said, *cut), "a text that breaks off moves the place");
  }
  for (std::size_t at = 0; at < text.size(); ++at) {
    std::string changed(text);
    changed[at] = kOthers[(at + input.size()) % kOthers.size()];
    static_cast<void>(foundIn(label, changed));
    changed.erase(at, 1);
    static_cast<void>(foundIn(label, changed));
  }
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vel::fuzz::run({reinterpret_cast<const char*>(data), size});
  return 0;
}
