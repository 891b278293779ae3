#include "hfdl/hfdl_parser.h"

#include <utility>

namespace vel {

HfdlParser::HfdlParser(Encoding encoding, HfdlLines wanted)
    : encoding_(std::move(encoding)), wanted_(wanted) {}

HfdlLine HfdlParser::takeLine(std::string_view bytes, HfdlListener& listener) {
  const std::string_view line = bytes.substr(0, kLongestHfdlLine);
  return take(line, kindOf(line, wanted_), listener);
}

HfdlLine HfdlParser::take(std::string_view line, HfdlLine kind, HfdlListener& listener) {
  if (kind == HfdlLine::other) return kind;
  if (!isAscii(line)) {
    // The second byte of a character may look like a letter of a label.
    decoded_ = encoding_.decode(line);
    line = decoded_;
    kind = kindOf(line, wanted_);
  }
  switch (kind) {
    case HfdlLine::header:
      endAircraft(listener);
      listener.messageEnded(message_);
      beginMessage(line, listener);
      break;
    case HfdlLine::subRecordEnd:
      endAircraft(listener);
      break;
    case HfdlLine::downLink:
      message_.kind = HfdlKind::downlink;
      break;
    case HfdlLine::upLink:
      message_.kind = HfdlKind::uplink;
      break;
    case HfdlLine::squitter:
      message_.kind = HfdlKind::squitter;
      break;
    case HfdlLine::groundStation:
      message_.groundStation = Mid(line, kGroundStationColumn, kLongestStationName);
      listener.stationNamed(message_);
      break;
    case HfdlLine::address:
      aircraft_.address = Mid(line, kValueColumn);
      break;
    case HfdlLine::registration:
      aircraft_.registration = Mid(line, kValueColumn);
      break;
    case HfdlLine::flight:
      aircraft_.flightId = Mid(line, kValueColumn);
      break;
    case HfdlLine::crcFailed:
      message_.checkFailed = true;
      break;
    case HfdlLine::frequencies:
      listener.frequenciesAnnounced(message_, line);
      break;
    case HfdlLine::other:
      break;
  }
  return kind;
}

void HfdlParser::takeLines(std::string_view lines, HfdlListener& listener) {
  forEachLine(lines, wanted_, [&](std::string_view line, HfdlLine kind) {
    if (kind == HfdlLine::other) {
      takeLine(line, listener);
    } else {
      take(line.substr(0, kLongestHfdlLine), kind, listener);
    }
  });
}

void HfdlParser::end(HfdlListener& listener) {
  endAircraft(listener);
  listener.messageEnded(message_);
}

void HfdlParser::beginMessage(std::string_view header, HfdlListener& listener) {
  message_.header = header;
  message_.kind = HfdlKind::none;
  message_.groundStation.clear();
  message_.checkFailed = false;
  listener.messageBegan(message_);
}

void HfdlParser::endAircraft(HfdlListener& listener) {
  if (!aircraft_.address.empty()) listener.aircraftEnded(message_, aircraft_);
  aircraft_.address.clear();
  aircraft_.registration.clear();
  aircraft_.flightId.clear();
}

}  // namespace vel
