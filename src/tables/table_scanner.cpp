#include "tables/table_scanner.h"

#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "core/file.h"
#include "tables/byte_pattern.h"
#include "tables/line_blocks.h"

namespace vel {
namespace {

BytePattern makePattern(std::string_view bytes, TableScanner::Anchor anchor) {
  std::string pattern(bytes);
  if (anchor == TableScanner::Anchor::lineStart) pattern.insert(pattern.begin(), '\n');
  return BytePattern(std::move(pattern));
}

// The line from `begin` on, without its LF, in a text that ends at `end`.
std::string_view lineAt(const char* begin, const char* end) {
  const auto rest = static_cast<std::size_t>(end - begin);
  const void* const found = std::memchr(begin, '\n', rest);
  return {begin, found == nullptr
                     ? rest
                     : static_cast<std::size_t>(static_cast<const char*>(found) - begin)};
}

std::string_view withoutReturn(std::string_view line) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

}  // namespace

Status TableScanner::scan(const std::filesystem::path& file, std::string_view bytes, Anchor anchor,
                          Callback callback, void* context) {
  Result<InputFile> input = InputFile::open(file);
  if (!input) return input.error();
  if (bytes.find_first_of("\r\n") != std::string_view::npos) return {};
  LineBlocks blocks(*std::move(input), LineBlocks::LongerLines::passOver);

  const auto everyLine = [&](std::string_view block) {
    const char* const end = block.data() + block.size();
    for (const char* place = block.data(); place < end;) {
      const std::string_view line = lineAt(place, end);
      if (callback(context, withoutReturn(line)) == Next::stop) return Next::stop;
      place = line.data() + line.size() + 1;
    }
    return Next::more;
  };
  const auto linesWith = [&](BytePattern& pattern, std::string_view block) {
    pattern.prepare(block);
    const char* const end = block.data() + block.size();
    // The LF before the block is the line start of its first line.
    const char* place = block.data() - 1;
    while ((place = pattern.find(place, end)) != end) {
      const char* lineBegin = place + 1;
      if (anchor == Anchor::anywhere) {
        lineBegin = place;
        while (lineBegin[-1] != '\n') --lineBegin;
      }
      const std::string_view line = lineAt(lineBegin, end);
      if (callback(context, withoutReturn(line)) == Next::stop) return Next::stop;
      place = line.data() + line.size();
    }
    return Next::more;
  };

  std::optional<BytePattern> pattern;
  if (!bytes.empty()) pattern = makePattern(bytes, anchor);
  while (true) {
    const Result<std::string_view> block = blocks.next();
    if (!block) return block.error();
    if (block->empty()) return {};
    const Next next = pattern ? linesWith(*pattern, *block) : everyLine(*block);
    if (next == Next::stop) return {};
  }
}

}  // namespace vel
