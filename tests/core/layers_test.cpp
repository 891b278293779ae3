// The layers of the program, as its sources show them.

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/file.h"
#include "core/text.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

// What a line includes, without its brackets or quotes; empty for other lines.
std::string_view includedBy(std::string_view line) {
  line = Trim(line);
  if (!line.starts_with('#')) return {};
  line = Trim(line.substr(1));
  if (!line.starts_with("include")) return {};
  line = Trim(line.substr(7));
  if (line.size() < 2) return {};
  return line.substr(1, line.find_first_of("\">", 1) - 1);
}

bool isQt(std::string_view header) {
  const bool classHeader =
      header.size() > 1 && header[0] == 'Q' && header[1] >= 'A' && header[1] <= 'Z';
  const bool fileHeader = header.starts_with('q') && header.ends_with(".h") &&
                          header.find('/') == std::string_view::npos;
  return classHeader || fileHeader || header.starts_with("Qt") || header.starts_with("ui_");
}

std::vector<std::string> logicSources() {
  std::vector<std::string> sources;
  for (const auto& layer : std::filesystem::directory_iterator(toPath(VEL_SOURCE_FOLDER))) {
    if (!layer.is_directory()) continue;
    for (const auto& file : std::filesystem::directory_iterator(layer.path())) {
      if (!file.is_directory()) sources.push_back(toUtf8(file.path()));
    }
  }
  return sources;
}

TEST(Layers, AnIncludeOfQtIsRecognised) {
  for (const char* line :
       {"#include <QString>", "#include <QtCore/QString>", "# include <qglobal.h>",
        "  #include \"QWidget\"", "#include <QtWidgets>"}) {
    EXPECT_TRUE(isQt(includedBy(line))) << line;
  }
  for (const char* line : {"#include <string>", "#include \"core/text.h\"", "// #include <QString>",
                           "#include <queue>", "QString"}) {
    EXPECT_FALSE(isQt(includedBy(line))) << line;
  }
}

TEST(Layers, NoLogicEverIncludesQt) {
  const std::vector<std::string> sources = logicSources();
  EXPECT_THAT(sources, testing::Contains(testing::EndsWith("file.cpp")));
  EXPECT_GT(sources.size(), 20U);
  for (const std::string& source : sources) {
    const std::string text = test::readBytes(toPath(source));
    for (const std::string_view line : split(text, '\n')) {
      EXPECT_FALSE(isQt(includedBy(line))) << source << ": " << line;
    }
  }
}

// A folder of the sources and those whose headers it may include. Each stands
// below all that include it, so there is no circle.
struct Room {
  std::string_view name;
  std::vector<std::string_view> mayUse;
};

const std::vector<Room>& rooms() {
  static const std::vector<Room> kRooms = {
      {"core", {}},
      {"log", {"core"}},
      {"tables", {"core"}},
      {"acars", {"core", "log", "tables"}},
      {"hfdl", {"core", "log", "tables"}},
      {"web", {"core", "log", "tables"}},
      {"velweb", {"core", "log", "tables", "acars", "hfdl", "web"}},
      {"history", {"core", "log", "tables", "acars", "hfdl", "web"}},
      {"exchange", {"core", "log", "tables", "acars", "hfdl"}},
      {"tour", {"core"}},
      {"app", {"core", "tables"}},
      {"core/ui", {"core"}},
      {"app/ui", {"core", "app", "core/ui"}},
      {"log/ui", {"core", "log", "core/ui", "app/ui"}},
      {"tables/ui", {"core", "tables", "core/ui"}},
      {"exchange/ui", {"core", "tables", "exchange", "core/ui", "tables/ui"}},
      {"web/ui", {"core", "log", "tables", "web", "core/ui"}},
      {"tour/ui", {"core", "tour", "core/ui"}},
      {"acars/ui",
       {"core", "log", "tables", "acars", "web", "core/ui", "app/ui", "log/ui", "tables/ui",
        "web/ui"}},
      {"hfdl/ui",
       {"core", "log", "tables", "hfdl", "web", "core/ui", "app/ui", "log/ui", "tables/ui",
        "web/ui"}},
      {"history/ui",
       {"core", "log", "tables", "acars", "hfdl", "web", "history", "core/ui", "app/ui", "log/ui",
        "web/ui", "hfdl/ui"}},
  };
  return kRooms;
}

// "hfdl/ui/shapes.h" stands in "hfdl/ui"; a header of the system stands nowhere.
std::string_view roomOf(std::string_view header) {
  const std::size_t slash = header.rfind('/');
  if (slash == std::string_view::npos) return {};
  const std::string_view folder = header.substr(0, slash);
  const bool isOwn = std::any_of(rooms().begin(), rooms().end(),
                                 [&](const Room& room) { return room.name == folder; });
  return isOwn ? folder : std::string_view();
}

// Every folder of the sources that holds files, from the sources' own folder.
std::vector<std::string> sourceFolders() {
  const std::filesystem::path root = toPath(VEL_SOURCE_FOLDER);
  std::set<std::string> folders;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const auto folder = entry.path().parent_path();
    if (entry.is_regular_file() && folder != root) {
      folders.insert(folder.lexically_relative(root).generic_string());
    }
  }
  return {folders.begin(), folders.end()};
}

TEST(Layers, EveryFolderHasItsPlaceAndNoneStandsAboveItself) {
  std::set<std::string> below;
  std::vector<std::string> names;
  for (const Room& room : rooms()) {
    for (const std::string_view used : room.mayUse) {
      EXPECT_TRUE(below.count(std::string(used)) == 1) << room.name << " -> " << used;
    }
    below.insert(std::string(room.name));
    names.emplace_back(room.name);
  }
  EXPECT_THAT(sourceFolders(), testing::IsSubsetOf(names));
}

// What the folders below a root include of one another.
struct Arrows {
  std::map<std::string_view, std::set<std::string>> of;
  std::vector<std::string> forbidden;  // file: line
  std::size_t files = 0;
};

Arrows arrowsIn(const std::filesystem::path& root) {
  Arrows arrows;
  for (const Room& room : rooms()) {
    const auto folder = root / toPath(room.name);
    if (!std::filesystem::exists(folder)) continue;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      if (!file.is_regular_file()) continue;
      ++arrows.files;
      const std::string text = test::readBytes(file.path());
      for (const std::string_view line : split(text, '\n')) {
        const std::string_view to = roomOf(includedBy(line));
        if (to.empty() || to == room.name) continue;
        arrows.of[room.name].insert(std::string(to));
        if (std::find(room.mayUse.begin(), room.mayUse.end(), to) == room.mayUse.end()) {
          arrows.forbidden.push_back(file.path().lexically_relative(root).generic_string() + ": " +
                                     std::string(line));
        }
      }
    }
  }
  return arrows;
}

TEST(Layers, EveryArrowBetweenTheFoldersIsAllowed) {
  Arrows arrows = arrowsIn(toPath(VEL_SOURCE_FOLDER));
  for (const Room& room : rooms()) {
    std::string shown;
    for (const std::string& to : arrows.of[room.name]) shown += ' ' + to;
    std::cout << room.name << " ->" << (shown.empty() ? " nothing" : shown) << '\n';
  }
  EXPECT_THAT(arrows.forbidden, testing::IsEmpty());
  EXPECT_GT(arrows.files, 100U);
}

TEST(Layers, AnArrowThatIsNotAllowedIsNamed) {
  const test::TemporaryFolder root;
  const auto write = [&root](const char* file, const char* text) {
    std::filesystem::create_directories((root / file).parent_path());
    test::writeBytes(root / file, text);
  };
  write("acars/list_log.h", "#include \"core/text.h\"\n#include \"hfdl/hfdl_log.h\"\n");
  write("core/ui/line_list.cpp", "#include \"log/ui/log_list_view.h\"\n");
  write("hfdl/ui/hfdl_browser.h", "#include \"acars/ui/acars_browser.h\"\n");
  write("tables/ui/flight_editor.cpp", "#include \"tables/tables.h\"\n");
  EXPECT_THAT(arrowsIn(root.path()).forbidden,
              testing::UnorderedElementsAre(
                  "acars/list_log.h: #include \"hfdl/hfdl_log.h\"",
                  "core/ui/line_list.cpp: #include \"log/ui/log_list_view.h\"",
                  "hfdl/ui/hfdl_browser.h: #include \"acars/ui/acars_browser.h\""));
}

// The lines of the sources in which a word occurs, each behind its file.
std::vector<std::string> placesOf(std::string_view word) {
  const std::filesystem::path root = toPath(VEL_SOURCE_FOLDER);
  std::vector<std::string> places;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    const std::string text = test::readBytes(entry.path());
    for (const std::string_view line : split(text, '\n')) {
      if (line.find(word) == std::string_view::npos) continue;
      places.push_back(entry.path().lexically_relative(root).generic_string() + ": " +
                       std::string(Trim(line)));
    }
  }
  return places;
}

TEST(Layers, NoHandlerRunsAnEventLoopButTheSplashAtStart) {
  const std::vector<std::string> places = placesOf("processEvents");
  for (const std::string& place : places) std::cout << place << '\n';
  EXPECT_THAT(places,
              testing::ElementsAre("app/ui/program.cpp: QCoreApplication::processEvents();"));
  EXPECT_THAT(placesOf("QEventLoop"), testing::IsEmpty());
}

TEST(Layers, AnIncludeLeadsToItsFolder) {
  EXPECT_EQ(roomOf("core/text.h"), "core");
  EXPECT_EQ(roomOf("hfdl/ui/hfdl_browser.h"), "hfdl/ui");
  EXPECT_EQ(roomOf("velweb/velweb_service.h"), "velweb");
  EXPECT_EQ(roomOf("string"), "");
  EXPECT_EQ(roomOf("sys/stat.h"), "");
}

}  // namespace
}  // namespace vel
