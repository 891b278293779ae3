#include "samples/hfdl_log.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "samples/random.h"
#include "samples/text_file.h"

namespace vel::samples {
namespace {

constexpr int kMessagesPerDay = 1520;
/// Flights shorter than this use VHF alone.
constexpr double kShortestRouteKm = 1800;

/// Hour of the day by the sun at a place, 0 to 24.
double solarHour(Moment time, Place place) {
  const auto sinceMidnight = time - std::chrono::floor<std::chrono::days>(time);
  const double stationHour = static_cast<double>(sinceMidnight.count()) / 3600;
  const double utc = stationHour - static_cast<double>(kStationOffset.count());
  return std::fmod(utc + place.longitude / 15 + 48, 24.0);
}

/// The frequencies in use: low ones at night and high ones by day, two or three
/// at a time, changed on the hour.
std::string frequenciesAt(const GroundStation& station, Moment time) {
  const double hour = std::floor(solarHour(time, station.place));
  const double sun = std::cos(2 * std::numbers::pi * (hour - 13) / 24);
  const auto last = static_cast<double>(station.frequencies.size() - 1);
  const double centre = last * (0.5 + 0.45 * sun);
  std::string list;
  for (std::size_t i = 0; i < station.frequencies.size(); ++i) {
    if (std::abs(static_cast<double>(i) - centre) < 1.3) list += station.frequencies[i] + ' ';
  }
  return list;
}

std::string frequencyLine(const GroundStation& station, Moment time) {
  return "   FREQUENCIES    = [ " + frequenciesAt(station, time) + "] (" + station.city() + ")";
}

bool hasHfdl(const Flight& flight) {
  return !flight.aircraft->address.empty() &&
         distanceKm(flight.from->place, flight.to->place) >= kShortestRouteKm;
}

/// One day's log in the making.
class HfdlDay {
 public:
  HfdlDay(const SampleData& data, const Schedule& schedule, TextFile& file, Random& random)
      : data_(data), schedule_(schedule), file_(file), random_(random) {}

  void addMessage(Moment time) {
    const std::vector<const Flight*> flights = reachableAt(time);
    const bool squitter = flights.empty() || random_.chance(0.4);
    const bool uplink = !squitter && random_.chance(0.4);
    file_.addLine('[' + std::to_string(random_.between(1, 3)) + "]------------------------[" +
                  timeStamp(time) + ']');
    file_.addLine(squitter ? " SQUITTER" : uplink ? " UP LINK" : " DOWN LINK");
    const Flight* flight = squitter ? nullptr : random_.pick(flights);
    const std::size_t station = pickStation(flight, time);
    file_.addLine("  GS NAME         = " + data_.groundStations()[station].name);
    if (random_.chance(0.04)) {
      file_.addLine("   CRC FAILED");
      return;
    }
    if (squitter) {
      addFrequencies(station, time);
      return;
    }
    const int records = !random_.chance(uplink ? 0.2 : 0.06) ? 1 : random_.between(2, 3);
    for (int i = 0; i < records; ++i) {
      addRecord(i == 0 ? *flight : *random_.pick(flights), time, i + 1 == records);
    }
  }

 private:
  std::vector<const Flight*> reachableAt(Moment time) const {
    std::vector<const Flight*> flights = schedule_.activeAt(time);
    std::erase_if(flights, [time](const Flight* flight) {
      return !flight->airborneAt(time) || !hasHfdl(*flight);
    });
    return flights;
  }

  /// A station that the receiver hears well and that is near to the aircraft.
  std::size_t pickStation(const Flight* flight, Moment time) {
    std::vector<double> weights;
    for (const GroundStation& station : data_.groundStations()) {
      const double km = flight == nullptr ? 0 : distanceKm(flight->placeAt(time), station.place);
      // At night the receiver hears the far stations better.
      const double far = std::min(1.0, distanceKm(kStation, station.place) / 9000);
      const double night =
          1 + std::cos(2 * std::numbers::pi * (solarHour(time, kStation) - 1) / 24);
      weights.push_back(station.weight * std::exp(-km / 2500) * (1 + far * night));
    }
    return random_.weighted(weights);
  }

  /// A squitter carries the lists of its own station and of two others.
  void addFrequencies(std::size_t own, Moment time) {
    const std::vector<GroundStation>& stations = data_.groundStations();
    const std::size_t step = 1 + random_.below(stations.size() / 2 - 1);
    for (std::size_t i = 0; i < 3; ++i) {
      file_.addLine(frequencyLine(stations[(own + i * step) % stations.size()], time));
    }
  }

  void addRecord(const Flight& flight, Moment time, bool last) {
    file_.addLine("   ICAO24 ADDRESS = " + flight.aircraft->address);
    if (!random_.chance(0.2)) file_.addLine("   REGISTRATION   = " + flight.aircraft->registration);
    if (!random_.chance(0.1)) file_.addLine("   FLIGHT ID      = " + flightId(flight));
    const Place place = flight.placeAt(time);
    char position[80];
    std::snprintf(position, sizeof position, "   POSITION       = %c%06.3f %c%07.3f",
                  place.latitude < 0 ? 'S' : 'N', std::abs(place.latitude),
                  place.longitude < 0 ? 'W' : 'E', std::abs(place.longitude));
    file_.addLine(position);
    if (!last || !random_.chance(0.1)) file_.addLine("  ..............................");
  }

  /// Some crews enter the bare number without the airline's letters.
  std::string flightId(const Flight& flight) {
    const std::string& full = flight.route->flight;
    if (random_.chance(0.18)) return std::to_string(std::stoi(full.substr(2)));
    return full;
  }

  const SampleData& data_;
  const Schedule& schedule_;
  TextFile& file_;
  Random& random_;
};

}  // namespace

Status writeHfdlLog(const std::filesystem::path& folder, const SampleData& data,
                    const Schedule& schedule, Day day, Moment until, std::uint64_t seed) {
  Random random(seed, "hfdl " + compactDate(day));
  std::vector<Moment> times;
  std::vector<double> activity = hourlyActivity();
  // Short waves carry further at night, so its hours are not as quiet as on VHF.
  for (double& hour : activity) hour += 0.7;
  for (int i = 0; i < kMessagesPerDay; ++i) {
    times.push_back(day + std::chrono::hours(random.weighted(activity)) +
                    std::chrono::seconds(random.between(0, 3599)));
  }
  std::sort(times.begin(), times.end());

  TextFile file(folder / (compactDate(day) + "0000_HFDL_FMT.log"));
  HfdlDay log(data, schedule, file, random);
  for (const Moment time : times) {
    if (time > until) break;
    log.addMessage(time);
  }
  return file.write();
}

std::set<const Aircraft*> aircraftOnHfdl(const Schedule& schedule, Day day, Moment until) {
  std::set<const Aircraft*> aircraft;
  for (const Flight& flight : schedule.flights()) {
    if (flight.arrival >= day && flight.departure <= until && hasHfdl(flight)) {
      aircraft.insert(flight.aircraft);
    }
  }
  return aircraft;
}

}  // namespace vel::samples
