#include "samples/schedule.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include "samples/random.h"

namespace vel::samples {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

constexpr minutes kTurnaround{45};
constexpr minutes kTaxi{12};
constexpr std::chrono::hours kLongestFlight{19};

bool isJapanese(const std::string& icao) {
  return icao.starts_with("RJ") || icao.starts_with("RO");
}

minutes flightTime(const Airport& from, const Airport& to, const std::string& type) {
  const double kmPerHour = type == "DH8D" ? 560 : 870;
  const double hours = distanceKm(from.place, to.place) / kmPerHour;
  return minutes(25 + static_cast<int>(hours * 60));
}

/// The minute of the day at which the route meets the station's rush hours.
minutes usualMinute(const Route& route, std::uint64_t seed) {
  Random random(seed, "usual " + route.flight);
  return minutes(60 * static_cast<int>(random.weighted(hourlyActivity())) +
                 5 * random.between(0, 11));
}

std::string remarkOf(const Route& route, Random& random) {
  if (route.remark != "-" || !random.chance(0.02)) return route.remark;
  static const std::vector<std::string> kOccasional = {"臨時便",     "機材変更", "遅延",
                                                       "特別塗装機", "Ferry",    "Diverted"};
  return random.pick(kOccasional);
}

}  // namespace

bool Flight::isKnown(const SampleData& data) const {
  const Airline& airline = data.airline(aircraft->airline);
  return route->listed && aircraft->listed && airline.listed && !airline.fuselageColour.empty();
}

Place Flight::placeAt(Moment time) const {
  const auto flown = static_cast<double>((time - departure).count());
  const auto whole = static_cast<double>((arrival - departure).count());
  return alongRoute(from->place, to->place, flown / whole);
}

Schedule::Schedule(const SampleData& data, Day first, Day last, std::uint64_t seed) {
  for (Day day = first - std::chrono::days(1); day <= last; day += std::chrono::days(1)) {
    planDay(data, day, seed);
  }
  std::stable_sort(flights_.begin(), flights_.end(),
                   [](const Flight& a, const Flight& b) { return a.departure < b.departure; });
  assignAircraft(data, seed);
}

void Schedule::planDay(const SampleData& data, Day day, std::uint64_t seed) {
  for (const Route& route : data.routes()) {
    Random random(seed, compactDate(day) + route.flight);
    if (random.chance(0.08)) continue;
    Flight flight;
    flight.route = &route;
    flight.from = &data.airport(route.departure);
    flight.to = &data.airport(route.destination);
    const minutes duration = flightTime(*flight.from, *flight.to, route.types.front());
    const Moment meeting = day + usualMinute(route, seed) + minutes(random.between(-8, 25)) +
                           seconds(random.between(0, 59));
    // The rush is at the station: what leaves Japan departs then, what comes to
    // it arrives then, and what passes by is halfway.
    if (isJapanese(route.departure)) {
      flight.departure = meeting;
    } else if (isJapanese(route.destination)) {
      flight.departure = meeting - duration;
    } else {
      flight.departure = meeting - duration / 2;
    }
    flight.arrival = flight.departure + duration;
    flight.remark = remarkOf(route, random);
    flights_.push_back(std::move(flight));
  }
}

void Schedule::assignAircraft(const SampleData& data, std::uint64_t seed) {
  struct Whereabouts {
    Moment freeFrom;
    const Airport* at = nullptr;
  };
  std::map<const Aircraft*, Whereabouts> whereabouts;
  for (Flight& flight : flights_) {
    const std::vector<const Aircraft*> fleet = data.fleetFor(*flight.route);
    Random random(seed, timeStamp(flight.departure) + flight.route->flight);
    const std::size_t start = random.below(fleet.size());
    int bestRank = 0;
    for (std::size_t i = 0; i < fleet.size(); ++i) {
      const Aircraft* candidate = fleet[(start + i) % fleet.size()];
      const auto known = whereabouts.find(candidate);
      int rank = 2;
      if (known != whereabouts.end()) {
        if (known->second.freeFrom > flight.departure) continue;
        rank = known->second.at == flight.from ? 3 : 1;
      }
      if (rank > bestRank) {
        bestRank = rank;
        flight.aircraft = candidate;
      }
    }
    if (flight.aircraft != nullptr) {
      whereabouts[flight.aircraft] = {flight.arrival + kTurnaround, flight.to};
    }
  }
  std::erase_if(flights_, [](const Flight& flight) { return flight.aircraft == nullptr; });
}

std::vector<const Flight*> Schedule::activeAt(Moment time) const {
  const auto begin = std::partition_point(
      flights_.begin(), flights_.end(),
      [time](const Flight& flight) { return flight.departure < time - kLongestFlight; });
  std::vector<const Flight*> active;
  for (auto it = begin; it != flights_.end() && it->departure - kTaxi <= time; ++it) {
    if (it->arrival + kTaxi >= time) active.push_back(&*it);
  }
  return active;
}

const std::vector<double>& hourlyActivity() {
  static const std::vector<double> kWeights = {0.35, 0.12, 0.08, 0.08, 0.15, 0.45, 0.95, 1.40,
                                               1.60, 1.50, 1.30, 1.15, 1.05, 1.05, 1.10, 1.15,
                                               1.25, 1.50, 1.65, 1.55, 1.35, 1.10, 0.85, 0.55};
  return kWeights;
}

std::string compactDate(Day day) {
  const std::chrono::year_month_day date(day);
  char text[40];
  std::snprintf(text, sizeof text, "%04d%02u%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::string timeStamp(Moment time) {
  const Day day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::hh_mm_ss clock(time - day);
  const std::string date = compactDate(day);
  char text[40];
  std::snprintf(text, sizeof text, " %02d:%02d:%02d", static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return date.substr(0, 4) + '/' + date.substr(4, 2) + '/' + date.substr(6, 2) + text;
}

std::string clockTime(Moment time) {
  const std::string full = timeStamp(time);
  return full.substr(full[11] == '0' ? 12 : 11);
}

}  // namespace vel::samples
