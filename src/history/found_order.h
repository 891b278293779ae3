#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/job.h"
#include "history/found_messages.h"

namespace vel {

/// Which of the found messages a list shows.
struct FoundFilter {
  /// Messages whose column shows just this text.
  struct Value {
    int column;
    std::string text;
  };
  std::vector<Value> values = {};
  std::optional<std::chrono::local_days> firstDay = {};  ///< with lastDay: only these days
  std::optional<std::chrono::local_days> lastDay = {};
  std::optional<int> hour = {};

  [[nodiscard]] bool isEmpty() const { return values.empty() && !firstDay && !hour; }
  [[nodiscard]] bool passes(const FoundMessages& found, std::size_t index) const;
};

/// How the list is sorted; column -1 is the order of finding.
struct FoundSort {
  int column = -1;
  bool descending = false;
};

/// A message in the shown order, with as much of its sort text as fits a number.
struct FoundPlace {
  std::uint64_t key;
  std::uint32_t index;
  bool longer;  // the sort text goes on behind the key
};

/// Tells which of two messages stands before the other.
class FoundOrder {
 public:
  FoundOrder(const FoundMessages& found, FoundSort sort) : found_(found), sort_(sort) {}

  [[nodiscard]] FoundPlace placeOf(std::size_t index) const;
  [[nodiscard]] bool operator()(const FoundPlace& left, const FoundPlace& right) const;
  [[nodiscard]] bool isSorted() const { return sort_.column >= 0; }

 private:
  const FoundMessages& found_;
  FoundSort sort_;
};

/// Filters and sorts all that has been found, in pieces short enough for a
/// window to stay responsive. `found` outlives the job; what is added to it
/// after the job's start is left out.
class FoundOrdering : public Job {
 public:
  FoundOrdering(const FoundMessages& found, FoundFilter filter, FoundSort sort);

  Result<JobProgress> step(Clock::time_point deadline) override;

  /// The shown order, once done.
  [[nodiscard]] std::vector<FoundPlace> takeOrder() { return std::move(places_); }
  /// So many messages were looked at.
  [[nodiscard]] std::size_t looked() const { return total_; }

 private:
  void look();
  void sortRun();
  void mergeRuns();

  const FoundMessages& found_;
  FoundFilter filter_;
  FoundOrder order_;
  std::size_t total_;
  std::size_t next_ = 0;
  std::size_t sorted_ = 0;   // places in sorted runs
  std::size_t runSize_ = 0;  // of sorted runs
  std::size_t mergeAt_ = 0;
  std::vector<FoundPlace> places_;
  std::vector<FoundPlace> merged_;
};

}  // namespace vel
