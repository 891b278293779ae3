// What reading and filtering a day's list log costs without a window: a log of
// a million lines against mawk counting its records, and the memory of a row
// beside its text.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "acars/list_log.h"
#include "bench/limits.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

constexpr int kLines = 1'000'000;
constexpr double kMostOfMawk = 0.25;
constexpr double kMostBytesForRow = 64;

// A day of traffic as the decoder writes it, many times over.
void writeLog(const fs::path& file) {
  std::ofstream log(file, std::ios::binary);
  log << "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time\r\n";
  char line[128];
  for (int i = 1; i < kLines; ++i) {
    const int size = std::snprintf(
        line, sizeof line, "%c%c%04d,%c,JA%03d%c,RJTT,K%c%c%c,B7%02d,%s,%d:%02d:%02d\r\n",
        'A' + i % 26, 'A' + i / 26 % 26, i % 10'000, i % 3 == 0 ? 'O' : 'X', i % 1000, 'A' + i % 26,
        'A' + i % 25, 'A' + i % 23, 'A' + i % 19, i % 90,
        i % 5 == 0 ? "\x97\xD5\x8E\x9E\x95\xD6" : "-", i % 24, i / 24 % 60, i % 60);
    log.write(line, size);
  }
  log.close();
  if (!log) {
    std::fprintf(stderr, "cannot write the log\n");
    std::exit(EXIT_FAILURE);
  }
}

// Reads the whole log; the rows' overhead for each row in bytes.
double readAll(const fs::path& file, const Tables& tables, const ListFilter& filter, RowStore& rows,
               benchmark::State& state) {
  rows.clear();
  Result<InputFile> opened = InputFile::open(file);
  if (!opened) {
    state.SkipWithError("cannot open the log");
    return 0;
  }
  ListLogReader reader(std::move(*opened), tables.encoding(), filter, tables);
  const auto never = std::chrono::steady_clock::time_point::max();
  const Result<bool> more = reader.step(never, rows);
  if (!more || *more || rows.size() == 0) state.SkipWithError("the read failed");
  return static_cast<double>(rows.overhead()) / static_cast<double>(rows.size());
}

}  // namespace
}  // namespace vel

int main(int argc, char** argv) {
  using namespace vel;
  const fs::path root = fs::temp_directory_path() / ("vel-acars-bench-" + std::to_string(getpid()));
  const Folders folders = Folders::of(root / "vel");
  fs::create_directories(folders.logs);
  const fs::path log = folders.logs / "20260101_list.csv";
  writeLog(log);
  const Tables tables(folders, Encoding::codePage932());
  double rowOverhead = 0;

  const std::string mawk = "mawk NF==8 count";
  benchmark::RegisterBenchmark(mawk.c_str(), [&](benchmark::State& state) {
    const std::string command =
        "mawk -F, 'NF==8{n++}END{print n}' '" + log.string() + "' >/dev/null";
    for (auto _ : state) {
      if (std::system(command.c_str()) != 0) state.SkipWithError("mawk failed");
    }
  });
  std::vector<bench::Limit> limits;
  const auto add = [&](const std::string& name, const ListFilter& filter) {
    benchmark::RegisterBenchmark(name.c_str(), [&, filter](benchmark::State& state) {
      // The window reads into the same store again and again.
      RowStore rows(ListLogReader::kSeparator);
      for (auto _ : state) {
        const double overhead = readAll(log, tables, filter, rows, state);
        if (filter.flight.empty()) rowOverhead = overhead;
      }
      state.counters["overhead/row"] = rowOverhead;
    });
    limits.push_back({.benchmark = name, .baselines = {mawk}, .most = kMostOfMawk});
  };
  add("read without filters", {});
  ListFilter filter;
  filter.flight = "J";
  filter.registration = "JA";
  filter.airport = "RJTT";
  filter.remarks = "臨時便";
  add("read with four text filters", filter);

  std::vector<char*> arguments(argv, argv + argc);
  std::string repetitions = "--benchmark_repetitions=5";
  arguments.push_back(repetitions.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  bench::LimitReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  bool kept = reporter.report(limits);
  if (rowOverhead > 0) {
    const bool small = rowOverhead <= kMostBytesForRow;
    std::printf("%-46s %9.1f bytes of %4.0f %s\n", "memory for a row beside its text", rowOverhead,
                kMostBytesForRow, small ? "kept" : "EXCEEDED");
    kept = kept && small;
  }
  std::error_code error;
  fs::remove_all(root, error);
  return kept ? EXIT_SUCCESS : EXIT_FAILURE;
}
