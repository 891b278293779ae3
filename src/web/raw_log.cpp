#include "web/raw_log.h"

#include <utility>

#include "core/file.h"

namespace vel {
namespace {

constexpr std::string_view kMarker = ">+*<";
constexpr std::size_t kSkippedAfterMarker = 14;
constexpr std::string_view kStartOfText = "<STX>";
constexpr std::string_view kEndOfText = "<ETX>";
constexpr std::string_view kEndOfBlock = "<ETB>";
constexpr std::string_view kBreak = "<CR><VF>";
constexpr std::string_view kSeparator = "---------------------------[";
constexpr std::size_t kBodyPosition = 11;

constexpr std::string_view kLineEnd = "\r\n";

std::string text(std::string_view view) { return std::string(view); }

// A number with a comma between its thousands.
std::string grouped(std::size_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t place = digits.size(); place > 3;) digits.insert(place -= 3, 1, ',');
  return digits;
}

}  // namespace

std::optional<RawMessage> parseRawLine(std::string_view line) {
  const std::size_t marker = line.find(kMarker);
  if (marker == std::string_view::npos) return std::nullopt;
  const std::string_view part = Mid(line.substr(marker), kMarker.size() + kSkippedAfterMarker + 1);
  const std::size_t start = part.find(kStartOfText);
  std::size_t end = part.find(kEndOfText);
  if (end == std::string_view::npos) end = part.find(kEndOfBlock);
  if (start == std::string_view::npos || end == std::string_view::npos) return std::nullopt;
  const std::size_t textBegin = start + kStartOfText.size();
  if (end < textBegin) return std::nullopt;
  const std::string_view content = part.substr(textBegin, end - textBegin);
  RawMessage message;
  message.header = text(line.substr(0, marker));
  message.mode = text(Mid(part, 1, 1));
  message.registration = text(Mid(part, 3, 6));
  message.label = text(Mid(part, 14, 2));
  message.block = text(Mid(part, 16, 1));
  message.messageNumber = text(Mid(content, 1, 4));
  message.flight = text(Mid(content, 5, 6));
  message.body = text(Mid(content, kBodyPosition));
  return message;
}

std::string bodyWithBreaks(std::string_view body, std::string_view lineBreak) {
  std::string broken;
  broken.reserve(body.size());
  while (true) {
    const std::size_t next = body.find(kBreak);
    broken += body.substr(0, next);
    if (next == std::string_view::npos) return broken;
    broken += lineBreak;
    body.remove_prefix(next + kBreak.size());
  }
}

std::string displayBlock(const RawMessage& message) {
  if (message.body.empty()) return {};
  std::string block(kSeparator);
  block += message.header + "]\r\n";
  block += message.flight + " (" + message.registration + ")    [";
  block += message.label + ":" + message.block + ":" + message.messageNumber;
  block += "] MODE:" + message.mode + "   \r\n";
  block += bodyWithBreaks(message.body, "\r\n") + "\r\n\r\n";
  return block;
}

RawLogRead::RawLogRead(std::filesystem::path file, const Encoding& encoding, RawLog& log)
    : file_(std::move(file)), encoding_(encoding), log_(log) {
  log_ = {};
}

Result<JobProgress> RawLogRead::step(Clock::time_point deadline) {
  if (!lines_) {
    Result<InputFile> opened = InputFile::open(file_);
    if (!opened) return opened.error();
    lines_.emplace(std::move(*opened));
  }
  do {
    const auto line = lines_->next();
    if (!line) return line.error();
    if (!*line) return JobProgress::done;
    const std::size_t size = (*line)->size() + kLineEnd.size();
    if (log_.lines == kRawLogLines) {
      log_.cut = RawLogCut::lines;
    } else if (log_.rawText.size() + size > kRawTextLimit) {
      log_.cut = RawLogCut::size;
    }
    if (log_.cut != RawLogCut::none) return JobProgress::done;
    ++log_.lines;
    log_.rawText.append(**line).append(kLineEnd);
    // Most lines of another form need no decoding: the marker is ASCII, and
    // bytes without it cannot decode to it.
    if ((*line)->find(kMarker) == std::string_view::npos) continue;
    const std::optional<RawMessage> message = parseRawLine(encoding_.decode(**line));
    const std::string block = message ? displayBlock(*message) : std::string();
    if (block.empty()) continue;
    log_.messageStarts.push_back(log_.displayText.size());
    log_.displayText += block;
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

std::string cutText(const RawLog& log) {
  if (log.cut == RawLogCut::none) return {};
  const std::string count = grouped(log.lines);
  if (log.cut == RawLogCut::lines) {
    return "First " + count + " lines only 先頭" + count + "行のみ";
  }
  const std::string limit = std::to_string(kRawTextLimit >> 20) + " MiB";
  return "First " + limit + " only (" + count + " lines) 先頭" + limit + "のみ(" + count + "行)";
}

std::string shownText(const RawLog& log) {
  return log.displayText.empty() ? kNoRawMessages : log.displayText;
}

}  // namespace vel
