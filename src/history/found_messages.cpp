#include "history/found_messages.h"

#include <cstdio>
#include <limits>
#include <utility>

#include "core/text.h"

namespace vel {
namespace {

constexpr std::int32_t kNoDay = std::numeric_limits<std::int32_t>::min();

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

const char* nameOf(HistorySource source) {
  switch (source) {
    case HistorySource::list:
      return "ACARS";
    case HistorySource::hfdl:
      return "HFDL";
    default:
      return "Raw log";
  }
}

std::string dayText(std::chrono::local_days day) {
  const std::chrono::year_month_day date(day);
  char text[32];
  std::snprintf(text, sizeof text, "%04d/%02u/%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::uint32_t FoundMessages::addLog(Log log) {
  logs_.push_back(std::move(log));
  return static_cast<std::uint32_t>(logs_.size() - 1);
}

void FoundMessages::add(std::uint32_t log, const FoundMessage& message) {
  const std::int32_t day =
      message.day ? static_cast<std::int32_t>(message.day->time_since_epoch().count()) : kNoDay;
  at_.push_back({message.offset, log, day});
  constexpr std::string_view kEnd = "\n";
  rows_.append({message.time, kEnd, message.flight, kEnd, message.registration, kEnd, message.from,
                kEnd, message.to, kEnd, message.equipment, kEnd, Left(message.text, kLongestText)});
}

void FoundMessages::clear() {
  rows_.clear();
  at_.clear();
  logs_.clear();
}

std::string FoundMessages::cell(std::size_t index, int column) const {
  switch (column) {
    case kFoundDate: {
      const auto found = day(index);
      return found ? dayText(*found) : std::string();
    }
    case kFoundSource:
      return nameOf(log(index).source);
    default:
      return std::string(text(index, column));
  }
}

std::string_view FoundMessages::text(std::size_t index, int column) const {
  switch (column) {
    case kFoundDate:
    case kFoundSource:
      return {};
    case kFoundTime:
      return rows_.field(index, 0);
    default:
      return rows_.field(index, static_cast<std::size_t>(column - kFoundSource));
  }
}

std::optional<std::chrono::local_days> FoundMessages::day(std::size_t index) const {
  if (at_[index].day == kNoDay) return std::nullopt;
  return std::chrono::local_days(std::chrono::days(at_[index].day));
}

std::optional<int> FoundMessages::hour(std::size_t index) const {
  const std::string_view time = text(index, kFoundTime);
  const std::size_t colon = time.find(':');
  if (colon == 0 || colon > 2) return std::nullopt;
  int hour = 0;
  for (const char c : time.substr(0, colon)) {
    if (!isDigit(c)) return std::nullopt;
    hour = hour * 10 + (c - '0');
  }
  return hour < 24 ? std::optional(hour) : std::nullopt;
}

const FoundMessages::Log& FoundMessages::log(std::size_t index) const {
  return logs_[at_[index].log];
}

std::size_t FoundMessages::overhead() const {
  std::size_t bytes = rows_.overhead() + at_.size() * sizeof(At);
  for (const Log& log : logs_) bytes += sizeof(Log) + log.name.capacity();
  return bytes;
}

}  // namespace vel
