// The layers of the program, as its sources show them.

#include <filesystem>
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

TEST(Layers, LogicKnowsOnlyTheLayersBelowIt) {
  for (const std::string& source : logicSources()) {
    const std::string layer = toUtf8(toPath(source).parent_path().filename());
    const std::string text = test::readBytes(toPath(source));
    for (const std::string_view line : split(text, '\n')) {
      const std::string_view header = includedBy(line);
      EXPECT_EQ(header.find("/ui/"), std::string_view::npos) << source << ": " << line;
      if (layer == "core") {
        EXPECT_TRUE(header.find('/') == std::string_view::npos || header.starts_with("core/") ||
                    header.starts_with("sys/"))
            << source << ": " << line;
      }
      if (layer == "acars") {
        EXPECT_FALSE(header.starts_with("hfdl/")) << source;
      }
      if (layer == "hfdl") {
        EXPECT_FALSE(header.starts_with("acars/")) << source;
      }
      if (layer == "tables") {
        for (const char* above : {"acars/", "hfdl/", "web/", "tour/"}) {
          EXPECT_FALSE(header.starts_with(above)) << source << ": " << line;
        }
      }
    }
  }
}

}  // namespace
}  // namespace vel
