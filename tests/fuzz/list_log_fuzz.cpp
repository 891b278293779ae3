// The list log: rows and the report against a second, plain reader.

#include "acars/list_log.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

constexpr std::size_t kFields = 8;

/// The reader once more, as its rules are written: field by field, decoded.
class PlainReader {
 public:
  PlainReader(const Encoding& encoding, const ListFilter& filter, std::string_view letters)
      : encoding_(encoding), filter_(filter), letters_(letters) {}

  void read(std::string_view log) {
    for (const std::string_view line : plainLines(withoutMark(log), false)) take(line);
  }

  std::vector<std::string> rows;
  std::size_t malformed = 0;

 private:
  void take(std::string_view line) {
    std::vector<std::string_view> fields = plainFields(line);
    if (fields[0] == "Flight No.") return;
    if (fields.size() != kFields) {
      if (fields.size() > 1) ++malformed;
      return;
    }
    fields[0] = Trim(fields[0]);
    std::string time(fields[7]);
    const std::size_t size = length(encoding_.decode(time));
    if (size < kFields) time.insert(0, kFields - size, '0');
    fields[7] = time;
    if (!passes(fields)) return;
    std::string row;
    for (std::size_t i = 0; i < kFields; ++i) row.append(i == 0 ? "" : ",").append(fields[i]);
    rows.push_back(row);
  }

  [[nodiscard]] bool holds(std::string_view field, const std::string& text) const {
    return encoding_.decode(field).find(text) != std::string::npos;
  }

  [[nodiscard]] bool passes(const std::vector<std::string_view>& fields) const {
    const std::string mark = encoding_.decode(fields[1]);
    if (filter_.photo == PhotoFilter::available && mark != "O" && mark != "○") return false;
    if (filter_.photo == PhotoFilter::unavailable && mark != "X" && mark != "×") return false;
    const std::string time = encoding_.decode(fields[7]);
    if (!filter_.time.empty()) {
      if (filter_.timeComparison == TimeComparison::earlier && time > filter_.time) return false;
      if (filter_.timeComparison == TimeComparison::later && time < filter_.time) return false;
      if (filter_.timeComparison == TimeComparison::prefix && !time.starts_with(filter_.time)) {
        return false;
      }
    }
    if (!holds(fields[0], filter_.flight) || !holds(fields[2], filter_.registration) ||
        !holds(fields[5], filter_.equipment) || !holds(fields[6], filter_.remarks)) {
      return false;
    }
    if (!holds(fields[3], filter_.airport) && !holds(fields[4], filter_.airport)) return false;
    if (!filter_.unknownAirlineOnly) return true;
    const std::string flight = encoding_.decode(fields[0]);
    const std::string_view prefix = Left(flight, 2);
    for (const std::string_view line : plainLines(letters_, true)) {
      // A blank line is no record.
      if (!line.empty() && plainFields(line)[0] == prefix) return false;
    }
    return true;
  }

  const Encoding& encoding_;
  const ListFilter& filter_;
  std::string_view letters_;
};

ListFilter filterOf(std::string_view part) {
  ListFilter filter;
  filter.photo = static_cast<PhotoFilter>(numberOf(lineOfPart(part, 1), 3));
  filter.timeComparison = static_cast<TimeComparison>(numberOf(lineOfPart(part, 2), 3));
  filter.time = lineOfPart(part, 3);
  filter.flight = lineOfPart(part, 4);
  filter.registration = lineOfPart(part, 5);
  filter.airport = lineOfPart(part, 6);
  filter.equipment = lineOfPart(part, 7);
  filter.remarks = lineOfPart(part, 8);
  filter.unknownAirlineOnly = lineOfPart(part, 9) == "letter";
  return filter;
}

void run(const Station& station, Parts parts) {
  const std::string_view first = parts.next();
  const std::string_view letters = parts.next();
  const std::string_view log = parts.rest();
  const Encoding encoding = encodingOf(lineOfPart(first, 0));
  ListFilter filter = filterOf(first);
  // Filters are typed by the user: text, without line ends.
  for (const std::string* text : {&filter.time, &filter.flight, &filter.registration,
                                  &filter.airport, &filter.equipment, &filter.remarks}) {
    if (!isUtf8(*text) || text->find('\r') != std::string::npos) return;
  }
  // Airlines are compared here only where that is a matter of bytes.
  if (!isAscii(letters) || (filter.unknownAirlineOnly && !isAscii(log))) {
    filter.unknownAirlineOnly = false;
  }
  const auto file = station.folders().logs / "20261120_list.csv";
  put(file, log);
  put(station.folders().data / "letter.csv", letters);
  const Tables tables(station.folders(), encoding);

  PlainReader plain(encoding, filter, letters);
  plain.read(log);
  for (const auto deadline : {std::chrono::steady_clock::time_point::min(),
                              std::chrono::steady_clock::time_point::max()}) {
    RowStore rows(ListLogReader::kSeparator);
    Result<InputFile> opened = InputFile::open(file);
    check(opened.ok(), "the log cannot be opened");
    ListLogReader reader(*std::move(opened), encoding, filter, tables);
    while (true) {
      const Result<bool> more = reader.step(deadline, rows);
      check(more.ok(), "the log cannot be read");
      if (!*more) break;
    }
    check(rows.size() == plain.rows.size(), "another number of rows");
    for (std::size_t i = 0; i < rows.size(); ++i) {
      check(rows.row(i) == plain.rows[i], "another row");
    }
    check(reader.malformed().count == plain.malformed, "another number of malformed lines");
    check(reader.report().empty() == (plain.malformed == 0), "a report where none is due");
    check(isUtf8(reader.report()), "a report that is no text");
  }
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
