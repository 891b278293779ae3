#include "tables/byte_pattern.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

namespace vel {
namespace {

// A block is sampled in pieces from all over it to choose the probe: tables are
// sorted, neighbouring lines are alike. A choice that leads to too many wrong
// places is made again from more of a later block, and then more is put up with.
constexpr std::size_t kPiece = 512;
constexpr std::size_t kFirstPieces = 8;
constexpr std::size_t kLaterPieces = 32;
constexpr std::size_t kToleratedFactor = 4;
// Looking for a better probe than one with so few wrong places in the sample
// costs more than it saves.
constexpr std::size_t kFewEnough = 2;

// So many probes are tried from the end of the pattern, where keys differ most;
// and the one at its beginning.
constexpr std::size_t kTriedProbes = 7;

// The fractions of its multiples are spread evenly, without a period.
constexpr std::uint32_t kGoldenRatio = 0x9E3779B1;  // of 2^32

}  // namespace

BytePattern::BytePattern(std::string bytes, ByteSearcher searcher)
    : bytes_(std::move(bytes)), search_(searcher) {
  if (bytes_.size() >= ByteProbe::kShortest) probe_ = probeAt(0);
}

ByteProbe BytePattern::probeAt(std::size_t at) const {
  ByteProbe probe{.size = std::min(bytes_.size() - at, ByteProbe::kLongest), .at = at};
  std::memcpy(probe.bytes.data(), bytes_.data() + at, probe.size);
  std::memcpy(&probe.head, bytes_.data(), std::min(bytes_.size(), sizeof probe.head));
  std::memset(&probe.headMask, 0xFF, std::min(bytes_.size(), sizeof probe.headMask));
  return probe;
}

// The wrong places in so many pieces of the block; no exact number where there
// are `enough`.
std::size_t BytePattern::falseHitsIn(std::string_view block, std::size_t pieces,
                                     const ByteProbe& probe, std::size_t enough) const {
  const std::size_t length = std::min(block.size(), kPiece);
  const std::uint64_t room = block.size() - length;
  std::size_t count = 0;
  std::uint64_t hits = 0;
  std::uint32_t fraction = 0;
  for (std::size_t i = 0; i < pieces && count < enough; ++i, fraction += kGoldenRatio) {
    const char* place = block.data() + (room * fraction >> 32);
    const char* const end = place + length;
    for (; place < end; place += kSearchStride) place = search_(place, end, probe, hits, count);
  }
  return count;
}

void BytePattern::prepare(std::string_view block) {
  if (bytes_.size() <= ByteProbe::kLongest || (prepared_ && falseHits_ < tolerated_)) return;
  const bool isFirst = !std::exchange(prepared_, true);
  if (!isFirst) tolerated_ *= kToleratedFactor;
  falseHits_ = 0;

  const std::size_t pieces = isFirst ? kFirstPieces : kLaterPieces;
  const std::size_t highest = std::min(bytes_.size(), kSearchReach) - ByteProbe::kLongest;
  std::size_t fewest = SIZE_MAX;
  const auto tryProbe = [&](std::size_t at) {
    const ByteProbe probe = probeAt(at);
    const std::size_t count = falseHitsIn(block, pieces, probe, fewest);
    if (count >= fewest) return;
    fewest = count;
    probe_ = probe;
  };
  for (std::size_t i = 0; i < kTriedProbes && i <= highest && fewest > kFewEnough; ++i) {
    tryProbe(highest - i);
  }
  if (fewest > kFewEnough) tryProbe(0);
}

const char* BytePattern::find(const char* begin, const char* end) {
  const auto available = static_cast<std::size_t>(end - begin);
  if (available < bytes_.size()) return end;
  if (bytes_.size() < ByteProbe::kShortest) {
    const std::size_t at = std::string_view(begin, available).find(bytes_);
    return at == std::string_view::npos ? end : begin + at;
  }
  const char* const last = end - bytes_.size();
  // So that the wide searchers read from aligned places, as far as they can.
  const char* place = begin;
  place -= reinterpret_cast<std::uintptr_t>(place + probe_.at + 1) % kSearchStride;
  std::uint64_t hits = 0;
  for (; place <= last; place += kSearchStride) {
    place = search_(place, last + 1, probe_, hits, falseHits_);
    if (place > last) break;
    for (; hits != 0; hits &= hits - 1) {
      const char* const candidate = place + std::countr_zero(hits);
      if (candidate < begin) continue;
      if (candidate > last) return end;
      if (std::memcmp(candidate, bytes_.data(), bytes_.size()) == 0) return candidate;
    }
  }
  return end;
}

}  // namespace vel
