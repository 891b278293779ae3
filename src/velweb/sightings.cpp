#include "velweb/sightings.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <utility>

#include "acars/list_log.h"
#include "core/file.h"
#include "hfdl/hfdl_log.h"
#include "hfdl/hfdl_row.h"
#include "log/dated_logs.h"
#include "velweb/text_scan.h"

namespace vel {
namespace {

using Clock = std::chrono::steady_clock;
using Sightings = std::deque<Sighting>;

void keepNewest(Sightings& sightings, Sighting sighting) {
  sightings.push_back(std::move(sighting));
  if (sightings.size() > kMostSightings) sightings.pop_front();
}

// The newest dated logs with that ending, the newest first.
std::vector<std::string> newestLogs(const Folders& folders, std::string_view ending) {
  std::vector<std::string> names = datedLogs(folders.logs, ending);
  std::sort(names.rbegin(), names.rend());
  names.resize(std::min(names.size(), kSightingLogs));
  return names;
}

// The day in a log's name as yyyy-mm-dd, or the name itself, less its ending,
// where it holds no eight digits in a row or with hyphens.
std::string dayOf(std::string_view name, std::string_view ending) {
  name.remove_suffix(ending.size());
  TextScan scan(name);
  std::string day;
  for (const std::size_t width : {4U, 2U, 2U}) {
    if (!day.empty()) scan.take("-");
    if (scan.countDigits() < width) return std::string(name);
    if (!day.empty()) day += '-';
    day += scan.rest().substr(0, width);
    scan.takeDigits(width);
  }
  return day;
}

class ListLogs {
 public:
  ListLogs(const Tables& tables, std::string_view flight) : tables_(tables), flight_(flight) {
    filter_.flight = flight_;
  }

  Sightings read(const std::string& name, Clock::time_point deadline) const {
    Sightings found;
    Result<InputFile> file = InputFile::open(tables_.folders().logs / toPath(name));
    if (!file) return found;
    ListLogReader reader(std::move(*file), tables_.encoding(), filter_, tables_);
    const std::string day = dayOf(name, kListLogSuffix);
    RowStore rows(ListLogReader::kSeparator);
    bool more = true;
    while (more && Clock::now() < deadline) {
      // A deadline that is past: some lines, so that the rows stay few.
      const Result<bool> step = reader.step(Clock::time_point::min(), rows);
      more = step && *step;
      for (std::size_t i = 0; i < rows.size(); ++i) take(rows, i, day, found);
      rows.clear();
    }
    return found;
  }

 private:
  void take(const RowStore& rows, std::size_t row, const std::string& day, Sightings& found) const {
    const auto text = [&](ListColumn column) {
      return tables_.encoding().decode(rows.field(row, static_cast<std::size_t>(column) - 1));
    };
    if (text(kListFlight) != flight_) return;
    keepNewest(found,
               {day + " " + text(kListTime), "ACARS", text(kListRegistration), text(kListDeparture),
                text(kListDestination), text(kListEquipment), text(kListRemarks)});
  }

  const Tables& tables_;
  std::string flight_;
  ListFilter filter_;
};

class HfdlLogs {
 public:
  HfdlLogs(const Tables& tables, std::string_view flight) : tables_(tables), flight_(flight) {}

  Sightings read(const std::string& name, Clock::time_point deadline) {
    Sightings found;
    Result<InputFile> file = InputFile::open(tables_.folders().logs / toPath(name));
    if (!file) return found;
    HfdlReader reader(std::move(*file), tables_.encoding());
    while (Clock::now() < deadline) {
      const Result<HfdlReader::Step> step = reader.step();
      if (!step || *step == HfdlReader::Step::end) break;
      if (*step == HfdlReader::Step::record && isFlight(reader.record())) {
        keepNewest(found, sighting(reader.record()));
      }
    }
    return found;
  }

 private:
  bool isFlight(const HfdlRecord& record) {
    const std::string_view flight = Trim(record.flightId);
    if (flight == flight_) return true;
    // Most flights would not be this one whatever the table says.
    const std::string completed = completedFlight(flight, {});
    if (flight.empty() || !flight_.ends_with(completed)) return false;
    return completedFlight(flight, aircraftOf(record.address)) == flight_;
  }

  const Icao24Record& aircraftOf(const std::string& address) {
    constexpr std::size_t kMostKept = 1000;
    const auto known = aircraft_.find(address);
    if (known != aircraft_.end()) return known->second;
    if (aircraft_.size() == kMostKept) aircraft_.clear();
    const Result<Icao24Record> found = tables_.aircraftOfAddress(address);
    return aircraft_[address] = found ? *found : Icao24Record{};
  }

  static Sighting sighting(const HfdlRecord& record) {
    std::string time(Trim(record.timeStamp));
    std::replace(time.begin(), time.end(), '/', '-');
    std::string remark = record.direction;
    if (!remark.empty()) remark += ' ';
    remark += Trim(record.groundStation);
    return {std::move(time), "HFDL", record.registration, "", "", "", std::move(remark)};
  }

  const Tables& tables_;
  std::string flight_;
  std::map<std::string, Icao24Record> aircraft_;
};

// Reads logs, the newest first, until they gave enough or the time is over.
template <typename Logs>
void collect(Logs logs, const std::vector<std::string>& names, Clock::time_point deadline,
             std::vector<Sighting>& latest) {
  std::size_t count = 0;
  for (const std::string& name : names) {
    Sightings found = logs.read(name, deadline);
    count += found.size();
    latest.insert(latest.end(), std::make_move_iterator(found.begin()),
                  std::make_move_iterator(found.end()));
    if (count >= kMostSightings) return;
  }
}

}  // namespace

std::vector<Sighting> latestSightings(const Tables& tables, std::string_view flight,
                                      Clock::duration longest) {
  const std::string_view wanted = Trim(flight);
  std::vector<Sighting> latest;
  if (wanted.empty()) return latest;
  const Folders& folders = tables.folders();
  collect(ListLogs(tables, wanted), newestLogs(folders, kListLogSuffix), Clock::now() + longest,
          latest);
  collect(HfdlLogs(tables, wanted), newestLogs(folders, kHfdlLogSuffix), Clock::now() + longest,
          latest);
  std::stable_sort(latest.begin(), latest.end(), [](const Sighting& left, const Sighting& right) {
    return left.time > right.time;
  });
  latest.resize(std::min(latest.size(), kMostSightings));
  return latest;
}

}  // namespace vel
