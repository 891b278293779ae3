#include "exchange/import_source.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "core/file.h"
#include "exchange/import_shapes.h"
#include "exchange/list_saving.h"
#include "tables/edits.h"
#include "tables/record.h"
#include "tables/table_scanner.h"

namespace vel {
namespace {

constexpr std::string_view kNothing = "\\N";  // where OpenFlights has no value
constexpr std::size_t kPrefix = 2;
constexpr std::size_t kAirlineCode = 3;
constexpr std::size_t kFlightDigits = 4;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string capitals(std::string_view text) {
  std::string made(text);
  for (char& c : made) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return made;
}

ImportedRecord recordOf(Table table, std::string_view first, std::string_view second,
                        std::string_view third = {}) {
  ImportedRecord record{table, {}};
  record.fields[0] = first;
  record.fields[1] = second;
  record.fields[2] = third;
  return record;
}

}  // namespace

class AirlineCodes {
 public:
  /// A table that is missing or cannot be read has no codes.
  AirlineCodes(const Folders& folders, const Encoding& encoding) {
    const auto take = [&](std::string_view line) {
      const auto prefix = fieldAt(line, 0);
      const auto code = fieldAt(line, 1);
      if (prefix && code && isCode(*prefix, kPrefix) && isCode(*code, kAirlineCode)) {
        prefixes_.emplace(*code, *prefix);
        codes_.emplace(*prefix, *code);
      }
      return TableScanner::Next::more;
    };
    static_cast<void>(TableScanner::forEachLine(filesOf(folders, Table::letter).live, {},
                                                TableScanner::Anchor::lineStart, take,
                                                {.byteOrderMark = byteOrderMarkOf(encoding)}));
  }

  /// Empty where there is none; the first line of several counts.
  [[nodiscard]] std::string prefixOf(std::string_view code) const { return of(prefixes_, code); }
  [[nodiscard]] std::string codeOf(std::string_view prefix) const { return of(codes_, prefix); }

 private:
  using Codes = std::unordered_map<std::string, std::string>;
  static std::string of(const Codes& codes, std::string_view key) {
    const auto found = codes.find(std::string(key));
    return found == codes.end() ? std::string() : found->second;
  }

  Codes prefixes_;
  Codes codes_;
};

std::string nameOf(ImportFormat format) {
  switch (format) {
    case ImportFormat::ourAirports:
      return "OurAirports airports.csv";
    case ImportFormat::openFlightsAirports:
      return "OpenFlights airports.dat";
    case ImportFormat::standingAirports:
      return "Standing data, airports";
    case ImportFormat::openFlightsAirlines:
      return "OpenFlights airlines.dat";
    case ImportFormat::standingAirlines:
      return "Standing data, airlines";
    case ImportFormat::openSky:
      return "OpenSky aircraftDatabase.csv";
    case ImportFormat::readsb:
      return "readsb aircraft.csv";
    case ImportFormat::baseStation:
      return "BaseStation database";
    case ImportFormat::standingAircraft:
      return "Standing data, aircraft";
    case ImportFormat::standingRoutes:
      return "Standing data, routes";
    default:
      return "VEL " + tableName(tablesFilledBy(format).front()) + ".csv";
  }
}

std::vector<Table> tablesFilledBy(ImportFormat format) {
  switch (format) {
    case ImportFormat::ourAirports:
    case ImportFormat::openFlightsAirports:
    case ImportFormat::standingAirports:
    case ImportFormat::ownAirport:
      return {Table::airport};
    case ImportFormat::openFlightsAirlines:
    case ImportFormat::standingAirlines:
    case ImportFormat::ownLetter:
      return {Table::letter};
    case ImportFormat::standingRoutes:
    case ImportFormat::ownFlight:
      return {Table::flight};
    case ImportFormat::ownIcao24:
      return {Table::icao24};
    case ImportFormat::ownAircraft:
      return {Table::aircraft};
    default:
      return {Table::aircraft, Table::icao24};
  }
}

std::size_t fieldsOf(Table table) {
  switch (table) {
    case Table::aircraft:
    case Table::airport:
      return 2;
    case Table::flight:
      return 3;
    case Table::letter:
      return 4;
    case Table::icao24:
      break;
  }
  return 5;
}

ImportSource::~ImportSource() = default;

Result<std::unique_ptr<ImportSource>> ImportSource::openDatabase(const std::filesystem::path& file,
                                                                 const ImportLimits& limits) {
  auto rows = DatabaseRows::open(
      file, "Aircraft", {"ModeS", "Registration", "ICAOTypeCode", "OperatorFlagCode"}, limits);
  if (!rows) return rows.error();
  std::unique_ptr<ImportSource> source(new ImportSource);
  source->format_ = ImportFormat::baseStation;
  source->rowSource_ = *std::move(rows);
  source->columns_ = {0, 1, 2, 3};
  source->fewestFields_ = source->columns_.size();
  return source;
}

Result<std::unique_ptr<ImportSource>> ImportSource::open(const Folders& folders,
                                                         const Encoding& encoding,
                                                         const std::filesystem::path& file,
                                                         std::optional<Table> only,
                                                         const ImportLimits& limits) {
  Result<std::unique_ptr<ImportBytes>> bytes = ImportBytes::open(file, limits);
  if (!bytes) return bytes.error();
  std::unique_ptr<ImportSource> source;
  if ((*bytes)->isDatabase()) {
    auto database = openDatabase(file, limits);
    if (!database) return database.error();
    source = *std::move(database);
  } else {
    // A header or a few lines tell; a block of the file has more than enough.
    constexpr std::size_t kEnough = std::size_t{64} << 10;
    std::string begin;
    bool isWhole = false;
    while (begin.size() < kEnough && !isWhole) {
      const Result<std::string_view> more = (*bytes)->next();
      if (!more) return more.error();
      isWhole = more->empty();
      begin.append(*more);
    }
    const bool hasMark = begin.starts_with(kUtf8Mark);
    if (hasMark) begin.erase(0, kUtf8Mark.size());
    Result<ImportShape> shape = shapeOf(begin, isWhole, only);
    if (!shape) return shape.error();
    source.reset(new ImportSource);
    source->format_ = shape->format;
    source->columns_ = std::move(shape->columns);
    source->fewestFields_ = shape->fewestFields;
    if (shape->format >= ImportFormat::ownAircraft && !hasMark) {
      source->encoding_ = std::make_unique<Encoding>(encoding);
      shape->dialect.encoding = source->encoding_.get();
    }
    source->rowSource_ =
        std::make_unique<CsvRows>(*std::move(bytes), std::move(begin), shape->dialect, limits);
    source->hasHeader_ = shape->hasHeader;
    if (shape->hasHeader) {
      if (const Result<bool> header = source->rowSource_->next(source->row_); !header) {
        return header.error();
      }
    }
  }
  const std::vector<Table> filled = tablesFilledBy(source->format_);
  if (only && std::find(filled.begin(), filled.end(), *only) == filled.end()) {
    return importError(nameOf(source->format_) + " does not fill " + tableName(*only) + ".csv.",
                       "このファイルはその表には取り込めません。");
  }
  source->airlines_ = std::make_unique<AirlineCodes>(folders, encoding);
  return source;
}

std::string_view ImportSource::at(std::size_t column) const {
  const std::size_t place = column < columns_.size() ? columns_[column] : kNoColumn;
  if (place >= row_.size()) return {};
  const std::string_view text = Trim(row_[place]);
  return text == kNothing ? std::string_view() : text;
}

Result<bool> ImportSource::next(std::vector<ImportedRecord>& records) {
  records.clear();
  const Result<bool> more = rowSource_->next(row_);
  if (!more || !*more) return more;
  ++rows_;
  const bool isComment = format_ >= ImportFormat::ownAircraft && row_.size() == 1;
  if (row_.size() < fewestFields_ && !isComment) {
    return importError("Row " + std::to_string(rows_ + (hasHeader_ ? 1 : 0)) + " has only " +
                           std::to_string(row_.size()) + " of " + std::to_string(fewestFields_) +
                           " columns; the file is damaged or cut off.",
                       "列が足りません。");
  }
  if (!isComment) convert(records);
  if (records.empty()) ++unusable_;
  return true;
}

void ImportSource::convert(std::vector<ImportedRecord>& records) {
  switch (format_) {
    case ImportFormat::ourAirports: {
      if (at(1) == "closed" || at(1) == "closed_airport") return;
      constexpr std::size_t kCodes[] = {4, 5, 0};  // icao_code, gps_code, ident
      for (const std::size_t column : kCodes) {
        if (!isCapitals(at(column), kAirportCodeLength)) continue;
        addAirport(records, at(column), at(3), at(6), at(2));
        return;
      }
      return;
    }
    case ImportFormat::openFlightsAirports:
    case ImportFormat::standingAirports:
      addAirport(records, at(0), at(1), at(2), at(3));
      return;
    case ImportFormat::openFlightsAirlines:
      if (at(3) == "Y") addAirline(records, at(0), at(1), at(2));
      return;
    case ImportFormat::standingAirlines:
      addAirline(records, at(0), at(1), at(2));
      return;
    case ImportFormat::openSky:
      addAircraft(records, at(0), at(1), at(2), at(3), at(4));
      return;
    case ImportFormat::baseStation:
    case ImportFormat::standingAircraft:
    case ImportFormat::readsb:
      addAircraft(records, at(0), at(1), at(2), at(3), {});
      return;
    case ImportFormat::standingRoutes:
      addRoute(records, at(0), at(1), at(2));
      return;
    default:
      addOwn(records);
  }
}

void ImportSource::addAirport(std::vector<ImportedRecord>& records, std::string_view code,
                              std::string_view shortCode, std::string_view place,
                              std::string_view name) const {
  if (!isCapitals(code, kAirportCodeLength) || name.empty()) return;
  std::string text;
  // "Chicago O'Hare International Airport": the place is what people search for.
  if (!place.empty() && name.find(place) == std::string_view::npos) {
    text.append(place).append(" ");
  }
  text.append(name);
  if (isCapitals(shortCode, kShortAirportCodeLength)) {
    text.append(" ").append(shortCode);
  } else if (isCapitals(Right(text, kShortAirportCodeLength), kShortAirportCodeLength)) {
    // Three capitals at the end would be taken for its code.
    text.append(" -");
  }
  records.push_back(recordOf(Table::airport, code, text));
}

void ImportSource::addAirline(std::vector<ImportedRecord>& records, std::string_view prefix,
                              std::string_view code, std::string_view name) const {
  if (!isCode(prefix, kPrefix) || !isCapitals(code, kAirlineCode) || name.empty()) return;
  records.push_back(recordOf(Table::letter, prefix, code, name));
}

void ImportSource::addAircraft(std::vector<ImportedRecord>& records, std::string_view address,
                               std::string_view registration, std::string_view equipment,
                               std::string_view threeLetter, std::string_view twoLetter) const {
  if (!isAddress(address)) return;
  // What stands for a vehicle or a mast begins with a hyphen.
  if (equipment.starts_with('-')) return;
  if (!registration.empty() && !equipment.empty()) {
    records.push_back(recordOf(Table::aircraft, registration, equipment));
  }
  if (registration.empty() && equipment.empty()) return;
  ImportedRecord record{Table::icao24, {}};
  record.fields[0] = capitals(address);
  if (isCapitals(threeLetter, kAirlineCode)) record.fields[1] = threeLetter;
  if (isCode(twoLetter, kPrefix)) record.fields[2] = twoLetter;
  if (record.fields[2].empty()) record.fields[2] = airlines_->prefixOf(record.fields[1]);
  if (record.fields[1].empty()) record.fields[1] = airlines_->codeOf(record.fields[2]);
  record.fields[3] = registration;
  record.fields[4] = equipment;
  records.push_back(std::move(record));
}

void ImportSource::addRoute(std::vector<ImportedRecord>& records, std::string_view airline,
                            std::string_view number, std::string_view airports) const {
  const std::string prefix =
      isCode(airline, kPrefix) ? std::string(airline) : airlines_->prefixOf(airline);
  const bool isNumber = !number.empty() && number.size() <= kFlightDigits &&
                        number.find_first_not_of("0123456789") == std::string_view::npos;
  if (prefix.empty() || !isNumber) return;
  const std::size_t first = airports.find('-');
  if (first == std::string_view::npos) return;
  const std::string_view from = airports.substr(0, first);
  const std::string_view to = airports.substr(airports.rfind('-') + 1);
  if (!isCode(from, kAirportCodeLength) || !isCode(to, kAirportCodeLength)) return;
  std::string flight = prefix;
  flight.append(kFlightDigits - number.size(), '0').append(number);
  records.push_back(
      recordOf(Table::flight, flight, std::string(from) + std::string(to), kNoRemark));
}

void ImportSource::addOwn(std::vector<ImportedRecord>& records) const {
  ImportedRecord record{tablesFilledBy(format_).front(), {}};
  for (std::size_t i = 0; i < fieldsOf(record.table) && i < row_.size(); ++i) {
    record.fields[i] = row_[i];
  }
  if (!record.fields[0].empty()) records.push_back(std::move(record));
}

}  // namespace vel
