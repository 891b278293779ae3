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
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/hfdl_day_files.h"
#include "bench/processor_time.h"
#include "hfdl/activity_chart.h"
#include "hfdl/activity_load.h"
#include "hfdl/frequency_chart.h"
#include "hfdl/frequency_load.h"
#include "hfdl/hfdl_list_reader.h"
#include "hfdl/hfdl_row.h"
#include "log/row_store.h"

namespace vel {
namespace {

using std::chrono::local_days;
using namespace std::chrono_literals;

// As the window reads: so long at a time.
constexpr auto kSlice = 8ms;

constexpr int kMessagesADay = 20000;
constexpr std::size_t kDays = 7;
constexpr std::size_t kPlainBuffer = std::size_t{1} << 16;
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

// A station's folders with made-up tables and logs, removed at the end.
class Base {
 public:
  Base() : folders(Folders::of(std::filesystem::temp_directory_path() / "vel-hfdl-bench" / "vel")) {
    std::filesystem::remove_all(folders.base);
    for (const auto& folder : {folders.program, folders.data, folders.logs, folders.pics}) {
      std::filesystem::create_directories(folder);
    }
    hfdlDay = std::make_unique<bench::HfdlDayFiles>(folders);
    for (std::size_t day = 0; day < kDays; ++day) writeWeekLog(kStart + std::chrono::days(day));
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

std::filesystem::path weekLog(std::size_t day) {
  return base().folders.logs / (dayDigits(kStart + std::chrono::days(day)) + "0000_HFDL_FMT.log");
}

// What files are read into.
char* plainBuffer() {
  static std::vector<char> buffer(kPlainBuffer);
  return buffer.data();
}

// Reads up to so many bytes of a file, as plainly as it can be done, and calls
// `look` with what each read gives.
template <typename Look>
void plainRead(const std::filesystem::path& path, std::size_t bytes, Look look) {
  char* const buffer = plainBuffer();
  InputFile file = InputFile::open(path).value();
  while (bytes > 0) {
    const std::size_t count = *file.read(buffer, std::min(bytes, kPlainBuffer));
    if (count == 0) break;
    bytes -= count;
    look(std::string_view(buffer, count));
  }
  benchmark::DoNotOptimize(buffer);
}

void plainRead(const std::filesystem::path& path, std::size_t bytes) {
  plainRead(path, bytes, [](std::string_view) {});
}

std::size_t countedLines(const std::filesystem::path& path) {
  std::size_t lines = 0;
  plainRead(path, SIZE_MAX, [&](std::string_view text) {
    lines += static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  });
  return lines;
}

// Runs both sides of each part in turns and reports the program's time, how many
// times the plain one it is, and whether that keeps the limit.
template <typename Program, typename Plain>
void compare(benchmark::State& state, double limit, std::size_t parts, Program program,
             Plain plain) {
  bench::LeastTime programTime(parts);
  bench::LeastTime plainTime(parts);
  for ([[maybe_unused]] auto _ : state) {
    const double begin = bench::processorSeconds();
    for (std::size_t part = 0; part < parts; ++part) {
      plainTime.measure(part, [&] { plain(part); });
      programTime.measure(part, [&] { program(part); });
    }
    state.SetIterationTime(bench::processorSeconds() - begin);
  }
  const double ratio = programTime.seconds() / plainTime.seconds();
  state.counters["program_ms"] = programTime.seconds() * 1000;
  state.counters["plain_ms"] = plainTime.seconds() * 1000;
  state.counters["times_plain"] = ratio;
  state.counters["limit"] = limit;
  if (ratio > limit) {
    char text[96];
    std::snprintf(text, sizeof text, "%.2f times the plain read's %.2f ms, limit %.1f", ratio,
                  plainTime.seconds() * 1000, limit);
    state.SkipWithError(text);
  }
}

// Reads a log into the rows; the longest piece of it is noted.
void readLog(const std::filesystem::path& log, const Tables& tables, RowStore& rows,
             LongestPiece& piece) {
  FolderIndex photos(base().folders.pics);
  HfdlListReader reader(InputFile::open(log).value(), tables.encoding(), tables, photos);
  bool more = true;
  while (more) {
    piece.begin();
    more = *reader.step(std::chrono::steady_clock::now() + kSlice, rows);
    piece.end();
  }
}

void HfdlDay(benchmark::State& state) {
  const Base& files = base();
  const Tables tables(files.folders, Encoding::codePage932());
  LongestPiece piece;
  RowStore rows(kHfdlSeparator);
  const auto program = [&](std::size_t part) {
    rows.clear();
    readLog(files.hfdlDay->parts()[part], tables, rows, piece);
    if (rows.size() != bench::HfdlDayFiles::kSubRecordsOfPart)
      state.SkipWithError("not every record was read");
  };
  const auto plain = [&](std::size_t part) {
    const std::filesystem::path addresses = files.folders.data / "ICAO24.csv";
    const std::filesystem::path flights = files.folders.data / "FLIGHT.csv";
    const std::size_t begin = part * bench::HfdlDayFiles::kSubRecordsOfPart;
    for (std::size_t i = begin; i < begin + bench::HfdlDayFiles::kSubRecordsOfPart; ++i) {
      plainRead(addresses, files.hfdlDay->addressBytes()[i]);
      plainRead(flights, files.hfdlDay->flightBytes()[i]);
    }
  };
  compare(state, 1.5, files.hfdlDay->parts().size(), program, plain);
  rows.clear();
  piece = {};
  readLog(files.hfdlDay->log(), tables, rows, piece);
  if (rows.size() != bench::HfdlDayFiles::kSubRecords)
    state.SkipWithError("not every record was read");
  state.counters["longest_piece_ms"] = piece.milliseconds();
}

void loadDay(FrequencyLoad& load, LongestPiece& piece) {
  bool more = load.nextFile();
  while (more) {
    piece.begin();
    more = load.readPiece();
    piece.end();
  }
}

void loadWeek(FrequencyTables& tables, LongestPiece& piece) {
  FrequencyLoad load(base().folders, tables, kStart);
  for (std::size_t day = 0; day < kDays; ++day) loadDay(load, piece);
}

// Each of the seven days is a part; the last one is laid out as well.
void FrequencyWeek(benchmark::State& state) {
  LongestPiece piece;
  FrequencyTables tables(Encoding::codePage932());
  std::optional<FrequencyLoad> load;
  const auto program = [&](std::size_t day) {
    if (day == 0) load.emplace(base().folders, tables, kStart);
    loadDay(*load, piece);
    if (day + 1 < kDays) return;
    benchmark::DoNotOptimize(DrawGraph(tables, kStart, 1000, 600).shapes.data());
    if (tables.stationCount() != 16) state.SkipWithError("not every station was read");
  };
  const auto plain = [](std::size_t day) { benchmark::DoNotOptimize(countedLines(weekLog(day))); };
  compare(state, 3, kDays, program, plain);
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
  const auto log = weekLog(0);
  const auto program = [&](std::size_t) {
    ActivityLoad load(InputFile::open(log).value(), Encoding::codePage932(),
                      {kStart + std::chrono::days(1), std::nullopt});
    while (*load.step(Job::Clock::now() + kSlice) == JobProgress::more) {
    }
    benchmark::DoNotOptimize(
        drowGraph(load.counts(), kStart + std::chrono::days(1), 1000, 600).shapes.data());
    if (load.counts().largestTotal == 0) state.SkipWithError("nothing was counted");
  };
  compare(state, 10, 1, program, [&](std::size_t) { benchmark::DoNotOptimize(countedLines(log)); });
}

BENCHMARK(HfdlDay)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);
BENCHMARK(FrequencyWeek)->UseManualTime()->Iterations(31)->Unit(benchmark::kMillisecond);
BENCHMARK(FrequencyRedraw)->Unit(benchmark::kMillisecond);
BENCHMARK(ActivityDay)->UseManualTime()->Iterations(31)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vel

BENCHMARK_MAIN();
