#pragma once

#include <string>
#include <string_view>

#include "tables/table_files.h"
#include "tables/tables.h"

namespace vel {

/// What other lines of letter.csv keep in a rewrite.
enum class LetterFields {
  three,
  four,       ///< a line without a fourth field is an error then
  asTheyAre,  ///< three, or four where there is a fourth
};

/// One edit of a table. Texts are UTF-8. What a record of each table looks like
/// is written in the functions below.
struct TableEdit {
  Table table = Table::aircraft;
  /// What field 1 of the edited record equals.
  std::string key;
  /// The full line that takes the place of the first line of that key, or is
  /// added at the end; empty deletes every line of the key.
  std::string newRecord;
  LetterFields letterFields = LetterFields::three;
};

/// aircraft.csv: an empty equipment deletes the registration.
[[nodiscard]] TableEdit equipmentEdit(std::string_view registration, std::string_view equipment);

/// FLIGHT.csv: an empty remark is written as "-".
[[nodiscard]] TableEdit flightEdit(std::string_view flight, const FlightRoute& route);

/// What FLIGHT.csv says where there is no remark.
constexpr const char* kNoRemark = "-";

/// airport.csv: an empty name deletes the airport.
[[nodiscard]] TableEdit airportEdit(std::string_view code, std::string_view name);

/// letter.csv: the airline is deleted where both its 3-letter code and its name
/// to display are empty. Its company is written where lines have four fields.
[[nodiscard]] TableEdit airlineEdit(std::string_view prefix, const Airline& airline);

/// ICAO24.csv: the key is the record's address.
[[nodiscard]] TableEdit aircraftEdit(const Icao24Record& record);

}  // namespace vel
