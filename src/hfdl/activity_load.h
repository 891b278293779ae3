#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file.h"
#include "core/job.h"
#include "core/line_reader.h"
#include "core/result.h"
#include "hfdl/chart_limits.h"
#include "hfdl/hfdl_parser.h"

namespace vel {

/// Messages of each kind in slots of ten minutes. A message whose check failed
/// counts under `failed` instead of under its kind.
struct ActivityCounts {
  static constexpr std::size_t kSlots = 241;
  /// The slot that begins at the reference time; slot 0 is 24 hours earlier.
  /// Only the slots up to this one are drawn.
  static constexpr std::size_t kReferenceSlot = 144;

  std::array<int, kSlots> uplinks{};
  std::array<int, kSlots> squitters{};
  std::array<int, kSlots> downlinks{};
  std::array<int, kSlots> failed{};
  int largestTotal = 0;  ///< of any slot

  [[nodiscard]] int total(std::size_t slot) const {
    return uplinks[slot] + squitters[slot] + downlinks[slot] + failed[slot];
  }

  /// Counts a message; false for one of no kind, which counts nowhere.
  bool add(const HfdlMessage& message, std::size_t slot);
};

/// The reference time of the option "Current": the present minute.
[[nodiscard]] std::chrono::local_seconds currentReference(std::chrono::local_seconds now);

/// The reference time of the other option: the end of the day that the log's
/// name begins with. Nothing when the name holds no day.
[[nodiscard]] std::optional<std::chrono::local_seconds> dayReference(std::string_view logName);

/// The slot of a moment, or nothing when it lies outside the table.
[[nodiscard]] std::optional<std::size_t> slotOf(std::chrono::local_seconds moment,
                                                std::chrono::local_seconds reference);

/// What a load counts.
struct ActivityQuery {
  /// Nothing: the end of the day of the first message that has one.
  std::optional<std::chrono::local_seconds> reference;
  /// Nothing counts all stations ("ALL"), else only messages of this one.
  std::optional<std::string> station;
};

/// A station of a log and how many of its messages are drawn.
struct StationTotal {
  std::string name;  ///< as it stands in the log (with a blank in front)
  int messages = 0;
  friend bool operator==(const StationTotal&, const StationTotal&) = default;
};

/// fmtDataLoad: counts the messages of one formatted log.
class ActivityLoad : public Job, private HfdlListener {
 public:
  ActivityLoad(InputFile file, const Encoding& encoding, ActivityQuery query);

  /// A file that cannot be read any further gives the error; the counts so far
  /// stand.
  Result<JobProgress> step(Clock::time_point deadline) override;

  /// Of the wanted station; of all where none is wanted or the log does not
  /// have it among its stations.
  [[nodiscard]] const ActivityCounts& counts() const;

  /// The index of the wanted station; nothing where all are counted.
  [[nodiscard]] std::optional<std::size_t> countedStation() const;

  /// In order of first appearance; at most kMostStations.
  [[nodiscard]] const std::vector<StationTotal>& stations() const { return stations_; }

  /// The reference time; before the first dated message perhaps nothing.
  [[nodiscard]] std::optional<std::chrono::local_seconds> reference() const {
    return query_.reference;
  }

  /// How many stations there is no place for, told after the load; or empty.
  [[nodiscard]] std::string excessText() const { return excessMessage(excess_.count(), 0); }

 private:
  Status readSome();
  void stationNamed(const HfdlMessage& message) override;
  void messageEnded(const HfdlMessage& message) override;
  [[nodiscard]] std::optional<std::size_t> placeOf(std::string_view station) const;

  LineReader lines_;
  HfdlParser parser_;
  ActivityQuery query_;
  std::vector<StationTotal> stations_;
  Excess excess_;
  ActivityCounts all_;
  ActivityCounts wanted_;  // of the wanted station
  bool atEnd_ = false;
};

}  // namespace vel
