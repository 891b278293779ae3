#include "tables/edits.h"

#include <initializer_list>

namespace vel {
namespace {

std::string recordOf(std::initializer_list<std::string_view> fields) {
  std::string record;
  for (const std::string_view field : fields) record.append(field).append(1, ',');
  record.pop_back();
  return record;
}

}  // namespace

TableEdit equipmentEdit(std::string_view registration, std::string_view equipment) {
  TableEdit edit{.table = Table::aircraft, .key = std::string(registration), .newRecord = {}};
  if (!equipment.empty()) edit.newRecord = recordOf({registration, equipment});
  return edit;
}

TableEdit flightEdit(std::string_view flight, const FlightRoute& route) {
  const std::string_view remark =
      route.remark.empty() ? std::string_view(kNoRemark) : std::string_view(route.remark);
  return {.table = Table::flight,
          .key = std::string(flight),
          .newRecord = recordOf({flight, route.departure + route.destination, remark})};
}

TableEdit airportEdit(std::string_view code, std::string_view name) {
  TableEdit edit{.table = Table::airport, .key = std::string(code), .newRecord = {}};
  if (!name.empty()) edit.newRecord = recordOf({code, name});
  return edit;
}

TableEdit airlineEdit(std::string_view prefix, const Airline& airline) {
  TableEdit edit{.table = Table::letter, .key = std::string(prefix), .newRecord = {}};
  if (airline.fourFields) edit.letterFields = LetterFields::four;
  if (airline.threeLetter.empty() && airline.display.empty()) return edit;
  edit.newRecord = airline.fourFields
                       ? recordOf({prefix, airline.threeLetter, airline.display, airline.company})
                       : recordOf({prefix, airline.threeLetter, airline.display});
  return edit;
}

TableEdit aircraftEdit(const Icao24Record& record) {
  return {.table = Table::icao24,
          .key = record[0],
          .newRecord = recordOf({record[0], record[1], record[2], record[3], record[4]})};
}

}  // namespace vel
