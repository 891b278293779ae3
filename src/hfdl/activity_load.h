#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file.h"
#include "core/line_reader.h"
#include "core/result.h"
#include "core/text.h"
#include "hfdl/chart_limits.h"
#include "hfdl/hfdl_lines.h"

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
  /// Nothing: the end of the day of the first header that has one.
  std::optional<std::chrono::local_seconds> reference;
  /// Nothing counts all stations ("ALL"), else only messages of this one.
  std::optional<std::string> station;
};

/// fmtDataLoad: counts the messages of one formatted log, piece by piece, so
/// that window events can run between the pieces.
class ActivityLoad {
 public:
  /// Lines and bytes after which a step pauses: some milliseconds at most.
  static constexpr std::size_t kStepLines = 20000;
  static constexpr std::size_t kStepBytes = std::size_t{1} << 20;

  /// `stations` are those that the chooser has already, beside "ALL".
  ActivityLoad(InputFile file, const Encoding& encoding, ActivityQuery query,
               std::vector<std::string> stations = {});

  /// Reads on; false when the whole log has been counted. A file that cannot
  /// be read any further gives the error; the counts so far stand.
  Result<bool> step();

  [[nodiscard]] const ActivityCounts& counts() const { return counts_; }

  /// The stations in order of first appearance, as they stand in the log (with
  /// a blank in front); at most kMostStations.
  [[nodiscard]] const std::vector<std::string>& stations() const { return stations_; }

  /// The reference time; before the first dated header perhaps nothing.
  [[nodiscard]] std::optional<std::chrono::local_seconds> reference() const {
    return query_.reference;
  }

  /// How many stations there is no place for, told after the load; or empty.
  [[nodiscard]] std::string excessText() const { return excessMessage(excess_.count(), 0); }

 private:
  enum class Kind { none, uplink, squitter, downlink };

  struct Message {
    std::optional<std::chrono::local_seconds> moment;
    Kind kind = Kind::none;
    bool failed = false;
    std::string station;
  };

  void take(std::string_view line);
  void beginMessage(std::string_view header);
  void finishMessage();
  void enterStation(const std::string& name);

  LineReader lines_;
  LineText text_;
  ActivityQuery query_;
  std::vector<std::string> stations_;
  Excess excess_;
  ActivityCounts counts_;
  Message message_;
  bool atEnd_ = false;
};

}  // namespace vel
