#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace vel {

/// A text that marks a line wherever it occurs in it. `anchor` is the index of
/// the byte by which it is found fastest: one that few lines have.
struct LineLabel {
  std::string_view text;
  std::size_t anchor;
};

constexpr LineLabel kHeaderMark{"------------------------[", 24};
constexpr LineLabel kGroundStationLabel{"  GS NAME         =", 18};
constexpr LineLabel kAddressLabel{"ICAO24 ADDRESS = ", 15};
constexpr LineLabel kRegistrationLabel{"REGISTRATION   = ", 15};
constexpr LineLabel kFlightLabel{"FLIGHT ID      = ", 15};
constexpr LineLabel kCrcFailedLabel{"   CRC FAILED", 5};
constexpr LineLabel kFrequenciesLabel{"FREQUENCIES    = [", 17};

/// True when the label occurs in the line, letter case included.
[[nodiscard]] bool hasLabel(std::string_view line, const LineLabel& label);

/// What a line of the formatted log says; docs/formats/hfdl_log.md. A line is of
/// the first kind, in this order, whose test it passes.
enum class HfdlLine : std::uint8_t {
  header,
  subRecordEnd,
  downLink,
  upLink,
  squitter,
  groundStation,
  address,
  registration,
  flight,
  crcFailed,
  frequencies,
  other,
};

/// Some kinds of lines: those that mean something to a reader. To it, all
/// others are `other`.
class HfdlLines {
 public:
  constexpr HfdlLines(std::initializer_list<HfdlLine> kinds) {
    for (const HfdlLine kind : kinds) bits_ |= bitOf(kind);
  }
  [[nodiscard]] constexpr bool has(HfdlLine kind) const { return (bits_ & bitOf(kind)) != 0; }

 private:
  static constexpr unsigned bitOf(HfdlLine kind) { return 1U << static_cast<unsigned>(kind); }
  unsigned bits_ = 0;
};

/// The kind of a line without its line end.
[[nodiscard]] HfdlLine kindOf(std::string_view line, HfdlLines wanted);

/// Calls `take` with each line (without its line end) of a text of whole lines
/// that may be of a wanted kind, and with its kind where that is plain already,
/// else `other`.
void forEachLine(std::string_view lines, HfdlLines wanted,
                 const std::function<void(std::string_view line, HfdlLine kind)>& take);

/// 1-based columns where values begin, in characters.
constexpr std::size_t kGroundStationColumn = 20;
constexpr std::size_t kValueColumn = 21;

/// The longest line that is looked at, in bytes; the rest of one is skipped.
constexpr std::size_t kLongestHfdlLine = std::size_t{1} << 16;

/// The longest ground-station name that is kept, in characters. It stands once
/// in a message and is repeated in each of its records.
constexpr std::size_t kLongestStationName = 256;

/// The time stamp of a list line from its header line: the ten characters behind
/// the bracket of the header mark, a blank, and the first eight of the last nine
/// characters. A line that is too short gives a shorter one.
[[nodiscard]] std::string listTimeStamp(std::string_view header);

/// The time stamp that the charts read: the same, but "0:00:00" where the time
/// does not hold two colons.
[[nodiscard]] std::string chartTimeStamp(std::string_view header);

/// The moment of a text yyyy/mm/dd h:mm:ss (one or two digits for all but the
/// year), or nothing when it is no moment.
[[nodiscard]] std::optional<std::chrono::local_seconds> momentOf(std::string_view timeStamp);

/// A day as yyyymmdd, the way it begins the name of its log.
[[nodiscard]] std::string dayDigits(std::chrono::local_days day);

/// The day whose eight digits begin the text, or nothing.
[[nodiscard]] std::optional<std::chrono::local_days> dayOfName(std::string_view name);

/// hh:mm of a moment.
[[nodiscard]] std::string hourAndMinute(std::chrono::local_seconds moment);

}  // namespace vel
