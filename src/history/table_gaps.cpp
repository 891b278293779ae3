#include "history/table_gaps.h"

#include <algorithm>
#include <optional>

#include "hfdl/hfdl_row.h"

namespace vel {
namespace {

constexpr std::size_t kShortCode = 3;

bool hasLetter(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
}

}  // namespace

TableGaps::TableGaps(const Tables& tables, ReportKind kind, const DayCounts& day)
    : tables_(tables), kind_(kind), photos_(tables.folders()) {
  const auto add = [this](GapKind gap, const NameCounts& counts) {
    for (auto& [name, count] : counts.mostFirst()) names_.push_back({gap, name, count});
  };
  add(GapKind::aircraft, kind == ReportKind::list ? day.aircraft : day.addresses);
  for (auto& [flight, count] : day.flights.mostFirst()) {
    if (kind == ReportKind::list || !isShortFlight(flight)) {
      names_.push_back({GapKind::flight, flight, count});
    }
  }
  add(GapKind::flight, day.shortFlights);
  add(GapKind::prefix, day.airlines);
  add(GapKind::airport, day.airports);
  add(GapKind::photo, day.aircraft);
}

Result<JobProgress> TableGaps::step(Clock::time_point deadline) {
  const Tables::ManyLookUps lookUps(tables_);
  do {
    if (next_ == names_.size()) {
      if (routesDone_) return JobProgress::done;
      routesDone_ = true;
      for (auto& [name, count] : routeAirports_.mostFirst()) {
        names_.push_back({GapKind::airport, name, count});
      }
      continue;
    }
    if (const Status looked = look(names_[next_]); !looked) return looked.error();
    ++next_;
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

Result<bool> TableGaps::hasAirport(const std::string& code) const {
  if (length(code) == kShortCode) {
    const Result<std::string> found = tables_.airportCodeOfThreeLetters(code);
    if (!found) return found.error();
    return !found->empty();
  }
  const Result<std::optional<std::string>> found = tables_.airportNameOfFirstLine(code);
  if (!found) return found.error();
  return found->has_value() && !(*found)->empty();
}

void TableGaps::miss(GapKind kind, std::string name, std::string heardAs, std::size_t count) {
  gaps_.push_back({kind, std::move(name), std::move(heardAs), count});
}

Status TableGaps::lookFlight(const Name& name) {
  const std::size_t address = name.text.find('\n');
  const std::string heardAs = name.text.substr(0, address);
  std::string flight = heardAs;
  if (address != std::string::npos) {
    const Result<Icao24Record> aircraft = tables_.aircraftOfAddress(name.text.substr(address + 1));
    if (!aircraft) return aircraft.error();
    flight = completedFlight(heardAs, *aircraft);
  }
  const auto route = tables_.testedFlightRoute(flight);
  if (!route) return route.error();
  if (route->has_value() && !(*route)->departure.empty()) {
    if (kind_ == ReportKind::hfdl) {
      routeAirports_.add((*route)->departure, name.count);
      routeAirports_.add((*route)->destination, name.count);
    }
    return {};
  }
  // Several aircraft may fly under one flight.
  const auto same = std::find_if(gaps_.begin(), gaps_.end(), [&](const TableGap& gap) {
    return gap.kind == GapKind::flight && gap.name == flight;
  });
  if (same != gaps_.end()) {
    same->count += name.count;
  } else {
    miss(GapKind::flight, flight, heardAs, name.count);
    if (address != std::string::npos) gaps_.back().address = name.text.substr(address + 1);
  }
  return {};
}

Status TableGaps::look(const Name& name) {
  switch (name.kind) {
    case GapKind::aircraft: {
      if (kind_ == ReportKind::list) {
        const Result<std::string> equipment = tables_.equipmentOfLastLine(name.text);
        if (!equipment) return equipment.error();
        if (equipment->empty()) miss(name.kind, name.text, name.text, name.count);
        return {};
      }
      const Result<Icao24Record> record = tables_.aircraftOfAddress(name.text);
      if (!record) return record.error();
      if ((*record)[0].empty()) miss(name.kind, name.text, name.text, name.count);
      return {};
    }
    case GapKind::flight:
      return lookFlight(name);
    case GapKind::prefix: {
      const Result<bool> known = tables_.knowsAirline(name.text);
      if (!known) return known.error();
      if (!*known) miss(name.kind, name.text, name.text, name.count);
      return {};
    }
    case GapKind::airport: {
      // "-" and the like stand for no airport.
      if (!hasLetter(name.text)) return {};
      const Result<bool> known = hasAirport(name.text);
      if (!known) return known.error();
      if (!*known) miss(name.kind, name.text, name.text, name.count);
      return {};
    }
    case GapKind::photo:
      if (!photos_.find(name.text)) miss(name.kind, name.text, name.text, name.count);
      return {};
  }
  return {};
}

std::vector<TableGap> TableGaps::gaps(GapKind kind) const {
  std::vector<TableGap> chosen;
  std::copy_if(gaps_.begin(), gaps_.end(), std::back_inserter(chosen),
               [kind](const TableGap& gap) { return gap.kind == kind; });
  std::stable_sort(chosen.begin(), chosen.end(), [](const TableGap& left, const TableGap& right) {
    return left.count != right.count ? left.count > right.count : left.name < right.name;
  });
  return chosen;
}

}  // namespace vel
