#include "exchange/station_mentions.h"

#include <algorithm>

#include "acars/list_log.h"
#include "core/file.h"
#include "hfdl/hfdl_row.h"
#include "log/dated_logs.h"
#include "tables/record.h"
#include "tables/table_scanner.h"
#include "tables/tables.h"

namespace vel {
namespace {

constexpr std::size_t kPrefix = 2;
constexpr std::size_t kShortFlight = 5;  // shorter ones are completed
constexpr std::size_t kListFields = 8;
constexpr std::size_t kRoute = 8;
constexpr std::string_view kHeaderField = "Flight No.";

// A registration without what some write and some leave out.
std::string bare(std::string_view registration) {
  std::string made;
  for (const char c : registration) {
    if (c == '-' || c == '.' || c == ' ') continue;
    made += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  return made;
}

}  // namespace

void StationMentions::addRegistration(std::string_view registration) {
  registration = Trim(registration);
  const std::string form = bare(registration);
  if (form.empty()) return;
  std::vector<std::string>& received = registrations_[form];
  if (std::find(received.begin(), received.end(), registration) == received.end()) {
    received.emplace_back(registration);
  }
}

void StationMentions::addFlight(std::string_view flight) {
  flight = Trim(flight);
  if (flight.empty() || !flights_.emplace(flight).second) return;
  prefixes_.emplace(Left(flight, kPrefix));
}

void StationMentions::addAirport(std::string_view code) {
  code = Trim(code);
  if (!code.empty()) airports_.emplace(code);
}

void StationMentions::addAddress(std::string_view address) {
  address = Trim(address);
  if (!address.empty()) addresses_.emplace(address);
}

bool StationMentions::namesFlight(std::string_view flight) const {
  return flights_.count(std::string(flight)) > 0;
}

std::vector<std::string> StationMentions::keysFor(Table table, std::string_view key,
                                                  std::string_view name) const {
  const std::string own(key);
  bool isWanted = false;
  switch (table) {
    case Table::aircraft: {
      const auto found = registrations_.find(bare(key));
      return found == registrations_.end() ? std::vector<std::string>() : found->second;
    }
    case Table::flight:
      isWanted = flights_.count(own) > 0;
      break;
    case Table::airport:
      isWanted = airports_.count(own) > 0 ||
                 airports_.count(std::string(Right(name, kShortAirportCodeLength))) > 0;
      break;
    case Table::letter:
      isWanted = prefixes_.count(own) > 0;
      break;
    case Table::icao24:
      isWanted = addresses_.count(own) > 0;
      break;
  }
  return isWanted ? std::vector<std::string>{own} : std::vector<std::string>();
}

MentionReading::MentionReading(const Folders& folders, const Encoding& encoding,
                               StationMentions& mentions)
    : folders_(folders),
      encoding_(encoding),
      mentions_(mentions),
      lists_(datedLogs(folders.logs, kListLogSuffix)),
      formatted_(datedLogs(folders.logs, kHfdlLogSuffix)),
      inAll_(lists_.size() + formatted_.size()) {}

MentionReading::~MentionReading() = default;

double MentionReading::progress() const {
  if (inAll_ == 0) return 1;
  const std::size_t left = lists_.size() + formatted_.size();
  return static_cast<double>(inAll_ - left) / static_cast<double>(inAll_);
}

void MentionReading::open() {
  const bool isList = !lists_.empty();
  std::vector<std::string>& names = isList ? lists_ : formatted_;
  Result<InputFile> file = InputFile::open(folders_.logs / toPath(names.back()));
  names.pop_back();
  if (!file) return;
  if (isList) {
    list_ = std::make_unique<LineReader>(*std::move(file));
  } else {
    hfdl_ = std::make_unique<HfdlReader>(*std::move(file), encoding_);
  }
}

void MentionReading::takeListLine(std::string_view line) {
  const std::vector<std::string_view> fields = split(line, ',');
  if (fields.size() != kListFields || fields[0] == kHeaderField) return;
  const auto text = [this](std::string_view bytes) {
    return isAscii(bytes) ? std::string(bytes) : encoding_.decode(bytes);
  };
  mentions_.addFlight(text(fields[0]));
  mentions_.addRegistration(text(fields[2]));
  mentions_.addAirport(text(fields[3]));
  mentions_.addAirport(text(fields[4]));
}

// False when the log has been read.
bool MentionReading::readList(Clock::time_point deadline) {
  constexpr int kLines = 256;
  do {
    for (int i = 0; i < kLines; ++i) {
      const auto line = list_->next();
      if (!line || !*line) return false;
      if (!list_->wasCut()) takeListLine(**line);
    }
  } while (Clock::now() < deadline);
  return true;
}

bool MentionReading::readFormatted(Clock::time_point deadline) {
  do {
    const Result<HfdlReader::Step> step = hfdl_->step();
    if (!step || *step == HfdlReader::Step::end) return false;
    if (*step != HfdlReader::Step::record) continue;
    const HfdlRecord& record = hfdl_->record();
    const std::string address(Trim(record.address));
    const std::string flight(Trim(record.flightId));
    mentions_.addAddress(address);
    mentions_.addRegistration(record.registration);
    if (flight.empty()) continue;
    if (length(flight) >= kShortFlight) {
      mentions_.addFlight(flight);
    } else if (shortFlightsSeen_.insert(flight + ' ' + address).second) {
      shortFlights_.emplace_back(flight, address);
    }
  } while (Clock::now() < deadline);
  return true;
}

void MentionReading::readTables() {
  const TableScanner::Source source{.byteOrderMark = byteOrderMarkOf(encoding_)};
  std::unordered_map<std::string, std::string> airlines;  // of addresses
  for (const auto& [flight, address] : shortFlights_) airlines[address];
  const auto takeAircraft = [&](std::string_view line) {
    const auto address = fieldAt(line, 0);
    const auto airline = fieldAt(line, 2);
    const auto found = airlines.find(std::string(*address));
    if (airline && found != airlines.end() && found->second.empty()) {
      found->second = encoding_.decode(*airline);
    }
    return TableScanner::Next::more;
  };
  const auto takeRoute = [&](std::string_view line) {
    const auto flight = fieldAt(line, 0);
    const auto route = fieldAt(line, 1);
    if (!route || !mentions_.namesFlight(encoding_.decode(*flight))) {
      return TableScanner::Next::more;
    }
    if (route->size() == kRoute) {
      mentions_.addAirport(route->substr(0, kAirportCodeLength));
      mentions_.addAirport(route->substr(kAirportCodeLength));
    }
    return TableScanner::Next::more;
  };
  // A missing table has nothing to add.
  if (!airlines.empty()) {
    static_cast<void>(TableScanner::forEachLine(filesOf(folders_, Table::icao24).live, {},
                                                TableScanner::Anchor::lineStart, takeAircraft,
                                                source));
  }
  for (const auto& [flight, address] : shortFlights_) {
    Icao24Record aircraft;
    aircraft[2] = airlines[address];
    if (!aircraft[2].empty()) mentions_.addFlight(completedFlight(flight, aircraft));
  }
  static_cast<void>(TableScanner::forEachLine(filesOf(folders_, Table::flight).live, {},
                                              TableScanner::Anchor::lineStart, takeRoute, source));
}

Result<JobProgress> MentionReading::step(Clock::time_point deadline) {
  do {
    if (list_ != nullptr) {
      if (!readList(deadline)) list_.reset();
    } else if (hfdl_ != nullptr) {
      if (!readFormatted(deadline)) hfdl_.reset();
    } else if (lists_.empty() && formatted_.empty()) {
      readTables();
      return JobProgress::done;
    } else {
      open();
    }
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

}  // namespace vel
