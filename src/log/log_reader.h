#pragma once

#include <chrono>
#include <string>

#include "core/result.h"
#include "log/row_store.h"

namespace vel {

/// Reads one log into the rows of a list, step by step, so that window events
/// can run in between.
class LogReader {
 public:
  virtual ~LogReader() = default;

  /// Reads on until the deadline or the end of the file; true when there is
  /// more. An error ends the reading; the rows so far stay.
  virtual Result<bool> step(std::chrono::steady_clock::time_point deadline, RowStore& rows) = 0;

  /// Tells a table's error, which ends the program, from the log's own.
  [[nodiscard]] virtual bool failedLookUp() const = 0;

  /// What the user is told once after the read; empty when there is nothing.
  [[nodiscard]] virtual std::string report() const { return {}; }
};

}  // namespace vel
