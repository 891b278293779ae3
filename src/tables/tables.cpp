#include "tables/tables.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>

#include "core/file.h"
#include "tables/record.h"
#include "tables/table_scanner.h"

namespace vel {
namespace {

using Anchor = TableScanner::Anchor;

// How often, and in what steps, a table that another program is just
// exchanging is waited for.
constexpr int kExchangeWaits = 50;
constexpr std::chrono::milliseconds kExchangeWait{2};
// Looks at a table that is missing while nobody seems to exchange it.
constexpr int kCalmLooks = 3;

bool isMissing(const Error& error) {
  return error.number == ErrorNumber::fileNotFound || error.number == ErrorNumber::pathNotFound;
}

// A look-up that tests for its table names it in the message.
Error withMessageIfMissing(Error error, const char* message) {
  if (isMissing(error)) error.message = message;
  return error;
}

// What a look-up makes of a line.
enum class Seen {
  more,        // on to the next one
  enough,      // the look-up is done
  incomplete,  // the line matches, but lacks a field
};

// One table, open for look-ups. It is given by its usual path, which outlives
// the object.
class TableReading {
 public:
  TableReading(const Folders& folders, Table table, const std::filesystem::path& usual,
               const TableScanner::Source& source)
      : folders_(folders), table_(table), usual_(usual), source_(source) {}

  // Calls see(line) for every line, blank ones left out, that may hold the
  // bytes where they are looked for.
  template <typename See>
  Status forEachLine(std::string_view bytes, Anchor anchor, See see) {
    Seen last = Seen::more;
    Status status = scan(bytes, anchor, see, last);
    if (!status && isMissing(status.error())) {
      found_ = findFile(folders_.data, toUtf8(usual_.filename()));
      status = scan(bytes, anchor, see, last);
      int calm = 0;
      for (int i = 0; i < kExchangeWaits && !status && isMissing(status.error()); ++i) {
        // An exchange may just have ended: only a table that is missing again
        // and again is missing.
        calm = isBeingExchanged() ? 0 : calm + 1;
        if (calm > kCalmLooks) break;
        if (calm == 0) std::this_thread::sleep_for(kExchangeWait);
        status = scan(bytes, anchor, see, last);
      }
    }
    if (!status || last != Seen::incomplete) return status;
    return errorInLine(ErrorNumber::incompleteRecord, file(), numberOfLast(see));
  }

 private:
  template <typename See>
  Status scan(std::string_view bytes, Anchor anchor, See& see, Seen& last) {
    return TableScanner::forEachLine(
        file(), bytes, anchor,
        [&](std::string_view line) {
          last = line.empty() ? Seen::more : see(line);
          return last == Seen::more ? TableScanner::Next::more : TableScanner::Next::stop;
        },
        source_);
  }

  // True between the two renames of another program's rewrite.
  [[nodiscard]] bool isBeingExchanged() const {
    const TableFiles files = filesOf(folders_, table_);
    return fileExists(files.temporary) && fileExists(files.backup);
  }

  // The number of the line at which the look-up ends.
  template <typename See>
  std::size_t numberOfLast(See& see) {
    std::size_t number = 0;
    static_cast<void>(TableScanner::forEachLine(
        file(), {}, Anchor::anywhere,
        [&](std::string_view line) {
          ++number;
          return line.empty() || see(line) == Seen::more ? TableScanner::Next::more
                                                         : TableScanner::Next::stop;
        },
        source_));
    return number;
  }

  // Where the table lies: under its usual name or one of other letter case.
  [[nodiscard]] const std::filesystem::path& file() const { return found_ ? *found_ : usual_; }

  const Folders& folders_;
  Table table_;
  const std::filesystem::path& usual_;
  std::optional<std::filesystem::path> found_;
  TableScanner::Source source_;
};

// The field `wanted` of the first line that has a field `searched` which
// equals the key; nothing when there is none.
Result<std::optional<std::string>> fieldOfFirst(TableReading table, const Encoding& encoding,
                                                std::string_view key, std::size_t searched,
                                                std::size_t wanted) {
  const Key wantedKey(encoding, key);
  const Anchor anchor = searched == 0 ? Anchor::lineStart : Anchor::anywhere;
  const std::string bytes =
      searched == 0 ? std::string(wantedKey.scanBytes()) : wantedKey.laterFieldBytes();
  std::optional<std::string> found;
  const Status status = table.forEachLine(bytes, anchor, [&](std::string_view line) {
    const auto field = fieldAt(line, searched);
    if (!field || !wantedKey.equals(*field)) return Seen::more;
    const auto value = fieldAt(line, wanted);
    if (!value) return Seen::incomplete;
    found = encoding.decode(*value);
    return Seen::enough;
  });
  if (!status) return status.error();
  return found;
}

Result<std::string> orEmpty(Result<std::optional<std::string>> found) {
  if (!found) return found.error();
  return (*std::move(found)).value_or(std::string());
}

// Lines without a comma are comments.
Result<std::string> equipmentOf(TableReading table, const Encoding& encoding,
                                std::string_view registration, Seen afterMatch) {
  const Key key(encoding, registration);
  std::string equipment;
  const Status status =
      table.forEachLine(key.scanBytes(), Anchor::lineStart, [&](std::string_view line) {
        const auto value = fieldAt(line, 1);
        if (!value || !key.equals(*fieldAt(line, 0))) return Seen::more;
        equipment = encoding.decode(*value);
        return afterMatch;
      });
  if (!status) return status.error();
  return equipment;
}

enum class Remark { needed, ifPresent };

// The route in the first line of the flight.
Result<std::optional<FlightRoute>> routeOf(TableReading table, const Encoding& encoding,
                                           std::string_view flight, Remark wanted) {
  const Key key(encoding, flight);
  std::optional<FlightRoute> route;
  const Status status =
      table.forEachLine(key.scanBytes(), Anchor::lineStart, [&](std::string_view line) {
        if (!key.equals(*fieldAt(line, 0))) return Seen::more;
        const auto airports = fieldAt(line, 1);
        const auto remark = fieldAt(line, 2);
        if (!airports || (!remark && wanted == Remark::needed)) return Seen::incomplete;
        const std::string codes = encoding.decode(*airports);
        route = FlightRoute{std::string(Left(codes, kAirportCodeLength)),
                            std::string(Mid(codes, kAirportCodeLength + 1)),
                            encoding.decode(remark.value_or(""))};
        return Seen::enough;
      });
  if (!status) return status.error();
  return route;
}

}  // namespace

/// What the look-ups of one object share.
class Tables::Reader {
 public:
  static TableReading open(const Tables& tables, Table table) {
    const auto number = static_cast<std::size_t>(table);
    return {tables.folders_, table, tables.usualPaths_[number],
            TableScanner::Source{.byteOrderMark = tables.byteOrderMark_,
                                 .memory = &tables.memory_,
                                 .hint = &tables.hints_[number],
                                 .kept = tables.keepsFiles_ ? &tables.files_[number] : nullptr}};
  }
};

Tables::Tables(const Folders& folders, const Encoding& encoding)
    : folders_(folders), encoding_(encoding), byteOrderMark_(byteOrderMarkOf(encoding)) {
  for (const Table table : kTables) {
    usualPaths_[static_cast<std::size_t>(table)] =
        folders.data / toPath(tableName(table) + std::string(kTableExtension));
  }
}

Result<std::string> Tables::equipmentOfLastLine(std::string_view registration) const {
  return equipmentOf(Reader::open(*this, Table::aircraft), encoding_, registration, Seen::more);
}

Result<std::string> Tables::equipmentOfFirstLine(std::string_view registration) const {
  return equipmentOf(Reader::open(*this, Table::aircraft), encoding_, registration, Seen::enough);
}

Result<std::optional<FlightRoute>> Tables::flightRoute(std::string_view flight) const {
  return routeOf(Reader::open(*this, Table::flight), encoding_, flight, Remark::needed);
}

Result<std::optional<FlightRoute>> Tables::testedFlightRoute(std::string_view flight) const {
  auto route = routeOf(Reader::open(*this, Table::flight), encoding_, flight, Remark::ifPresent);
  if (route) return route;
  return withMessageIfMissing(route.error(), "Not found data\\flight.csv");
}

Result<bool> Tables::knowsAirline(std::string_view prefix) const {
  const Key key(encoding_, prefix);
  bool found = false;
  const Status status =
      Reader::open(*this, Table::letter)
          .forEachLine(key.scanBytes(), Anchor::lineStart, [&](std::string_view line) {
            found = key.equals(*fieldAt(line, 0));
            return found ? Seen::enough : Seen::more;
          });
  if (!status) return status.error();
  return found;
}

Result<Airline> Tables::airlineOf(std::string_view prefix) const {
  const Key key(encoding_, prefix);
  Airline airline;
  // Every line counts until the match: one may have a fourth field.
  const auto see = [&](std::string_view line) {
    const auto company = fieldAt(line, 3);
    if (company) airline.fourFields = true;
    if (!key.isIn(*fieldAt(line, 0))) return Seen::more;
    const auto threeLetter = fieldAt(line, 1);
    const auto display = fieldAt(line, 2);
    if (!threeLetter || !display) return Seen::incomplete;
    airline.found = true;
    airline.threeLetter = encoding_.decode(*threeLetter);
    airline.display = encoding_.decode(*display);
    if (company) airline.company = encoding_.decode(*company);
    return Seen::enough;
  };
  const Status status = Reader::open(*this, Table::letter).forEachLine({}, Anchor::anywhere, see);
  if (!status) return status.error();
  return airline;
}

Result<std::optional<std::string>> Tables::threeLetterCodeOf(std::string_view prefix) const {
  return fieldOfFirst(Reader::open(*this, Table::letter), encoding_, prefix, 0, 1);
}

Result<std::string> Tables::prefixOf(std::string_view threeLetterCode) const {
  return orEmpty(
      fieldOfFirst(Reader::open(*this, Table::letter), encoding_, threeLetterCode, 1, 0));
}

Result<std::string> Tables::airportNameOfLastLine(std::string_view code) const {
  if (code.empty()) return std::string();
  const Key key(encoding_, code);
  std::string name;
  const Status status =
      Reader::open(*this, Table::airport)
          .forEachLine(key.scanBytes(), Anchor::anywhere, [&](std::string_view line) {
            if (!key.isIn(*fieldAt(line, 0))) return Seen::more;
            const auto value = fieldAt(line, 1);
            if (!value) return Seen::incomplete;
            name = encoding_.decode(*value);
            return Seen::more;
          });
  if (!status) return status.error();
  return name;
}

Result<std::string> Tables::airportCodeOfThreeLetters(std::string_view code) const {
  const Key key(encoding_, code);
  std::string found;
  const Status status =
      Reader::open(*this, Table::airport)
          .forEachLine(key.scanBytes(), Anchor::anywhere, [&](std::string_view line) {
            const auto name = fieldAt(line, 1);
            if (!name || !key.isEndOf(*name)) return Seen::more;
            found = encoding_.decode(*fieldAt(line, 0));
            return Seen::enough;
          });
  if (!status) return status.error();
  return found;
}

Result<std::optional<std::string>> Tables::airportNameOfFirstLine(std::string_view code) const {
  return fieldOfFirst(Reader::open(*this, Table::airport), encoding_, code, 0, 1);
}

Result<std::string> Tables::airportCodeOfName(std::string_view name) const {
  return orEmpty(fieldOfFirst(Reader::open(*this, Table::airport), encoding_, name, 1, 0));
}

Result<std::vector<std::string>> Tables::airportNames(std::string_view keyword) const {
  std::vector<std::string> names;
  const LowerCaseKey key(encoding_, keyword);
  const Status status = Reader::open(*this, Table::airport)
                            .forEachLine({}, Anchor::anywhere, [&](std::string_view line) {
                              const auto name = fieldAt(line, 1);
                              if (name && key.isIn(*name)) names.push_back(encoding_.decode(*name));
                              return Seen::more;
                            });
  if (!status) return withMessageIfMissing(status.error(), "Not found data\\airport.csv");
  return names;
}

Result<Icao24Record> Tables::aircraftOfAddress(std::string_view address) const {
  const Key key(encoding_, address);
  Icao24Record record;
  const Status status =
      Reader::open(*this, Table::icao24)
          .forEachLine(key.scanBytes(), Anchor::lineStart, [&](std::string_view line) {
            if (!key.equals(*fieldAt(line, 0))) return Seen::more;
            if (!fieldAt(line, record.size() - 1)) return Seen::more;
            for (std::string& field : record) {
              const std::string_view bytes = line.substr(0, line.find(','));
              field = encoding_.decode(bytes);
              line.remove_prefix(std::min(bytes.size() + 1, line.size()));
            }
            return Seen::enough;
          });
  if (!status) return withMessageIfMissing(status.error(), "Not found data\\ICAO24.csv");
  return record;
}

Result<Icao24Record> Tables::aircraftOfAddressIfPresent(std::string_view address) const {
  Result<Icao24Record> record = aircraftOfAddress(address);
  if (!record && isMissing(record.error())) return Icao24Record();
  return record;
}

}  // namespace vel
