#include "hfdl/activity_load.h"

#include <algorithm>
#include <utility>

namespace vel {

using std::chrono::floor;
using std::chrono::local_days;
using std::chrono::local_seconds;
using std::chrono::minutes;

local_seconds currentReference(local_seconds now) { return floor<minutes>(now); }

std::optional<local_seconds> dayReference(std::string_view logName) {
  const std::optional<local_days> day = dayOfName(logName);
  if (!day) return std::nullopt;
  return *day + std::chrono::days(1);
}

std::optional<std::size_t> slotOf(local_seconds moment, local_seconds reference) {
  constexpr auto kDay = std::chrono::days(1);
  using Slot = std::chrono::duration<std::int64_t, std::ratio<600>>;
  const auto slot = floor<Slot>(moment - (reference - kDay)).count();
  if (slot < 0 || slot >= static_cast<std::int64_t>(ActivityCounts::kSlots)) return std::nullopt;
  return static_cast<std::size_t>(slot);
}

ActivityLoad::ActivityLoad(InputFile file, const Encoding& encoding, ActivityQuery query,
                           std::vector<std::string> stations)
    : lines_(std::move(file), kLongestHfdlLine),
      text_(encoding),
      query_(std::move(query)),
      stations_(std::move(stations)) {}

Result<bool> ActivityLoad::step() {
  const std::size_t stopAt = lines_.bytesRead() + kStepBytes;
  for (std::size_t read = 0; !atEnd_ && read < kStepLines && lines_.bytesRead() < stopAt; ++read) {
    const Result<std::optional<std::string_view>> line = lines_.next();
    if (!line) return line.error();
    if (line->has_value()) {
      take(text_.of(**line));
    } else {
      finishMessage();
      atEnd_ = true;
    }
  }
  return !atEnd_;
}

void ActivityLoad::take(std::string_view line) {
  if (hasLabel(line, kHeaderMark)) {
    finishMessage();
    beginMessage(line);
  } else if (line == kDownLink) {
    message_.kind = Kind::downlink;
  } else if (line == kUpLink) {
    message_.kind = Kind::uplink;
  } else if (line == kSquitter) {
    message_.kind = Kind::squitter;
  } else if (hasLabel(line, kGroundStationLabel)) {
    message_.station = Mid(line, kGroundStationColumn, kLongestStationName);
    enterStation(message_.station);
  } else if (hasLabel(line, kCrcFailedLabel)) {
    message_.failed = true;
  }
}

void ActivityLoad::beginMessage(std::string_view header) {
  message_ = Message{};
  message_.moment = momentOf(chartTimeStamp(header));
  if (message_.moment && !query_.reference) {
    query_.reference = floor<std::chrono::days>(*message_.moment) + std::chrono::days(1);
  }
}

void ActivityLoad::finishMessage() {
  if (!message_.moment) return;
  if (query_.station && *query_.station != message_.station) return;
  const std::optional<std::size_t> slot = slotOf(*message_.moment, *query_.reference);
  if (!slot) return;
  if (message_.failed) {
    ++counts_.failed[*slot];
  } else if (message_.kind == Kind::uplink) {
    ++counts_.uplinks[*slot];
  } else if (message_.kind == Kind::squitter) {
    ++counts_.squitters[*slot];
  } else if (message_.kind == Kind::downlink) {
    ++counts_.downlinks[*slot];
  }
  counts_.largestTotal = std::max(counts_.largestTotal, counts_.total(*slot));
}

void ActivityLoad::enterStation(const std::string& name) {
  // A station without a name would be an entry that nobody can tell from none.
  if (Trim(name).empty()) return;
  if (std::find(stations_.begin(), stations_.end(), name) != stations_.end()) return;
  if (stations_.size() < kMostStations) {
    stations_.push_back(name);
  } else {
    excess_.add(name);
  }
}

}  // namespace vel
