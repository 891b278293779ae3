#include "history/earlier_names.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "core/text.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vel {
namespace {

constexpr std::size_t kStride = 64;
constexpr int kCommas = 7;  // of a record

// One bit for each of the 64 bytes from `text`, set where it is a comma or a
// line end.
std::uint64_t separatorsIn(const char* text) {
  std::uint64_t separators = 0;
#if defined(__SSE2__)
  const __m128i comma = _mm_set1_epi8(',');
  const __m128i lineEnd = _mm_set1_epi8('\n');
  for (std::size_t i = 0; i < kStride; i += sizeof(__m128i)) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    const __m128i found =
        _mm_or_si128(_mm_cmpeq_epi8(bytes, comma), _mm_cmpeq_epi8(bytes, lineEnd));
    separators |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(found))} << i;
  }
#else
  for (std::size_t i = 0; i < kStride; ++i) {
    separators |= std::uint64_t{text[i] == ',' || text[i] == '\n'} << i;
  }
#endif
  return separators;
}

}  // namespace

WantedNames::WantedNames(std::vector<std::string> names)
    : names_(std::move(names)), isStruck_(names_.size()), left_(names_.size()) {
  // At least three of four slots stay empty: most names are found to be none at
  // the first look.
  slots_.resize(std::bit_ceil(4 * names_.size() + 1));
  mask_ = slots_.size() - 1;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    const std::uint64_t hash = hashOf(names_[i]);
    std::size_t slot = hash & mask_;
    while (slots_[slot].number != 0) slot = (slot + 1) & mask_;
    slots_[slot] = {hash, i + 1};
  }
}

std::uint64_t WantedNames::hashOf(std::string_view name) {
  std::uint64_t head = 0;
  std::uint64_t tail = 0;
  if (name.size() >= sizeof head) {
    std::memcpy(&head, name.data(), sizeof head);
    std::memcpy(&tail, name.data() + name.size() - sizeof tail, sizeof tail);
  } else if (name.size() >= 4) {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::memcpy(&first, name.data(), sizeof first);
    std::memcpy(&last, name.data() + name.size() - sizeof last, sizeof last);
    head = first;
    tail = last;
  } else {
    for (const char byte : name) head = head << 8 | static_cast<unsigned char>(byte);
  }
  std::uint64_t hash = (head ^ std::rotl(tail, 29) ^ name.size()) * 0x9E3779B97F4A7C15U;
  hash ^= hash >> 32;
  return hash;
}

void WantedNames::struck(std::size_t index) {
  if (isStruck_[index]) return;
  isStruck_[index] = true;
  --left_;
}

std::vector<std::string> WantedNames::left() const {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (!isStruck_[i]) names.push_back(names_[i]);
  }
  return names;
}

void strikeListNames(std::string_view lines, WantedNames& aircraft, WantedNames& flights) {
  const char* const begin = lines.data();
  const char* const end = begin + lines.size();
  const char* separator[kCommas + 1] = {};  // of the line at hand
  const char* lineBegin = begin;
  int count = 0;
  const auto endLine = [&](const char* lineEnd) {
    if (count == kCommas) {
      aircraft.strike(
          {separator[1] + 1, static_cast<std::size_t>(separator[2] - separator[1] - 1)});
      std::string_view flight(lineBegin, static_cast<std::size_t>(separator[0] - lineBegin));
      if (!flight.empty() && (flight.front() == ' ' || flight.back() == ' ')) flight = Trim(flight);
      flights.strike(flight);
    }
    count = 0;
    lineBegin = lineEnd + 1;
  };
  for (const char* place = begin; place < end; place += kStride) {
    std::uint64_t found = separatorsIn(place);
    const auto rest = static_cast<std::size_t>(end - place);
    if (rest < kStride) found &= (std::uint64_t{1} << rest) - 1;
    for (; found != 0; found &= found - 1) {
      const char* const at = place + std::countr_zero(found);
      if (*at == '\n') {
        endLine(at);
      } else {
        separator[std::min(count, kCommas)] = at;
        ++count;
      }
    }
  }
  if (lineBegin < end) endLine(end);
}

}  // namespace vel
