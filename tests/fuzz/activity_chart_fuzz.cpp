// The activity chart: the same counts in small and large steps, and a drawing
// that stays on its surface.

#include <cmath>

#include "hfdl/activity_chart.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

struct Loaded {
  ActivityCounts counts;
  std::vector<StationTotal> stations;
  std::optional<std::chrono::local_seconds> reference;
};

Loaded load(const std::filesystem::path& file, const Encoding& encoding, const ActivityQuery& query,
            Job::Clock::time_point deadline) {
  ActivityLoad job(*InputFile::open(file), encoding, query);
  while (true) {
    const Result<JobProgress> progress = job.step(deadline);
    check(progress.ok(), "the log cannot be read");
    if (*progress == JobProgress::done) break;
  }
  check(isUtf8(job.excessText()), "a message that is no text");
  return {job.counts(), job.stations(), job.reference()};
}

void checkDrawing(const Drawing& drawing, double width, double height) {
  for (const Shape& shape : drawing.shapes) {
    if (const auto* rect = std::get_if<Rect>(&shape)) {
      check(std::isfinite(rect->x) && std::isfinite(rect->y), "a shape that is nowhere");
      check(rect->width >= 0 && rect->height >= 0, "a shape inside out");
      check(rect->x >= -1 && rect->x + rect->width <= width + 1, "a bar beside the surface");
      check(rect->y >= -1 && rect->y + rect->height <= height + 1, "a bar outside the surface");
    } else if (const auto* text = std::get_if<Text>(&shape)) {
      check(isUtf8(text->text), "a text that is none");
    }
  }
}

void run(const Station& station, Parts parts) {
  const std::string_view first = parts.next();
  const Encoding encoding = encodingOf(lineOfPart(first, 0));
  ActivityQuery query;
  query.reference = dayReference(lineOfPart(first, 1));
  const std::string_view name = lineOfPart(first, 2);
  if (!name.empty() && isUtf8(name)) query.station = std::string(name);
  const auto file = station.folders().logs / "202611200000_HFDL_FMT.log";
  put(file, parts.rest());
  const Loaded slow = load(file, encoding, query, Job::Clock::time_point::min());
  const Loaded fast = load(file, encoding, query, Job::Clock::time_point::max());
  check(slow.stations == fast.stations && slow.reference == fast.reference, "steps change it");
  check(slow.stations.size() <= kMostStations, "too many stations");
  int largest = 0;
  for (std::size_t slot = 0; slot < ActivityCounts::kSlots; ++slot) {
    check(slow.counts.total(slot) == fast.counts.total(slot), "steps change the counts");
    largest = std::max(largest, slow.counts.total(slot));
  }
  check(largest == slow.counts.largestTotal, "another largest total");
  if (!slow.reference) return;
  constexpr double kWidth = 700;
  constexpr double kHeight = 300;
  const ActivityTitle title{query.station.value_or("ALL"), chartedTime(*slow.reference)};
  checkDrawing(drowGraph(slow.counts, *slow.reference, kWidth, kHeight, 1.5, title), kWidth,
               kHeight);
  for (std::size_t slot = 0; slot <= ActivityCounts::kReferenceSlot; ++slot) {
    check(isUtf8(slotTip(slow.counts, slot, *slow.reference)), "a tip that is no text");
  }
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
