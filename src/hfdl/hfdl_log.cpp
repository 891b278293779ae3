#include "hfdl/hfdl_log.h"

#include "log/dated_logs.h"

namespace vel {
namespace {

const char* directionOf(HfdlKind kind) {
  if (kind == HfdlKind::downlink) return "D";
  return kind == HfdlKind::uplink ? "U" : "";
}

}  // namespace

std::vector<std::string> hfdlLogs(const Folders& folders) {
  return datedLogs(folders.logs, kHfdlLogSuffix);
}

void fillRecord(HfdlRecord& record, const HfdlMessage& message, const HfdlAircraft& aircraft) {
  record.timeStamp = message.header.empty() ? std::string() : listTimeStamp(message.header);
  record.tag = Left(message.header, 3);
  record.direction = directionOf(message.kind);
  record.groundStation = message.groundStation;
  record.address = aircraft.address;
  record.registration = aircraft.registration;
  record.flightId = aircraft.flightId;
}

HfdlReader::HfdlReader(InputFile file, const Encoding& encoding)
    : lines_(std::move(file), kLongestHfdlLine), parser_(encoding, kRecordLines) {}

Result<HfdlReader::Step> HfdlReader::step(std::size_t mostLines) {
  complete_ = false;
  const std::size_t stopAt = lines_.bytesRead() + kStepBytes;
  for (std::size_t read = 0; !atEnd_ && read < mostLines && lines_.bytesRead() < stopAt; ++read) {
    std::string_view line;
    if (!lines_.nextAtHand(line)) {
      const Result<std::optional<std::string_view>> next = lines_.next();
      if (!next) return next.error();
      atEnd_ = !next->has_value();
      line = next->value_or(std::string_view());
    }
    if (atEnd_) {
      parser_.end(*this);
    } else {
      parser_.takeLine(line, *this);
    }
    if (complete_) return Step::record;
  }
  return atEnd_ ? Step::end : Step::pause;
}

void HfdlReader::aircraftEnded(const HfdlMessage& message, const HfdlAircraft& aircraft) {
  fillRecord(record_, message, aircraft);
  complete_ = true;
}

}  // namespace vel
