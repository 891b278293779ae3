// What filling an empty table from a large source costs, beside its limit:
//
//   import     600,000 aircraft of a readsb file, all of them, into an empty
//              ICAO24.csv, from the command line: at most 3 times the time of
//              `cp` and `sort` of the same file (unpacked)
//   routes     600,000 routes into an empty FLIGHT.csv: the same limit
//
//   exchange_bench [--rounds=5]
//
// Times are the least real time of so many rounds in turns: writing down to the
// disk is part of all of them.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include <sys/wait.h>
#include <unistd.h>

#include "core/file.h"
#include "exchange/import_command.h"

namespace vel {
namespace {

constexpr int kRecords = 600'000;
constexpr double kMost = 3;
using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "exchange_bench: %s\n", what.c_str());
  std::exit(1);
}

void write(const std::filesystem::path& file, const std::string& text) {
  if (!writeWholeFile(file, ".part", text)) fail("can't write " + toUtf8(file));
}

double seconds(Clock::time_point since) {
  return std::chrono::duration<double>(Clock::now() - since).count();
}

// A station with five tables, of which one has the airlines.
Folders makeStation(const std::filesystem::path& base) {
  for (const char* name : {"vel", "data", "logs"}) std::filesystem::create_directories(base / name);
  const Folders folders = Folders::of(base / "vel");
  for (const Table table : kTables) {
    write(folders.data / (tableName(table) + std::string(kTableExtension)), "");
  }
  std::string letters;
  for (char first = 'A'; first <= 'Z'; ++first) {
    for (char second = 'A'; second <= 'Z'; ++second) {
      letters += {first, second, ',', first, second, 'X', ',', 'N', 'a', 'm', 'e', '\r', '\n'};
    }
  }
  write(folders.data / "letter.csv", letters);
  return folders;
}

std::string aircraftSource() {
  std::string text;
  for (int i = 0; i < kRecords; ++i) {
    // Every address once, in no order.
    const unsigned address = static_cast<unsigned>(i) * 7919U % 0xFFFFFFU;
    char line[96];
    std::snprintf(line, sizeof line, "%06X;N%dXA;B738;00;BOEING 737-800;2010;Somebody %d;\n",
                  address, i, i % 997);
    text += line;
  }
  return text;
}

std::string routeSource() {
  std::string text = "Callsign,Code,Number,AirlineCode,AirportCodes\n";
  for (int i = 0; i < kRecords; ++i) {
    const int airline = (i * 31) % (26 * 26);
    const char code[] = {static_cast<char>('A' + airline / 26),
                         static_cast<char>('A' + airline % 26), 'X', '\0'};
    const int number = (i / (26 * 26)) % 9999 + 1;
    char line[96];
    std::snprintf(line, sizeof line, "%s%d,%s,%d,%s,EG%c%c-KJ%c%c\n", code, number, code, number,
                  code, 'A' + i % 26, 'A' + i / 26 % 26, 'A' + i % 25, 'A' + i / 7 % 26);
    text += line;
  }
  return text;
}

// The tools' time, in the plain order of bytes, which is their fastest.
double toolsTime(const std::filesystem::path& source, const std::filesystem::path& to) {
  const std::string command = "export LC_ALL=C; cp '" + toUtf8(source) + "' '" + toUtf8(to) +
                              ".cp' && sort '" + toUtf8(source) + "' > '" + toUtf8(to) + ".sort'";
  const auto begin = Clock::now();
  if (std::system(command.c_str()) != 0) fail("cp or sort failed");
  return seconds(begin);
}

double importTime(const Folders& folders, const std::filesystem::path& source, Table table) {
  const std::filesystem::path live = filesOf(folders, table).live;
  write(live, "");
  std::FILE* const out = std::tmpfile();
  const auto begin = Clock::now();
  const int status =
      runImport(folders, {source, {.table = table, .all = true}, false}, out, stderr);
  const double time = seconds(begin);
  std::fclose(out);
  if (status != 0) fail("the import failed");
  return time;
}

long linesOf(const std::filesystem::path& file) {
  Result<InputFile> input = InputFile::open(file);
  if (!input) fail("no table");
  long lines = 0;
  std::string block(1 << 20, '\0');
  while (true) {
    const Result<std::size_t> got = input->read(block.data(), block.size());
    if (!got || *got == 0) return lines;
    lines += std::count(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(*got), '\n');
  }
}

bool measure(const Folders& folders, const char* name, const std::string& text, Table table,
             int rounds) {
  const std::filesystem::path source = folders.base / (std::string(name) + ".source");
  write(source, text);
  double tools = 1e9;
  double import = 1e9;
  for (int i = 0; i < rounds; ++i) {
    tools = std::min(tools, toolsTime(source, folders.base / name));
    import = std::min(import, importTime(folders, source, table));
  }
  const long lines = linesOf(filesOf(folders, table).live);
  const double times = import / tools;
  const bool kept = times <= kMost && lines > kRecords * 9 / 10;
  std::printf("%-10s %8ld records %9.3f ms against %9.3f ms  x%5.2f of %4.1f %s\n", name, lines,
              import * 1000, tools * 1000, times, kMost, kept ? "kept" : "EXCEEDED");
  return kept;
}

int run(int argc, char** argv) {
  int rounds = 5;
  for (int i = 1; i < argc; ++i) {
    const std::string_view option = argv[i];
    if (option.starts_with("--rounds=")) rounds = std::atoi(argv[i] + 9);
  }
  const std::filesystem::path base =
      std::filesystem::temp_directory_path() / ("vel_exchange_bench_" + std::to_string(getpid()));
  const Folders folders = makeStation(base);
  bool kept = measure(folders, "import", aircraftSource(), Table::icao24, rounds);
  kept = measure(folders, "routes", routeSource(), Table::flight, rounds) && kept;
  std::error_code error;
  std::filesystem::remove_all(base, error);
  return kept ? 0 : 1;
}

}  // namespace
}  // namespace vel

int main(int argc, char** argv) { return vel::run(argc, argv); }
