#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "core/job.h"
#include "history/found_messages.h"

namespace vel {

/// Joins lines of what was found into one text, step by step: cells with tabs,
/// lines with LF between them.
class LineCopy : public Job {
 public:
  /// No more lines are copied at once: a clipboard takes a text in one go.
  static constexpr std::size_t kMostLines = 200'000;

  /// By their numbers. `found` outlives the job and only grows meanwhile.
  LineCopy(const FoundMessages& found, std::vector<std::size_t> messages)
      : found_(found), messages_(std::move(messages)) {}

  Result<JobProgress> step(Clock::time_point deadline) override;

  [[nodiscard]] const std::string& text() const { return text_; }
  [[nodiscard]] bool isCut() const { return messages_.size() > kMostLines; }

 private:
  const FoundMessages& found_;
  std::vector<std::size_t> messages_;
  std::size_t next_ = 0;
  std::string text_;
};

}  // namespace vel
