#include "log/dated_logs.h"

#include <utility>

#include "core/file.h"

namespace vel {
namespace {

constexpr std::string_view kCentury = "20";

bool isDatedLog(std::string_view name, std::string_view suffix) {
  return name.size() >= kCentury.size() + suffix.size() && name.starts_with(kCentury) &&
         equalIgnoringCase(name.substr(name.size() - suffix.size()), suffix);
}

}  // namespace

std::vector<std::string> datedLogs(const std::filesystem::path& folder, std::string_view suffix) {
  Result<std::vector<std::string>> names = listFolder(folder);
  if (!names) return {};
  std::erase_if(*names, [&](const std::string& name) { return !isDatedLog(name, suffix); });
  return *std::move(names);
}

int chooseLog(const std::vector<std::string>& names, std::string_view remembered) {
  int chosen = -1;
  std::string_view best;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string_view name = names[i];
    if ((remembered.empty() && best < name) || name == remembered) {
      best = name;
      chosen = static_cast<int>(i);
    }
  }
  return chosen;
}

}  // namespace vel
