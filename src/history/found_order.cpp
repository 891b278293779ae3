#include "history/found_order.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vel {
namespace {

constexpr std::size_t kPiece = 4096;
constexpr std::size_t kRun = 1 << 14;
// Places that are merged between two looks at the clock.
constexpr std::size_t kMergedAtOnce = 1 << 14;

// Seconds of a time h:mm:ss; times that are none come first.
std::uint32_t secondsOf(std::string_view time) {
  std::uint32_t part = 0;
  std::uint32_t seconds = 0;
  int colons = 0;
  for (const char c : time) {
    if (c == ':' && colons < 2) {
      seconds = (seconds + part) * 60;
      part = 0;
      ++colons;
    } else if (c >= '0' && c <= '9' && part < 100) {
      part = part * 10 + static_cast<std::uint32_t>(c - '0');
    } else {
      return 0;
    }
  }
  return colons == 2 ? seconds + part : 0;
}

}  // namespace

bool FoundFilter::passes(const FoundMessages& found, std::size_t index) const {
  if (firstDay && lastDay) {
    const auto day = found.day(index);
    if (!day || *day < *firstDay || *day > *lastDay) return false;
  }
  if (hour && found.hour(index) != hour) return false;
  return std::all_of(values.begin(), values.end(), [&](const Value& value) {
    if (value.column == kFoundDate || value.column == kFoundSource) {
      return found.cell(index, value.column) == value.text;
    }
    return found.text(index, value.column) == value.text;
  });
}

FoundPlace FoundOrder::placeOf(std::size_t index) const {
  FoundPlace place{0, static_cast<std::uint32_t>(index), false};
  if (!isSorted()) return place;
  if (sort_.column == kFoundDate) {
    const auto day = found_.day(index);
    const std::int64_t number = day ? day->time_since_epoch().count() : -(std::int64_t{1} << 31);
    place.key = static_cast<std::uint64_t>(number + (std::int64_t{1} << 31)) << 32 |
                secondsOf(found_.text(index, kFoundTime));
    return place;
  }
  const std::string_view text = sort_.column == kFoundSource
                                    ? std::string_view(nameOf(found_.log(index).source))
                                    : found_.text(index, sort_.column);
  for (std::size_t i = 0; i < sizeof place.key; ++i) {
    const auto byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    place.key = place.key << 8 | byte;
  }
  place.longer = text.size() > sizeof place.key;
  return place;
}

bool FoundOrder::operator()(const FoundPlace& left, const FoundPlace& right) const {
  if (left.key != right.key) return (left.key < right.key) != sort_.descending;
  if (left.longer || right.longer) {
    const int order =
        found_.text(left.index, sort_.column).compare(found_.text(right.index, sort_.column));
    if (order != 0) return (order < 0) != sort_.descending;
  }
  return left.index < right.index;
}

FoundOrdering::FoundOrdering(const FoundMessages& found, FoundFilter filter, FoundSort sort)
    : found_(found), filter_(std::move(filter)), order_(found, sort), total_(found.size()) {}

void FoundOrdering::look() {
  const std::size_t end = std::min(next_ + kPiece, total_);
  for (; next_ < end; ++next_) {
    if (filter_.passes(found_, next_)) places_.push_back(order_.placeOf(next_));
  }
}

void FoundOrdering::sortRun() {
  const std::size_t end = std::min(sorted_ + kRun, places_.size());
  std::sort(places_.begin() + static_cast<std::ptrdiff_t>(sorted_),
            places_.begin() + static_cast<std::ptrdiff_t>(end), order_);
  sorted_ = end;
  runSize_ = kRun;
}

// Merges on: two neighbouring runs become one in the other store.
void FoundOrdering::mergeRuns() {
  // The place within the merged run tells by itself how far both runs were
  // taken: found again by a search, so that nothing more has to be kept.
  const std::size_t pair = mergeAt_ / (2 * runSize_) * 2 * runSize_;
  const std::size_t middle = std::min(pair + runSize_, places_.size());
  const std::size_t end = std::min(pair + 2 * runSize_, places_.size());
  const std::size_t taken = mergeAt_ - pair;
  // How many of the first `taken` came from the left run.
  std::size_t low = taken > end - middle ? taken - (end - middle) : 0;
  std::size_t high = std::min(taken, middle - pair);
  while (low < high) {
    const std::size_t left = (low + high) / 2;
    if (order_(places_[pair + left], places_[middle + (taken - left) - 1])) {
      low = left + 1;
    } else {
      high = left;
    }
  }
  std::size_t left = pair + low;
  std::size_t right = middle + (taken - low);
  const std::size_t stop = std::min(mergeAt_ + kMergedAtOnce, end);
  for (; mergeAt_ < stop; ++mergeAt_) {
    const bool takeLeft = right == end || (left < middle && order_(places_[left], places_[right]));
    merged_.push_back(places_[takeLeft ? left++ : right++]);
  }
  if (mergeAt_ < places_.size()) return;
  places_.swap(merged_);
  merged_.clear();
  mergeAt_ = 0;
  runSize_ *= 2;
}

Result<JobProgress> FoundOrdering::step(Clock::time_point deadline) {
  do {
    if (next_ < total_) {
      look();
    } else if (order_.isSorted() && sorted_ < places_.size()) {
      sortRun();
    } else if (order_.isSorted() && runSize_ < places_.size()) {
      merged_.reserve(places_.size());
      mergeRuns();
    } else {
      return JobProgress::done;
    }
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

}  // namespace vel
