#include "history/message_match.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "hfdl/hfdl_row.h"
#include "web/raw_log.h"

namespace vel {
namespace {

constexpr std::size_t kListFields = 8;
constexpr std::size_t kLongestListLine = std::size_t{1} << 20;
constexpr std::size_t kTimeLength = 8;
constexpr std::size_t kDateLength = 10;
constexpr std::string_view kHeader = "Flight No.";
// Characters of a flight that is given by its number.
constexpr std::size_t kCompletedNumber = 4;

std::string_view withoutLineEnd(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// The day of a text that begins with yyyy/mm/dd.
std::optional<std::chrono::local_days> dayOfStamp(std::string_view stamp) {
  if (stamp.size() < kDateLength || stamp[4] != '/' || stamp[7] != '/') return std::nullopt;
  std::string digits(stamp.substr(0, 4));
  digits.append(stamp.substr(5, 2)).append(stamp.substr(8, 2));
  return dayOfName(digits);
}

// Padding of a registration in a raw log.
std::string_view withoutStops(std::string_view registration) {
  while (registration.starts_with('.')) registration.remove_prefix(1);
  while (registration.ends_with('.')) registration.remove_suffix(1);
  return registration;
}

}  // namespace

bool cutListLine(std::string_view line, ListFields& fields) {
  if (line.size() > kLongestListLine) return false;
  std::size_t count = 0;
  while (true) {
    const std::size_t comma = line.find(',');
    fields.field[count++] = line.substr(0, comma);
    if (comma == std::string_view::npos) break;
    if (count == kListFields) return false;
    line.remove_prefix(comma + 1);
  }
  return count == kListFields && fields.field[0] != kHeader;
}

void HfdlParts::forEach(std::string_view messages,
                        const std::function<void(const HfdlPart&)>& take) {
  HfdlParser parser(encoding_, kRecordLines);
  part_ = HfdlPart{};
  const auto endPart = [&](std::size_t end) {
    part_.end = end;
    if (std::exchange(complete_, false)) take(part_);
    part_.begin = end;
  };
  for (std::size_t at = 0; at < messages.size();) {
    const std::size_t found = messages.find('\n', at);
    const std::size_t behind = found == std::string_view::npos ? messages.size() : found + 1;
    const HfdlLine kind = parser.takeLine(withoutLineEnd(messages.substr(at, behind - at)), *this);
    if (kind == HfdlLine::header) endPart(at);
    if (kind == HfdlLine::subRecordEnd) endPart(behind);
    at = behind;
  }
  parser.end(*this);
  endPart(messages.size());
}

void HfdlParts::aircraftEnded(const HfdlMessage& message, const HfdlAircraft& aircraft) {
  if (message.header.empty()) return;
  fillRecord(part_.record, message, aircraft);
  complete_ = true;
}

MessageMatch::MessageMatch(const HistoryQuery& query, const Tables& tables)
    : query_(query),
      encoding_(tables.encoding()),
      text_(query, encoding_),
      parts_(encoding_),
      tables_(tables) {}

std::string_view MessageMatch::decoded(std::string_view bytes, std::string& keep) const {
  if (isAscii(bytes)) return bytes;
  keep = encoding_.decode(bytes);
  return keep;
}

bool MessageMatch::fits(const ListFields& fields, std::string_view line) const {
  switch (query_.meaning) {
    case SearchMeaning::registration:
      return text_.isField(fields.field[2]);
    case SearchMeaning::flight:
      return text_.isField(fields.field[0]);
    case SearchMeaning::airport:
      return text_.isField(fields.field[3]) || text_.isField(fields.field[4]);
    case SearchMeaning::address:
      return false;
    case SearchMeaning::anyText:
      break;
  }
  return text_.isIn(line);
}

void MessageMatch::takeListLine(std::string_view line, std::uint64_t offset,
                                std::optional<std::chrono::local_days> day, std::uint32_t log,
                                FoundMessages& found) {
  line = withoutLineEnd(line);
  ListFields fields;
  if (!cutListLine(line, fields) || !fits(fields, line)) return;
  const auto& field = fields.field;
  const std::string_view time = decoded(field[7], kept_[0]);
  const std::size_t timeLength = length(time);
  time_.assign(timeLength < kTimeLength ? kTimeLength - timeLength : 0, '0');
  time_ += time;
  found.add(log, {.day = day,
                  .time = time_,
                  .flight = Trim(decoded(field[0], kept_[1])),
                  .registration = decoded(field[2], kept_[2]),
                  .from = decoded(field[3], kept_[3]),
                  .to = decoded(field[4], kept_[4]),
                  .equipment = decoded(field[5], kept_[5]),
                  .text = decoded(field[6], kept_[0]),
                  .offset = offset});
}

// The list shows such a flight by its number, and its panel by the whole ID.
bool MessageMatch::isCompletedFlight(const HfdlRecord& record) {
  constexpr std::size_t kMostKept = 10'000;
  const std::string_view received = Trim(record.flightId);
  const std::string number = completedFlight(received, {});
  if (number == received && length(received) > kCompletedNumber) return false;
  if (received.empty() || !text_.canEndIn(number)) return false;
  const auto known = aircraft_.find(record.address);
  if (known != aircraft_.end()) {
    return text_.isDecodedField(completedFlight(received, known->second));
  }
  const Result<Icao24Record> aircraft = tables_.aircraftOfAddressIfPresent(record.address);
  if (!aircraft) return false;
  if (aircraft_.size() < kMostKept) aircraft_.emplace(record.address, *aircraft);
  return text_.isDecodedField(completedFlight(received, *aircraft));
}

bool MessageMatch::fits(const HfdlPart& part, std::string_view message) {
  switch (query_.meaning) {
    case SearchMeaning::registration:
      return text_.isDecodedField(part.record.registration);
    case SearchMeaning::flight:
      return text_.isDecodedField(part.record.flightId) || isCompletedFlight(part.record);
    case SearchMeaning::airport:
      return false;
    case SearchMeaning::address:
      return text_.isDecodedField(part.record.address);
    case SearchMeaning::anyText:
      break;
  }
  return text_.isIn(message.substr(part.begin, part.end - part.begin));
}

void MessageMatch::takeHfdlMessage(std::string_view message, std::uint64_t offset,
                                   std::optional<std::chrono::local_days> day, std::uint32_t log,
                                   FoundMessages& found) {
  parts_.forEach(message, [&](const HfdlPart& part) {
    if (!fits(part, message)) return;
    const HfdlRecord& record = part.record;
    std::string text = record.direction;
    for (const std::string_view piece : {Trim(record.groundStation), Trim(record.address)}) {
      if (!text.empty()) text += ' ';
      text += piece;
    }
    const std::string_view stamp = record.timeStamp;
    const std::optional<std::chrono::local_days> stampedDay = dayOfStamp(stamp);
    const std::size_t blank = stamp.find(' ');
    const std::string_view time =
        blank == std::string_view::npos ? std::string_view() : stamp.substr(blank + 1);
    found.add(log, {.day = stampedDay ? stampedDay : day,
                    .time = time,
                    .flight = Trim(record.flightId),
                    .registration = record.registration,
                    .text = text,
                    .offset = offset + part.begin});
  });
}

void MessageMatch::takeRawLine(std::string_view line, std::uint64_t offset, RawLog kind,
                               std::uint32_t log, FoundMessages& found) {
  line = withoutLineEnd(line);
  const std::optional<RawMessage> message = parseRawLine(decoded(line, kept_[0]));
  // The viewer does not show one without a body.
  if (!message || message->body.empty()) return;
  const std::string_view registration = withoutStops(message->registration);
  const auto fitsQuery = [&] {
    switch (query_.meaning) {
      case SearchMeaning::registration:
        return kind == RawLog::ofTheAircraft || text_.isDecodedField(registration);
      case SearchMeaning::flight:
        return text_.isDecodedField(message->flight);
      case SearchMeaning::airport:
      case SearchMeaning::address:
        return text_.isInDecoded(message->body);
      case SearchMeaning::anyText:
        break;
    }
    return text_.isInDecoded(decoded(line, kept_[0]));
  };
  const std::string_view header = message->header;
  const std::optional<std::chrono::local_days> day = dayOfStamp(header);
  if (day ? !query_.days.holds(*day) : !query_.days.isAll()) return;
  if (!fitsQuery()) return;
  std::string text = message->label + ' ' + bodyWithBreaks(message->body, " ");
  std::replace(text.begin(), text.end(), '\n', ' ');
  std::replace(text.begin(), text.end(), '\r', ' ');
  found.add(log, {.day = day,
                  .time = day ? Mid(header, 12, kTimeLength) : std::string_view(),
                  .flight = Trim(message->flight),
                  .registration = registration,
                  .text = text,
                  .offset = offset});
}

}  // namespace vel
