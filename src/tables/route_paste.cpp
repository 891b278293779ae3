#include "tables/route_paste.h"

#include <algorithm>

#include "core/helpers.h"
#include "core/text.h"

namespace vel {
namespace {

constexpr std::string_view kFrom = "From ";
constexpr std::string_view kTo = "to ";
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

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// "Toronto (" ends in no "to ".
bool endsInWord(std::string_view text, std::string_view word) {
  if (!text.ends_with(word)) return false;
  text.remove_suffix(word.size());
  return text.empty() || !isLetter(text.back());
}

struct Marker {
  std::size_t begin = std::string_view::npos;
  std::size_t end = std::string_view::npos;  // behind the bracket
  bool isFrom = false;
};

// The first "From (" or "to (". Looks at each bracket once, so that a text of
// nothing but brackets takes no longer than any other.
Marker nextMarker(std::string_view line) {
  for (std::size_t bracket = line.find('('); bracket != std::string_view::npos;
       bracket = line.find('(', bracket + 1)) {
    const std::string_view before = line.substr(0, bracket);
    if (endsInWord(before, kFrom)) return {bracket - kFrom.size(), bracket + 1, true};
    if (endsInWord(before, kTo)) return {bracket - kTo.size(), bracket + 1, false};
  }
  return {};
}

// The routes of one line; the departure waits for its destination.
void addPairs(std::string_view line, std::string& departure, std::vector<std::string>& pairs) {
  Marker marker = nextMarker(line);
  while (marker.end != std::string_view::npos && pairs.size() < kMostRoutePairs) {
    line.remove_prefix(marker.end);
    const bool isFrom = marker.isFrom;
    marker = nextMarker(line);
    const std::string_view part = line.substr(0, marker.begin);
    const std::size_t end = part.find(kPartEnd);
    const std::string code =
        end == std::string_view::npos ? std::string() : codeOf(part.substr(0, end));
    if (isFrom) {
      departure = code;
      continue;
    }
    if (!departure.empty() && !code.empty()) {
      pairs.push_back(departure);
      pairs.back().append(">").append(code);
    }
    departure.clear();
  }
}

}  // namespace

std::vector<std::string> routePairs(std::string_view text) {
  std::vector<std::string> pairs;
  std::string departure;
  while (!text.empty() && pairs.size() < kMostRoutePairs) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    addPairs(line, departure, pairs);
  }
  return pairs;
}

}  // namespace vel
