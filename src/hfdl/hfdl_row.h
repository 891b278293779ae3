#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/file.h"
#include "core/result.h"
#include "hfdl/hfdl_log.h"
#include "tables/tables.h"

namespace vel {

/// The columns of the HFDL list.
enum HfdlColumn : std::size_t {
  kHfdlNumber,
  kHfdlTime,
  kHfdlTag,
  kHfdlDirection,
  kHfdlGroundStation,
  kHfdlAddress,
  kHfdlRegistration,
  kHfdlFlight,
  kHfdlAircraft,
  kHfdlPhoto,
  kHfdlOrigin,
  kHfdlDestination,
  kHfdlColumns,
};

/// What stands between the fields of a row in its RowStore. No line of a log
/// or table holds it.
constexpr char kHfdlSeparator = '\n';

/// The right-most four digits of a line's 1-based number: "0001"; 10,000 gives
/// "0000".
[[nodiscard]] std::string hfdlLineNumber(std::size_t number);

/// Joins a record with the reference tables and gives its list line without
/// the number that the list puts before it: eleven fields in UTF-8, separated
/// by kHfdlSeparator. The photos are those of their last refresh. An error ends the program: a
/// missing ICAO24.csv, or a missing flight.csv where there is a flight ID, with their messages.
Result<std::string> SetLVline(const HfdlRecord& record, const Tables& tables,
                              const FolderIndex& photos);

/// The aircraft column of an ICAO24 record: the lead (" " from the table, "*"
/// after an edit), then registration, 3-letter code, 2-letter code and
/// equipment with a blank between. Empty without an address.
[[nodiscard]] std::string aircraftText(const Icao24Record& record, std::string_view lead);

/// The flight ID by which FLIGHT.csv is searched, without blanks on both sides.
/// One of fewer than 5 characters is completed: the aircraft's 2-letter code
/// and the ID filled with zeros to four digits. Empty stays empty.
[[nodiscard]] std::string completedFlight(std::string_view flightId, const Icao24Record& aircraft);

/// The route of a flight for the detail area: as Tables::flightRoute, but a
/// missing table is no error: nothing is found.
Result<std::optional<FlightRoute>> routeIfPresent(const Tables& tables, std::string_view flight);

/// The boxes that are filled from a copied address look-up.
struct CopiedAircraft {
  std::string registration;
  std::string threeLetter;
  std::string twoLetter;
  std::string equipment;
};

/// What the user is told where the clipboard does not hold such a line.
constexpr const char* kNoCopiedAircraft =
    "データを取得できません。・・・AirframesでICAO24コードを検索した結果のレジから航空会社名までの"
    "データをコピーしてからこのボタンを押してください。3レター、2レター、レジ、機種を記入します。";

/// The aircraft of a result line copied from an address look-up: at least nine
/// parts between tabs (or blanks, where it has no tab) with the registration
/// first and the type third, and somewhere a 3-letter code followed by " [" and
/// a 2-letter code. Nothing for any other text.
[[nodiscard]] std::optional<CopiedAircraft> copiedAircraft(std::string_view text);

}  // namespace vel
