#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/result.h"
#include "samples/geo.h"

namespace vel::samples {

struct Airport {
  std::string icao;
  std::string iata;
  std::string name;
  Place place;
};

/// `listed` is false for what flies but stands in no table, so that some
/// look-ups of the sample logs find nothing. Likewise below.
struct Airline {
  std::string code2;
  std::string code3;
  std::string name;
  /// Colours of its photos as "#rrggbb"; empty where none are drawn.
  std::string fuselageColour;
  std::string tailColour;
  std::string stripeColour;
  bool listed = true;
};

struct Aircraft {
  std::string registration;
  std::string type;
  std::string airline;
  /// ICAO 24-bit address, six hexadecimal digits; empty where not known.
  std::string address;
  bool listed = true;
  bool addressListed = true;
};

struct Route {
  /// Two-letter prefix and four digits.
  std::string flight;
  std::string departure;
  std::string destination;
  std::vector<std::string> types;
  /// "-" when there is none.
  std::string remark;
  bool listed = true;

  std::string airline() const { return flight.substr(0, 2); }
};

struct GroundStation {
  /// As squitters give it: "Muan, South Korea".
  std::string name;
  Place place;
  /// How well it is received, 0 to 100.
  double weight = 0;
  /// In kHz, from the lowest to the highest.
  std::vector<std::string> frequencies;

  /// The name up to its comma, as frequency lists give it.
  std::string city() const { return name.substr(0, name.find(',')); }
};

/// Everything that the sample folder is made from. The parts keep their
/// addresses for the object's life; it cannot be copied.
class SampleData {
 public:
  SampleData() = default;
  SampleData(const SampleData&) = delete;
  SampleData& operator=(const SampleData&) = delete;

  /// Reads the texts that are compiled into the program. Fails, naming file
  /// and line, on a line that is not as the file's first lines say, and on a
  /// route to an unknown airport or without any aircraft to fly it.
  Status load();

  const std::vector<Airport>& airports() const { return airports_; }
  const std::vector<Airline>& airlines() const { return airlines_; }
  const std::vector<Aircraft>& aircraft() const { return aircraft_; }
  const std::vector<Route>& routes() const { return routes_; }
  const std::vector<GroundStation>& groundStations() const { return groundStations_; }

  /// The airport must exist; load() has seen to it for those of the routes.
  const Airport& airport(const std::string& icao) const { return *airportOf_.at(icao); }
  const Airline& airline(const std::string& code2) const { return *airlineOf_.at(code2); }
  /// The aircraft that can fly a route.
  std::vector<const Aircraft*> fleetFor(const Route& route) const;

 private:
  Status loadAirports();
  Status loadAirlines();
  Status loadAircraft();
  Status loadRoutes();
  Status loadGroundStations();

  std::vector<Airport> airports_;
  std::vector<Airline> airlines_;
  std::vector<Aircraft> aircraft_;
  std::vector<Route> routes_;
  std::vector<GroundStation> groundStations_;
  std::map<std::string, const Airport*> airportOf_;
  std::map<std::string, const Airline*> airlineOf_;
  /// By airline and type.
  std::map<std::pair<std::string, std::string>, std::vector<const Aircraft*>> fleets_;
};

}  // namespace vel::samples
