#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hfdl/chart_limits.h"
#include "hfdl/hfdl_parser.h"

namespace vel {

/// Which frequencies the ground stations announced, and when: at most 31
/// stations with 11 frequencies and 10,001 time points each. What there is no
/// place for is left out and counted; time points past the table overwrite its
/// last cell.
class FrequencyTables : private HfdlListener {
 public:
  static constexpr std::size_t kLastTimePoint = 10000;
  /// From this many time points of one station on, the load has overflowed.
  static constexpr std::size_t kOverflow = 10000;
  /// A moment that no time stamp has.
  static constexpr std::chrono::local_seconds kNoMoment = std::chrono::local_seconds::min();

  explicit FrequencyTables(const Encoding& encoding);

  void clear();

  /// readFMTlog: takes whole lines of a formatted log, as bytes with their line
  /// ends. The time stamp of the last header holds on into the next call.
  void readLines(std::string_view lines);

  /// The number of the station, entered if need be, or nothing when all
  /// numbers are taken.
  std::optional<std::size_t> enterStation(std::string_view name);

  /// The index of the time stamp among the station's, at most kLastTimePoint.
  std::size_t enterTimePoint(std::size_t station, std::string_view timeStamp);

  /// Enters one frequency that the station announced at that time point.
  void addFrq2Ary(std::size_t station, std::string_view frequency, std::size_t timePoint);

  [[nodiscard]] std::size_t stationCount() const { return stations_.size(); }
  [[nodiscard]] const std::string& stationName(std::size_t station) const {
    return stations_[station].name;
  }

  /// Different time stamps of a station; those past the table count as well.
  [[nodiscard]] std::size_t timePointCount(std::size_t station) const {
    return stations_[station].timePointCount;
  }
  [[nodiscard]] std::size_t largestTimePointCount() const;
  [[nodiscard]] std::string timePoint(std::size_t station, std::size_t index) const;

  [[nodiscard]] const std::vector<std::string>& frequencies(std::size_t station) const {
    return stations_[station].frequencies;
  }

  /// One character for each frequency of the station, first one first, filled
  /// up with blanks to ten: "1" where it was announced at that time point.
  [[nodiscard]] std::string marks(std::size_t station, std::size_t index) const;

  /// A time point as the chart draws it.
  struct Point {
    std::chrono::local_seconds moment;  ///< kNoMoment where the stamp is none
    std::uint32_t marks;                ///< bit n stands for frequency n
  };
  [[nodiscard]] const std::vector<Point>& points(std::size_t station) const {
    return stations_[station].points;
  }

  [[nodiscard]] bool overflowed() const { return overflowed_; }
  /// Stations, and frequencies of entered stations, that were left out.
  [[nodiscard]] std::size_t excessStations() const { return excessStations_.count(); }
  [[nodiscard]] std::size_t excessFrequencies() const { return excessFrequencies_.count(); }

 private:
  // A time stamp as a number. One of the usual form, yyyy/mm/dd hh:mm:ss, is
  // its digits, so that stamps in order of time are numbers in order.
  using StampKey = std::uint64_t;

  struct Station {
    std::string name;
    std::vector<std::string> frequencies;
    std::size_t timePointCount = 0;
    std::vector<Point> points;
    std::vector<StampKey> keys;                             // of the points
    std::vector<std::pair<StampKey, std::uint16_t>> order;  // keys with their index, sorted
    std::map<StampKey, std::string> otherStamps;            // texts of keys that are no digits
  };

  struct Stamp {
    std::string text;
    StampKey key;
    std::chrono::local_seconds moment;
  };

  // What a frequency line that was seen before comes to: a station repeats its
  // few lists all day long. Small, and the texts lie side by side: all of it
  // shares the processor's cache with the log that is read.
  struct KnownLine {
    static constexpr std::uint8_t kNoStation = 0xFF;
    std::uint32_t textAt = 0;  // in knownTexts_
    std::uint32_t marks = 0;
    std::uint8_t textSize = 0;
    std::uint8_t station = kNoStation;
    bool isUsual = false;  // begins as usual, which its text leaves out
  };
  static_assert(kMostStations < KnownLine::kNoStation);

  static Stamp stampOf(std::string timeStamp);
  void messageBegan(const HfdlMessage& message) override;
  void frequenciesAnnounced(const HfdlMessage& message, std::string_view line) override;
  std::uint16_t& knownPlace(std::string_view text, bool isUsual);
  KnownLine enterFrequencies(std::string_view line, const Stamp& stamp);
  std::size_t enterStamp(Station& station, const Stamp& stamp);
  std::optional<std::size_t> enterFrequency(std::size_t station, std::string_view frequency);

  Encoding encoding_;
  HfdlParser parser_;
  std::vector<Station> stations_;
  std::vector<KnownLine> knownLines_;
  std::string knownTexts_;
  std::vector<std::uint16_t> knownPlaces_;  // by hash: 1 + index of a known line, or 0
  std::optional<Stamp> stamp_;              // of the message, once it is needed
  bool overflowed_ = false;
  Excess excessStations_;
  Excess excessFrequencies_;
};

}  // namespace vel
