#include "hfdl/hfdl_lines.h"

#include <algorithm>
#include <cstdio>

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

}  // namespace

bool hasLabel(std::string_view line, const LineLabel& label) {
  const char anchor = label.text[label.anchor];
  for (std::size_t at = line.find(anchor, label.anchor); at != std::string_view::npos;
       at = line.find(anchor, at + 1)) {
    if (line.substr(at - label.anchor, label.text.size()) == label.text) return true;
  }
  return false;
}

std::string listTimeStamp(std::string_view header) {
  std::string stamp(Mid(header, 29, 10));
  stamp += ' ';
  stamp += Left(Right(header, 9), 8);
  return stamp;
}

std::string chartTimeStamp(std::string_view header) {
  const std::size_t mark = header.find(kHeaderMark.text);
  std::string_view date;
  if (mark != std::string_view::npos) date = header.substr(mark + kHeaderMark.text.size());
  std::string stamp(Left(date, 10));
  stamp += ' ';
  // Counting characters from the end of a text takes a walk through all of it.
  const std::string_view tail =
      header.substr(header.size() - std::min<std::size_t>(header.size(), 9));
  const std::string_view time = Left(isAscii(tail) ? tail : Right(header, 9), 8);
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
