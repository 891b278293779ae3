#include "tables/route_paste.h"

#include <algorithm>

#include "core/helpers.h"
#include "core/text.h"

namespace vel {
namespace {

constexpr std::string_view kFrom = "From (";
constexpr std::string_view kTo = "to (";
constexpr std::string_view kPartEnd = "))";
constexpr std::size_t kCodeLength = 3;

// FindUpperWord3 wants blanks around a word and at least seven characters.
std::string firstCode(std::string_view text) {
  std::string words = "    ";
  words += text;
  words += "    ";
  std::replace_if(
      words.begin(), words.end(),
      [](char c) { return std::string_view("()[]/,;:.->\t").find(c) != std::string_view::npos; },
      ' ');
  std::size_t position = 1;
  const std::size_t found = FindUpperWord3(words, position);
  return found == 0 ? std::string() : std::string(Mid(words, found, kCodeLength));
}

// A name may hold a word of three capitals too; the code stands in the last
// brackets.
std::string codeOf(std::string_view part) {
  const std::size_t bracket = part.rfind('(');
  if (bracket != std::string_view::npos) {
    std::string code = firstCode(part.substr(bracket));
    if (!code.empty()) return code;
  }
  return firstCode(part);
}

struct Part {
  bool isFrom = false;
  std::string code;       // empty for a broken part
  std::string_view rest;  // of the line
};

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// The place of the word and its bracket; "Toronto (" holds no "to (".
std::size_t findWord(std::string_view line, std::string_view word) {
  std::size_t place = line.find(word);
  while (place != std::string_view::npos && place > 0 && isLetter(line[place - 1])) {
    place = line.find(word, place + 1);
  }
  return place;
}

std::size_t nextMarker(std::string_view line) {
  return MinOf(findWord(line, kFrom), findWord(line, kTo));
}

// Takes the part that begins at the marker at `begin`.
Part takePart(std::string_view line, std::size_t begin) {
  line.remove_prefix(begin);
  Part part;
  part.isFrom = line.starts_with(kFrom);
  line.remove_prefix(part.isFrom ? kFrom.size() : kTo.size());
  const std::size_t end = line.find(kPartEnd);
  const std::size_t following = nextMarker(line);
  if (end >= following || end == std::string_view::npos) {
    part.rest = line.substr(MinOf(following, line.size()));
    return part;
  }
  part.code = codeOf(line.substr(0, end));
  part.rest = line.substr(end + kPartEnd.size());
  return part;
}

}  // namespace

std::vector<std::string> routePairs(std::string_view text) {
  std::vector<std::string> pairs;
  std::string departure;
  while (!text.empty() && pairs.size() < kMostRoutePairs) {
    std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(MinOf(line.size() + 1, text.size()));
    for (std::size_t marker = nextMarker(line);
         marker != std::string_view::npos && pairs.size() < kMostRoutePairs;
         marker = nextMarker(line)) {
      Part part = takePart(line, marker);
      line = part.rest;
      if (part.isFrom) {
        departure = part.code;
        continue;
      }
      if (!departure.empty() && !part.code.empty()) pairs.push_back(departure + ">" + part.code);
      departure.clear();
    }
  }
  return pairs;
}

}  // namespace vel
