#include "tables/byte_pattern.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace vel {
namespace {

// A block is sampled in pieces from all over it to choose the probe: tables are
// sorted, neighbouring lines are alike. A choice that leads to so many hits that
// another one costs less is made again from more of a later block, and then more
// of them pass before the next time. For less than so many bytes there is
// nothing to choose.
constexpr std::size_t kStridesInPiece = 8;
constexpr std::size_t kFirstPieces = 2;
constexpr std::size_t kLaterPieces = 16;
constexpr std::size_t kPatienceFactor = 4;
constexpr std::size_t kWorthChoosing = std::size_t{1} << 14;

// Hits before another probe is looked for, of one that was just chosen and of
// one that served the last pattern.
constexpr std::size_t kFirstPatience = 256;
constexpr std::size_t kProvenPatience = 1024;

// So many probes are tried from the end of the pattern; and the one at its
// beginning.
constexpr std::size_t kTriedProbes = 7;

// The fractions of its multiples are spread evenly, without a period.
constexpr std::uint32_t kGoldenRatio = 0x9E3779B1;  // of 2^32

// Places of the wide searchers are read from aligned ones, as far as they can be.
constexpr std::size_t kAlignment = 64;

// The offset of the last bytes of a pattern of that size that can be a probe.
std::size_t highestProbe(std::size_t size) {
  const std::size_t end = std::min(size, ByteProbe::kReach);
  return end - std::min(end, ByteProbe::kLongest);
}

}  // namespace

BytePattern::BytePattern(std::string bytes, ByteSearcher searcher)
    : bytes_(std::move(bytes)), searcher_(searcher), patience_(kFirstPatience) {
  if (bytes_.size() >= ByteProbe::kShortest) probe_ = probeAt(highestProbe(bytes_.size()));
}

void BytePattern::begin(const ProbeHint& hint) {
  if (hint.patternSize != bytes_.size() || hint.at > highestProbe(bytes_.size())) return;
  probe_ = probeAt(hint.at);
  chosen_ = true;
  patience_ = kProvenPatience;
}

ProbeHint BytePattern::hint() const {
  return chosen_ ? ProbeHint{bytes_.size(), probe_.at} : ProbeHint{};
}

ByteProbe BytePattern::probeAt(std::size_t at) const {
  ByteProbe probe{.size = std::min(bytes_.size() - at, ByteProbe::kLongest), .at = at};
  std::memcpy(probe.bytes.data(), bytes_.data() + at, probe.size);
  if (bytes_.size() > ByteProbe::kLongest) probe.otherAt = at > 0 ? at - 1 : ByteProbe::kLongest;
  probe.other = bytes_[probe.otherAt];
  std::memcpy(&probe.head, bytes_.data(), std::min(bytes_.size(), sizeof probe.head));
  std::memset(&probe.headMask, 0xFF, std::min(bytes_.size(), sizeof probe.headMask));
  return probe;
}

// The strides with a hit in so many pieces of the block; no exact number where
// there are `enough`.
std::size_t BytePattern::hitsIn(std::string_view block, std::size_t pieces, const ByteProbe& probe,
                                std::size_t enough) const {
  const std::uint64_t room = block.size() - kStridesInPiece * kSearchStride;
  std::array<std::uint8_t, kStridesInPiece + 1> found;
  std::size_t count = 0;
  std::uint32_t fraction = 0;
  for (std::size_t i = 0; i < pieces && count < enough; ++i, fraction += kGoldenRatio) {
    const char* const place = block.data() + (room * fraction >> 32);
    count += searcher_.findStrides(place, kStridesInPiece, probe, found.data()).some;
  }
  return count;
}

void BytePattern::chooseProbe(std::string_view block, std::size_t pieces) {
  const std::size_t highest = highestProbe(bytes_.size());
  std::size_t fewest = SIZE_MAX;
  const auto tryProbe = [&](std::size_t at) {
    const ByteProbe probe = probeAt(at);
    const std::size_t count = hitsIn(block, pieces, probe, fewest);
    if (count >= fewest) return;
    fewest = count;
    probe_ = probe;
  };
  for (std::size_t i = 0; i < kTriedProbes && i <= highest; ++i) tryProbe(highest - i);
  if (highest >= kTriedProbes) tryProbe(0);
}

void BytePattern::prepare(std::string_view block) {
  partBegin_ = partEnd_ = nullptr;
  if (bytes_.size() <= ByteProbe::kLongest || block.size() < kWorthChoosing) return;
  const bool isFirst = !std::exchange(chosen_, true);
  if (!isFirst && hits_ < patience_) return;
  if (!isFirst) patience_ *= kPatienceFactor;
  hits_ = 0;
  chooseProbe(block, isFirst ? kFirstPieces : kLaterPieces);
}

// Finds the strides that may hold the bytes, from that place on.
void BytePattern::lookAt(const char* place, const char* last) {
  partBegin_ = place - reinterpret_cast<std::uintptr_t>(place + probe_.at + 1) % kAlignment;
  const auto bytes = static_cast<std::size_t>(last - partBegin_) + 1;
  const std::size_t strides = std::min((bytes + kSearchStride - 1) / kSearchStride, kMostStrides);
  partEnd_ = partBegin_ + strides * kSearchStride;
  const ByteSearcher::Strides found =
      searcher_.findStrides(partBegin_, strides, probe_, candidates_.data());
  count_ = found.all;
  next_ = 0;
  hits_ += found.some;
}

// The first place of the stride, not before `begin` nor behind `last`, where
// the bytes stand.
const char* BytePattern::findIn(std::size_t stride, const char* begin, const char* last) {
  const char* place = partBegin_ + stride * kSearchStride;
  const char* const end = place + kSearchStride;
  for (; place < end; place += ByteSearcher::kPlaces) {
    if (place + ByteSearcher::kPlaces <= begin) continue;
    for (auto hits = searcher_.findPlaces(place, probe_); hits != 0; hits &= hits - 1) {
      const char* const candidate = place + std::countr_zero(hits);
      std::uint64_t head;
      std::memcpy(&head, candidate, sizeof head);
      if (((head ^ probe_.head) & probe_.headMask) != 0 || candidate < begin) continue;
      if (candidate > last) return nullptr;
      if (std::memcmp(candidate, bytes_.data(), bytes_.size()) == 0) return candidate;
    }
  }
  return nullptr;
}

const char* BytePattern::find(const char* begin, const char* end) {
  const auto available = static_cast<std::size_t>(end - begin);
  if (available < bytes_.size()) return end;
  if (bytes_.size() < ByteProbe::kShortest) {
    const void* const found = std::memchr(begin, bytes_.front(), available);
    return found == nullptr ? end : static_cast<const char*>(found);
  }
  const char* const last = end - bytes_.size();
  if (begin < searchedFrom_) partBegin_ = partEnd_ = nullptr;
  searchedFrom_ = begin;
  for (const char* place = begin; place <= last; place = partEnd_) {
    if (place < partBegin_ || place >= partEnd_) lookAt(place, last);
    for (; next_ < count_; ++next_) {
      const std::size_t stride = candidates_[next_];
      if (partBegin_ + (stride + 1) * kSearchStride <= place) continue;
      if (const char* const found = findIn(stride, begin, last)) return found;
    }
  }
  return end;
}

}  // namespace vel
