#include "exchange/import_shapes.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/text.h"

namespace vel {
namespace {

/// A format that has a header: the columns that tell it, and those that are read.
struct HeaderFormat {
  ImportFormat format;
  std::vector<std::string_view> signature;
  std::vector<std::string_view> needed;
  std::vector<std::string_view> optional;  ///< stand behind the needed ones
};

const std::vector<HeaderFormat>& headerFormats() {
  static const std::vector<HeaderFormat> kFormats = {
      {ImportFormat::standingRoutes,
       {"callsign", "airportcodes"},
       {"code", "number", "airportcodes"},
       {}},
      {ImportFormat::standingAirlines,
       {"code", "positioningflightpattern"},
       {"iata", "icao", "name"},
       {}},
      {ImportFormat::standingAirports,
       {"code", "countryiso2"},
       {"icao", "iata", "location", "name"},
       {}},
      {ImportFormat::standingAircraft,
       {"icao", "modelicao"},
       {"icao", "registration", "modelicao"},
       {"airlinecode"}},
      {ImportFormat::openSky,
       {"icao24"},
       {"icao24", "registration", "typecode"},
       {"operatoricao", "operatoriata"}},
      {ImportFormat::ourAirports,
       {"ident", "type"},
       {"ident", "type", "name", "iata_code"},
       {"icao_code", "gps_code", "municipality"}},
  };
  return kFormats;
}

std::string lower(std::string_view text) {
  std::string made(Trim(text));
  for (char& c : made) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return made;
}

bool isNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(),
                                      [](char c) { return (c >= '0' && c <= '9') || c == '.'; });
}

Error unknownFile() {
  return importError(
      "This file is none that can be imported. Expected: OurAirports airports.csv; OpenFlights "
      "airports.dat or airlines.dat; standing data (airports, airlines, aircraft, routes); OpenSky "
      "aircraftDatabase.csv; readsb aircraft.csv.gz; a BaseStation database; or one of VEL's own "
      "tables.",
      "取り込めるファイルではありません。");
}

Error missingColumn(ImportFormat format, std::string_view column) {
  return importError(nameOf(format) + ": the column " + std::string(column) + " is missing.",
                     "必要な列がありません。");
}

// The fields of the first row, where it is no longer than a header may be.
std::vector<std::string> firstRow(std::string_view begin, char separator, char quote) {
  std::vector<std::string> fields(1);
  bool inQuotes = false;
  for (const char c : begin) {
    if (c == quote) {
      inQuotes = !inQuotes;
    } else if (!inQuotes && (c == '\n' || c == '\r')) {
      break;
    } else if (!inQuotes && c == separator) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

// Whole lines of a table, at most so many.
std::vector<std::vector<std::string_view>> sampleOf(std::string_view begin, bool isWhole) {
  constexpr std::size_t kLines = 1000;
  std::vector<std::vector<std::string_view>> lines;
  while (!begin.empty() && lines.size() < kLines) {
    const std::size_t end = begin.find_first_of("\r\n");
    if (end == std::string_view::npos && !isWhole) break;
    const std::string_view line = begin.substr(0, end);
    begin.remove_prefix(std::min(begin.size(), line.size() + 1));
    // A line without a comma is a comment.
    if (line.find(',') != std::string_view::npos) lines.push_back(split(line, ','));
  }
  return lines;
}

bool isRegistration(std::string_view text) {
  constexpr std::size_t kLongest = 10;
  return !text.empty() && text.size() <= kLongest &&
         std::all_of(text.begin(), text.end(), [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.';
         });
}

bool fits(ImportFormat format, const std::vector<std::string_view>& line) {
  switch (format) {
    case ImportFormat::ownLetter:
      return (line.size() == 3 || line.size() == 4) && isCode(line[0], 2) &&
             (line[1].empty() || isCode(line[1], 3));
    case ImportFormat::ownFlight: {
      constexpr std::size_t kRoute = 8;
      return line.size() == 3 && isRegistration(line[0]) && isCode(line[1], kRoute);
    }
    case ImportFormat::ownIcao24:
      return line.size() >= 5 && isAddress(line[0]);
    case ImportFormat::ownAirport:
      return line.size() == 2 && isCapitals(line[0], 4) && line[1].size() > 4;
    default:
      return line.size() == 2 && isRegistration(line[0]);
  }
}

constexpr std::array<std::pair<Table, ImportFormat>, 5> kOwn = {
    {{Table::letter, ImportFormat::ownLetter},
     {Table::flight, ImportFormat::ownFlight},
     {Table::icao24, ImportFormat::ownIcao24},
     {Table::airport, ImportFormat::ownAirport},
     {Table::aircraft, ImportFormat::ownAircraft}}};

std::optional<ImportFormat> ownFormat(std::string_view begin, bool isWhole,
                                      std::optional<Table> only) {
  const auto lines = sampleOf(begin, isWhole);
  if (lines.empty()) return std::nullopt;
  for (const auto& [table, format] : kOwn) {
    if (only && *only != table) continue;
    const auto fitting = static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(),
                      [form = format](const auto& line) { return fits(form, line); }));
    // Comments and the odd line of another form are part of grown tables.
    constexpr std::size_t kNearlyAll = 10;
    if (fitting > 0 && (lines.size() - fitting) * kNearlyAll <= lines.size()) return format;
  }
  return std::nullopt;
}

Result<std::optional<ImportShape>> headerShape(std::string_view begin) {
  const char quote = begin.starts_with('\'') ? '\'' : '"';
  const std::vector<std::string> titles = firstRow(begin, ',', quote);
  const auto columnOf = [&](std::string_view name) {
    const auto found = std::find_if(titles.begin(), titles.end(),
                                    [&](const std::string& title) { return lower(title) == name; });
    return found == titles.end() ? kNoColumn : static_cast<std::size_t>(found - titles.begin());
  };
  for (const HeaderFormat& known : headerFormats()) {
    const bool isIt =
        std::all_of(known.signature.begin(), known.signature.end(),
                    [&](std::string_view each) { return columnOf(each) != kNoColumn; });
    if (!isIt) continue;
    ImportShape shape;
    shape.format = known.format;
    shape.dialect.quote = quote;
    shape.hasHeader = true;
    for (const std::string_view name : known.needed) {
      shape.columns.push_back(columnOf(name));
      if (shape.columns.back() == kNoColumn) return missingColumn(known.format, name);
    }
    for (const std::string_view name : known.optional) shape.columns.push_back(columnOf(name));
    for (const std::size_t column : shape.columns) {
      if (column != kNoColumn) shape.fewestFields = std::max(shape.fewestFields, column + 1);
    }
    return std::optional<ImportShape>(std::move(shape));
  }
  return std::optional<ImportShape>();
}

std::optional<ImportShape> plainShape(std::string_view begin) {
  ImportShape shape;
  const std::vector<std::string> semicolons = firstRow(begin, ';', '\0');
  if (semicolons.size() >= 3 && isAddress(semicolons[0])) {
    shape.format = ImportFormat::readsb;
    shape.dialect.separator = ';';
    shape.dialect.quote = '\0';
    shape.columns = {0, 1, 2};
    shape.fewestFields = 3;
    return shape;
  }
  const std::vector<std::string> commas = firstRow(begin, ',', '"');
  shape.dialect.backslashEscapes = true;
  if (commas.size() >= 11 && isNumber(commas[0]) && isNumber(commas[6]) && isNumber(commas[7])) {
    shape.format = ImportFormat::openFlightsAirports;
    shape.columns = {5, 4, 2, 1};  // the 4-letter code, the 3-letter one, city, name
    shape.fewestFields = 11;
    return shape;
  }
  if (commas.size() == 8 && isNumber(commas[0]) && (commas[7] == "Y" || commas[7] == "N")) {
    shape.format = ImportFormat::openFlightsAirlines;
    shape.columns = {3, 4, 1, 7};
    shape.fewestFields = 8;
    return shape;
  }
  return std::nullopt;
}

}  // namespace

bool isCapitals(std::string_view text, std::size_t count) {
  return text.size() == count &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool isCode(std::string_view text, std::size_t count) {
  return text.size() == count && std::all_of(text.begin(), text.end(), [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
         });
}

bool isAddress(std::string_view text) {
  constexpr std::size_t kDigits = 6;
  return text.size() == kDigits &&
         std::all_of(text.begin(), text.end(), [](char c) { return hexDigit(c).has_value(); });
}

Result<ImportShape> shapeOf(std::string_view begin, bool isWhole, std::optional<Table> only) {
  if (begin.starts_with("\xFF\xFE") || begin.starts_with("\xFE\xFF")) {
    return importError("The text is UTF-16: save it as UTF-8.",
                       "文字コードがUTF-16です。UTF-8で保存してください。");
  }
  if (begin.empty()) return importError("The file is empty.", "ファイルが空です。");
  Result<std::optional<ImportShape>> header = headerShape(begin);
  if (!header) return header.error();
  if (*header) return **header;
  if (auto shape = plainShape(begin)) return *std::move(shape);
  if (const auto own = ownFormat(begin, isWhole, only)) {
    ImportShape shape;
    shape.format = *own;
    shape.dialect.quote = '\0';
    const std::size_t fields = fieldsOf(tablesFilledBy(*own).front());
    for (std::size_t column = 0; column < fields; ++column) shape.columns.push_back(column);
    // A comment of one of VEL's tables is no row that was cut off.
    shape.fewestFields = *own == ImportFormat::ownLetter ? 3 : fields;
    return shape;
  }
  return unknownFile();
}

}  // namespace vel
