#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vel::test {

/// What a page of the guide is made of, each in the order of the page.
struct MarkdownPage {
  std::vector<std::string> links = {};     ///< where links lead, without pictures
  std::vector<std::string> pictures = {};  ///< the files of pictures
  std::vector<std::string> bold = {};      ///< what stands in bold letters
  std::vector<int> headings = {};          ///< the level of each heading
  std::vector<int> tables = {};            ///< the rows of each table, titles not counted
  int listItems = 0;
  std::vector<std::string> code = {};  ///< the lines of blocks of code
};

/// Reads the forms that the guide uses. Links and bold letters in code are none.
[[nodiscard]] MarkdownPage readMarkdown(std::string_view text);

/// The values of an attribute ("href", "src") of a page in HTML.
[[nodiscard]] std::vector<std::string> attributesOf(std::string_view html, std::string_view name);

}  // namespace vel::test
