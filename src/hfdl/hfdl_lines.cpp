#include "hfdl/hfdl_lines.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "core/text.h"

namespace vel {
namespace {

using std::chrono::local_days;
using std::chrono::local_seconds;

// Takes a number of so many digits from the front of the text; -1 when it does
// not begin with one.
int takeNumber(std::string_view& text, std::size_t fewest, std::size_t most) {
  int value = 0;
  std::size_t digits = 0;
  while (digits < most && digits < text.size() && text[digits] >= '0' && text[digits] <= '9') {
    value = value * 10 + (text[digits] - '0');
    ++digits;
  }
  if (digits < fewest) return -1;
  text.remove_prefix(digits);
  return value;
}

bool take(std::string_view& text, char wanted) {
  if (text.empty() || text.front() != wanted) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<local_days> dayOf(int year, int month, int day) {
  if (year < 0 || month < 0 || day < 0) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return std::nullopt;
  return local_days(date);
}

// Lines that are told by all of their text. No label stands in one of them.
struct WholeLine {
  HfdlLine kind;
  std::string_view text;
};
constexpr std::array<WholeLine, 4> kWholeLines{{
    {HfdlLine::subRecordEnd, "  .............................."},
    {HfdlLine::downLink, " DOWN LINK"},
    {HfdlLine::upLink, " UP LINK"},
    {HfdlLine::squitter, " SQUITTER"},
}};

// Lines that are told by a label, in the order in which they are tested.
struct LabelledLine {
  HfdlLine kind;
  LineLabel label;
};
constexpr std::array<LabelledLine, 7> kLabelledLines{{
    {HfdlLine::header, kHeaderMark},
    {HfdlLine::groundStation, kGroundStationLabel},
    {HfdlLine::address, kAddressLabel},
    {HfdlLine::registration, kRegistrationLabel},
    {HfdlLine::flight, kFlightLabel},
    {HfdlLine::crcFailed, kCrcFailedLabel},
    {HfdlLine::frequencies, kFrequenciesLabel},
}};

// True when the label stands so that its anchor is at that place.
bool standsAt(std::string_view text, std::size_t place, const LineLabel& label) {
  return place >= label.anchor &&
         text.substr(place - label.anchor, label.text.size()) == label.text;
}

// The byte by which all wanted kinds are found, if there is one.
std::optional<char> commonAnchor(HfdlLines wanted) {
  std::optional<char> common;
  for (const WholeLine& line : kWholeLines) {
    if (wanted.has(line.kind)) return std::nullopt;
  }
  for (const auto& [kind, label] : kLabelledLines) {
    if (!wanted.has(kind)) continue;
    const char anchor = label.text[label.anchor];
    if (common.value_or(anchor) != anchor) return std::nullopt;
    common = anchor;
  }
  return common;
}

std::string_view withoutReturn(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// Goes from anchor to anchor instead of from line to line.
void forEachMarkedLine(std::string_view lines, HfdlLines wanted, char anchor,
                       const std::function<void(std::string_view line, HfdlLine kind)>& take) {
  std::size_t at = lines.find(anchor);
  while (at != std::string_view::npos) {
    const auto found =
        std::find_if(kLabelledLines.begin(), kLabelledLines.end(), [&](const LabelledLine& line) {
          return wanted.has(line.kind) && standsAt(lines, at, line.label);
        });
    if (found == kLabelledLines.end()) {
      at = lines.find(anchor, at + 1);
      continue;
    }
    std::size_t begin = at - found->label.anchor;
    while (begin > 0 && lines[begin - 1] != '\n') --begin;
    const std::size_t end = std::min(lines.find('\n', at), lines.size());
    std::size_t next = lines.find(anchor, at + 1);
    // No kind comes before a header, and none can be where no anchor follows.
    const bool plain =
        (found->kind == HfdlLine::header || next >= end) && at - begin < kLongestHfdlLine;
    take(withoutReturn(lines.substr(begin, end - begin)), plain ? found->kind : HfdlLine::other);
    if (next < end) next = lines.find(anchor, end);
    at = next;
  }
}

// The ten characters behind the bracket: a tag may hold a bracket of its own.
std::string_view dateOf(std::string_view header) {
  const std::size_t mark = header.find(kHeaderMark.text);
  if (mark == std::string_view::npos) return {};
  const std::string_view rest = header.substr(mark + kHeaderMark.text.size());
  const std::string_view date = rest.substr(0, 10);
  return isAscii(date) ? date : Left(rest, 10);
}

// The first eight of the last nine characters.
std::string_view timeOf(std::string_view header) {
  // Counting characters from the end of a text takes a walk through all of it.
  const std::string_view tail =
      header.substr(header.size() - std::min<std::size_t>(header.size(), 9));
  return isAscii(tail) ? tail.substr(0, 8) : Left(Right(header, 9), 8);
}

}  // namespace

bool hasLabel(std::string_view line, const LineLabel& label) {
  const char anchor = label.text[label.anchor];
  for (std::size_t at = line.find(anchor, label.anchor); at != std::string_view::npos;
       at = line.find(anchor, at + 1)) {
    if (standsAt(line, at, label)) return true;
  }
  return false;
}

HfdlLine kindOf(std::string_view line, HfdlLines wanted) {
  for (const auto& [kind, text] : kWholeLines) {
    if (wanted.has(kind) && line == text) return kind;
  }
  for (const auto& [kind, label] : kLabelledLines) {
    if (wanted.has(kind) && hasLabel(line, label)) return kind;
  }
  return HfdlLine::other;
}

void forEachLine(std::string_view lines, HfdlLines wanted,
                 const std::function<void(std::string_view line, HfdlLine kind)>& take) {
  if (const std::optional<char> anchor = commonAnchor(wanted)) {
    forEachMarkedLine(lines, wanted, *anchor, take);
    return;
  }
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    take(withoutReturn(lines.substr(0, end)), HfdlLine::other);
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
}

std::string listTimeStamp(std::string_view header) {
  std::string stamp(dateOf(header));
  stamp += ' ';
  stamp += timeOf(header);
  return stamp;
}

std::string chartTimeStamp(std::string_view header) {
  std::string stamp(dateOf(header));
  stamp += ' ';
  const std::string_view time = timeOf(header);
  stamp += std::count(time.begin(), time.end(), ':') < 2 ? std::string_view("0:00:00") : time;
  return stamp;
}

std::optional<local_seconds> momentOf(std::string_view timeStamp) {
  const int year = takeNumber(timeStamp, 4, 4);
  if (!take(timeStamp, '/')) return std::nullopt;
  const int month = takeNumber(timeStamp, 1, 2);
  if (!take(timeStamp, '/')) return std::nullopt;
  const int dayNumber = takeNumber(timeStamp, 1, 2);
  if (!take(timeStamp, ' ')) return std::nullopt;
  timeStamp = Trim(timeStamp);
  const int hour = takeNumber(timeStamp, 1, 2);
  if (!take(timeStamp, ':')) return std::nullopt;
  const int minute = takeNumber(timeStamp, 1, 2);
  if (!take(timeStamp, ':')) return std::nullopt;
  const int second = takeNumber(timeStamp, 1, 2);
  if (!timeStamp.empty() || hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 ||
      second > 59) {
    return std::nullopt;
  }
  const std::optional<local_days> day = dayOf(year, month, dayNumber);
  if (!day) return std::nullopt;
  return *day + std::chrono::hours(hour) + std::chrono::minutes(minute) +
         std::chrono::seconds(second);
}

std::string dayDigits(local_days day) {
  const std::chrono::year_month_day date(day);
  char digits[24];
  std::snprintf(digits, sizeof digits, "%04d%02u%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return digits;
}

std::optional<local_days> dayOfName(std::string_view name) {
  const int year = takeNumber(name, 4, 4);
  const int month = takeNumber(name, 2, 2);
  const int day = takeNumber(name, 2, 2);
  return dayOf(year, month, day);
}

std::string hourAndMinute(local_seconds moment) {
  const std::chrono::hh_mm_ss time(moment - std::chrono::floor<std::chrono::days>(moment));
  char text[24];
  std::snprintf(text, sizeof text, "%02d:%02d", static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()));
  return text;
}

}  // namespace vel
