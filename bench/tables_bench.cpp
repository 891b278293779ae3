// What look-ups and rewrites cost, each beside its limit: a look-up that misses
// against a plain loop of reads over its table, a keystroke of the airport search
// against 16 ms, a rewrite against a copy.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/limits.h"
#include "bench/plain_files.h"
#include "bench/processor_time.h"
#include "tables/rewrite.h"
#include "tables/tables.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

// Wine's calls of the system cost more than those that it makes for them.
#ifdef _WIN32
constexpr double kLookUpLimit = 2.0;
#else
constexpr double kLookUpLimit = 1.5;
#endif
constexpr double kRewriteLimit = 4.0;
constexpr double kKeystrokeLimit = 16.0;
constexpr std::array<std::size_t, 3> kReadBuffers = {std::size_t{64} << 10, std::size_t{128} << 10,
                                                     std::size_t{256} << 10};

/// Lines as the tables have them, the same in every run.
class Lines {
 public:
  std::string letters(std::size_t count) { return pick("ABCDEFGHIJKLMNOPQRSTUVWXYZ", count); }
  std::string digits(std::size_t count) { return pick("0123456789", count); }
  std::string hex(std::size_t count) { return pick("0123456789ABCDEF", count); }
  std::string katakana(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
      text += static_cast<char>(0x83);
      text += static_cast<char>(0x40 + index(0x3E));
    }
    return text;
  }

  std::string aircraft() { return "JA" + digits(2) + letters(2) + ",B7" + digits(2); }
  std::string flight() { return letters(2) + digits(4) + "," + letters(4) + letters(4) + ",-"; }
  std::string airport() {
    return letters(4) + "," + letters(1) + "ingston " + letters(6) + " Airport " + letters(3);
  }
  std::string japaneseAirport() {
    return letters(4) + "," + katakana(8) + " " + katakana(2) + " " + letters(3);
  }
  std::string letter() { return letters(2) + "," + letters(3) + "," + letters(5) + " Airlines"; }
  std::string icao24() {
    return hex(6) + "," + letters(3) + "," + letters(2) + ",JA" + digits(4) + ",B7" + digits(2);
  }

 private:
  std::size_t index(std::size_t last) {
    return std::uniform_int_distribution<std::size_t>(0, last)(random_);
  }
  std::string pick(const std::string& from, std::size_t count) {
    std::string text(count, ' ');
    for (char& c : text) c = from[index(from.size() - 1)];
    return text;
  }

  std::mt19937 random_{20261114};
};

/// A base folder of its own below the folder for temporary files.
class Base {
 public:
  explicit Base(const std::string& name)
      : root(fs::temp_directory_path() / ("vel-bench-" + std::to_string(bench::processNumber())) /
             name),
        folders(Folders::of(root / "vel")),
        tables(folders, Encoding::codePage932()) {
    fs::create_directories(folders.data);
  }
  Base(const Base&) = delete;
  Base& operator=(const Base&) = delete;
  ~Base() {
    std::error_code error;
    fs::remove_all(root.parent_path(), error);
  }

  void write(const std::string& table, int count, std::string (Lines::*line)()) const {
    Lines lines;
    std::ofstream file(folders.data / table, std::ios::binary);
    for (int i = 0; i < count; ++i) file << (lines.*line)() << "\r\n";
    file.close();
    if (!file) {
      std::fprintf(stderr, "cannot write %s\n", table.c_str());
      std::exit(EXIT_FAILURE);
    }
  }

  fs::path root;
  Folders folders;
  Tables tables;
};

// Reads the whole file, as plainly as it can be done; false when that fails.
bool readPlainly(const fs::path& file, std::size_t bufferSize) {
  static const auto buffer = std::make_unique<char[]>(kReadBuffers.back());
  return bench::readPlainly(file, buffer.get(), bufferSize);
}

template <typename LookUp>
void addLookUp(const std::string& name, LookUp lookUp) {
  benchmark::RegisterBenchmark(name.c_str(), [lookUp](benchmark::State& state) {
    for (auto _ : state) {
      const auto result = lookUp();
      if (!result) state.SkipWithError("the look-up failed");
      benchmark::DoNotOptimize(result);
    }
  });
}

// Takes turns between the look-up and plain reads of its table, with a buffer of
// each size.
template <typename LookUp>
void addComparedLookUp(const std::string& name, const fs::path& file, LookUp lookUp) {
  benchmark::RegisterBenchmark(name.c_str(), [file, lookUp](benchmark::State& state) {
    bench::LeastTime least;
    bench::LeastTime plain;
    for (auto _ : state) {
      for (const std::size_t size : kReadBuffers) {
        plain.measure(0, [&] {
          if (!readPlainly(file, size)) state.SkipWithError("cannot read");
        });
        least.measure(0, [&] {
          const auto result = lookUp();
          if (!result) state.SkipWithError("the look-up failed");
          benchmark::DoNotOptimize(result);
        });
      }
    }
    state.counters[bench::kLeast] = least.seconds();
    state.counters[bench::kPlain] = plain.seconds();
  });
}

/// A look-up of each kind that finds nothing, over tables of that many lines.
void addLookUps(const Base& base, int count, std::vector<bench::Limit>& limits) {
  const std::string lines = "/" + std::to_string(count) + "/";
  base.write("aircraft.csv", count, &Lines::aircraft);
  base.write("FLIGHT.csv", count, &Lines::flight);
  base.write("airport.csv", count, &Lines::airport);
  base.write("letter.csv", count, &Lines::letter);
  base.write("ICAO24.csv", count, &Lines::icao24);

  const Tables& tables = base.tables;
  const auto add = [&](const std::string& table, auto lookUps) {
    lookUps([&](const std::string& name, auto lookUp) {
      limits.push_back({.benchmark = table + lines + name,
                        .most = kLookUpLimit,
                        .clock = bench::Limit::Clock::processor});
      addComparedLookUp(limits.back().benchmark, base.folders.data / table, lookUp);
    });
  };
  add("aircraft.csv", [&](auto lookUp) {
    lookUp("equipmentOfLastLine", [&] { return tables.equipmentOfLastLine("JA88XXX"); });
    lookUp("equipmentOfFirstLine", [&] { return tables.equipmentOfFirstLine("N8089A"); });
  });
  add("FLIGHT.csv",
      [&](auto lookUp) { lookUp("flightRoute", [&] { return tables.flightRoute("NH01066"); }); });
  add("airport.csv", [&](auto lookUp) {
    lookUp("airportNameOfLastLine", [&] { return tables.airportNameOfLastLine("RJT1"); });
    lookUp("airportCodeOfThreeLetters", [&] { return tables.airportCodeOfThreeLetters("H1D"); });
    lookUp("airportNameOfFirstLine", [&] { return tables.airportNameOfFirstLine("RJT1"); });
    lookUp("airportCodeOfName", [&] { return tables.airportCodeOfName("Nowhere Airport NOW"); });
  });
  add("letter.csv", [&](auto lookUp) {
    lookUp("knowsAirline", [&] { return tables.knowsAirline("J1"); });
    lookUp("threeLetterCodeOf", [&] { return tables.threeLetterCodeOf("J1"); });
    lookUp("prefixOf", [&] { return tables.prefixOf("JA1"); });
  });
  add("ICAO24.csv", [&](auto lookUp) {
    lookUp("aircraftOfAddress", [&] { return tables.aircraftOfAddress("8400XX"); });
  });
}

/// Tables of the size that users have.
void addKeystrokes(const Base& base, const std::string& name, std::string (Lines::*line)(),
                   std::vector<bench::Limit>& limits) {
  base.write("airport.csv", 6293, line);
  base.write("letter.csv", 1378, &Lines::letter);
  const Tables& tables = base.tables;
  const auto add = [&](const std::string& what, auto lookUp) {
    limits.push_back({.benchmark = name + what, .most = kKeystrokeLimit});
    addLookUp(name + what, lookUp);
  };
  add("all", [&] { return tables.airportNames(""); });
  add("airport", [&] { return tables.airportNames("airport"); });
  add("no match", [&] { return tables.airportNames("nowhere"); });
  add("full-width", [&] { return tables.airportNames("ア"); });
  add("airlineOf", [&] { return tables.airlineOf("J1"); });
}

void addRewrite(const Base& base, Table table, const std::string& file,
                std::vector<bench::Limit>& limits) {
  const std::string name = "rewrite/" + file + "/600000/";
  const fs::path live = base.folders.data / file;
  benchmark::RegisterBenchmark((name + "copy").c_str(), [live](benchmark::State& state) {
    const fs::path copy = live.string() + ".copy";
    for (auto _ : state) {
      if (!bench::copyPlainly(live, copy)) state.SkipWithError("the copy failed");
    }
  })->UseRealTime();
  benchmark::RegisterBenchmark((name + "rewrite").c_str(), [&base, table](benchmark::State& state) {
    const TableEdit edit{.table = table, .key = "none", .newRecord = {}};
    for (auto _ : state) {
      ReferenceTableRewrite rewrite(base.folders, base.tables.encoding(), edit);
      RewriteOutcome outcome = RewriteOutcome::more;
      while (outcome == RewriteOutcome::more) outcome = rewrite.next();
      if (outcome != RewriteOutcome::done) state.SkipWithError("the rewrite failed");
    }
  })->UseRealTime();
  limits.push_back(
      {.benchmark = name + "rewrite", .baselines = {name + "copy"}, .most = kRewriteLimit});
}

int run(int argc, char** argv) {
  // The two sides of a limit take turns, so that both have the same machine.
  std::vector<std::string> defaults = {argv[0], "--benchmark_repetitions=15",
                                       "--benchmark_min_time=0.05",
                                       "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> arguments;
  for (std::string& argument : defaults) arguments.push_back(argument.data());
  for (int i = 1; i < argc; ++i) arguments.push_back(argv[i]);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return EXIT_FAILURE;

  std::vector<bench::Limit> limits;
  const Base small("20000");
  addLookUps(small, 20000, limits);
  const Base large("600000");
  addLookUps(large, 600000, limits);
  const Base english("english");
  addKeystrokes(english, "airport search/6293/", &Lines::airport, limits);
  const Base japanese("japanese");
  addKeystrokes(japanese, "airport search/6293 Japanese/", &Lines::japaneseAirport, limits);
  addRewrite(large, Table::aircraft, "aircraft.csv", limits);
  addRewrite(large, Table::flight, "FLIGHT.csv", limits);
  addRewrite(large, Table::icao24, "ICAO24.csv", limits);

  bench::LimitReporter reporter(bench::LimitReporter::OO_None);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return reporter.report(limits) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace vel

int main(int argc, char** argv) { return vel::run(argc, argv); }
