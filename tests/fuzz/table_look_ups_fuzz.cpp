// Look-ups: every answer against a second, plain reader of the same table.

#include <algorithm>
#include <functional>

#include "tables/byte_pattern.h"
#include "tables/record.h"
#include "tables/tables.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

using Fields = std::vector<std::string>;

/// The records of a table, decoded.
std::vector<Fields> recordsOf(std::string_view bytes, const Encoding& encoding) {
  if (!byteOrderMarkOf(encoding).empty()) bytes = withoutMark(bytes);
  std::vector<Fields> records;
  for (const std::string_view line : plainLines(bytes, true)) {
    if (line.empty()) continue;
    Fields fields;
    for (const std::string_view field : plainFields(line)) fields.push_back(encoding.decode(field));
    records.push_back(fields);
  }
  return records;
}

constexpr std::string_view kIncomplete = "an incomplete record";

/// What a look-up gives, as text.
template <typename Value, typename Text>
std::string answer(const Result<Value>& result, Text text) {
  if (result) return text(*result);
  check(result.error().number == ErrorNumber::incompleteRecord, "another error");
  check(isUtf8(result.error().text()), "an error that is no text");
  return std::string(kIncomplete);
}
std::string answer(const Result<std::string>& result) {
  return answer(result, [](const std::string& text) { return text; });
}
std::string answer(const Result<std::optional<std::string>>& result) {
  return answer(result, [](const auto& text) { return text.value_or("nothing"); });
}

/// Goes through the records up to the one that ends the look-up.
std::string plainly(const std::vector<Fields>& records, std::string before,
                    const std::function<std::optional<std::string>(const Fields&)>& see) {
  for (const Fields& record : records) {
    if (auto found = see(record)) return *found;
  }
  return before;
}

/// Field `wanted` of the first record whose field `searched` is the key.
std::string plainField(const std::vector<Fields>& records, const std::string& key,
                       std::size_t searched, std::size_t wanted, std::string before) {
  return plainly(records, std::move(before), [&](const Fields& fields) {
    if (fields.size() <= searched || fields[searched] != key) return std::optional<std::string>();
    return std::optional(fields.size() > wanted ? fields[wanted] : std::string(kIncomplete));
  });
}

std::string plainEquipment(const std::vector<Fields>& records, const std::string& key, bool last) {
  std::string equipment;
  for (const Fields& fields : records) {
    if (fields.size() < 2 || fields[0] != key) continue;
    equipment = fields[1];
    if (!last) break;
  }
  return equipment;
}

std::string plainRoute(const std::vector<Fields>& records, const std::string& key,
                       std::size_t needed) {
  return plainly(records, "nothing", [&](const Fields& fields) -> std::optional<std::string> {
    if (fields[0] != key) return std::nullopt;
    if (fields.size() < needed) return std::string(kIncomplete);
    return std::string(Left(fields[1], 4)) + "|" + std::string(Mid(fields[1], 5)) + "|" +
           (fields.size() > 2 ? fields[2] : "");
  });
}

std::string routeText(const std::optional<FlightRoute>& route) {
  if (!route) return "nothing";
  return route->departure + "|" + route->destination + "|" + route->remark;
}

std::string plainAirline(const std::vector<Fields>& records, const std::string& key) {
  bool four = false;
  for (const Fields& fields : records) {
    four = four || fields.size() > 3;
    if (fields[0].find(key) == std::string::npos) continue;
    if (fields.size() < 3) return std::string(kIncomplete);
    return fields[1] + "|" + fields[2] + "|" + (fields.size() > 3 ? fields[3] : "") +
           (four ? "|4" : "|3");
  }
  return four ? "nothing 4" : "nothing 3";
}

std::string airlineText(const Airline& airline) {
  if (!airline.found) return airline.fourFields ? "nothing 4" : "nothing 3";
  return airline.threeLetter + "|" + airline.display + "|" + airline.company +
         (airline.fourFields ? "|4" : "|3");
}

std::string plainAirportName(const std::vector<Fields>& records, const std::string& key) {
  std::string name;
  for (const Fields& fields : records) {
    if (key.empty() || fields[0].find(key) == std::string::npos) continue;
    if (fields.size() < 2) return std::string(kIncomplete);
    name = fields[1];
  }
  return name;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += text + '\n';
  return all;
}

void checkSearchers(std::string_view bytes, const std::string& key) {
  if (key.empty()) return;
  std::string block(BytePattern::kSlack, '\n');
  block += bytes;
  block.append(BytePattern::kSlack, '\n');
  const char* const begin = block.data() + BytePattern::kSlack;
  const char* const end = begin + bytes.size();
  for (const ByteSearcher searcher : byteSearchers()) {
    BytePattern pattern(key, searcher);
    pattern.prepare({begin, bytes.size()});
    std::size_t at = 0;
    for (const char* place = begin;; ++place) {
      place = pattern.find(place, end);
      at = bytes.find(key, at);
      // A pattern may run beyond the range: there the caller looks itself.
      const bool isOver = place == end || static_cast<std::size_t>(end - place) < key.size();
      check(isOver == (at == std::string_view::npos), "found where there is nothing");
      if (isOver) break;
      check(place == begin + at, "found at another place");
      ++at;
    }
  }
}

void run(const Station& station, Parts parts) {
  const std::string_view first = parts.next();
  const Encoding encoding = encodingOf(lineOfPart(first, 0));
  const std::string key(lineOfPart(first, 1));
  const std::string_view bytes = parts.rest();
  checkSearchers(bytes, key);
  for (const Table table : kTables) {
    put(station.folders().data / (tableName(table) + ".csv"), bytes);
  }
  const Tables tables(station.folders(), encoding);
  const std::vector<Fields> records = recordsOf(bytes, encoding);

  const std::string equipment = answer(tables.equipmentOfFirstLine(key));
  const std::string lastEquipment = answer(tables.equipmentOfLastLine(key));
  const std::string route = answer(tables.flightRoute(key), routeText);
  const std::string tested = answer(tables.testedFlightRoute(key), routeText);
  const auto known = tables.knowsAirline(key);
  const std::string airline = answer(tables.airlineOf(key), airlineText);
  const std::string three = answer(tables.threeLetterCodeOf(key));
  const std::string prefix = answer(tables.prefixOf(key));
  const std::string airport = answer(tables.airportNameOfLastLine(key));
  const std::string code = answer(tables.airportCodeOfThreeLetters(key));
  const std::string firstAirport = answer(tables.airportNameOfFirstLine(key));
  const std::string named = answer(tables.airportCodeOfName(key));
  const std::string names = answer(tables.airportNames(key), joined);
  const auto joinedRecord = [](const Icao24Record& record) {
    return joined({record.begin(), record.end()});
  };
  const std::string address = answer(tables.aircraftOfAddress(key), joinedRecord);
  check(known.ok() && address == answer(tables.aircraftOfAddressIfPresent(key), joinedRecord),
        "a table that is there counts as missing");

  // A key that the encoding has no place for, or two, is compared in its own way.
  const std::optional<std::string> stored = encoding.encode(key);
  if (!isUtf8(key) || !stored || encoding.decode(*stored) != key) return;
  if (key.find("\xEF\xBF\xBD") != std::string::npos || key.find('\r') != std::string::npos) return;
  check(equipment == plainEquipment(records, key, false), "another equipment");
  check(lastEquipment == plainEquipment(records, key, true), "another last equipment");
  check(route == plainRoute(records, key, 3), "another route");
  check(tested == plainRoute(records, key, 2), "another tested route");
  const bool isKnown = std::any_of(records.begin(), records.end(),
                                   [&](const Fields& fields) { return fields[0] == key; });
  check(*known == isKnown, "another airline is known");
  check(airline == plainAirline(records, key), "another airline");
  check(three == plainField(records, key, 0, 1, "nothing"), "another code of an airline");
  check(prefix == plainField(records, key, 1, 0, ""), "another prefix");
  check(airport == plainAirportName(records, key), "another airport");
  check(firstAirport == plainField(records, key, 0, 1, "nothing"), "another first airport");
  check(named == plainField(records, key, 1, 0, ""), "another airport of that name");
  const std::string ends = plainly(records, "", [&](const Fields& fields) {
    const bool found = fields.size() > 1 && Right(fields[1], 3) == key;
    return found ? std::optional(fields[0]) : std::nullopt;
  });
  check(code == ends, "another airport of three letters");
  std::string plainNames;
  for (const Fields& fields : records) {
    const bool found =
        fields.size() > 1 && toLower(fields[1]).find(toLower(key)) != std::string::npos;
    if (found) plainNames += fields[1] + '\n';
  }
  check(names == plainNames, "other airports hold the keyword");
  const std::string whole = plainly(records, "\n\n\n\n\n", [&](const Fields& fields) {
    const bool found = fields.size() >= 5 && fields[0] == key;
    return found ? std::optional(joined({fields.begin(), fields.begin() + 5})) : std::nullopt;
  });
  check(address == whole, "another aircraft");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
