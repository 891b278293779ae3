// The guide, as it is written and as it is installed.

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include <gmock/gmock.h>

#include "core/file.h"
#include "tests/docs/markdown.h"
#include "tests/support/test_files.h"

namespace vel::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

const fs::path kSource = VEL_SOURCE;
const fs::path kGuide = kSource / "docs/guide";
// Where the first page is, which needs no picture of its own, and texts without
// a window.
const std::set<std::string> kWithoutPicture{"README.md", "web.md"};

std::set<std::string> pagesIn(const fs::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".md") names.insert(toUtf8(entry.path().filename()));
  }
  return names;
}

MarkdownPage page(const fs::path& file) { return readMarkdown(readBytes(file)); }

std::vector<std::string> lastNames(const std::vector<std::string>& targets) {
  std::vector<std::string> names;
  for (const std::string& each : targets) names.push_back(each.substr(each.rfind('/') + 1));
  return names;
}

std::vector<std::string> sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  return names;
}

bool isOnTheWeb(const std::string& target) { return target.find("://") != std::string::npos; }

TEST(Guide, HasTheSamePagesInBothLanguages) {
  const std::set<std::string> english = pagesIn(kGuide);
  EXPECT_GE(english.size(), 13U);
  EXPECT_EQ(english, pagesIn(kGuide / "ja"));
}

TEST(Guide, IsBuiltAlikeInBothLanguages) {
  for (const std::string& name : pagesIn(kGuide)) {
    SCOPED_TRACE(name);
    const MarkdownPage english = page(kGuide / name);
    const MarkdownPage japanese = page(kGuide / "ja" / name);
    EXPECT_THAT(japanese.headings, ElementsAreArray(english.headings));
    EXPECT_THAT(japanese.tables, ElementsAreArray(english.tables));
    EXPECT_EQ(japanese.listItems, english.listItems);
    EXPECT_THAT(lastNames(japanese.pictures), ElementsAreArray(lastNames(english.pictures)));
    EXPECT_THAT(sorted(lastNames(japanese.links)),
                ElementsAreArray(sorted(lastNames(english.links))));
    EXPECT_THAT(japanese.code, ElementsAreArray(english.code));
  }
}

TEST(Guide, LeadsToEveryPageFromItsFirstOne) {
  for (const fs::path& folder : {kGuide, kGuide / "ja"}) {
    std::set<std::string> expected = pagesIn(folder);
    expected.erase("README.md");
    std::set<std::string> linked;
    for (const std::string& link : page(folder / "README.md").links) {
      if (link.find('/') == std::string::npos) linked.insert(link);
    }
    EXPECT_EQ(linked, expected) << folder;
  }
}

TEST(Guide, ShowsAWindowOnEachPageAndEveryPictureThatThereIs) {
  std::set<std::string> shown;
  for (const std::string& name : pagesIn(kGuide)) {
    const std::vector<std::string> pictures = lastNames(page(kGuide / name).pictures);
    EXPECT_TRUE(kWithoutPicture.contains(name) || !pictures.empty()) << name;
    shown.insert(pictures.begin(), pictures.end());
  }
  std::set<std::string> there;
  for (const auto& entry : fs::directory_iterator(kSource / "docs/pictures")) {
    there.insert(toUtf8(entry.path().filename()));
  }
  EXPECT_EQ(shown, there);
}

TEST(Guide, EveryLinkOfTheDocumentsLeadsToAFile) {
  int links = 0;
  for (const auto& entry : fs::recursive_directory_iterator(kSource / "docs")) {
    if (entry.path().extension() != ".md") continue;
    MarkdownPage document = page(entry.path());
    std::vector<std::string> targets = document.links;
    targets.insert(targets.end(), document.pictures.begin(), document.pictures.end());
    for (const std::string& target : targets) {
      if (isOnTheWeb(target)) continue;
      ++links;
      EXPECT_TRUE(fs::exists(entry.path().parent_path() / target.substr(0, target.find('#'))))
          << toUtf8(entry.path()) << " leads to " << target;
    }
  }
  EXPECT_GT(links, 100);
}

TEST(Guide, EveryLinkOfTheInstalledPagesLeadsToAnInstalledFile) {
  int links = 0;
  int converted = 0;
  for (const auto& entry : fs::recursive_directory_iterator(VEL_HELP)) {
    if (!entry.is_regular_file()) continue;
    const std::string text = readBytes(entry.path());
    std::vector<std::string> targets;
    if (entry.path().extension() == ".html") {
      ++converted;
      targets = attributesOf(text, "href");
      const std::vector<std::string> pictures = attributesOf(text, "src");
      EXPECT_THAT(pictures, testing::Each(testing::EndsWith(".png"))) << entry.path();
      targets.insert(targets.end(), pictures.begin(), pictures.end());
    } else if (entry.path().extension() == ".md") {
      targets = readMarkdown(text).links;
    }
    for (const std::string& target : targets) {
      if (isOnTheWeb(target)) continue;
      ++links;
      const fs::path file = entry.path().parent_path() / target.substr(0, target.find('#'));
      EXPECT_TRUE(fs::is_regular_file(file)) << entry.path() << " leads to " << target;
    }
  }
  EXPECT_GT(links, 100);
  EXPECT_GT(converted, 30);
}

// All texts of the sources and the desktop entry, without shortcut marks.
std::string textsOfTheProgram() {
  std::string all = readBytes(kSource / "packaging/vel.desktop");
  for (const auto& entry : fs::recursive_directory_iterator(kSource / "src")) {
    if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h") {
      all += readBytes(entry.path());
    }
  }
  // A text that goes on in the next line.
  std::string joined;
  for (std::size_t at = 0; at < all.size(); ++at) {
    // The mark of a shortcut key; a doubled one is shown.
    if (all[at] == '&' && at + 1 < all.size() && all[at + 1] != ' ') {
      if (all[at + 1] != '&') continue;
      ++at;
    }
    if (all[at] == '"') {
      const std::size_t next = all.find_first_not_of(" \n", at + 1);
      if (next != std::string::npos && next > at + 1 && all[next] == '"') {
        at = next;
        continue;
      }
    }
    joined += all[at];
  }
  return joined;
}

TEST(Guide, QuotesOnlyTextsThatTheProgramShows) {
  const std::string texts = textsOfTheProgram();
  int quoted = 0;
  for (const fs::path& folder : {kGuide, kGuide / "ja"}) {
    for (const std::string& name : pagesIn(folder)) {
      for (const std::string& bold : page(folder / name).bold) {
        ++quoted;
        EXPECT_NE(texts.find(bold), std::string::npos) << folder / name << ": " << bold;
      }
    }
  }
  EXPECT_GT(quoted, 100);
}

}  // namespace
}  // namespace vel::test
