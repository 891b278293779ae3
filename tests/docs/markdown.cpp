#include "tests/docs/markdown.h"

#include <algorithm>

#include "core/text.h"

namespace vel::test {
namespace {

bool isRule(std::string_view row) {
  return row.find_first_not_of("|-: ") == std::string_view::npos;
}

// The text without what stands between backticks.
std::string withoutCode(std::string_view line) {
  std::string rest;
  bool isCode = false;
  for (const char each : line) {
    if (each == '`') {
      isCode = !isCode;
    } else if (!isCode) {
      rest += each;
    }
  }
  return rest;
}

void readBold(std::string_view line, MarkdownPage& page) {
  const std::vector<std::string_view> parts = [&] {
    std::vector<std::string_view> all;
    for (std::size_t at = 0;;) {
      const std::size_t mark = line.find("**", at);
      all.push_back(line.substr(at, mark - at));
      if (mark == std::string_view::npos) return all;
      at = mark + 2;
    }
  }();
  for (std::size_t i = 1; i + 1 < parts.size(); i += 2) page.bold.emplace_back(parts[i]);
}

void readLinks(std::string_view line, MarkdownPage& page) {
  for (std::size_t at = line.find("]("); at != std::string_view::npos;
       at = line.find("](", at + 2)) {
    const std::size_t end = line.find(')', at);
    const std::string target(line.substr(at + 2, end - at - 2));
    const std::size_t open = line.rfind('[', at);
    const bool isPicture = open != std::string_view::npos && open > 0 && line[open - 1] == '!';
    (isPicture ? page.pictures : page.links).push_back(target);
  }
}

}  // namespace

MarkdownPage readMarkdown(std::string_view text) {
  MarkdownPage page;
  bool isCode = false;
  bool isTable = false;
  for (const std::string_view raw : split(text, '\n')) {
    if (raw.starts_with("```")) {
      isCode = !isCode;
      continue;
    }
    if (isCode) {
      page.code.emplace_back(raw);
      continue;
    }
    if (raw.starts_with("#")) {
      page.headings.push_back(static_cast<int>(raw.find_first_not_of('#')));
    }
    if (raw.starts_with("- ") ||
        (raw.size() > 2 && raw[0] >= '1' && raw[0] <= '9' && raw.substr(1, 2) == ". ")) {
      ++page.listItems;
    }
    if (!raw.starts_with("|")) {
      isTable = false;
    } else if (!isTable) {
      isTable = true;
      page.tables.push_back(0);
    } else if (!isRule(raw)) {
      ++page.tables.back();
    }
    const std::string line = withoutCode(raw);
    readBold(line, page);
    readLinks(line, page);
  }
  return page;
}

std::vector<std::string> attributesOf(std::string_view html, std::string_view name) {
  const std::string before = std::string(" ") + std::string(name) + "=\"";
  std::vector<std::string> found;
  for (std::size_t at = html.find(before); at != std::string_view::npos;
       at = html.find(before, at + 1)) {
    const std::size_t first = at + before.size();
    found.emplace_back(html.substr(first, html.find('"', first) - first));
  }
  return found;
}

}  // namespace vel::test
