#include "history/log_place.h"

#include <algorithm>
#include <utility>

#include "web/raw_log.h"

namespace vel {
namespace {

// Calls take(line, offset within the block) for each line.
template <typename Take>
void forEachLine(std::string_view block, Take take) {
  for (std::size_t at = 0; at < block.size();) {
    const std::size_t end = std::min(block.find('\n', at), block.size());
    std::string_view line = block.substr(at, end - at);
    if (line.ends_with('\r')) line.remove_suffix(1);
    take(line, at);
    at = end + 1;
  }
}

}  // namespace

LogPlace::LogPlace(std::filesystem::path file, HistorySource source, std::uint64_t offset,
                   const Encoding& encoding)
    : file_(std::move(file)),
      source_(source),
      offset_(offset),
      encoding_(encoding),
      parts_(encoding) {}

Result<JobProgress> LogPlace::step(Clock::time_point deadline) {
  if (!isOpen_) {
    const Status opened = blocks_.open(
        file_, source_ == HistorySource::hfdl ? LogBlocks::Cut::messages : LogBlocks::Cut::lines);
    if (!opened) return opened.error();
    isOpen_ = true;
  }
  do {
    const Result<std::string_view> block = blocks_.next();
    if (!block) return block.error();
    if (block->empty() && blocks_.isAtEnd()) return JobProgress::done;
    switch (source_) {
      case HistorySource::list:
        countList(*block);
        break;
      case HistorySource::hfdl:
        countHfdl(*block);
        break;
      case HistorySource::raw:
        countRaw(*block);
        break;
    }
    if (row_ || blocks_.offset() + block->size() > offset_) return JobProgress::done;
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

void LogPlace::countList(std::string_view block) {
  forEachLine(block, [this](std::string_view line, std::size_t at) {
    ListFields fields;
    if (row_ || !cutListLine(line, fields)) return;
    if (blocks_.offset() + at == offset_) row_ = rows_;
    ++rows_;
  });
}

void LogPlace::countHfdl(std::string_view block) {
  parts_.forEach(block, [this](const HfdlPart& part) {
    if (blocks_.offset() + part.begin == offset_) row_ = rows_;
    ++rows_;
  });
}

void LogPlace::countRaw(std::string_view block) {
  forEachLine(block, [this](std::string_view line, std::size_t at) {
    if (row_ || line.find(">+*<") == std::string_view::npos) return;
    const std::optional<RawMessage> message = parseRawLine(encoding_.decode(line));
    if (!message || message->body.empty()) return;
    if (blocks_.offset() + at == offset_) row_ = rows_;
    ++rows_;
  });
}

}  // namespace vel
