#include "tables/table_scanner.h"

#include <optional>
#include <string>
#include <utility>

#include "core/file.h"

namespace vel {
namespace {

using Anchor = TableScanner::Anchor;
using Next = TableScanner::Next;

bool endsLine(char byte) { return byte == '\n' || byte == '\r'; }

// How a block is looked through for lines with some bytes.
class LineFinder {
 public:
  LineFinder(std::string_view bytes, Anchor anchor, ProbeHint* hint)
      : bytes_(bytes), anchor_(anchor), hint_(hint) {
    // One byte is in nearly every line.
    const std::size_t fewest = anchor == Anchor::lineStart ? ByteProbe::kShortest : 1;
    if (bytes.size() >= fewest) pattern_.emplace(std::string(bytes));
    if (pattern_ && hint_ != nullptr) pattern_->begin(*hint_);
  }
  LineFinder(LineFinder&&) = delete;
  ~LineFinder() {
    if (pattern_ && hint_ != nullptr && pattern_->hint().patternSize > 0) *hint_ = pattern_->hint();
  }

  template <typename Visit>
  Next visit(std::string_view block, const Visit& visit) {
    if (!pattern_) return visitEach(block, visit);
    pattern_->prepare(block);
    const char* const end = block.data() + block.size();
    const char* place = block.data();
    while ((place = pattern_->find(place, end)) != end) {
      const char* lineBegin = place;
      if (anchor_ == Anchor::lineStart && !endsLine(lineBegin[-1])) {
        ++place;
        continue;
      }
      while (!endsLine(lineBegin[-1])) --lineBegin;
      const std::string_view line = lineAt(lineBegin, end).text;
      if (visit(line) == Next::stop) return Next::stop;
      place = line.data() + line.size();
    }
    return Next::more;
  }

 private:
  template <typename Visit>
  Next visitEach(std::string_view block, const Visit& visit) const {
    const char* const end = block.data() + block.size();
    for (const char* place = block.data(); place < end;) {
      const BlockLine line = lineAt(place, end);
      if (line.text.starts_with(bytes_) && visit(line.text) == Next::stop) return Next::stop;
      place += line.raw.size();
    }
    return Next::more;
  }

  std::string_view bytes_;
  Anchor anchor_;
  ProbeHint* hint_;
  std::optional<BytePattern> pattern_;
};

}  // namespace

Status TableScanner::scan(const std::filesystem::path& file, std::string_view bytes, Anchor anchor,
                          const Source& source, Callback callback, void* context) {
  Result<InputFile> input =
      source.kept == nullptr ? InputFile::open(file) : source.kept->take(file);
  if (!input) return input.error();
  if (bytes.find_first_of("\r\n") != std::string_view::npos) return {};
  LineBlocks blocks(*std::move(input), LineBlocks::LongerLines::passOver, source.byteOrderMark,
                    source.memory);
  LineFinder finder(bytes, anchor, source.hint);
  const auto visit = [&](std::string_view line) { return callback(context, line); };
  while (true) {
    const Result<std::string_view> block = blocks.next();
    if (!block) return block.error();
    if (block->empty() || finder.visit(*block, visit) == Next::stop) break;
  }
  if (source.kept != nullptr) source.kept->giveBack(std::move(blocks).file());
  return {};
}

}  // namespace vel
