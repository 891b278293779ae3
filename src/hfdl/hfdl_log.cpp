#include "hfdl/hfdl_log.h"

#include "log/dated_logs.h"

namespace vel {

std::vector<std::string> hfdlLogs(const Folders& folders) {
  return datedLogs(folders.logs, kHfdlLogSuffix);
}

HfdlReader::HfdlReader(InputFile file, const Encoding& encoding)
    : lines_(std::move(file), kLongestHfdlLine), text_(encoding) {}

Result<HfdlReader::Step> HfdlReader::step(std::size_t mostLines) {
  const std::size_t stopAt = lines_.bytesRead() + kStepBytes;
  for (std::size_t read = 0; !atEnd_ && read < mostLines && lines_.bytesRead() < stopAt; ++read) {
    const Result<std::optional<std::string_view>> line = lines_.next();
    if (!line) return line.error();
    if (!line->has_value()) {
      atEnd_ = true;
      if (emitCurrent()) return Step::record;
      break;
    }
    ++linesRead_;
    if (take(text_.of(**line))) return Step::record;
  }
  return atEnd_ ? Step::end : Step::pause;
}

// True when the line completes a record.
bool HfdlReader::take(std::string_view line) {
  if (hasLabel(line, kHeaderMark)) {
    const bool complete = emitCurrent();
    beginMessage(line);
    return complete;
  }
  if (line == kSubRecordEnd) {
    const bool complete = emitCurrent();
    current_.address.clear();
    current_.registration.clear();
    current_.flightId.clear();
    return complete;
  }
  if (line == kDownLink) {
    current_.direction.assign(1, 'D');
  } else if (line == kUpLink) {
    current_.direction.assign(1, 'U');
  } else if (hasLabel(line, kGroundStationLabel)) {
    current_.groundStation = Mid(line, kGroundStationColumn, kLongestStationName);
  } else if (hasLabel(line, kAddressLabel)) {
    current_.address = Mid(line, kValueColumn);
  } else if (hasLabel(line, kRegistrationLabel)) {
    current_.registration = Mid(line, kValueColumn);
  } else if (hasLabel(line, kFlightLabel)) {
    current_.flightId = Mid(line, kValueColumn);
  }
  return false;
}

bool HfdlReader::emitCurrent() {
  if (current_.address.empty()) return false;
  record_ = current_;
  return true;
}

void HfdlReader::beginMessage(std::string_view header) {
  current_ = HfdlRecord{};
  current_.tag = Left(header, 3);
  current_.timeStamp = listTimeStamp(header);
}

}  // namespace vel
