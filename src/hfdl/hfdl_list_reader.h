#pragma once

#include "core/file.h"
#include "core/text.h"
#include "hfdl/hfdl_log.h"
#include "log/log_reader.h"
#include "tables/tables.h"

namespace vel {

/// Reads a formatted log into list rows: every record is joined with the tables
/// afresh, the photo folder is looked at afresh in every step. Rows hold
/// columns 1 to 11 in UTF-8, separated by kHfdlSeparator.
class HfdlListReader : public LogReader {
 public:
  /// Tables and photos outlive the reader.
  HfdlListReader(InputFile file, const Encoding& encoding, const Tables& tables,
                 FolderIndex& photos);

  Result<bool> step(std::chrono::steady_clock::time_point deadline, RowStore& rows) override;
  [[nodiscard]] bool failedLookUp() const override { return failedLookUp_; }

 private:
  HfdlReader reader_;
  const Tables& tables_;
  FolderIndex& photos_;
  bool failedLookUp_ = false;
};

}  // namespace vel
