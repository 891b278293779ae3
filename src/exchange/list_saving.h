#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file.h"
#include "core/job.h"
#include "core/result.h"
#include "core/text.h"

namespace vel {

/// As what a list is saved.
enum class ListFormat {
  spreadsheet,  ///< CSV in UTF-8 with a byte order mark, of which no cell is a formula
  station,      ///< CSV in the station's encoding, every text as it stands
  html,         ///< a page in UTF-8
};

/// A list as it is shown. Texts are UTF-8 and whole.
struct ShownList {
  std::string title;
  std::vector<std::string> columns;
  std::size_t rows = 0;
  std::function<std::vector<std::string>(std::size_t row)> cells;
};

/// What stands before the rows, titles included; a row; and what stands after.
/// Lines end with CR LF. A character that the station's encoding does not have
/// is written as "?".
[[nodiscard]] std::string listHead(ListFormat format, const Encoding& station,
                                   const ShownList& list);
[[nodiscard]] std::string listRow(ListFormat format, const Encoding& station,
                                  const std::vector<std::string>& cells);
[[nodiscard]] std::string listEnd(ListFormat format);

/// Why a file could not be written or read, in words in both languages.
[[nodiscard]] std::string reasonOf(const Error& error);

/// Writes a list to a file, which is there whole at the end of the job or not at
/// all: an old one stays until then, and on any failure.
class ListSaving : public Job {
 public:
  /// What is added to the file's name while it is written.
  static constexpr std::string_view kSuffix = ".part";

  ListSaving(std::filesystem::path file, ListFormat format, const Encoding& station,
             ShownList list);

  /// An Error's text says why the list is not saved.
  Result<JobProgress> step(Clock::time_point deadline) override;

 private:
  std::filesystem::path path_;
  ListFormat format_;
  Encoding station_;
  ShownList list_;
  std::optional<WholeFile> file_;
  std::size_t next_ = 0;
};

}  // namespace vel
