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
// Looking for a better probe than one with so few wrong places in the sample
// costs more than it saves.
constexpr std::size_t kFewEnough = 1;

// So many bytes at the end of the pattern, where keys differ most, may become
// part of the probe; and the first one, which may be the line end.
constexpr std::size_t kTriedBytes = 7;

}  // namespace

BytePattern::BytePattern(std::string bytes, ByteSearcher searcher)
    : bytes_(std::move(bytes)), search_(searcher) {
  if (bytes_.size() >= 2) probe_ = probeAt(0, 1);
}

ByteProbe BytePattern::probeAt(std::size_t first, std::size_t second) const {
  ByteProbe probe{
      .first = bytes_[first], .second = bytes_[second], .firstAt = first, .secondAt = second};
  std::memcpy(&probe.head, bytes_.data(), MinOf(bytes_.size(), sizeof probe.head));
  std::memset(&probe.headMask, 0xFF, MinOf(bytes_.size(), sizeof probe.headMask));
  return probe;
}

std::size_t BytePattern::falseHitsIn(std::string_view sample, const ByteProbe& probe) const {
  const char* const end = sample.data() + sample.size();
  std::size_t count = 0;
  std::uint64_t hits = 0;
  for (const char* place = sample.data(); place < end; place += kSearchStride) {
    place = search_(place, end, probe, hits, count);
  }
  return count;
}

void BytePattern::prepare(std::string_view block) {
  if (bytes_.size() <= 2 || (prepared_ && falseHits_ < tolerated_)) return;
  const bool isFirst = !std::exchange(prepared_, true);
  if (!isFirst) tolerated_ *= kToleratedFactor;
  falseHits_ = 0;

  const std::string_view sample = block.substr(0, isFirst ? kFirstSample : kLaterSample);
  const std::size_t last = MinOf(bytes_.size(), kSearchReach) - 1;
  const std::size_t lowest = last > kTriedBytes ? last - kTriedBytes : 0;
  std::optional<std::size_t> fewest;
  const auto tryProbe = [&](std::size_t first, std::size_t second) {
    const ByteProbe probe = probeAt(first, second);
    const std::size_t count = falseHitsIn(sample, probe);
    if (fewest && count >= *fewest) return;
    fewest = count;
    probe_ = probe;
  };
  const auto isGood = [&fewest] { return fewest && *fewest <= kFewEnough; };
  for (std::size_t second = last; second > lowest && !isGood(); --second) {
    for (std::size_t first = second; first > lowest && !isGood(); --first) {
      tryProbe(first - 1, second);
    }
    if (lowest > 0 && !isGood()) tryProbe(0, second);
  }
}

const char* BytePattern::find(const char* begin, const char* end) {
  const auto available = static_cast<std::size_t>(end - begin);
  if (available < bytes_.size()) return end;
  if (bytes_.size() == 1) {
    const void* const found = std::memchr(begin, bytes_[0], available);
    return found == nullptr ? end : static_cast<const char*>(found);
  }
  const char* const last = end - bytes_.size();
  // So that the first of the two reads is an aligned one.
  const char* place = begin;
  place -= reinterpret_cast<std::uintptr_t>(place + probe_.firstAt) % kSearchStride;
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
