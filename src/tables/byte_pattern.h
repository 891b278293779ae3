#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tables/byte_search.h"

namespace vel {

/// What told the last pattern apart in a file: where the next one of that size
/// is tried first. The keys of a table are alike.
struct ProbeHint {
  std::size_t patternSize = 0;  ///< 0 for no hint
  std::size_t at = 0;           ///< the offset of its probe
};

/// Bytes that are searched for in large blocks, many places at a time.
class BytePattern {
 public:
  /// Bytes on both sides of the searched range that find() may read, but
  /// never uses.
  static constexpr std::size_t kSlack = 2 * kSearchStride;

  /// At least one byte; by default searched for in the fastest way.
  explicit BytePattern(std::string bytes, ByteSearcher searcher = byteSearchers().front());

  /// Begins with what the hint says, if it is one for a pattern of this size:
  /// prepare() chooses only where that proves to be bad.
  void begin(const ProbeHint& hint);
  /// A hint for the next pattern; none as long as nothing was chosen.
  [[nodiscard]] ProbeHint hint() const;

  /// Gets ready for a block with the slack around it, which stays as it is
  /// while it is searched: chooses the bytes that tell the pattern apart in the
  /// block, the first time and whenever the choice proved to be bad since.
  void prepare(std::string_view block);

  /// The first place in [begin, end), a part of the block, where the bytes
  /// stand, or `end`.
  [[nodiscard]] const char* find(const char* begin, const char* end);

 private:
  [[nodiscard]] ByteProbe probeAt(std::size_t at) const;
  [[nodiscard]] std::size_t hitsIn(std::string_view block, std::size_t pieces,
                                   const ByteProbe& probe, std::size_t enough) const;
  void chooseProbe(std::string_view block, std::size_t pieces);
  void lookAt(const char* place, const char* last);
  const char* findIn(std::size_t stride, const char* begin, const char* last);

  std::string bytes_;
  ByteSearcher searcher_;
  ByteProbe probe_;
  bool chosen_ = false;
  std::size_t hits_ = 0;  // strides with some of the probe's bytes, since it was chosen
  std::size_t patience_;  // hits before it is chosen anew

  // What is known about a part of the block: which of its strides may hold the
  // bytes. Those before next_ lie before the place that was searched from last.
  const char* partBegin_ = nullptr;
  const char* partEnd_ = nullptr;
  const char* searchedFrom_ = nullptr;
  std::size_t next_ = 0;
  std::size_t count_ = 0;
  std::array<std::uint8_t, kMostStrides + 1> candidates_;
};

}  // namespace vel
