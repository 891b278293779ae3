#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.h"
#include "velweb/positions.h"
#include "web/raw_log.h"

namespace vel {

/// One position report of a raw log. Texts are UTF-8.
struct TrackPoint {
  Position position;
  /// Local time of reception as yyyy-mm-ddThh:mm:ss; empty when the header has none.
  std::string time;
  std::string flight;
  std::string registration;
  std::string label;
};

/// The date and time in a receive header ("2026/11/20 01:00:11 131.450MHz"),
/// as TrackPoint::time has it; empty when there is none.
[[nodiscard]] std::string timeOfHeader(std::string_view header);

/// The position report in a message, or nothing.
[[nodiscard]] std::optional<TrackPoint> trackPointOf(const RawMessage& message);

/// What a raw log gave.
struct Track {
  std::vector<TrackPoint> points;  ///< in the order of the log
  std::size_t messages = 0;        ///< messages read, with a position or without
  std::size_t leftOut = 0;         ///< positions beyond kMostTrackPoints
};

/// The viewer sends 10,001 lines at most; more positions than this are counted
/// and left out, so that no posted text can make a document without limit.
constexpr std::size_t kMostTrackPoints = 20'000;

/// A KML 2.2 document: one placemark for each position report, then one line
/// through all of them. Valid UTF-8, everything from the log escaped.
[[nodiscard]] std::string kmlDocument(const Track& track);

/// Turns the bytes of a raw log, in pieces of any size, into a Track. Holds
/// one line at most beside the points.
class TrackReader {
 public:
  explicit TrackReader(Encoding encoding) : encoding_(std::move(encoding)) {}

  void add(std::string_view bytes);

  /// What was read, the last line included even without a line end.
  [[nodiscard]] Track finish();

 private:
  void readLine(std::string_view line);

  Encoding encoding_;
  std::string line_;
  Track track_;
};

}  // namespace vel
