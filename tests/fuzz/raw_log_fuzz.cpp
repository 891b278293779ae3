// The raw log: every line in the raw text, and the blocks of its messages
// against a second, plain cutter.

#include "tests/fuzz/fuzz_support.h"
#include "web/raw_log.h"

namespace vel::fuzz {
namespace {

/// A text as its characters.
std::vector<std::string> charactersOf(std::string_view text) {
  std::vector<std::string> characters;
  while (!text.empty()) {
    const std::size_t size = firstCharacter(text).size;
    characters.emplace_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  return characters;
}

std::string joined(const std::vector<std::string>& characters, std::size_t from, std::size_t to) {
  std::string text;
  for (std::size_t i = from; i < std::min(to, characters.size()); ++i) text += characters[i];
  return text;
}

std::string plainBlock(const std::string& line) {
  const std::size_t marker = line.find(">+*<");
  if (marker == std::string::npos) return {};
  const std::vector<std::string> behind = charactersOf(std::string_view(line).substr(marker));
  const std::string part = joined(behind, 18, behind.size());
  const std::size_t start = part.find("<STX>");
  std::size_t end = part.find("<ETX>");
  if (end == std::string::npos) end = part.find("<ETB>");
  if (start == std::string::npos || end == std::string::npos || end < start + 5) return {};
  const std::vector<std::string> head = charactersOf(part);
  const std::vector<std::string> text = charactersOf(part.substr(start + 5, end - start - 5));
  std::string body = joined(text, 10, text.size());
  if (body.empty()) return {};
  for (std::size_t at = body.find("<CR><VF>"); at != std::string::npos;
       at = body.find("<CR><VF>", at)) {
    body.replace(at, 8, "\r\n");
  }
  return "---------------------------[" + line.substr(0, marker) + "]\r\n" + joined(text, 4, 10) +
         " (" + joined(head, 2, 8) + ")    [" + joined(head, 13, 15) + ":" + joined(head, 15, 16) +
         ":" + joined(text, 0, 4) + "] MODE:" + joined(head, 0, 1) + "   \r\n" + body + "\r\n\r\n";
}

void run(const Station& station, Parts parts) {
  const Encoding encoding = encodingOf(lineOfPart(parts.next(), 0));
  const std::string_view bytes = parts.rest();
  const auto file = station.folders().eachLogs / "JA8089.log";
  put(file, bytes);
  RawLog log;
  RawLogRead job(file, encoding, log);
  while (true) {
    const Result<JobProgress> progress = job.step(Job::Clock::time_point::min());
    check(progress.ok(), "the log cannot be read");
    if (*progress == JobProgress::done) break;
  }
  std::string raw;
  std::string shown;
  std::size_t lines = 0;
  std::vector<std::size_t> starts;
  for (const std::string_view line : plainLines(withoutMark(bytes), false)) {
    if (lines == kRawLogLines) break;
    ++lines;
    raw.append(line).append("\r\n");
    const std::string block = plainBlock(encoding.decode(line));
    if (!block.empty()) starts.push_back(shown.size());
    shown += block;
  }
  check(log.lines == lines && log.rawText == raw, "another raw text");
  check(log.displayText == shown, "another text is shown");
  check(log.messageStarts == starts, "messages begin elsewhere");
  check(isUtf8(shownText(log)) && isUtf8(cutText(log)), "no text");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
