#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/job.h"
#include "core/line_reader.h"
#include "core/result.h"
#include "core/text.h"

namespace vel {

/// One ACARS message cut out of a line of the decoder's raw log; the format is
/// in docs/formats/raw_log.md. All UTF-8, nothing trimmed.
struct RawMessage {
  std::string header;  ///< everything before the marker
  std::string mode;
  std::string registration;  ///< six characters, padded with full stops
  std::string label;
  std::string block;
  std::string messageNumber;
  std::string flight;
  std::string body;  ///< line breaks still as "<CR><VF>"
};

/// Cuts a decoded line (UTF-8; positions are characters). Nothing for a line
/// without the marker ">+*<", or with it but without "<STX>" or an end mark
/// ("<ETX>", else "<ETB>") after it.
[[nodiscard]] std::optional<RawMessage> parseRawLine(std::string_view line);

/// The viewer's block for one message: separator, summary, body with its line
/// breaks as CR LF, and an empty line. Empty when the body is empty.
[[nodiscard]] std::string displayBlock(const RawMessage& message);

/// The body with every "<CR><VF>" turned into `lineBreak`.
[[nodiscard]] std::string bodyWithBreaks(std::string_view body, std::string_view lineBreak);

/// Why a raw log was not read to its end.
enum class RawLogCut { none, lines, size };

/// What the viewer holds of one raw log.
struct RawLog {
  /// Every line read, as the bytes of the file, each followed by CR LF.
  std::string rawText;
  /// The blocks of its messages, UTF-8; see shownText for what is displayed.
  std::string displayText;
  /// Where in the display text each message begins, in bytes.
  std::vector<std::size_t> messageStarts;
  std::size_t lines = 0;
  RawLogCut cut = RawLogCut::none;
};

/// At most so many lines are read.
constexpr std::size_t kRawLogLines = 10'001;
/// No line is added to the raw text beyond so many bytes: the text, encoded
/// for the conversion, then stays within what the conversion takes.
constexpr std::size_t kRawTextLimit = std::size_t{20} << 20;

/// Reads a raw log in steps. A failure after the file was opened leaves what
/// was read in the log.
class RawLogRead : public Job {
 public:
  /// The log outlives the job, which empties it at once.
  RawLogRead(std::filesystem::path file, const Encoding& encoding, RawLog& log);

  Result<JobProgress> step(Clock::time_point deadline) override;

 private:
  std::filesystem::path file_;
  Encoding encoding_;
  RawLog& log_;
  std::optional<LineReader> lines_;
};

/// What the viewer says of a log that it shows in part, in English and
/// Japanese; empty for a whole one.
[[nodiscard]] std::string cutText(const RawLog& log);

/// What stands in the text area when a log holds no message.
constexpr const char* kNoRawMessages =
    "現在RAW形式のログファイルにのみ対応しています。"
    "RAW形式のファイルをMSG形式に変換して表示しています。";

/// The message box for a raw log that does not exist.
constexpr const char* kNoRawLog = "Not found log file.";

/// The display text, or kNoRawMessages in place of an empty one.
[[nodiscard]] std::string shownText(const RawLog& log);

}  // namespace vel
