// What searching years of logs costs, each beside its limit, against the tools
// that users of a command line would take on the same files in the same run:
//
//   rare       a registration with some ten messages over all list logs:
//              at most 1.3 times `rg -j1 -F -c`
//   frequent   one with 100,000 messages: at most 2 times `rg -j1 -F -c`
//   first      what no earlier list log holds: at most a third of
//              `mawk -F, '!seen[$3]++'`
//   results    1,000,000 results: at most 64 bytes each beside their text
//
// The logs of all days are made once, below the build folder:
//
//   history_bench [--days=3650] [--rounds=5] [--check]
//
// Times are the least processor time of so many rounds in turns. With --check
// only what is found is compared with what the tools find, and no time.

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/folders.h"
#include "core/text.h"
#include "hfdl/hfdl_lines.h"
#include "history/first_heard.h"
#include "history/found_messages.h"
#include "history/history_search.h"
#include "history/query.h"

namespace vel {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using namespace std::chrono_literals;

constexpr local_days kFirstDay{2016y / 11 / 1};
constexpr int kLinesADay = 1500;
constexpr int kMessagesADay = 1600;
constexpr int kRawLinesADay = 1000;
constexpr int kAircraft = 600;
constexpr int kFrequentMessages = 100'000;
constexpr const char* kFrequent = "JA-8089";
constexpr const char* kRare = "JA-9999";
constexpr const char* kHeader = "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time\r\n";

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "history_bench: %s\n", what.c_str());
  std::exit(1);
}

template <typename... Values>
void append(std::string& text, const char* format, Values... values) {
  char line[256];
  const int size = std::snprintf(line, sizeof line, format, values...);
  text.append(line, static_cast<std::size_t>(size));
}

void write(const std::filesystem::path& file, const std::string& text, bool atEnd = false) {
  std::ofstream out(file, atEnd ? std::ios::binary | std::ios::app : std::ios::binary);
  out << text;
  out.close();
  if (!out) fail("cannot write " + file.string());
}

// The logs of a station over so many days.
class Station {
 public:
  Station(const std::filesystem::path& cache, int dayCount)
      : folders(Folders::of(cache / std::to_string(dayCount) / "vel")), dayCount_(dayCount) {
    for (int i = 0; i < kAircraft; ++i) {
      char name[16];
      std::snprintf(name, sizeof name, "%c%c-%c%03d", 'A' + i % 26, 'A' + i / 26, 'A' + i % 7, i);
      aircraft_.emplace_back(name);
    }
    const std::filesystem::path complete = folders.base / "complete";
    if (!std::filesystem::exists(complete)) {
      std::filesystem::remove_all(folders.base);
      std::filesystem::create_directories(folders.eachLogs);
      for (int day = 0; day < dayCount; ++day) writeDay(day);
      write(complete, "");
    }
    for (const auto& entry : std::filesystem::directory_iterator(folders.logs)) {
      if (entry.path().string().ends_with("_list.csv")) lists.push_back(entry.path().string());
    }
    std::sort(lists.begin(), lists.end());
  }

  Folders folders;
  std::vector<std::string> lists;

  [[nodiscard]] const std::vector<std::string>& aircraft() const { return aircraft_; }

 private:
  const std::string& anyAircraft() { return aircraft_[random_() % aircraft_.size()]; }

  void writeDay(int day) {
    const local_days date = kFirstDay + days(day);
    const std::string digits = dayDigits(date);
    const int frequent =
        static_cast<int>((day + 1LL) * kFrequentMessages / dayCount_ -
                         static_cast<long long>(day) * kFrequentMessages / dayCount_);
    std::string list = kHeader;
    for (int i = 0; i < kLinesADay + frequent; ++i) {
      const int second = i * 86'400 / (kLinesADay + frequent);
      const bool isFrequent = i < frequent;
      const std::string& name = isFrequent ? kFrequentName : anyAircraft();
      append(list, "%c%c%04u,%s,%s,%s,%s,B78%u,-,%d:%02d:%02d\r\n", 'A' + i % 26, 'A' + i % 7,
             static_cast<unsigned>(random_() % 2000), i % 3 == 0 ? "O" : "X",
             i == 700 && day % (dayCount_ / 10) == 0 ? kRare : name.c_str(),
             i % 4 == 0 ? "" : "RJTT", i % 5 == 0 ? "" : "KSFO",
             static_cast<unsigned>(random_() % 10), second / 3600, second / 60 % 60, second % 60);
    }
    write(folders.logs / (digits + "_list.csv"), list);

    std::string hfdl;
    std::string raw;
    const std::string slashed = dayText(date);
    for (int i = 0; i < kMessagesADay; ++i) {
      const int second = i * 86'400 / kMessagesADay;
      append(hfdl, "[2]------------------------[%s %02d:%02d:%02d]\r\n", slashed.c_str(),
             second / 3600, second / 60 % 60, second % 60);
      append(hfdl, " DOWN LINK\r\n  GS NAME         = Riverhead, New York\r\n");
      append(hfdl, "   ICAO24 ADDRESS = %06X\r\n   REGISTRATION   = %s\r\n",
             static_cast<unsigned>(random_() % 0xFFFFFF), anyAircraft().c_str());
      append(hfdl, "   FLIGHT ID      = %c%c%04u\r\n", 'A' + i % 26, 'A' + i % 7,
             static_cast<unsigned>(random_() % 2000));
      hfdl += "   POSITION       = N35.123 E139.456\r\n  ..............................\r\n";
    }
    write(folders.logs / (digits + "0000_HFDL_FMT.log"), hfdl);

    // A day's messages of an aircraft stand together.
    const std::string& name = aircraft_[static_cast<std::size_t>(day) % aircraft_.size()];
    for (int i = 0; i < kRawLinesADay; ++i) {
      const int second = i * 86'400 / kRawLinesADay;
      append(raw,
             "%s %02d:%02d:%02d 131.450MHz <PRE>+*<SYN><SYN><SOH>2.%s<NAK>200<STX>M00A%c%c%04u"
             "POSN23457W159037,,211733,360,OTT<ETX><CRC><DEL>\r\n",
             slashed.c_str(), second / 3600, second / 60 % 60, second % 60,
             name.substr(0, 6).c_str(), 'A' + i % 26, 'A' + i % 7,
             static_cast<unsigned>(random_() % 2000));
    }
    write(folders.eachLogs / (name + ".log"), raw, true);
  }

  const std::string kFrequentName = kFrequent;
  int dayCount_;
  std::vector<std::string> aircraft_;
  std::minstd_rand random_{7};
};

double processorSeconds(int who) {
  rusage usage{};
  getrusage(who, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Runs a tool on files; its output goes to a file, or nowhere.
double runTool(std::vector<std::string> command, const std::vector<std::string>& files,
               const std::string& output) {
  command.insert(command.end(), files.begin(), files.end());
  std::vector<char*> arguments;
  for (std::string& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  const double before = processorSeconds(RUSAGE_CHILDREN);
  std::fflush(stdout);  // not once more by the child
  const pid_t child = fork();
  if (child == 0) {
    if (std::freopen(output.c_str(), "w", stdout) == nullptr) _exit(127);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
      WEXITSTATUS(status) > 1) {
    fail("cannot run " + command[0]);
  }
  return processorSeconds(RUSAGE_CHILDREN) - before;
}

std::string outputOf(const std::vector<std::string>& command, const std::vector<std::string>& files,
                     const std::filesystem::path& folder) {
  const std::filesystem::path output = folder / "output";
  runTool(command, files, output.string());
  std::ifstream in(output, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void finish(Job& job) {
  while (true) {
    const auto step = job.step(Job::Clock::now() + 8ms);
    if (!step) fail(step.error().text());
    if (*step == JobProgress::done) return;
  }
}

HistoryQuery listQuery(const std::string& text, SearchMeaning meaning) {
  return {.text = text, .meaning = meaning, .hfdl = false, .rawLogs = false};
}

void search(const Station& station, const HistoryQuery& query, FoundMessages& found) {
  HistorySearch job(station.folders, Encoding::codePage932(), query, found);
  finish(job);
  if (!job.problems().empty()) fail(reportOf(job.problems()));
}

FirstHeard::Names dayNames(const Station& station) {
  FirstHeard::Names names{station.aircraft(), {}};
  // No log has these, so that all are read.
  for (const char* newOne : {"ZZ-NEW", "JA1234"}) names.aircraft.emplace_back(newOne);
  for (int i = 0; i < 900; ++i) {
    std::string flight;
    append(flight, "%c%c%04d", 'A' + i % 26, 'A' + i % 7, i * 2);
    names.flights.push_back(flight);
  }
  names.flights.emplace_back("ZZ9999");
  return names;
}

FirstHeard::Names firstHeard(const Station& station) {
  FirstHeard job(station.folders, Encoding::codePage932(), dayNames(station),
                 local_days{2099y / 1 / 1}, {.hfdl = false});
  finish(job);
  return job.heardFirst();
}

bool same(const char* what, std::size_t ours, std::size_t theirs) {
  std::printf("%-28s %9zu of %9zu %s\n", what, ours, theirs, ours == theirs ? "" : "DIFFER");
  return ours == theirs;
}

// What is found is what the tools find.
bool check(const Station& station) {
  bool good = true;
  for (const char* name : {kRare, kFrequent}) {
    const std::string counts = outputOf({"rg", "-j1", "-F", "-c", "--no-filename", name},
                                        station.lists, station.folders.base);
    std::size_t expected = 0;
    for (const std::string_view line : split(counts, '\n')) {
      std::size_t count = 0;
      std::from_chars(line.data(), line.data() + line.size(), count);
      expected += count;
    }
    FoundMessages found;
    std::string plain = name;
    std::erase(plain, '-');
    search(station, listQuery(plain, SearchMeaning::registration), found);
    good = same(name, found.size(), expected) && good;
  }
  const std::string seen =
      outputOf({"mawk", "-F,", "!seen[$3]++ { print $3 }"}, station.lists, station.folders.base);
  std::set<std::string, std::less<>> earlier;
  for (const std::string_view name : split(seen, '\n')) earlier.emplace(name);
  std::vector<std::string> expected;
  for (const std::string& name : dayNames(station).aircraft) {
    if (!earlier.contains(name)) expected.push_back(name);
  }
  const FirstHeard::Names first = firstHeard(station);
  good = same("heard for the first time", first.aircraft.size(), expected.size()) && good;
  if (first.aircraft != expected) good = false;

  FoundMessages all;
  search(station, {.text = station.aircraft().front(), .lists = false}, all);
  std::size_t sources[2] = {};
  for (std::size_t i = 0; i < all.size(); ++i) {
    ++sources[all.log(i).source == HistorySource::hfdl ? 0 : 1];
  }
  std::printf("%-28s %9zu HFDL, %zu of raw logs\n", "an aircraft", sources[0], sources[1]);
  return good && sources[0] > 0 && sources[1] > 0;
}

bool kept(const char* what, double measured, double against, double most) {
  const bool good = measured <= against * most;
  std::printf("%-28s %9.1f ms, against %9.1f ms: x %.2f of %.2f %s\n", what, measured * 1000,
              against * 1000, measured / against, most, good ? "kept" : "EXCEEDED");
  return good;
}

bool measure(const Station& station, int rounds) {
  struct Pair {
    double ours = std::numeric_limits<double>::max();
    double tool = std::numeric_limits<double>::max();
  };
  Pair rare;
  Pair frequent;
  Pair first;
  const auto timed = [](double& least, const auto& run) {
    const double before = processorSeconds(RUSAGE_SELF);
    run();
    least = std::min(least, processorSeconds(RUSAGE_SELF) - before);
  };
  const auto searched = [&](const char* name) {
    FoundMessages found;
    search(station, listQuery(name, SearchMeaning::registration), found);
    if (found.size() == 0) fail("nothing found");
  };
  const auto ripgrep = [&](const char* name) {
    return runTool({"rg", "-j1", "-F", "-c", name}, station.lists, "/dev/null");
  };
  for (int round = 0; round < rounds; ++round) {
    timed(rare.ours, [&] { searched("JA9999"); });
    rare.tool = std::min(rare.tool, ripgrep(kRare));
    timed(frequent.ours, [&] { searched("JA8089"); });
    frequent.tool = std::min(frequent.tool, ripgrep(kFrequent));
    timed(first.ours, [&] { firstHeard(station); });
    first.tool =
        std::min(first.tool, runTool({"mawk", "-F,", "!seen[$3]++"}, station.lists, "/dev/null"));
  }
  bool good = kept("rare registration", rare.ours, rare.tool, 1.3);
  good = kept("frequent registration", frequent.ours, frequent.tool, 2.0) && good;
  good = kept("heard for the first time", first.ours, first.tool, 1 / 3.0) && good;

  FoundMessages found;
  double everything = std::numeric_limits<double>::max();
  timed(everything, [&] { search(station, listQuery(",", SearchMeaning::anyText), found); });
  const double each = static_cast<double>(found.overhead()) / static_cast<double>(found.size());
  std::printf("%-28s %9zu in %.1f ms, %.1f bytes each beside their text of 64 %s\n", "results",
              found.size(), everything * 1000, each, each <= 64 ? "kept" : "EXCEEDED");
  return good && each <= 64;
}

}  // namespace
}  // namespace vel

int main(int count, char** arguments) {
  int dayCount = 3650;
  int rounds = 5;
  bool checkOnly = false;
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    const auto number = [&](std::string_view option, int least, int& value) {
      if (!argument.starts_with(option)) return false;
      const std::string_view digits = argument.substr(option.size());
      const auto [end, error] =
          std::from_chars(digits.data(), digits.data() + digits.size(), value);
      return error == std::errc() && end == digits.data() + digits.size() && value >= least;
    };
    if (argument == "--check") {
      checkOnly = true;
    } else if (!number("--days=", 10, dayCount) && !number("--rounds=", 1, rounds)) {
      std::fprintf(stderr, "usage: history_bench [--days=3650] [--rounds=5] [--check]\n");
      return 2;
    }
  }
  const vel::Station station(VEL_BENCH_CACHE, dayCount);
  const bool good = vel::check(station) && (checkOnly || vel::measure(station, rounds));
  return good ? 0 : 1;
}
