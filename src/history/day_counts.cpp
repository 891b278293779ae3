#include "history/day_counts.h"

#include <algorithm>
#include <utility>

#include "acars/list_log.h"
#include "hfdl/hfdl_log.h"
#include "log/dated_logs.h"

namespace vel {
namespace {

constexpr std::size_t kPrefix = 2;

std::string_view withoutReturn(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

bool isShortFlight(std::string_view flight) {
  constexpr std::size_t kComplete = 5;
  return !flight.empty() && length(flight) < kComplete;
}

std::optional<int> DayCounts::busiestHour() const {
  const auto most = std::max_element(hours.begin(), hours.end());
  if (*most == 0) return std::nullopt;
  return static_cast<int>(most - hours.begin());
}

std::optional<std::string> logOfDay(const Folders& folders, ReportKind kind,
                                    std::chrono::local_days day) {
  const std::string_view suffix = kind == ReportKind::list ? kListLogSuffix : kHfdlLogSuffix;
  for (const std::string& name : datedLogs(folders.logs, suffix)) {
    if (dayOfName(name) == day) return name;
  }
  return std::nullopt;
}

DayCounting::DayCounting(const Tables& tables, ReportKind kind, std::chrono::local_days day)
    : tables_(tables), kind_(kind), day_(day), parts_(tables.encoding()) {}

bool DayCounting::open() {
  DayCounts& counts = days_.emplace_back();
  counts.day = day_ - std::chrono::days(static_cast<int>(days_.size()) - 1);
  const auto name = logOfDay(tables_.folders(), kind_, counts.day);
  if (!name) return false;
  const Status opened =
      blocks_.open(tables_.folders().logs / toPath(*name),
                   kind_ == ReportKind::list ? LogBlocks::Cut::lines : LogBlocks::Cut::messages);
  if (!opened) {
    problems_.push_back({*name, LogProblem::Kind::unreadable, opened.error().number});
    return false;
  }
  counts.hasLog = true;
  isOpen_ = true;
  return true;
}

Result<JobProgress> DayCounting::step(Clock::time_point deadline) {
  const Tables::ManyLookUps lookUps(tables_);
  do {
    if (!addresses_.empty()) {
      const Result<bool> looked = countType();
      if (!looked) return looked.error();
      continue;
    }
    if (!isOpen_) {
      if (days_.size() == 1 + kDaysBefore) return JobProgress::done;
      open();
      continue;
    }
    const Result<std::string_view> block = blocks_.next();
    if (!block) {
      problems_.push_back(
          {dayText(days_.back().day), LogProblem::Kind::unreadable, block.error().number});
    }
    if (!block || (block->empty() && blocks_.isAtEnd())) {
      blocks_.close();
      isOpen_ = false;
      addresses_ = days_.back().addresses.mostFirst();
      continue;
    }
    count(*block);
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

Result<bool> DayCounting::countType() {
  const auto [address, messages] = addresses_.back();
  addresses_.pop_back();
  const Result<Icao24Record> record = tables_.aircraftOfAddressIfPresent(address);
  if (!record) return record.error();
  days_.back().types.add((*record)[4], messages);
  return !addresses_.empty();
}

void DayCounting::countHour(std::string_view time) {
  const std::size_t colon = time.find(':');
  if (colon == 0 || colon > 2) return;
  std::size_t hour = 0;
  for (const char c : time.substr(0, colon)) {
    if (c < '0' || c > '9') return;
    hour = hour * 10 + static_cast<std::size_t>(c - '0');
  }
  if (hour < 24) ++days_.back().hours[hour];
}

void DayCounting::countFlight(std::string_view flight, std::string_view address) {
  flight = Trim(flight);
  days_.back().flights.add(flight);
  if (kind_ == ReportKind::hfdl && isShortFlight(flight)) {
    days_.back().shortFlights.add(std::string(flight) + '\n' + std::string(address));
    return;
  }
  days_.back().airlines.add(Left(flight, kPrefix));
}

void DayCounting::count(std::string_view block) {
  DayCounts& counts = days_.back();
  if (kind_ == ReportKind::hfdl) {
    parts_.forEach(block, [&](const HfdlPart& part) {
      ++counts.messages;
      counts.addresses.add(Trim(part.record.address));
      counts.aircraft.add(Trim(part.record.registration));
      countFlight(part.record.flightId, Trim(part.record.address));
      const std::size_t blank = part.record.timeStamp.find(' ');
      if (blank != std::string::npos) {
        countHour(std::string_view(part.record.timeStamp).substr(blank + 1));
      }
    });
    return;
  }
  for (std::size_t at = 0; at < block.size();) {
    const std::size_t end = std::min(block.find('\n', at), block.size());
    ListFields fields;
    if (cutListLine(withoutReturn(block.substr(at, end - at)), fields)) {
      const auto decoded = [this](std::string_view bytes) {
        return isAscii(bytes) ? std::string(bytes) : tables_.encoding().decode(bytes);
      };
      ++counts.messages;
      countFlight(decoded(fields.field[0]), {});
      counts.aircraft.add(Trim(decoded(fields.field[2])));
      counts.airports.add(Trim(decoded(fields.field[3])));
      counts.airports.add(Trim(decoded(fields.field[4])));
      counts.types.add(Trim(decoded(fields.field[5])));
      countHour(fields.field[7]);
    }
    at = end + 1;
  }
}

}  // namespace vel
