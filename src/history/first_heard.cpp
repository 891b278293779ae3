#include "history/first_heard.h"

#include <algorithm>
#include <optional>

#include "acars/list_log.h"
#include "hfdl/hfdl_lines.h"
#include "hfdl/hfdl_log.h"
#include "log/dated_logs.h"

namespace vel {
namespace {

std::vector<std::string> encodedNames(const std::vector<std::string>& names,
                                      const Encoding& encoding) {
  std::vector<std::string> encoded;
  for (const std::string& name : names) {
    // What was decoded from damaged bytes cannot be recognised.
    if (const auto bytes = encoding.encode(name); bytes && !bytes->empty()) {
      encoded.push_back(*bytes);
    }
  }
  return encoded;
}

std::vector<std::string> decodedNames(const std::vector<std::string>& names,
                                      const Encoding& encoding) {
  std::vector<std::string> decoded;
  decoded.reserve(names.size());
  for (const std::string& name : names) decoded.push_back(encoding.decode(name));
  return decoded;
}

}  // namespace

FirstHeard::FirstHeard(const Folders& folders, const Encoding& encoding, const Names& names,
                       std::chrono::local_days day, Logs logs)
    : folders_(folders),
      encoding_(encoding),
      day_(day),
      which_(logs),
      aircraft_(encodedNames(names.aircraft, encoding)),
      flights_(encodedNames(names.flights, encoding)),
      registrationLabel_(std::string(kRegistrationLabel.text)),
      flightLabel_(std::string(kFlightLabel.text)) {}

// A folder of many files takes its time: one listing after the other.
void FirstHeard::listLogs(HistorySource source) {
  const bool isHfdl = source == HistorySource::hfdl;
  if (!(isHfdl ? which_.hfdl : which_.lists)) return;
  for (std::string& name : datedLogs(folders_.logs, isHfdl ? kHfdlLogSuffix : kListLogSuffix)) {
    const auto day = dayOfName(name);
    if (day && *day < day_) logs_.push_back({source, std::move(name), *day});
  }
  std::stable_sort(logs_.begin(), logs_.end(),
                   [](const Log& left, const Log& right) { return left.day > right.day; });
}

Result<JobProgress> FirstHeard::step(Clock::time_point deadline) {
  if (listings_ < 2) {
    listLogs(listings_ == 0 ? HistorySource::list : HistorySource::hfdl);
    ++listings_;
    return JobProgress::more;
  }
  do {
    if (next_ == logs_.size() || (aircraft_.isDone() && flights_.isDone())) {
      blocks_.close();
      return JobProgress::done;
    }
    if (!isOpen_ && !open()) continue;
    const Result<std::string_view> block = blocks_.next();
    if (!block) {
      problems_.push_back({logs_[next_].name, LogProblem::Kind::unreadable, block.error().number});
      close();
    } else if (block->empty() && blocks_.isAtEnd()) {
      close();
    } else if (logs_[next_].source == HistorySource::hfdl) {
      strikeHfdlNames(*block, registrationLabel_, aircraft_);
      strikeHfdlNames(*block, flightLabel_, flights_);
    } else {
      strikeListNames(*block, aircraft_, flights_);
    }
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

bool FirstHeard::open() {
  const std::string& name = logs_[next_].name;
  const Status opened = blocks_.open(folders_.logs / toPath(name), LogBlocks::Cut::lines);
  if (!opened) {
    const ErrorNumber number = opened.error().number;
    const bool isGone = number == ErrorNumber::fileNotFound || number == ErrorNumber::pathNotFound;
    problems_.push_back(
        {name, isGone ? LogProblem::Kind::gone : LogProblem::Kind::unreadable, number});
    ++next_;
    return false;
  }
  isOpen_ = true;
  return true;
}

void FirstHeard::close() {
  blocks_.close();
  isOpen_ = false;
  ++next_;
}

// A name stands behind its label, from a fixed column on.
void FirstHeard::strikeHfdlNames(std::string_view block, BytePattern& label,
                                 WantedNames& names) const {
  label.prepare(block);
  const char* const end = block.data() + block.size();
  for (const char* place = label.find(block.data(), end); place != end;) {
    const char* begin = place;
    while (begin > block.data() && begin[-1] != '\n') --begin;
    const auto from = static_cast<std::size_t>(begin - block.data());
    const std::size_t lineEnd =
        std::min(block.find('\n', static_cast<std::size_t>(place - block.data())), block.size());
    std::string_view line = block.substr(from, lineEnd - from);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (isAscii(line)) {
      names.strike(Trim(Mid(line, kValueColumn)));
    } else if (const auto bytes =
                   encoding_.encode(Trim(Mid(encoding_.decode(line), kValueColumn)))) {
      names.strike(*bytes);
    }
    place = label.find(block.data() + lineEnd, end);
  }
}

FirstHeard::Names FirstHeard::heardFirst() const {
  return {decodedNames(aircraft_.left(), encoding_), decodedNames(flights_.left(), encoding_)};
}

}  // namespace vel
