#pragma once

#include <string>
#include <string_view>

#include "core/text.h"
#include "hfdl/hfdl_lines.h"

namespace vel {

/// What a message is, by its line of that kind.
enum class HfdlKind { none, uplink, downlink, squitter };

/// A message of the formatted log, as far as it has been read. UTF-8; nothing
/// is trimmed.
struct HfdlMessage {
  std::string header;  ///< the whole line; empty before the first one
  HfdlKind kind = HfdlKind::none;
  std::string groundStation;  ///< at most kLongestStationName characters
  bool checkFailed = false;   ///< its "CRC FAILED"
};

/// One aircraft's part of a message.
struct HfdlAircraft {
  std::string address;  ///< ICAO 24-bit address
  std::string registration;
  std::string flightId;
};

/// What a parser tells. Texts live until the call returns. A kind of line that
/// the parser does not want is never told.
class HfdlListener {
 public:
  virtual ~HfdlListener() = default;

  /// A header was read; the message has nothing else yet.
  virtual void messageBegan(const HfdlMessage&) {}
  /// A line with the name of the ground station; empty ones as well.
  virtual void stationNamed(const HfdlMessage&) {}
  /// A line with a list of frequencies, whole.
  virtual void frequenciesAnnounced(const HfdlMessage&, std::string_view /*line*/) {}
  /// One aircraft's part, which has an address, is complete.
  virtual void aircraftEnded(const HfdlMessage&, const HfdlAircraft&) {}
  /// The message is complete; also what stood before the first header.
  virtual void messageEnded(const HfdlMessage&) {}
};

/// Takes the lines of formatted logs in their order and tells a listener what
/// they amount to. Only lines that mean something are decoded.
class HfdlParser {
 public:
  HfdlParser(Encoding encoding, HfdlLines wanted);

  /// One line without its line end, as bytes; gives its kind. What is longer
  /// than kLongestHfdlLine is not looked at.
  HfdlLine takeLine(std::string_view bytes, HfdlListener& listener);

  /// Whole lines with their line ends. The message may go on in the next ones.
  void takeLines(std::string_view lines, HfdlListener& listener);

  /// The log ends: with it the last aircraft's part and the message.
  void end(HfdlListener& listener);

 private:
  HfdlLine take(std::string_view line, HfdlLine kind, HfdlListener& listener);
  void beginMessage(std::string_view header, HfdlListener& listener);
  void endAircraft(HfdlListener& listener);

  Encoding encoding_;
  HfdlLines wanted_;
  std::string decoded_;
  HfdlMessage message_;
  HfdlAircraft aircraft_;
};

}  // namespace vel
