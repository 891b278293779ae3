#include "history/line_copy.h"

#include <algorithm>

namespace vel {

Result<JobProgress> LineCopy::step(Clock::time_point deadline) {
  constexpr std::size_t kLinesAtOnce = 64;
  const std::size_t end = std::min(messages_.size(), kMostLines);
  while (next_ < end) {
    for (std::size_t i = 0; i < kLinesAtOnce && next_ < end; ++i, ++next_) {
      if (next_ > 0) text_ += '\n';
      for (int column = 0; column < kFoundColumns; ++column) {
        if (column > 0) text_ += '\t';
        text_ += found_.cell(messages_[next_], column);
      }
    }
    if (Clock::now() >= deadline) break;
  }
  return next_ < end ? JobProgress::more : JobProgress::done;
}

}  // namespace vel
