#include "app/installed_files.h"

#include <string>

#include "core/file.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr std::string_view kSampleMaker = "vel-sample-base.exe";
#else
constexpr std::string_view kSampleMaker = "vel-sample-base";
#endif

std::optional<fs::path> existing(const fs::path& path) {
  if (!fileExists(path)) return std::nullopt;
  return path.lexically_normal();
}

}  // namespace

std::optional<fs::path> guidePage(const fs::path& executableFolder, std::string_view page,
                                  std::string_view language) {
  const std::string name(page);
  const fs::path inLanguage = fs::path("guide") / std::string(language);
  for (const fs::path& folder : {inLanguage, fs::path("guide")}) {
    for (const char* help : {"help", VEL_DATA_FROM_PROGRAM "/help", "../help"}) {
      // Pages as they were written stand in for those that no tool converted.
      for (const char* extension : {".html", ".md"}) {
        if (auto found = existing(executableFolder / help / folder / (name + extension))) {
          return found;
        }
      }
    }
  }
  return std::nullopt;
}

std::optional<fs::path> sampleMaker(const fs::path& executableFolder) {
  for (const char* folder : {".", VEL_HELPERS_FROM_PROGRAM, "../samples"}) {
    if (auto found = existing(executableFolder / folder / kSampleMaker)) return found;
  }
  return std::nullopt;
}

}  // namespace vel
