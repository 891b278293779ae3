#pragma once

#include <string_view>

#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {

/// How a file is imported: the lines of an input's first part are the station's
/// encoding, the table that is wanted (0 to 4, anything else for all), "all" for
/// what no log names too, "replace" for records that differ, and the table (0 to
/// 4) that has the text of the second part before.
struct ImportTrial {
  explicit ImportTrial(Parts& parts) : options(parts.next()), before(parts.next()) {}

  std::string_view options;
  std::string_view before;
};

/// Imports the bytes of a file and checks what became of the tables: whatever
/// the file holds, each new record is one that its table can hold, and every
/// line of another key, and without "replace" every line, is what it was.
void importAndCheck(const Station& station, const ImportTrial& trial, std::string_view file);

/// The bytes as a gzip.
[[nodiscard]] std::string packed(std::string_view bytes);

}  // namespace vel::fuzz
