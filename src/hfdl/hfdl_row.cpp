#include "hfdl/hfdl_row.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "core/folders.h"
#include "core/helpers.h"
#include "core/text.h"

namespace vel {
namespace {

constexpr std::size_t kCompleteFlight = 5;  // characters
// Bytes that the text of a row takes at most, as a rule.
constexpr std::size_t kUsualRow = 160;

}  // namespace

std::string hfdlLineNumber(std::size_t number) {
  return std::string(Right("000" + std::to_string(number), 4));
}

Result<std::string> SetLVline(const HfdlRecord& record, const Tables& tables,
                              const FolderIndex& photos) {
  const std::string_view flightId = Trim(record.flightId);
  const Result<Icao24Record> aircraft = tables.aircraftOfAddress(record.address);
  if (!aircraft) return aircraft.error();
  const std::optional<std::string> photo = photoName(record.registration);
  const bool hasPhoto = photo && photos.holds(*photo);

  std::string origin;
  std::string destination;
  if (!flightId.empty()) {
    const auto route = tables.testedFlightRoute(completedFlight(flightId, *aircraft));
    if (!route) return route.error();
    if (route->has_value()) {
      origin = (*route)->departure;
      destination = (*route)->destination;
    }
  }

  std::string row;
  row.reserve(kUsualRow);
  row = record.timeStamp;
  const std::string aircraftColumn = aircraftText(*aircraft, " ");
  for (const std::string_view field : std::initializer_list<std::string_view>{
           record.tag, record.direction, record.groundStation, record.address, record.registration,
           flightId, aircraftColumn, hasPhoto ? "o" : "x", origin, destination}) {
    row += kHfdlSeparator;
    row += field;
  }
  return row;
}

std::string aircraftText(const Icao24Record& record, std::string_view lead) {
  const auto& [address, threeLetter, twoLetter, registration, equipment] = record;
  if (address.empty()) return {};
  std::string text(lead);
  text.append(registration).append(1, ' ').append(threeLetter).append(1, ' ');
  text.append(twoLetter).append(1, ' ').append(equipment);
  return text;
}

std::string completedFlight(std::string_view flightId, const Icao24Record& aircraft) {
  flightId = Trim(flightId);
  if (flightId.empty() || length(flightId) >= kCompleteFlight) return std::string(flightId);
  return aircraft[2] + ZeroPad(flightId, 4);
}

Result<std::optional<FlightRoute>> routeIfPresent(const Tables& tables, std::string_view flight) {
  Result<std::optional<FlightRoute>> route = tables.flightRoute(flight);
  if (!route && (route.error().number == ErrorNumber::fileNotFound ||
                 route.error().number == ErrorNumber::pathNotFound)) {
    return std::optional<FlightRoute>();
  }
  return route;
}

std::optional<CopiedAircraft> copiedAircraft(std::string_view text) {
  constexpr std::string_view kBracket = " [";
  // A line that was copied whole may come with the end of the one before.
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  const std::size_t bracket = text.find(kBracket);
  if (bracket == std::string_view::npos) return std::nullopt;
  const bool hasTabs = text.find('\t') != std::string_view::npos;
  const std::vector<std::string_view> parts = split(text, hasTabs ? '\t' : ' ');
  const std::string_view threeLetter = Right(text.substr(0, bracket), 3);
  const std::string_view twoLetter = Left(text.substr(bracket + kBracket.size()), 2);
  if (parts.size() < 9 || length(threeLetter) < 3 || length(twoLetter) < 2) return std::nullopt;
  return CopiedAircraft{std::string(parts[0]), std::string(threeLetter), std::string(twoLetter),
                        std::string(parts[2])};
}

}  // namespace vel
