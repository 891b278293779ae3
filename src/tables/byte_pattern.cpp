#include "tables/byte_pattern.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

#include "core/helpers.h"

namespace vel {
namespace {

// How much of a block is looked at to choose the probe. A choice that leads to
// too many wrong places is made again from more of a later block, and then more
// is put up with.
constexpr std::size_t kFirstSample = 4096;
constexpr std::size_t kLaterSample = 16384;
constexpr std::size_t kToleratedFactor = 4;
constexpr std::size_t kMostProbes = 16;

// The bytes of a pattern that a probe uses, and those that a wide one can use.
constexpr std::size_t kProbe = 3;
constexpr std::size_t kWideProbe = 5;

std::uint16_t pairOf(const std::string& bytes, std::size_t offset) {
  std::uint16_t pair;
  std::memcpy(&pair, bytes.data() + offset, sizeof pair);
  return pair;
}

}  // namespace

BytePattern::BytePattern(std::string bytes, ByteSearcher searcher)
    : bytes_(std::move(bytes)), searcher_(searcher) {
  if (bytes_.size() >= 2) probe_ = probeAt(0, false);
}

ByteProbe BytePattern::probeAt(std::size_t offset, bool isWide) const {
  ByteProbe probe{.odd = pairOf(bytes_, offset), .isWide = isWide};
  std::memcpy(&probe.head, bytes_.data(), MinOf(bytes_.size(), sizeof probe.head));
  std::memset(&probe.headMask, 0xFF, MinOf(bytes_.size(), sizeof probe.headMask));
  if (bytes_.size() == 2) {
    // Two bytes are one pair, which is read at every distance.
    probe.even = probe.odd;
    probe.oddAt = 1;
    probe.offset = -1;
    return probe;
  }
  probe.even = pairOf(bytes_, offset + 1);
  probe.offset = static_cast<std::ptrdiff_t>(offset);
  const std::string_view behindOdd = std::string_view(bytes_).substr(offset + 2, 2);
  const std::string_view behindEven = std::string_view(bytes_).substr(offset + 3, 2);
  std::memcpy(&probe.oddNext, behindOdd.data(), behindOdd.size());
  std::memset(&probe.oddMask, 0xFF, behindOdd.size());
  std::memcpy(&probe.evenNext, behindEven.data(), behindEven.size());
  std::memset(&probe.evenMask, 0xFF, behindEven.size());
  return probe;
}

// Takes the probe with the fewest false hits in the sample and returns how many
// these are. The end of a key, where lines differ most, is tried first.
std::size_t BytePattern::choose(std::string_view sample, bool isWide) {
  const std::size_t used = isWide ? MinOf(bytes_.size(), kWideProbe) : kProbe;
  const std::size_t last = bytes_.size() - used;
  const char* const end = sample.data() + sample.size();
  std::optional<std::size_t> fewest;
  for (std::size_t tried = 0; tried <= MinOf(last, kMostProbes) && fewest != 0U; ++tried) {
    const ByteProbe probe = probeAt(last - tried, isWide);
    std::size_t count = 0;
    std::uint64_t hits = 0;
    for (const char* place = searcher_.search(sample.data(), end, probe, hits, count);
         place < end;) {
      place = searcher_.search(place + kSearchStride, end, probe, hits, count);
    }
    if (fewest && count >= *fewest) continue;
    fewest = count;
    probe_ = probe;
  }
  return fewest.value_or(0);
}

void BytePattern::prepare(std::string_view block) {
  if (bytes_.size() < kProbe || (prepared_ && falseHits_ < tolerated_)) return;
  const bool isFirst = !std::exchange(prepared_, true);
  if (!isFirst) tolerated_ *= kToleratedFactor;
  falseHits_ = 0;
  const std::string_view sample = block.substr(0, isFirst ? kFirstSample : kLaterSample);
  const bool narrowIsGood = !probe_.isWide && choose(sample, false) == 0;
  if (!narrowIsGood && searcher_.canBeWide) choose(sample, true);
}

const char* BytePattern::find(const char* begin, const char* end) {
  const auto available = static_cast<std::size_t>(end - begin);
  if (available < bytes_.size()) return end;
  if (bytes_.size() == 1) {
    const void* const found = std::memchr(begin, bytes_[0], available);
    return found == nullptr ? end : static_cast<const char*>(found);
  }
  const char* const last = end - bytes_.size();
  const std::ptrdiff_t toFirstHit = -(probe_.offset + 1);
  // From an even distance at which no earlier start can be missed.
  const char* place = begin - toFirstHit;
  place -= reinterpret_cast<std::uintptr_t>(place) % kSearchStride;
  const char* const searchEnd = last - toFirstHit + 1;
  std::uint64_t hits = 0;
  for (place = searcher_.search(place, searchEnd, probe_, hits, falseHits_); place < searchEnd;
       place = searcher_.search(place + kSearchStride, searchEnd, probe_, hits, falseHits_)) {
    for (; hits != 0; hits &= hits - 1) {
      const char* const candidate = place + toFirstHit + std::countr_zero(hits);
      if (candidate < begin) continue;
      if (candidate > last) return end;
      if (std::memcmp(candidate, bytes_.data(), bytes_.size()) == 0) return candidate;
    }
  }
  return end;
}

}  // namespace vel
