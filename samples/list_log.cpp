#include "samples/list_log.h"

#include <algorithm>

#include "samples/random.h"
#include "samples/raw_log.h"
#include "samples/text_file.h"

namespace vel::samples {
namespace {

constexpr int kMessagesPerDay = 1560;
/// How far the station's aerial reaches to an aircraft at cruising height.
constexpr double kRangeKm = 560;

/// The flights whose messages the station can hear at that time.
std::vector<const Flight*> audibleAt(const Schedule& schedule, Moment time) {
  std::vector<const Flight*> audible = schedule.activeAt(time);
  std::erase_if(audible, [time](const Flight* flight) {
    return distanceKm(flight->placeAt(time), kStation) > kRangeKm;
  });
  return audible;
}

std::string photoMark(bool photographed, Random& random) {
  if (random.chance(0.12)) return photographed ? "○" : "×";
  return photographed ? "O" : "X";
}

std::string listLine(const Reception& reception, const std::set<std::string>& photographed,
                     Random& random) {
  const Flight& flight = *reception.flight;
  const Aircraft& aircraft = *flight.aircraft;
  std::string line = flight.route->flight;
  if (random.chance(0.04)) line += ' ';
  line += ',' + photoMark(photographed.contains(aircraft.registration), random);
  line += ',' + aircraft.registration;
  line += ',' + (flight.route->listed ? flight.route->departure : std::string());
  line += ',' + (flight.route->listed ? flight.route->destination : std::string());
  line += ',' + (aircraft.listed ? aircraft.type : std::string());
  line += ',' + flight.remark;
  line += ',' + clockTime(reception.time);
  return line;
}

}  // namespace

std::vector<Reception> receptionsOf(const SampleData& data, const Schedule& schedule, Day day,
                                    Moment until, std::uint64_t seed) {
  Random random(seed, "list " + compactDate(day));
  std::vector<Moment> times;
  for (int i = 0; i < kMessagesPerDay; ++i) {
    times.push_back(day + std::chrono::hours(random.weighted(hourlyActivity())) +
                    std::chrono::seconds(random.between(0, 3599)));
  }
  std::sort(times.begin(), times.end());
  std::vector<Reception> receptions;
  for (const Moment time : times) {
    if (time > until) break;
    auto audible = audibleAt(schedule, time);
    // What is selected first of a list is to show what the program can tell.
    if (receptions.empty()) {
      std::erase_if(audible, [&](const Flight* flight) {
        return !flight->isKnown(data) || flight->aircraft->registration.size() > kLongestAddress;
      });
    }
    if (!audible.empty()) receptions.push_back({time, random.pick(audible)});
  }
  return receptions;
}

Status writeListLog(const std::filesystem::path& folder, Day day,
                    const std::vector<Reception>& receptions,
                    const std::set<std::string>& photographed, bool withMalformed,
                    std::uint64_t seed) {
  Random random(seed, "list lines " + compactDate(day));
  std::vector<std::string> lines;
  for (const Reception& reception : receptions) {
    lines.push_back(listLine(reception, photographed, random));
  }
  std::vector<std::string> malformed = {"", "##### 0 #####"};
  if (withMalformed && !lines.empty()) {
    // A remark that somebody typed a comma into, and a line that was cut off.
    std::string nine = random.pick(lines);
    nine.insert(nine.rfind(','), ",Ferry");
    const std::string& whole = random.pick(lines);
    malformed.push_back(nine);
    malformed.push_back(whole.substr(0, whole.find(',', whole.find(',') + 1)));
  }
  for (const std::string& line : malformed) {
    const auto place = static_cast<std::ptrdiff_t>(random.below(lines.size() + 1));
    lines.insert(lines.begin() + place, line);
  }

  TextFile file(folder / (compactDate(day) + "_list.csv"));
  file.addLine("Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time");
  for (const std::string& line : lines) file.addLine(line);
  return file.write();
}

}  // namespace vel::samples
