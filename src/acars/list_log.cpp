#include "acars/list_log.h"

#include <algorithm>
#include <utility>

namespace vel {
namespace {

constexpr std::size_t kRecordFields = 8;
constexpr std::string_view kHeader = "Flight No.";
constexpr std::size_t kTimeLength = 8;
// Lines between two looks at the clock.
constexpr int kLinesPerLook = 64;
// A message box has to stay readable, and small enough to be shown at all,
// when a file of another kind has been named as a log.
constexpr std::size_t kLongestExample = 1000;
constexpr std::size_t kLongestNumberList = 2000;

// Cuts a record at its commas. False unless it has exactly eight fields.
bool cut(std::string_view line, std::string_view (&field)[kRecordFields]) {
  std::size_t count = 0;
  const char* from = line.data();
  const char* const end = from + line.size();
  for (const char* at = from; at != end; ++at) {
    if (*at != ',') continue;
    if (count == kRecordFields - 1) return false;
    field[count++] = {from, static_cast<std::size_t>(at - from)};
    from = at + 1;
  }
  if (count != kRecordFields - 1) return false;
  field[count] = {from, static_cast<std::size_t>(end - from)};
  return true;
}

}  // namespace

std::string MalformedLines::report() const {
  if (count == 0) return {};
  const std::string number = std::to_string(count);
  return "Found " + number + " lines of incorrect data.  不正な行が " + number +
         "行 ありました。\r\n\r\nex.: " + example + "\r\n\r\nError line:" + lineNumbers;
}

std::string listLineNumber(std::size_t number) {
  std::string text = std::to_string(number);
  if (text.size() < 4) text.insert(0, 4 - text.size(), '0');
  return text;
}

ListLogReader::ListLogReader(InputFile file, const Encoding& encoding, const ListFilter& filter,
                             const Tables& tables)
    : lines_(std::move(file)),
      encoding_(encoding),
      tables_(tables),
      filter_(filter),
      flight_(needle(filter.flight)),
      registration_(needle(filter.registration)),
      airport_(needle(filter.airport)),
      equipment_(needle(filter.equipment)),
      remarks_(needle(filter.remarks)),
      anyText_(!(filter.flight.empty() && filter.registration.empty() && filter.airport.empty() &&
                 filter.equipment.empty() && filter.remarks.empty())),
      photoMark_(encoding.encode("○").value_or("")),
      noPhotoMark_(encoding.encode("×").value_or("")) {}

ListLogReader::Needle ListLogReader::needle(const std::string& utf8) const {
  return {utf8, isAscii(utf8)};
}

// Bytes may only be compared where every byte is a character of its own.
bool ListLogReader::contains(std::string_view field, const Needle& needle) const {
  if (needle.utf8.empty()) return true;
  if (isAscii(field)) {
    return needle.ascii && field.find(needle.utf8) != std::string_view::npos;
  }
  return encoding_.decode(field).find(needle.utf8) != std::string::npos;
}

bool ListLogReader::passesPhoto(std::string_view mark) const {
  switch (filter_.photo) {
    case ListFilter::kAvailable:
      return mark == "O" || (!mark.empty() && mark == photoMark_);
    case ListFilter::kUnavailable:
      return mark == "X" || (!mark.empty() && mark == noPhotoMark_);
    default:
      return true;
  }
}

bool ListLogReader::passesTime(std::string_view time) const {
  if (filter_.time.empty()) return true;
  switch (filter_.timeComparison) {
    case ListFilter::kEarlier:
      return time <= filter_.time;
    case ListFilter::kLater:
      return time >= filter_.time;
    default:
      return time.starts_with(filter_.time);
  }
}

Result<bool> ListLogReader::passes(const Fields& fields, std::string_view flight,
                                   std::string_view time) {
  const auto& field = fields.field;
  if (!passesPhoto(field[1]) || !passesTime(time)) return false;
  if (anyText_) {
    if (!contains(field[0], flight_) || !contains(field[2], registration_) ||
        !contains(field[5], equipment_) || !contains(field[6], remarks_)) {
      return false;
    }
    if (!contains(field[3], airport_) && !contains(field[4], airport_)) return false;
  }
  if (!filter_.unknownAirlineOnly) return true;
  const std::string text = encoding_.decode(flight);
  const Result<bool> known = tables_.letterChk(Left(text, 2));
  if (!known) {
    failedLookUp_ = true;
    return known.error();
  }
  return !*known;
}

void ListLogReader::reject(std::string_view line) {
  if (line.find(',') != std::string_view::npos) {
    ++malformed_.count;
    malformed_.example = encoding_.decode(line.substr(0, 4 * kLongestExample));
    if (length(malformed_.example) > kLongestExample) {
      malformed_.example = std::string(Left(malformed_.example, kLongestExample)) + "...";
    }
    // A message box ends at a NUL.
    std::replace(malformed_.example.begin(), malformed_.example.end(), '\0', ' ');
  }
  std::string& numbers = malformed_.lineNumbers;
  if (numbers.ends_with("...")) return;
  if (!numbers.empty()) numbers += ',';
  numbers += numbers.size() < kLongestNumberList ? std::to_string(lineNumber_) : "...";
}

Status ListLogReader::take(std::string_view line, RowStore& rows) {
  ++lineNumber_;
  Fields fields;
  auto& field = fields.field;
  const bool isRecord = !lines_.wasCut() && cut(line, field);
  if (line.starts_with(kHeader) && (line.size() == kHeader.size() || line[kHeader.size()] == ',')) {
    return {};
  }
  if (!isRecord) {
    reject(line);
    return {};
  }
  const std::string_view flight = Trim(field[0]);
  const std::size_t missingZeros =
      field[7].size() < kTimeLength ? kTimeLength - field[7].size() : 0;
  const bool asItStands = flight.size() == field[0].size() && missingZeros == 0;
  if (!asItStands) {
    row_.assign(flight);
    const char* rest = field[0].data() + field[0].size();
    row_.append(rest, static_cast<std::size_t>(field[7].data() - rest));
    row_.append(missingZeros, '0');
    row_.append(field[7]);
  }
  const std::string_view row = asItStands ? line : std::string_view(row_);
  const std::string_view time = row.substr(row.size() - field[7].size() - missingZeros);
  const Result<bool> passed = passes(fields, flight, time);
  if (!passed) return passed.error();
  if (*passed) rows.append(row);
  return {};
}

Result<bool> ListLogReader::step(std::chrono::steady_clock::time_point deadline, RowStore& rows) {
  while (true) {
    for (int i = 0; i < kLinesPerLook; ++i) {
      const auto line = lines_.next();
      if (!line) return line.error();
      if (!*line) return false;
      if (const Status taken = take(**line, rows); !taken) return taken.error();
    }
    if (std::chrono::steady_clock::now() >= deadline) return true;
  }
}

}  // namespace vel
