// The frequency chart: the same tables from one piece, from single lines and
// from the file, within their limits, and a drawing of them.

#include <cmath>

#include "hfdl/frequency_chart.h"
#include "hfdl/frequency_load.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

std::string textOf(const FrequencyTables& tables) {
  std::string text;
  for (std::size_t station = 0; station < tables.stationCount(); ++station) {
    text += tables.stationName(station) + '\n';
    check(isUtf8(tables.stationName(station)), "a name that is no text");
    check(tables.frequencies(station).size() <= kMostFrequencies, "too many frequencies");
    for (const std::string& frequency : tables.frequencies(station)) text += frequency + ' ';
    for (std::size_t point = 0; point < tables.points(station).size(); ++point) {
      text += '\n' + tables.timePoint(station, point) + '=' + tables.marks(station, point);
    }
    text += '\n';
  }
  return text;
}

void checkDrawing(const FrequencyTables& tables, std::chrono::local_days start) {
  constexpr double kWidth = 900;
  const Drawing drawing = DrawGraph(tables, start, kWidth, 200, 1.25);
  check(drawing.height >= neededHeight(tables), "a drawing that is cut off");
  for (const Shape& shape : drawing.shapes) {
    if (const auto* rect = std::get_if<Rect>(&shape)) {
      check(std::isfinite(rect->x) && rect->width >= 0, "a mark that is nowhere");
      check(rect->x >= 0 && rect->x + rect->width <= kWidth, "a mark beside the surface");
    }
  }
  for (const FrequencyRow& row : frequencyRows(tables)) {
    check(row.station < tables.stationCount(), "a row of no station");
    check(row.frequency < tables.frequencies(row.station).size(), "a row of no frequency");
    check(isUtf8(placeTip(tables, start, kWidth, kWidth / 2, row.top + 1)), "no text");
  }
}

void run(const Station& station, Parts parts) {
  const Encoding encoding = encodingOf(lineOfPart(parts.next(), 0));
  const std::string_view log = parts.rest();
  const auto file = station.folders().logs / "202611200000_HFDL_FMT.log";
  put(file, log);
  const auto start = *dayOfName("20261118");

  FrequencyTables fromFile(encoding);
  FrequencyLoad load(station.folders(), fromFile, start);
  while (*load.step(Job::Clock::time_point::min()) == JobProgress::more) {
  }
  for (const std::string& message : load.messages()) check(isUtf8(message), "no text");
  check(fromFile.stationCount() <= kMostStations, "too many stations");
  checkDrawing(fromFile, start);

  const std::size_t end = log.rfind('\n');
  const std::string_view whole = log.substr(0, end == std::string_view::npos ? 0 : end + 1);
  FrequencyTables atOnce(encoding);
  atOnce.readLines(whole);
  FrequencyTables singly(encoding);
  for (std::size_t at = 0; at < whole.size();) {
    const std::size_t next = whole.find('\n', at) + 1;
    singly.readLines(whole.substr(at, next - at));
    at = next;
  }
  check(textOf(atOnce) == textOf(singly), "pieces change the tables");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
