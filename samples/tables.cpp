#include "samples/tables.h"

#include "samples/text_file.h"

namespace vel::samples {
namespace {

Status writeAirports(const SampleData& data, const std::filesystem::path& folder) {
  TextFile file(folder / "airport.csv");
  for (const Airport& airport : data.airports()) {
    file.addLine(airport.icao + ',' + airport.name + ' ' + airport.iata);
  }
  return file.write();
}

Status writeAirlines(const SampleData& data, const std::filesystem::path& folder) {
  TextFile file(folder / "letter.csv");
  for (const Airline& airline : data.airlines()) {
    if (airline.listed) file.addLine(airline.code2 + ',' + airline.code3 + ',' + airline.name);
  }
  return file.write();
}

Status writeAircraft(const SampleData& data, const std::filesystem::path& folder) {
  TextFile file(folder / "aircraft.csv");
  for (const Aircraft& aircraft : data.aircraft()) {
    if (aircraft.listed) file.addLine(aircraft.registration + ',' + aircraft.type);
  }
  return file.write();
}

Status writeFlights(const SampleData& data, const std::filesystem::path& folder) {
  TextFile file(folder / "FLIGHT.csv");
  for (const Route& route : data.routes()) {
    if (route.listed) {
      file.addLine(route.flight + ',' + route.departure + route.destination + ',' + route.remark);
    }
  }
  return file.write();
}

Status writeAddresses(const SampleData& data, const std::filesystem::path& folder) {
  TextFile file(folder / "ICAO24.csv");
  for (const Aircraft& aircraft : data.aircraft()) {
    if (!aircraft.address.empty() && aircraft.addressListed) {
      file.addLine(aircraft.address + ',' + data.airline(aircraft.airline).code3 + ',' +
                   aircraft.airline + ',' + aircraft.registration + ',' + aircraft.type);
    }
  }
  return file.write();
}

}  // namespace

Status writeTables(const SampleData& data, const std::filesystem::path& folder) {
  for (const auto write :
       {writeAirports, writeAirlines, writeAircraft, writeFlights, writeAddresses}) {
    if (Status status = write(data, folder); !status) return status;
  }
  return {};
}

}  // namespace vel::samples
