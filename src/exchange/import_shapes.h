#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/result.h"
#include "exchange/import_rows.h"
#include "exchange/import_source.h"

namespace vel {

/// What a text file was recognised as.
struct ImportShape {
  ImportFormat format = ImportFormat::ownAircraft;
  CsvDialect dialect;
  bool hasHeader = false;
  /// Where the format's fields stand, in its own order; kNoColumn for one that
  /// it can do without.
  std::vector<std::size_t> columns;
  std::size_t fewestFields = 0;  ///< a row with fewer is cut off
};

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

/// Recognises a file by its beginning: the first bytes without a byte order mark,
/// `isWhole` where they are all of it. An Error says what was expected.
Result<ImportShape> shapeOf(std::string_view begin, bool isWhole, std::optional<Table> only);

/// True for so many letters of the alphabet, all capital.
[[nodiscard]] bool isCapitals(std::string_view text, std::size_t count);
/// The same with digits among them.
[[nodiscard]] bool isCode(std::string_view text, std::size_t count);
/// True for the six digits of an address, in either case.
[[nodiscard]] bool isAddress(std::string_view text);

}  // namespace vel
