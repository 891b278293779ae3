#include "tables/tables.h"

#include <optional>
#include <utility>

#include "core/file.h"
#include "tables/record.h"
#include "tables/table_scanner.h"

namespace vel {
namespace {

using Anchor = TableScanner::Anchor;
using Next = TableScanner::Next;

constexpr std::size_t kAirportCodeLength = 4;

bool isMissing(const Error& error) {
  return error.number == ErrorNumber::fileNotFound || error.number == ErrorNumber::pathNotFound;
}

// A look-up that tests for its table names it in the message.
Error withMessageIfMissing(Error error, const char* message) {
  if (isMissing(error)) error.message = message;
  return error;
}

// Calls visit(line) for every line, blank ones left out, that may hold the
// bytes where they are looked for. The table is given by its usual name.
template <typename Visit>
Status visitLines(const std::filesystem::path& table, std::string_view bytes, Anchor anchor,
                  Visit visit) {
  const auto visitRecord = [&](std::string_view line) {
    return line.empty() ? Next::more : visit(line);
  };
  Status status = TableScanner::forEachLine(table, bytes, anchor, visitRecord);
  if (status || !isMissing(status.error())) return status;
  const auto otherwiseSpelt = findFile(table.parent_path(), toUtf8(table.filename()));
  if (!otherwiseSpelt) return status;
  return TableScanner::forEachLine(*otherwiseSpelt, bytes, anchor, visitRecord);
}

// The field `wanted` of the first line that has a field `searched` which
// equals the key; empty when there is none.
Result<std::string> fieldOfFirst(const std::filesystem::path& table, const Encoding& encoding,
                                 std::string_view key, std::size_t searched, std::size_t wanted) {
  const Key wantedKey(encoding, key);
  const Anchor anchor = searched == 0 ? Anchor::lineStart : Anchor::anywhere;
  const std::string bytes =
      searched == 0 ? std::string(wantedKey.scanBytes()) : wantedKey.laterFieldBytes();
  std::string found;
  bool incomplete = false;
  const Status status = visitLines(table, bytes, anchor, [&](std::string_view line) {
    const auto field = fieldAt(line, searched);
    if (!field || !wantedKey.equals(*field)) return Next::more;
    const auto value = fieldAt(line, wanted);
    incomplete = !value;
    if (value) found = encoding.decode(*value);
    return Next::stop;
  });
  if (!status) return status.error();
  if (incomplete) return ErrorNumber::incompleteRecord;
  return found;
}

// Lines without a comma are comments.
Result<std::string> equipmentOf(const std::filesystem::path& table, const Encoding& encoding,
                                std::string_view registration, Next afterMatch) {
  const Key key(encoding, registration);
  std::string equipment;
  const Status status =
      visitLines(table, key.scanBytes(), Anchor::lineStart, [&](std::string_view line) {
        const auto value = fieldAt(line, 1);
        if (!value || !key.equals(*fieldAt(line, 0))) return Next::more;
        equipment = encoding.decode(*value);
        return afterMatch;
      });
  if (!status) return status.error();
  return equipment;
}

enum class Remark { needed, ifPresent };

// The route in the first line of the flight.
Result<std::optional<FlightRoute>> routeOf(const std::filesystem::path& table,
                                           const Encoding& encoding, std::string_view flight,
                                           Remark wanted) {
  const Key key(encoding, flight);
  std::optional<FlightRoute> route;
  bool incomplete = false;
  const Status status =
      visitLines(table, key.scanBytes(), Anchor::lineStart, [&](std::string_view line) {
        if (!key.equals(*fieldAt(line, 0))) return Next::more;
        const auto airports = fieldAt(line, 1);
        const auto remark = fieldAt(line, 2);
        incomplete = !airports || (!remark && wanted == Remark::needed);
        if (!incomplete) {
          const std::string codes = encoding.decode(*airports);
          route = FlightRoute{std::string(Left(codes, kAirportCodeLength)),
                              std::string(Mid(codes, kAirportCodeLength + 1)),
                              encoding.decode(remark.value_or(""))};
        }
        return Next::stop;
      });
  if (!status) return status.error();
  if (incomplete) return ErrorNumber::incompleteRecord;
  return route;
}

}  // namespace

Tables::Tables(const Folders& folders, const Encoding& encoding)
    : folders_(folders),
      encoding_(encoding),
      aircraft_(folders.data / "aircraft.csv"),
      flight_(folders.data / "FLIGHT.csv"),
      airport_(folders.data / "airport.csv"),
      letter_(folders.data / "letter.csv"),
      icao24_(folders.data / "ICAO24.csv") {}

Result<std::string> Tables::SearchAircraft(std::string_view registration) const {
  return equipmentOf(aircraft_, encoding_, registration, Next::more);
}

Result<std::string> Tables::SchAircraft(std::string_view registration) const {
  return equipmentOf(aircraft_, encoding_, registration, Next::stop);
}

Result<std::optional<FlightRoute>> Tables::flightRoute(std::string_view flight) const {
  return routeOf(flight_, encoding_, flight, Remark::needed);
}

Result<std::optional<FlightRoute>> Tables::testedFlightRoute(std::string_view flight) const {
  auto route = routeOf(flight_, encoding_, flight, Remark::ifPresent);
  if (route) return route;
  return withMessageIfMissing(route.error(), "Not found data\\flight.csv");
}

Result<bool> Tables::letterChk(std::string_view prefix) const {
  const Key key(encoding_, prefix);
  bool found = false;
  const Status status =
      visitLines(letter_, key.scanBytes(), Anchor::lineStart, [&](std::string_view line) {
        found = key.equals(*fieldAt(line, 0));
        return found ? Next::stop : Next::more;
      });
  if (!status) return status.error();
  return found;
}

Result<Airline> Tables::AirLineLoad(std::string_view prefix) const {
  const Key key(encoding_, prefix);
  Airline airline;
  bool incomplete = false;
  // Every line counts until the match: one may have a fourth field.
  const Status status = visitLines(letter_, {}, Anchor::anywhere, [&](std::string_view line) {
    const auto company = fieldAt(line, 3);
    if (company) airline.fourFields = true;
    if (!key.isIn(*fieldAt(line, 0))) return Next::more;
    const auto threeLetter = fieldAt(line, 1);
    const auto display = fieldAt(line, 2);
    incomplete = !threeLetter || !display;
    if (!incomplete) {
      airline.found = true;
      airline.threeLetter = encoding_.decode(*threeLetter);
      airline.display = encoding_.decode(*display);
      if (company) airline.company = encoding_.decode(*company);
    }
    return Next::stop;
  });
  if (!status) return status.error();
  if (incomplete) return ErrorNumber::incompleteRecord;
  return airline;
}

Result<std::string> Tables::SchLetter(std::string_view code, int mode) const {
  constexpr int kFromPrefix = 2;
  const std::size_t searched = mode == kFromPrefix ? 0 : 1;
  return fieldOfFirst(letter_, encoding_, code, searched, 1 - searched);
}

Result<std::string> Tables::L4toName(std::string_view code) const {
  if (code.empty()) return std::string();
  const Key key(encoding_, code);
  std::string name;
  bool incomplete = false;
  const Status status =
      visitLines(airport_, key.scanBytes(), Anchor::anywhere, [&](std::string_view line) {
        if (!key.isIn(*fieldAt(line, 0))) return Next::more;
        const auto value = fieldAt(line, 1);
        incomplete = !value;
        if (incomplete) return Next::stop;
        name = encoding_.decode(*value);
        return Next::more;
      });
  if (!status) return status.error();
  if (incomplete) return ErrorNumber::incompleteRecord;
  return name;
}

Result<std::string> Tables::L3toL4(std::string_view code) const {
  const Key key(encoding_, code);
  std::string found;
  const Status status =
      visitLines(airport_, key.scanBytes(), Anchor::anywhere, [&](std::string_view line) {
        const auto name = fieldAt(line, 1);
        if (!name || !key.isEndOf(*name)) return Next::more;
        found = encoding_.decode(*fieldAt(line, 0));
        return Next::stop;
      });
  if (!status) return status.error();
  return found;
}

Result<std::string> Tables::LoadAPcode(std::string_view code) const {
  return fieldOfFirst(airport_, encoding_, code, 0, 1);
}

Result<std::string> Tables::airportCodeOfName(std::string_view name) const {
  return fieldOfFirst(airport_, encoding_, name, 1, 0);
}

Result<std::vector<std::string>> Tables::airportNames(std::string_view keyword) const {
  std::vector<std::string> names;
  const LowerCaseKey key(encoding_, keyword);
  const Status status = visitLines(airport_, {}, Anchor::anywhere, [&](std::string_view line) {
    const auto name = fieldAt(line, 1);
    if (name && key.isIn(*name)) {
      names.push_back(encoding_.decode(*name));
    }
    return Next::more;
  });
  if (!status) return withMessageIfMissing(status.error(), "Not found data\\airport.csv");
  return names;
}

Result<Icao24Record> Tables::Icao24Chk(std::string_view address) const {
  const Key key(encoding_, address);
  Icao24Record record;
  const Status status =
      visitLines(icao24_, key.scanBytes(), Anchor::lineStart, [&](std::string_view line) {
        if (!fieldAt(line, record.size() - 1)) return Next::more;
        if (!key.equals(*fieldAt(line, 0))) return Next::more;
        for (std::size_t i = 0; i < record.size(); ++i) {
          record[i] = encoding_.decode(*fieldAt(line, i));
        }
        return Next::stop;
      });
  if (!status) return withMessageIfMissing(status.error(), "Not found data\\ICAO24.csv");
  return record;
}

Result<Icao24Record> Tables::icao24IfPresent(std::string_view address) const {
  Result<Icao24Record> record = Icao24Chk(address);
  if (!record && isMissing(record.error())) return Icao24Record();
  return record;
}

}  // namespace vel
