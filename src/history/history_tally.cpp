#include "history/history_tally.h"

#include <algorithm>

namespace vel {

void NameCounts::add(std::string_view name, std::size_t count) {
  if (name.empty()) return;
  const auto found = counts_.find(name);
  if (found != counts_.end()) {
    found->second += count;
  } else {
    counts_.emplace(name, count);
  }
}

std::size_t NameCounts::of(std::string_view name) const {
  const auto found = counts_.find(name);
  return found == counts_.end() ? 0 : found->second;
}

std::vector<std::pair<std::string, std::size_t>> NameCounts::mostFirst(std::size_t most) const {
  // Of many names only a few are asked for: the others are not copied.
  std::vector<const std::pair<const std::string, std::size_t>*> names;
  names.reserve(counts_.size());
  for (const auto& name : counts_) names.push_back(&name);
  const std::size_t count = std::min(most, names.size());
  std::partial_sort(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(count), names.end(),
                    [](const auto* left, const auto* right) {
                      return left->second != right->second ? left->second > right->second
                                                           : left->first < right->first;
                    });
  std::vector<std::pair<std::string, std::size_t>> first;
  first.reserve(count);
  for (std::size_t i = 0; i < count; ++i) first.emplace_back(*names[i]);
  return first;
}

void HistoryTally::countNew(const FoundMessages& found) {
  for (; counted_ < found.size(); ++counted_) {
    const std::size_t index = counted_;
    if (const auto day = found.day(index)) {
      ++days_[*day];
      // Most days hold many messages: only the ends are ever written out.
      if (day == days_.begin()->first || day == days_.rbegin()->first) {
        stamp_ = dayText(*day);
        stamp_ += ' ';
        stamp_ += found.text(index, kFoundTime);
        if (firstHeard_.empty() || stamp_ < firstHeard_) firstHeard_ = stamp_;
        if (stamp_ > lastHeard_) lastHeard_ = stamp_;
      }
    }
    if (const auto hour = found.hour(index)) ++hours_[static_cast<std::size_t>(*hour)];
    flights_.add(found.text(index, kFoundFlight));
    aircraft_.add(found.text(index, kFoundRegistration));
    const std::string_view from = found.text(index, kFoundFrom);
    const std::string_view to = found.text(index, kFoundTo);
    if (!from.empty() && !to.empty()) {
      stamp_.assign(from).append("-").append(to);
      routes_.add(stamp_);
    }
  }
}

void HistoryTally::clear() { *this = HistoryTally(); }

}  // namespace vel
