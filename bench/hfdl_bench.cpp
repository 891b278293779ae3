// What the HFDL list and the frequency chart cost, each beside its limit:
//
//   HfdlDay        a day of 10,000 sub-records, each looked up afresh in an
//                  ICAO24 and a flight table of 20,000 lines: at most 1.5 times
//                  plain reads of the bytes that the look-ups have to pass
//   FrequencyWeek  seven days of 20,000 messages each, loaded and laid out: at
//                  most 3 times a plain read of the files plus a count of lines
//   FrequencyRedraw, ActivityDay: a redraw at another width; a day counted
//
// Both sides of a ratio run in turns within one process. A limit that is passed
// is reported as an error.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/hfdl_day_files.h"
#include "hfdl/activity_chart.h"
#include "hfdl/activity_load.h"
#include "hfdl/frequency_chart.h"
#include "hfdl/frequency_load.h"
#include "hfdl/hfdl_list_reader.h"
#include "hfdl/hfdl_row.h"
#include "log/row_store.h"

namespace vel {
namespace {

// Processor time: what else the machine does hardly counts.
struct Clock {
  using duration = std::chrono::duration<double>;
  static duration now() { return duration(static_cast<double>(std::clock()) / CLOCKS_PER_SEC); }
};
using std::chrono::local_days;
using namespace std::chrono_literals;

// As the window reads: so long at a time.
constexpr auto kSlice = 8ms;

constexpr int kMessagesADay = 20000;
constexpr local_days kStart{2026y / 11 / 14};

double seconds(std::chrono::duration<double> duration) { return duration.count(); }

// The longest time on the clock that a window would wait for one piece.
class LongestPiece {
 public:
  void begin() { last_ = std::chrono::steady_clock::now(); }
  void end() {
    const auto now = std::chrono::steady_clock::now();
    longest_ = std::max(longest_, seconds(now - last_));
    last_ = now;
  }
  [[nodiscard]] double milliseconds() const { return longest_ * 1000; }

 private:
  std::chrono::steady_clock::time_point last_;
  double longest_ = 0;
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// A station's folders with made-up tables and logs, removed at the end.
class Base {
 public:
  Base() : folders(Folders::of(std::filesystem::temp_directory_path() / "vel-hfdl-bench" / "vel")) {
    std::filesystem::remove_all(folders.base);
    for (const auto& folder : {folders.program, folders.data, folders.logs, folders.pics}) {
      std::filesystem::create_directories(folder);
    }
    hfdlDay = std::make_unique<bench::HfdlDayFiles>(folders);
    for (int day = 0; day < 7; ++day) writeWeekLog(kStart + std::chrono::days(day));
    // A photo folder that nobody has just changed.
    std::filesystem::last_write_time(
        folders.pics, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  }
  ~Base() { std::filesystem::remove_all(folders.base); }

  Folders folders;
  std::unique_ptr<bench::HfdlDayFiles> hfdlDay;

 private:
  // A third of the messages are squitters with the lists of three stations.
  void writeWeekLog(local_days day) {
    constexpr const char* kStations[] = {
        "San Francisco", "Molokai",      "Reykjavik", "Riverhead",  "Auckland",    "Hat Yai",
        "Shannon",       "Johannesburg", "Barrow",    "Santa Cruz", "Krasnoyarsk", "Al Muharraq",
        "Agana",         "Canarias",     "Albrook",   "Telde"};
    std::uniform_int_distribution<int> station(0, 15);
    std::uniform_int_distribution<int> mask(1, 127);
    std::string log;
    for (int i = 0; i < kMessagesADay; ++i) {
      const int second = static_cast<int>(86400LL * i / kMessagesADay);
      const std::string digits = dayDigits(day);
      log += bench::formatted("[3]------------------------[%s/%s/%s %02d:%02d:%02d]\r\n",
                              digits.substr(0, 4).c_str(), digits.substr(4, 2).c_str(),
                              digits.substr(6, 2).c_str(), second / 3600, second / 60 % 60,
                              second % 60);
      if (i % 3 != 0) {
        log += " DOWN LINK\r\n  GS NAME         = Reykjavik, Iceland\r\n";
        log +=
            bench::formatted("   ICAO24 ADDRESS = %06X\r\n   REGISTRATION   = N%05d\r\n", i * 7, i);
        log += bench::formatted(
            "   FLIGHT ID      = AA%04d\r\n   POSITION       = N35.123 E139.456\r\n", i % 10000);
        log += "  ..............................\r\n";
        continue;
      }
      log += " SQUITTER\r\n  GS NAME         = Molokai, Hawaii\r\n";
      for (int list = 0; list < 3; ++list) {
        const int of = station(random_);
        const int announced = mask(random_);
        log += "   FREQUENCIES    = [";
        for (int f = 0; f < 7; ++f) {
          if ((announced >> f & 1) != 0) log += ' ' + std::to_string(2900 + of * 37 + f * 2711);
        }
        log += std::string(" ] (") + kStations[of] + ")\r\n";
      }
    }
    bench::writeFile(folders.logs / (dayDigits(day) + "0000_HFDL_FMT.log"), log);
  }

  std::mt19937 random_{20261117};
};

Base& base() {
  static Base made;
  return made;
}

// Reads up to so many bytes of a file, as plainly as it can be done; counts
// the line ends where that is asked for.
std::size_t plainRead(const std::filesystem::path& path, std::size_t bytes, bool countLines) {
  static std::vector<char> buffer(std::size_t{1} << 16);
  InputFile file = InputFile::open(path).value();
  std::size_t lines = 0;
  while (bytes > 0) {
    const std::size_t count = *file.read(buffer.data(), std::min(bytes, buffer.size()));
    if (count == 0) break;
    bytes -= count;
    if (countLines) {
      lines += static_cast<std::size_t>(
          std::count(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count), '\n'));
    }
  }
  benchmark::DoNotOptimize(buffer.data());
  return lines;
}

// Runs both sides in turns and reports the program's time, how many times the
// plain one it is, and whether that keeps the limit.
template <typename Program, typename Plain>
void compare(benchmark::State& state, double limit, Program program, Plain plain) {
  std::vector<double> ratios;
  double plainTime = 0;
  for ([[maybe_unused]] auto _ : state) {
    const auto begin = Clock::now();
    plain();
    const auto middle = Clock::now();
    program();
    const auto end = Clock::now();
    plainTime = seconds(middle - begin);
    ratios.push_back(seconds(end - middle) / plainTime);
    state.SetIterationTime(seconds(end - middle));
  }
  const double ratio = median(ratios);
  state.counters["plain_ms"] = plainTime * 1000;
  state.counters["times_plain"] = ratio;
  state.counters["limit"] = limit;
  if (ratio > limit) {
    char text[96];
    std::snprintf(text, sizeof text, "%.2f times the plain read's %.2f ms, limit %.1f", ratio,
                  plainTime * 1000, limit);
    state.SkipWithError(text);
  }
}

void HfdlDay(benchmark::State& state) {
  const Base& files = base();
  const Encoding encoding = Encoding::codePage932();
  const Tables tables(files.folders, encoding);
  LongestPiece piece;
  const auto program = [&] {
    FolderIndex photos(files.folders.pics);
    RowStore rows(kHfdlSeparator);
    HfdlListReader reader(InputFile::open(files.hfdlDay->log()).value(), encoding, tables, photos);
    bool more = true;
    while (more) {
      piece.begin();
      more = *reader.step(std::chrono::steady_clock::now() + kSlice, rows);
      piece.end();
    }
    if (rows.size() != bench::HfdlDayFiles::kSubRecords)
      state.SkipWithError("not every record was read");
  };
  const auto plain = [&] {
    const std::filesystem::path addresses = files.folders.data / "ICAO24.csv";
    const std::filesystem::path flights = files.folders.data / "FLIGHT.csv";
    for (std::size_t i = 0; i < bench::HfdlDayFiles::kSubRecords; ++i) {
      plainRead(addresses, files.hfdlDay->addressBytes()[i], false);
      plainRead(flights, files.hfdlDay->flightBytes()[i], false);
    }
  };
  compare(state, 1.5, program, plain);
  state.counters["longest_piece_ms"] = piece.milliseconds();
}

void loadWeek(FrequencyTables& tables, LongestPiece& piece) {
  FrequencyLoad load(base().folders, tables, kStart);
  while (load.nextFile()) {
    bool more = true;
    while (more) {
      piece.begin();
      more = load.readPiece();
      piece.end();
    }
  }
}

void FrequencyWeek(benchmark::State& state) {
  LongestPiece piece;
  const auto program = [&] {
    FrequencyTables tables(Encoding::codePage932());
    loadWeek(tables, piece);
    benchmark::DoNotOptimize(DrawGraph(tables, kStart, 1000, 600).shapes.data());
    if (tables.stationCount() != 16) state.SkipWithError("not every station was read");
  };
  std::size_t lines = 0;
  const auto plain = [&] {
    lines = 0;
    for (int day = 0; day < 7; ++day) {
      lines += plainRead(
          base().folders.logs / (dayDigits(kStart + std::chrono::days(day)) + "0000_HFDL_FMT.log"),
          SIZE_MAX, true);
    }
  };
  compare(state, 3, program, plain);
  state.counters["lines"] = static_cast<double>(lines);
  state.counters["longest_piece_ms"] = piece.milliseconds();
}

void FrequencyRedraw(benchmark::State& state) {
  LongestPiece piece;
  FrequencyTables tables(Encoding::codePage932());
  loadWeek(tables, piece);
  double width = 800;
  std::size_t shapes = 0;
  for ([[maybe_unused]] auto _ : state) {
    const Drawing drawing = DrawGraph(tables, kStart, width, 600, 2);
    shapes = drawing.shapes.size();
    width = width < 1900 ? width + 1 : 800;
  }
  state.counters["shapes"] = static_cast<double>(shapes);
}

void ActivityDay(benchmark::State& state) {
  const auto log = base().folders.logs / (dayDigits(kStart) + "0000_HFDL_FMT.log");
  const auto program = [&] {
    ActivityLoad load(InputFile::open(log).value(), Encoding::codePage932(),
                      {kStart + std::chrono::days(1), std::nullopt});
    while (*load.step(Job::Clock::now() + kSlice) == JobProgress::more) {
    }
    benchmark::DoNotOptimize(
        drowGraph(load.counts(), kStart + std::chrono::days(1), 1000, 600).shapes.data());
    if (load.counts().largestTotal == 0) state.SkipWithError("nothing was counted");
  };
  compare(state, 10, program, [&] { plainRead(log, SIZE_MAX, true); });
}

BENCHMARK(HfdlDay)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(FrequencyWeek)->UseManualTime()->Iterations(31)->Unit(benchmark::kMillisecond);
BENCHMARK(FrequencyRedraw)->Unit(benchmark::kMillisecond);
BENCHMARK(ActivityDay)->UseManualTime()->Iterations(31)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vel

BENCHMARK_MAIN();
