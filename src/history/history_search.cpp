#include "history/history_search.h"

#include <algorithm>
#include <utility>

#include "acars/list_log.h"
#include "core/file.h"
#include "hfdl/hfdl_log.h"
#include "log/dated_logs.h"

namespace vel {
namespace {

constexpr std::string_view kRawLogSuffix = ".log";
constexpr std::size_t kNamedProblems = 10;

std::vector<std::string> rawLogs(const Folders& folders) {
  Result<std::vector<std::string>> names = listFolder(folders.eachLogs);
  if (!names) return {};
  std::erase_if(*names, [](const std::string& name) {
    return name.size() <= kRawLogSuffix.size() ||
           !equalIgnoringCase(std::string_view(name).substr(name.size() - kRawLogSuffix.size()),
                              kRawLogSuffix);
  });
  return *std::move(names);
}

std::string describe(const LogProblem& problem) {
  switch (problem.kind) {
    case LogProblem::Kind::gone:
      return problem.name + ": gone 削除されました";
    case LogProblem::Kind::grew:
      return problem.name + ": grew meanwhile 読込み中に追記されました";
    case LogProblem::Kind::shrank:
      return problem.name + ": became shorter 読込み中に短くなりました";
    default:
      return problem.name + ": " + Error{problem.number}.text();
  }
}

// The line around a place of a block that begins and ends with whole lines.
std::string_view lineAround(std::string_view block, const char* place) {
  const char* begin = place;
  while (begin[-1] != '\n' && begin > block.data()) --begin;
  const auto at = static_cast<std::size_t>(begin - block.data());
  const std::size_t lineEnd = block.find('\n', static_cast<std::size_t>(place - block.data()));
  return block.substr(at, lineEnd == std::string_view::npos ? lineEnd : lineEnd + 1 - at);
}

// The message around it, with all its lines.
std::string_view messageAround(std::string_view block, const char* place) {
  const std::string_view line = lineAround(block, place);
  auto begin = static_cast<std::size_t>(line.data() - block.data());
  if (!hasLabel(line, kHeaderMark)) {
    const std::size_t mark = block.rfind(kHeaderMark.text, begin);
    begin = mark == std::string_view::npos
                ? 0
                : static_cast<std::size_t>(lineAround(block, block.data() + mark).data() -
                                           block.data());
  }
  const auto behind = static_cast<std::size_t>(line.data() - block.data()) + line.size();
  const std::size_t nextMark = block.find(kHeaderMark.text, behind);
  const std::size_t end =
      nextMark == std::string_view::npos
          ? block.size()
          : static_cast<std::size_t>(lineAround(block, block.data() + nextMark).data() -
                                     block.data());
  return block.substr(begin, end - begin);
}

}  // namespace

std::string reportOf(const std::vector<LogProblem>& problems) {
  if (problems.empty()) return {};
  const std::string number = std::to_string(problems.size());
  std::string text = number + " logs could not be read completely.  完全に読み込めないログが " +
                     number + "件 ありました。\r\n";
  for (std::size_t i = 0; i < problems.size() && i < kNamedProblems; ++i) {
    text += "\r\n" + describe(problems[i]);
  }
  if (problems.size() > kNamedProblems) text += "\r\n...";
  return text;
}

HistorySearch::HistorySearch(const Folders& folders, const Encoding& encoding,
                             const HistoryQuery& query, FoundMessages& found)
    : folders_(folders), query_(query), match_(query, Tables(folders, encoding)), found_(found) {
  for (const std::string& bytes : match_.text().scanBytes()) patterns_.emplace_back(bytes);
  for (const std::string& bytes : match_.text().hfdlScanBytes()) hfdlPatterns_.emplace_back(bytes);
  // Lists hold no addresses and formatted logs no airports: nothing that the
  // text could be compared with.
  if (query.lists && query.meaning != SearchMeaning::address) {
    unlisted_.push_back(HistorySource::list);
  }
  if (query.hfdl && query.meaning != SearchMeaning::airport) {
    unlisted_.push_back(HistorySource::hfdl);
  }
  if (query.rawLogs) unlisted_.push_back(HistorySource::raw);
}

// A folder of many files takes its time: one listing after the other.
void HistorySearch::listLogs(HistorySource source) {
  if (source == HistorySource::raw) {
    for (std::string& name : rawLogs(folders_)) logs_.push_back({source, std::move(name), {}});
    return;
  }
  const bool isList = source == HistorySource::list;
  for (std::string& name : datedLogs(folders_.logs, isList ? kListLogSuffix : kHfdlLogSuffix)) {
    const auto day = dayOfName(name);
    if (day ? query_.days.holds(*day) : query_.days.isAll()) {
      logs_.push_back({source, std::move(name), day});
    }
  }
  std::stable_sort(logs_.begin(), logs_.end(),
                   [](const Log& left, const Log& right) { return left.day < right.day; });
}

Result<JobProgress> HistorySearch::step(Clock::time_point deadline) {
  if (!unlisted_.empty()) {
    listLogs(unlisted_.front());
    unlisted_.erase(unlisted_.begin());
    return JobProgress::more;
  }
  do {
    if (!isOpen_) {
      if (next_ == logs_.size()) return JobProgress::done;
      if (!open()) continue;
    }
    const Result<std::string_view> block = blocks_.next();
    if (!block) {
      close(LogProblem::Kind::unreadable, block.error().number);
      continue;
    }
    if (block->empty() && !blocks_.isAtEnd()) continue;
    if (block->empty()) {
      switch (blocks_.change()) {
        case LogBlocks::Change::grew:
          close(LogProblem::Kind::grew);
          break;
        case LogBlocks::Change::shrank:
          close(LogProblem::Kind::shrank);
          break;
        case LogBlocks::Change::none:
          close(std::nullopt);
          break;
      }
      continue;
    }
    scan(*block);
    if (found_.size() >= kMostFound) {
      cutShort_ = true;
      blocks_.close();
      return JobProgress::done;
    }
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

bool HistorySearch::open() {
  const Log& log = logs_[next_];
  const bool isRaw = log.source == HistorySource::raw;
  const Status opened = blocks_.open(
      (isRaw ? folders_.eachLogs : folders_.logs) / toPath(log.name),
      log.source == HistorySource::hfdl ? LogBlocks::Cut::messages : LogBlocks::Cut::lines);
  if (!opened) {
    const ErrorNumber number = opened.error().number;
    const bool isGone = number == ErrorNumber::fileNotFound || number == ErrorNumber::pathNotFound;
    close(isGone ? LogProblem::Kind::gone : LogProblem::Kind::unreadable, number);
    return false;
  }
  isOpen_ = true;
  foundLog_ = found_.addLog({log.source, log.name});
  const std::string_view stem =
      std::string_view(log.name).substr(0, log.name.size() - kRawLogSuffix.size());
  const bool isOwn =
      isRaw && query_.meaning == SearchMeaning::registration && match_.text().isDecodedField(stem);
  rawLog_ = isOwn ? MessageMatch::RawLog::ofTheAircraft : MessageMatch::RawLog::ofAny;
  everyLine_ = patterns_.empty() || isOwn;
  return true;
}

void HistorySearch::close(std::optional<LogProblem::Kind> problem, ErrorNumber number) {
  if (problem) problems_.push_back({logs_[next_].name, *problem, number});
  blocks_.close();
  isOpen_ = false;
  ++next_;
}

// Hands the line or the message at the place over, and goes on behind it.
void HistorySearch::takePlace(std::string_view block, const char*& place) {
  const Log& log = logs_[next_];
  const std::string_view piece =
      log.source == HistorySource::hfdl ? messageAround(block, place) : lineAround(block, place);
  const std::uint64_t offset =
      blocks_.offset() + static_cast<std::uint64_t>(piece.data() - block.data());
  switch (log.source) {
    case HistorySource::list:
      match_.takeListLine(piece, offset, log.day, foundLog_, found_);
      break;
    case HistorySource::hfdl:
      match_.takeHfdlMessage(piece, offset, log.day, foundLog_, found_);
      break;
    case HistorySource::raw:
      match_.takeRawLine(piece, offset, rawLog_, foundLog_, found_);
      break;
  }
  place = piece.data() + piece.size();
}

void HistorySearch::scan(std::string_view block) {
  const char* const end = block.data() + block.size();
  if (everyLine_) {
    for (const char* place = block.data(); place < end;) takePlace(block, place);
    return;
  }
  // Lines are found in a copy in which the case does not matter, and taken from
  // the block.
  std::string_view searched = block;
  if (match_.text().ignoresCase()) {
    folded_.resize(std::max(folded_.size(), block.size() + 2 * BytePattern::kSlack));
    char* const copy = folded_.data() + BytePattern::kSlack;
    std::transform(block.begin(), block.end(), copy, foldedByte);
    searched = {copy, block.size()};
  }
  const char* const searchedEnd = searched.data() + searched.size();
  std::vector<BytePattern>& patterns =
      logs_[next_].source == HistorySource::hfdl ? hfdlPatterns_ : patterns_;
  std::vector<const char*> hits;
  for (BytePattern& pattern : patterns) {
    pattern.prepare(searched);
    hits.push_back(pattern.find(searched.data(), searchedEnd));
  }
  while (true) {
    const char* const nearest = *std::min_element(hits.begin(), hits.end());
    if (nearest == searchedEnd) return;
    const char* place = block.data() + (nearest - searched.data());
    takePlace(block, place);
    const char* const behind = searched.data() + (place - block.data());
    for (std::size_t i = 0; i < hits.size(); ++i) {
      if (hits[i] < behind) hits[i] = patterns[i].find(behind, searchedEnd);
    }
  }
}

}  // namespace vel
