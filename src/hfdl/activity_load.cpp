#include "hfdl/activity_load.h"

#include <algorithm>
#include <utility>

#include "core/text.h"

namespace vel {
namespace {

constexpr HfdlLines kCountedLines{HfdlLine::header,   HfdlLine::downLink,      HfdlLine::upLink,
                                  HfdlLine::squitter, HfdlLine::groundStation, HfdlLine::crcFailed};

constexpr std::size_t kPieceLines = 4000;
constexpr std::size_t kPieceBytes = std::size_t{1} << 18;

}  // namespace

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

ActivityLoad::ActivityLoad(InputFile file, const Encoding& encoding, ActivityQuery query)
    : lines_(std::move(file), kLongestHfdlLine),
      parser_(encoding, kCountedLines),
      query_(std::move(query)) {}

Result<JobProgress> ActivityLoad::step(Clock::time_point deadline) {
  do {
    const Status read = readSome();
    if (!read) return read.error();
  } while (!atEnd_ && Clock::now() < deadline);
  return atEnd_ ? JobProgress::done : JobProgress::more;
}

// So much that looking at the clock costs nothing, and a window does not wait.
Status ActivityLoad::readSome() {
  const std::size_t stopAt = lines_.bytesRead() + kPieceBytes;
  for (std::size_t read = 0; read < kPieceLines && lines_.bytesRead() < stopAt; ++read) {
    std::string_view line;
    if (!lines_.nextAtHand(line)) {
      const Result<std::optional<std::string_view>> next = lines_.next();
      if (!next) return next.error();
      if (!next->has_value()) {
        parser_.end(*this);
        atEnd_ = true;
        return {};
      }
      line = **next;
    }
    parser_.takeLine(line, *this);
  }
  return {};
}

const ActivityCounts& ActivityLoad::counts() const { return countedStation() ? wanted_ : all_; }

std::optional<std::size_t> ActivityLoad::countedStation() const {
  return query_.station ? placeOf(*query_.station) : std::nullopt;
}

void ActivityLoad::stationNamed(const HfdlMessage& message) {
  // A station without a name would be an entry that nobody can tell from none.
  if (Trim(message.groundStation).empty() || placeOf(message.groundStation)) return;
  if (stations_.size() < kMostStations) {
    stations_.push_back({message.groundStation});
  } else {
    excess_.add(message.groundStation);
  }
}

void ActivityLoad::messageEnded(const HfdlMessage& message) {
  if (message.header.empty()) return;
  const std::optional<local_seconds> moment = momentOf(chartTimeStamp(message.header));
  if (!moment) return;
  if (!query_.reference) {
    query_.reference = floor<std::chrono::days>(*moment) + std::chrono::days(1);
  }
  const std::optional<std::size_t> slot = slotOf(*moment, *query_.reference);
  if (!slot || !all_.add(message, *slot)) return;
  if (query_.station == message.groundStation) wanted_.add(message, *slot);
  const std::optional<std::size_t> station = placeOf(message.groundStation);
  if (station && *slot <= ActivityCounts::kReferenceSlot) ++stations_[*station].messages;
}

std::optional<std::size_t> ActivityLoad::placeOf(std::string_view station) const {
  const auto found = std::find_if(stations_.begin(), stations_.end(),
                                  [&](const StationTotal& each) { return each.name == station; });
  if (found == stations_.end()) return std::nullopt;
  return static_cast<std::size_t>(found - stations_.begin());
}

bool ActivityCounts::add(const HfdlMessage& message, std::size_t slot) {
  if (message.checkFailed) {
    ++failed[slot];
  } else if (message.kind == HfdlKind::uplink) {
    ++uplinks[slot];
  } else if (message.kind == HfdlKind::squitter) {
    ++squitters[slot];
  } else if (message.kind == HfdlKind::downlink) {
    ++downlinks[slot];
  } else {
    return false;
  }
  largestTotal = std::max(largestTotal, total(slot));
  return true;
}

}  // namespace vel
