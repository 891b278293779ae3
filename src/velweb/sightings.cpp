#include "velweb/sightings.h"

#include <algorithm>
#include <deque>
#include <optional>

#include "core/file.h"
#include "core/helpers.h"
#include "core/line_reader.h"
#include "velweb/text_scan.h"

namespace vel {
namespace {

using Sightings = std::deque<Sighting>;

void keepNewest(Sightings& sightings, Sighting sighting) {
  sightings.push_back(std::move(sighting));
  if (sightings.size() > kMostSightings) sightings.pop_front();
}

// The newest dated logs with that ending, the newest first.
std::vector<std::string> newestLogs(const Folders& folders, std::string_view ending) {
  constexpr std::size_t kDateSize = 8;
  auto names = listFolder(folders.logs);
  std::vector<std::string> logs;
  if (!names) return logs;
  for (std::string& name : *names) {
    if (name.size() < kDateSize + ending.size() || !name.starts_with("20")) continue;
    if (TextScan(name).countDigits() < kDateSize) continue;
    if (!equalIgnoringCase(std::string_view(name).substr(name.size() - ending.size()), ending)) {
      continue;
    }
    logs.push_back(std::move(name));
  }
  std::sort(logs.rbegin(), logs.rend());
  logs.resize(std::min(logs.size(), kSightingLogs));
  return logs;
}

// Calls the visitor with every line, as bytes.
template <typename Visit>
void forEachLine(const std::filesystem::path& path, Visit visit) {
  Result<InputFile> file = InputFile::open(path);
  if (!file) return;
  LineReader lines(std::move(*file));
  while (lines.bytesRead() < kSightingLogBytes) {
    const auto line = lines.next();
    if (!line || !*line) return;
    visit(**line);
  }
}

// Reads list logs: eight fields, the flight first and the time last.
class ListLogReader {
 public:
  ListLogReader(const Encoding& encoding, std::string_view flight)
      : encoding_(encoding), flight_(flight) {}

  Sightings read(const std::filesystem::path& path, std::string_view name) {
    Sightings found;
    const std::string date = std::string(name.substr(0, 4)) + "-" + std::string(name.substr(4, 2)) +
                             "-" + std::string(name.substr(6, 2));
    forEachLine(path, [&](std::string_view line) {
      // Most lines are of other flights: they are left before they are split.
      if (line.find(flight_) == std::string_view::npos) return;
      const std::vector<std::string_view> fields = split(line, ',');
      if (fields.size() != 8 || Trim(fields[0]) != flight_) return;
      keepNewest(found, {date + " " + ZeroPad(encoding_.decode(fields[7]), 8), "ACARS",
                         encoding_.decode(fields[2]), encoding_.decode(fields[3]),
                         encoding_.decode(fields[4]), encoding_.decode(fields[5]),
                         encoding_.decode(fields[6])});
    });
    return found;
  }

 private:
  const Encoding& encoding_;
  std::string_view flight_;
};

// Reads formatted HFDL logs: a header line opens a message, a dotted line ends
// one aircraft's part of it.
class HfdlLogReader {
 public:
  HfdlLogReader(const Encoding& encoding, std::string_view flight)
      : encoding_(encoding), flight_(flight) {}

  Sightings read(const std::filesystem::path& path) {
    found_.clear();
    message_ = {};
    forEachLine(path, [this](std::string_view line) { readLine(line); });
    endOfAircraft();
    return std::move(found_);
  }

 private:
  struct Message {
    std::string time;
    std::string direction;
    std::string station;
    bool hasAddress = false;
    std::string registration;
    std::string flight;
  };

  void readLine(std::string_view line) {
    constexpr std::string_view kHeader = "------------------------[";
    constexpr std::string_view kEnd = "  ..............................";
    if (line.find(kHeader) != std::string_view::npos) {
      endOfAircraft();
      message_ = {};
      message_.time = timeOf(line);
    } else if (line == kEnd) {
      endOfAircraft();
    } else if (line == " DOWN LINK") {
      message_.direction = "D";
    } else if (line == " UP LINK") {
      message_.direction = "U";
    } else if (line.find("  GS NAME         =") != std::string_view::npos) {
      message_.station = valueFrom(line, 20);
    } else if (line.find("ICAO24 ADDRESS = ") != std::string_view::npos) {
      message_.hasAddress = line.size() > 20;
    } else if (line.find("REGISTRATION   = ") != std::string_view::npos) {
      message_.registration = valueFrom(line, 21);
    } else if (line.find("FLIGHT ID      = ") != std::string_view::npos) {
      message_.flight = valueFrom(line, 21);
    }
  }

  // The labels are ASCII, so that a value's column is also its place in bytes.
  static std::string valueFrom(std::string_view line, std::size_t column) {
    return std::string(line.substr(std::min(line.size(), column - 1)));
  }

  static std::string timeOf(std::string_view header) {
    if (header.size() < 47) return {};
    std::string time(header.substr(28, 10));
    std::replace(time.begin(), time.end(), '/', '-');
    return time.append(" ").append(header.substr(header.size() - 9, 8));
  }

  void endOfAircraft() {
    if (message_.hasAddress && Trim(message_.flight) == flight_) {
      std::string remark = message_.direction;
      if (!remark.empty()) remark += ' ';
      remark += encoding_.decode(Trim(message_.station));
      keepNewest(found_, {encoding_.decode(message_.time), "HFDL",
                          encoding_.decode(message_.registration), "", "", "", remark});
    }
    message_.hasAddress = false;
    message_.registration.clear();
    message_.flight.clear();
  }

  const Encoding& encoding_;
  std::string_view flight_;
  Message message_;
  Sightings found_;
};

}  // namespace

std::vector<Sighting> latestSightings(const Folders& folders, const Encoding& encoding,
                                      std::string_view flight) {
  const std::optional<std::string> wanted = encoding.encode(Trim(flight));
  std::vector<Sighting> latest;
  if (!wanted || wanted->empty()) return latest;
  const auto collect = [&latest](Sightings found, std::size_t& count) {
    count += found.size();
    latest.insert(latest.end(), std::make_move_iterator(found.begin()),
                  std::make_move_iterator(found.end()));
    return count < kMostSightings;
  };
  std::size_t count = 0;
  ListLogReader lists(encoding, *wanted);
  for (const std::string& name : newestLogs(folders, "_list.csv")) {
    if (!collect(lists.read(folders.logs / toPath(name), name), count)) break;
  }
  count = 0;
  HfdlLogReader hfdl(encoding, *wanted);
  for (const std::string& name : newestLogs(folders, "_HFDL_FMT.log")) {
    if (!collect(hfdl.read(folders.logs / toPath(name)), count)) break;
  }
  std::stable_sort(latest.begin(), latest.end(), [](const Sighting& left, const Sighting& right) {
    return left.time > right.time;
  });
  latest.resize(std::min(latest.size(), kMostSightings));
  return latest;
}

}  // namespace vel
