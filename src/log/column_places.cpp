#include "log/column_places.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <string>

#include "core/file.h"
#include "core/program_files.h"
#include "core/text.h"

namespace vel {
namespace {

constexpr int kNarrowest = 1;
constexpr int kWidest = 10'000;
// The file has a few lines; of another one the beginning is enough.
constexpr std::size_t kMostBytes = 65'536;

constexpr std::string_view kOrder = "order";
constexpr std::string_view kWidths = "widths";

// Lists by name, each with its keys.
using Lists = std::map<std::string, std::map<std::string, std::string>>;

Lists readLists(const std::filesystem::path& file) {
  auto opened = InputFile::open(file);
  if (!opened) return {};
  std::string bytes(kMostBytes, '\0');
  const auto size = opened->read(bytes.data(), bytes.size());
  if (!size) return {};
  bytes.resize(*size);
  Lists lists;
  std::string list;
  for (const std::string_view each : split(bytes, '\n')) {
    const std::string_view line = Trim(each.substr(0, each.find('\r')));
    if (line.starts_with('[') && line.ends_with(']')) {
      list = std::string(line.substr(1, line.size() - 2));
    } else if (const std::size_t equals = line.find('='); equals != line.npos) {
      lists[list][std::string(Trim(line.substr(0, equals)))] =
          std::string(Trim(line.substr(equals + 1)));
    }
  }
  return lists;
}

std::string textOf(const Lists& lists) {
  std::string text;
  for (const auto& [list, keys] : lists) {
    text.append(1, '[').append(list).append("]\n");
    for (const auto& [key, value] : keys) {
      text.append(key).append(1, '=').append(value).append(1, '\n');
    }
  }
  return text;
}

std::string joined(const std::vector<int>& numbers) {
  std::string text;
  for (const int number : numbers) text += (text.empty() ? "" : ",") + std::to_string(number);
  return text;
}

std::optional<std::vector<int>> numbersOf(std::string_view text) {
  std::vector<int> numbers;
  for (const std::string_view each : split(text, ',')) {
    const std::string_view digits = Trim(each);
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    numbers.push_back(number);
  }
  return numbers;
}

// True for each number from 0 once.
bool isOrder(std::vector<int> numbers) {
  std::sort(numbers.begin(), numbers.end());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (numbers[i] != static_cast<int>(i)) return false;
  }
  return true;
}

}  // namespace

std::optional<ColumnPlaces> loadColumns(const std::filesystem::path& file, std::string_view list,
                                        std::size_t columns) {
  Lists lists = readLists(file);
  auto& keys = lists[std::string(list)];
  const auto order = numbersOf(keys[std::string(kOrder)]);
  const auto widths = numbersOf(keys[std::string(kWidths)]);
  if (!order || !widths || order->size() != columns || widths->size() != columns) {
    return std::nullopt;
  }
  const bool fit = std::all_of(widths->begin(), widths->end(),
                               [](int width) { return width >= kNarrowest && width <= kWidest; });
  if (!fit || !isOrder(*order)) return std::nullopt;
  return ColumnPlaces{*order, *widths};
}

Status saveColumns(const std::filesystem::path& file, std::string_view list,
                   const std::optional<ColumnPlaces>& places) {
  Lists lists = readLists(file);
  const std::string before = textOf(lists);
  if (places) {
    auto& keys = lists[std::string(list)];
    keys[std::string(kOrder)] = joined(places->order);
    keys[std::string(kWidths)] = joined(places->widths);
  } else {
    lists.erase(std::string(list));
  }
  const std::string after = textOf(lists);
  if (after == before) return {};
  return writeWholeFile(file, kSettingsSuffix, after);
}

}  // namespace vel
