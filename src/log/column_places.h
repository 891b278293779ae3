#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "core/result.h"

namespace vel {

/// How a user has arranged the columns of a list.
struct ColumnPlaces {
  /// The columns from left to right, each by its number (from 0).
  std::vector<int> order = {};
  /// The width of each column by its number, in logical pixels.
  std::vector<int> widths = {};

  bool operator==(const ColumnPlaces&) const = default;
};

/// The places that the file has under a list's name; nothing where it has none
/// for so many columns. The format is in docs/formats/settings.md.
[[nodiscard]] std::optional<ColumnPlaces> loadColumns(const std::filesystem::path& file,
                                                      std::string_view list, std::size_t columns);

/// Notes a list's places in the file, beside those of other lists; without
/// places what was noted for the list is taken back. A file that would not
/// change is not written.
Status saveColumns(const std::filesystem::path& file, std::string_view list,
                   const std::optional<ColumnPlaces>& places);

}  // namespace vel
