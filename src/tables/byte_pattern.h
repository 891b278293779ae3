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

  /// Gets ready for a block with the slack around it: chooses the bytes
  /// that tell the pattern apart in the block, the first time and whenever the
  /// choice proved to be bad since.
  void prepare(std::string_view block);

  /// The first place in [begin, end) where the bytes stand, or `end`.
  [[nodiscard]] const char* find(const char* begin, const char* end);

 private:
  [[nodiscard]] ByteProbe probeAt(std::size_t at) const;
  [[nodiscard]] std::size_t falseHitsIn(std::string_view block, std::size_t pieces,
                                        const ByteProbe& probe, std::size_t enough) const;

  std::string bytes_;
  ByteSearcher search_;
  ByteProbe probe_;
  bool prepared_ = false;
  std::size_t falseHits_ = 0;    // since the probe was chosen
  std::size_t tolerated_ = 256;  // before it is chosen anew
};

}  // namespace vel
