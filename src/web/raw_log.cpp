#include "web/raw_log.h"

#include <utility>

#include "core/file.h"
#include "core/line_reader.h"

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

std::string text(std::string_view view) { return std::string(view); }

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

Status readRawLog(const std::filesystem::path& file, const Encoding& encoding, RawLog& log) {
  log = {};
  Result<InputFile> opened = InputFile::open(file);
  if (!opened) return opened.error();
  LineReader lines(std::move(*opened));
  while (true) {
    const auto line = lines.next();
    if (!line) return line.error();
    if (!*line) return {};
    if (log.lines == kRawLogLines || log.rawText.size() + (*line)->size() + 2 > kRawTextLimit) {
      log.more = true;
      return {};
    }
    ++log.lines;
    log.rawText.append(**line).append("\r\n");
    // Most lines of another form need no decoding: the marker is ASCII, and
    // bytes without it cannot decode to it.
    if ((*line)->find(kMarker) == std::string_view::npos) continue;
    const std::optional<RawMessage> message = parseRawLine(encoding.decode(**line));
    if (message) log.displayText += displayBlock(*message);
  }
}

std::string shownText(const RawLog& log) {
  return log.displayText.empty() ? kNoRawMessages : log.displayText;
}

}  // namespace vel
