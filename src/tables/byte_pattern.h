#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tables/byte_search.h"

namespace vel {

/// Bytes that are searched for in large blocks, many places at a time.
class BytePattern {
 public:
  /// Bytes on both sides of the searched range that find() may read, but
  /// never uses.
  static constexpr std::size_t kSlack = 2 * kSearchStride;

  /// At least one byte; by default searched for in the fastest way.
  explicit BytePattern(std::string bytes, ByteSearcher searcher = byteSearchers().front());

  /// Gets ready for a block with the slack around it: looks at the block's
  /// first bytes for what tells the pattern best apart, the first time and
  /// whenever that proved to be a bad choice since.
  void prepare(std::string_view block);

  /// The first place in [begin, end) where the bytes stand, or `end`.
  [[nodiscard]] const char* find(const char* begin, const char* end);

 private:
  [[nodiscard]] ByteProbe probeAt(std::size_t offset, bool isWide) const;
  std::size_t choose(std::string_view sample, bool isWide);

  std::string bytes_;
  ByteSearcher searcher_;
  ByteProbe probe_;
  bool prepared_ = false;
  std::size_t falseHits_ = 0;   // since the probe was chosen
  std::size_t tolerated_ = 32;  // before it is chosen anew
};

}  // namespace vel
