#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "core/job.h"
#include "core/text.h"
#include "history/found_messages.h"
#include "history/log_blocks.h"
#include "history/message_match.h"

namespace vel {

/// Finds out which line of its log's list a found message is: reads the log up
/// to it.
class LogPlace : public Job {
 public:
  LogPlace(std::filesystem::path file, HistorySource source, std::uint64_t offset,
           const Encoding& encoding);

  /// An Error when the log cannot be read.
  Result<JobProgress> step(Clock::time_point deadline) override;

  /// The 0-based row of the unfiltered list, or of the messages that the raw
  /// viewer shows; nothing when the log has no message there any more.
  [[nodiscard]] std::optional<std::size_t> row() const { return row_; }

 private:
  void countList(std::string_view block);
  void countHfdl(std::string_view block);
  void countRaw(std::string_view block);

  std::filesystem::path file_;
  HistorySource source_;
  std::uint64_t offset_;
  Encoding encoding_;
  HfdlParts parts_;
  bool isOpen_ = false;
  LogBlocks blocks_;
  std::size_t rows_ = 0;
  std::optional<std::size_t> row_;
};

}  // namespace vel
