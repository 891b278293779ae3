#include "acars/list_log.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vel {
namespace {

constexpr std::size_t kRecordFields = 8;
constexpr std::string_view kHeader = "Flight No.";
constexpr std::size_t kTimeLength = 8;
// Lines between two looks at the clock.
constexpr int kLinesPerLook = 64;
constexpr std::string_view kZeros = "00000000";
// A message box has to stay readable, and small enough to be shown at all,
// when a file of another kind has been named as a log.
constexpr std::size_t kLongestExample = 1000;
constexpr std::size_t kLongestNumberList = 2000;

constexpr std::size_t kStride = 16;

// One bit for each of the 16 bytes from `text`, set where it is a comma.
unsigned commasIn(const char* text) {
#if defined(__SSE2__)
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(','))));
#else
  unsigned commas = 0;
  for (std::size_t i = 0; i < kStride; ++i) {
    commas |= static_cast<unsigned>(text[i] == ',') << i;
  }
  return commas;
#endif
}

// Cuts a record at its commas. False unless it has exactly eight fields.
bool cut(std::string_view line, std::string_view (&field)[kRecordFields]) {
  std::size_t count = 0;
  std::size_t from = 0;
  char tail[kStride] = {};
  for (std::size_t at = 0; at < line.size(); at += kStride) {
    const char* piece = line.data() + at;
    if (line.size() - at < kStride) {
      std::memcpy(tail, piece, line.size() - at);
      piece = tail;
    }
    for (unsigned commas = commasIn(piece); commas != 0; commas &= commas - 1) {
      if (count == kRecordFields - 1) return false;
      const std::size_t comma = at + static_cast<std::size_t>(std::countr_zero(commas));
      field[count++] = line.substr(from, comma - from);
      from = comma + 1;
    }
  }
  if (count != kRecordFields - 1) return false;
  field[count] = line.substr(from);
  return true;
}

bool isHeader(std::string_view line) {
  return line.starts_with(kHeader) &&
         (line.size() == kHeader.size() || line[kHeader.size()] == ',');
}

bool hasBlanksAround(std::string_view text) {
  return !text.empty() && (text.front() == ' ' || text.back() == ' ');
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
      anyFilter_(anyText_ || filter.photo != PhotoFilter::all || !filter.time.empty() ||
                 filter.unknownAirlineOnly),
      photoMark_(encoding.encode("○").value_or("")),
      noPhotoMark_(encoding.encode("×").value_or("")) {
  chooseProbe();
}

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
    case PhotoFilter::available:
      return mark == "O" || (!mark.empty() && mark == photoMark_);
    case PhotoFilter::unavailable:
      return mark == "X" || (!mark.empty() && mark == noPhotoMark_);
    case PhotoFilter::all:
      break;
  }
  return true;
}

bool ListLogReader::passesTime(std::string_view time) const {
  if (filter_.time.empty()) return true;
  const std::string decoded = isAscii(time) ? std::string() : encoding_.decode(time);
  const std::string_view text = isAscii(time) ? time : std::string_view(decoded);
  switch (filter_.timeComparison) {
    case TimeComparison::earlier:
      return text <= filter_.time;
    case TimeComparison::later:
      return text >= filter_.time;
    case TimeComparison::prefix:
      break;
  }
  return text.starts_with(filter_.time);
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
  const Result<bool> known = tables_.knowsAirline(Left(text, 2));
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
  if (isHeader(line)) return {};
  Fields fields;
  auto& field = fields.field;
  if (lines_.wasCut() || !cut(line, field)) {
    reject(line);
    return {};
  }
  const std::string_view flight = hasBlanksAround(field[0]) ? Trim(field[0]) : field[0];
  const std::size_t timeLength =
      isAscii(field[7]) ? field[7].size() : length(encoding_.decode(field[7]));
  const std::string_view zeros = kZeros.substr(std::min(timeLength, kTimeLength));
  if (anyFilter_) {
    time_ = zeros;
    time_ += field[7];
    const Result<bool> passed = passes(fields, flight, time_);
    if (!passed) return passed.error();
    if (!*passed) return {};
  }
  if (flight.size() == field[0].size() && zeros.empty()) {
    rows.append(line);
  } else {
    const std::size_t rest = field[0].size();
    rows.append({flight, line.substr(rest, line.size() - rest - field[7].size()), zeros, field[7]});
  }
  return {};
}

// Which text filter tells most lines apart by one byte: the first that is set.
void ListLogReader::chooseProbe() {
  const struct {
    const Needle& needle;
    std::size_t from, to;
  } texts[] = {{flight_, 0, 0},
               {registration_, 2, 2},
               {airport_, 3, 4},
               {equipment_, 5, 5},
               {remarks_, 6, 6}};
  for (const auto& text : texts) {
    if (text.needle.utf8.empty()) continue;
    probed_ = &text.needle;
    probedFrom_ = text.from;
    probedTo_ = text.to;
    return;
  }
}

// Of a line with seven commas.
bool ListLogReader::cannotPass(const ShortLine& line) const {
  if (probed_ == nullptr) return false;
  std::uint64_t commas = line.commas;
  std::uint64_t before = 0;  // the bits up to the comma before the field
  for (std::size_t i = 0; i < probedFrom_; ++i) {
    before = commas ^ (commas - 1);
    commas &= commas - 1;
  }
  for (std::size_t i = probedFrom_; i < probedTo_; ++i) commas &= commas - 1;
  const std::uint64_t within = (commas ^ (commas - 1)) & ~before;
  const std::uint64_t asked = probed_->ascii ? line.probe | line.notAscii : line.notAscii;
  return (asked & within) == 0;
}

// The same as take(), for the usual lines.
Status ListLogReader::takeShort(const char* text, const ShortLine& cut, RowStore& rows) {
  std::uint64_t commas = cut.commas;
  const auto first = static_cast<std::size_t>(std::countr_zero(commas));
  for (std::size_t i = 0; i < kRecordFields - 2; ++i) commas &= commas - 1;
  const bool isRecord = std::has_single_bit(commas);
  const std::string_view line(text, cut.length);
  const bool hasBlanks = *text == ' ' || (first > 0 && text[first - 1] == ' ');
  if (!isRecord || hasBlanks || *text == kHeader.front()) return take(line, rows);
  const auto timeAt = static_cast<std::size_t>(std::countr_zero(commas)) + 1;
  const bool asciiTime = (cut.notAscii & ~(commas - 1)) == 0;
  if (!asciiTime) return take(line, rows);
  if (anyFilter_) {
    if (!cannotPass(cut)) return take(line, rows);
    ++lineNumber_;
    return {};
  }
  ++lineNumber_;
  const std::size_t timeLength = cut.length - timeAt;
  const std::size_t zeros = kTimeLength - std::min(timeLength, kTimeLength);
  // Whole registers are copied, and what is too much is written over later.
  char* const row = rows.room(kShortLineReach);
  std::memcpy(row, text, kShortLine);
  if (zeros > 0) {
    std::memcpy(row + timeAt, kZeros.data(), kTimeLength);
    std::memcpy(row + timeAt + zeros, text + timeAt, kTimeLength);
  }
  rows.addWritten(cut.length + zeros);
  return {};
}

// False where there is none at hand.
Result<bool> ListLogReader::takeShortLines(RowStore& rows) {
  ShortLine lines[kLinesPerLook];
  const std::string_view text = lines_.atHand();
  const char probe = probed_ != nullptr ? probed_->utf8.front() : ',';
  const std::size_t count = shortLines(text, probe, lines);
  std::size_t taken = 0;
  Status status;
  while (status && taken < count) {
    const ShortLine& line = lines[taken++];
    status = takeShort(text.data() + line.at, line, rows);
  }
  if (taken > 0) lines_.takeAtHand(lines[taken - 1].next);
  if (!status) return status.error();
  return taken > 0;
}

Result<bool> ListLogReader::step(std::chrono::steady_clock::time_point deadline, RowStore& rows) {
  const Tables::ManyLookUps lookUps(tables_);
  do {
    const Result<bool> taken = takeShortLines(rows);
    if (!taken) return taken.error();
    if (*taken) continue;
    std::string_view line;
    if (!lines_.nextAtHand(line)) {
      const auto next = lines_.next();
      if (!next) return next.error();
      if (!*next) return false;
      line = **next;
    }
    if (const Status status = take(line, rows); !status) return status.error();
  } while (std::chrono::steady_clock::now() < deadline);
  return true;
}

}  // namespace vel
