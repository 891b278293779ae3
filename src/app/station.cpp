#include "app/station.h"

#include <algorithm>

#include "core/file.h"
#include "core/folders.h"
#include "core/normal_path.h"
#include "core/program_files.h"
#include "tables/table_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNewSuffix = ".new";
// No path is longer; anything else in the file is none.
constexpr std::size_t kLongestPath = 32'768;

bool isFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

bool isBase(const fs::path& folder) {
  return isFolder(folderIn(folder, "data")) || isFolder(folderIn(folder, "logs"));
}

// What has one of the two names may be any folder; what has both is a station.
bool isWholeBase(const fs::path& folder) {
  return isFolder(folderIn(folder, "data")) && isFolder(folderIn(folder, "logs"));
}

bool isNamedAsInStation(const fs::path& folder) {
  const std::string name = toUtf8(folder.filename());
  return equalIgnoringCase(name, "data") || equalIgnoringCase(name, "logs") ||
         equalIgnoringCase(name, "pics");
}

// The base folder's folder with settings, by name the first one.
std::optional<fs::path> folderWithSettings(const fs::path& base) {
  std::vector<fs::path> found;
  std::error_code error;
  fs::directory_iterator entries(base, fs::directory_options::skip_permission_denied, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    const fs::path& folder = entries->path();
    if (isFolder(folder) && findFile(folder, "vel.env")) found.push_back(folder);
  }
  if (found.empty()) return std::nullopt;
  return *std::min_element(found.begin(), found.end());
}

Status makeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (!error) return {};
  return Error{ErrorNumber::pathAccess, toUtf8(folder) + ": " + error.message()};
}

}  // namespace

bool isProgramFolder(const fs::path& folder) {
  return findFile(folder, "vel.env").has_value() || isBase(folder.parent_path());
}

bool holdsStation(const fs::path& folder) { return isBase(folder); }

std::optional<fs::path> programFolderNear(const fs::path& chosen) {
  const fs::path folder = normalPath(chosen);
  const fs::path parent = folder.parent_path();
  fs::path base;
  if (isBase(folder)) {
    base = folder;
  } else if (isWholeBase(parent) || (isNamedAsInStation(folder) && isBase(parent))) {
    base = parent;
  } else if (isNamedAsInStation(parent) && isBase(parent.parent_path())) {
    base = parent.parent_path();
  } else {
    return std::nullopt;
  }
  const auto known = folderWithSettings(base);
  return known ? *known : folderIn(base, "vel");
}

std::vector<std::string> missingTables(const fs::path& programFolder) {
  const Folders folders = Folders::of(programFolder);
  std::vector<std::string> missing;
  for (const Table table : kTables) {
    if (!fileExists(filesOf(folders, table).live)) {
      missing.push_back(tableName(table) + std::string(kTableExtension));
    }
  }
  return missing;
}

Status completeStation(const fs::path& programFolder) {
  const Folders folders = Folders::of(programFolder);
  for (const fs::path& folder :
       {folders.program, folders.data, folders.logs, folders.eachLogs, folders.pics}) {
    if (Status made = makeFolder(folder); !made) return made;
  }
  // A table whose rewrite was cut off is no missing one.
  recoverTables(folders);
  for (const Table table : kTables) {
    const fs::path file = filesOf(folders, table).live;
    if (fileExists(file)) continue;
    if (Status written = writeWholeFile(file, kNewSuffix, {}); !written) {
      return Error{written.error().number, toUtf8(file) + ": " + written.error().text()};
    }
  }
  return {};
}

std::optional<fs::path> rememberedStation(const fs::path& file) {
  auto opened = InputFile::open(file);
  if (!opened) return std::nullopt;
  std::string bytes(kLongestPath, '\0');
  const auto read = opened->read(bytes.data(), bytes.size());
  if (!read) return std::nullopt;
  bytes.resize(*read);
  bytes.resize(std::min(bytes.find('\n'), bytes.size()));
  if (bytes.ends_with('\r')) bytes.pop_back();
  const fs::path folder = toPath(bytes);
  if (!folder.is_absolute()) return std::nullopt;
  return folder;
}

Status rememberStation(const fs::path& file, const fs::path& programFolder) {
  if (Status made = makeFolder(file.parent_path()); !made) return made;
  return writeWholeFile(file, kNewSuffix, toUtf8(programFolder) + "\n");
}

}  // namespace vel
