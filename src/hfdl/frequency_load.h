#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/folders.h"
#include "core/job.h"
#include "core/result.h"
#include "hfdl/frequency_tables.h"
#include "hfdl/shapes.h"
#include "tables/line_blocks.h"

namespace vel {

/// The day on which the chart starts when it shows the seven days up to today.
[[nodiscard]] std::chrono::local_days chartStart(std::chrono::local_seconds now);

/// loadFMTlog: fills the tables from the logs of the seven days from `start`,
/// file by file. A step ends where the next file begins, so that the progress
/// text can be shown before that is read.
class FrequencyLoad : public Job {
 public:
  /// Clears the tables; they must live as long as the load.
  FrequencyLoad(const Folders& folders, FrequencyTables& tables, std::chrono::local_days start);

  /// Never an error: what could not be read is told by messages().
  Result<JobProgress> step(Clock::time_point deadline) override;

  /// Goes on to the next log of the dates; false when there is none left.
  bool nextFile();

  /// Reads a piece of that log; false when it is at its end or cannot be read
  /// any further.
  bool readPiece();

  /// "Loading " and a character for each file looked at so far: "o" for one
  /// that is read, "." for one of other dates.
  [[nodiscard]] const std::string& progressText() const { return progressText_; }

  /// What the user is told of time points that were lost, before the chart is
  /// drawn; empty for none.
  [[nodiscard]] std::string overflowText() const;

  /// What the user is told once the chart is drawn: the first log that could not
  /// be read, stations and frequencies without place.
  [[nodiscard]] std::vector<std::string> messages() const;

 private:
  std::filesystem::path logs_;
  FrequencyTables& tables_;
  std::string lowerBound_;
  std::string upperBound_;
  std::vector<std::string> names_;
  std::size_t next_ = 0;
  std::optional<LineBlocks> file_;
  std::optional<Error> firstError_;
  std::string progressText_ = "Loading ";
};

/// The progress text as the chart's surface shows it.
[[nodiscard]] Drawing progressDrawing(const std::string& progressText, double width, double height);

}  // namespace vel
