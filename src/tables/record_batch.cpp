#include "tables/record_batch.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

namespace vel {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::size_t kFewestPlaces = 1024;

std::uint32_t hashOf(std::string_view key) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>()(key));
}

}  // namespace

std::size_t RecordBatch::placeOf(std::string_view key, std::uint32_t hash) const {
  const std::size_t mask = places_.size() - 1;
  for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
    if (places_[place] == 0) return place;
    const Record& record = records_[places_[place] - 1];
    if (record.hash == hash && key == std::string_view(record.text, record.keyLength)) return place;
  }
}

void RecordBatch::growPlaces() {
  places_.assign(std::max(kFewestPlaces, places_.size() * 2), 0);
  for (std::size_t number = 0; number < records_.size(); ++number) {
    const Record& record = records_[number];
    places_[placeOf({record.text, record.keyLength}, record.hash)] =
        static_cast<std::uint32_t>(number + 1);
  }
}

const char* RecordBatch::keep(std::string_view text) {
  if (blockSize_ - blockFilled_ < text.size()) {
    blockSize_ = std::max(kBlock, text.size());
    blockFilled_ = 0;
    blocks_.push_back(std::make_unique<char[]>(blockSize_));
    textBytes_ += blockSize_;
  }
  char* const place = blocks_.back().get() + blockFilled_;
  if (!text.empty()) std::memcpy(place, text.data(), text.size());
  blockFilled_ += text.size();
  return place;
}

bool RecordBatch::add(std::string_view record) {
  const std::string_view key = record.substr(0, record.find(','));
  if (key.empty() || record.find_first_of("\r\n\"") != std::string_view::npos) return false;
  if (record.size() > std::numeric_limits<std::uint32_t>::max()) return false;
  constexpr std::size_t kFull = 2;  // half of the places in use
  if ((records_.size() + 1) * kFull > places_.size()) growPlaces();
  const std::uint32_t hash = hashOf(key);
  const std::size_t place = placeOf(key, hash);
  if (places_[place] != 0) return false;
  records_.push_back({keep(record), static_cast<std::uint32_t>(record.size()),
                      static_cast<std::uint32_t>(key.size()), hash, true, false});
  places_[place] = static_cast<std::uint32_t>(records_.size());
  return true;
}

std::optional<std::size_t> RecordBatch::find(std::string_view key) const {
  if (places_.empty()) return std::nullopt;
  const std::uint32_t found = places_[placeOf(key, hashOf(key))];
  if (found == 0) return std::nullopt;
  return found - 1;
}

void RecordBatch::replace(std::size_t number, std::string_view record) {
  records_[number].text = keep(record);
  records_[number].length = static_cast<std::uint32_t>(record.size());
}

std::size_t RecordBatch::includedCount() const {
  return static_cast<std::size_t>(std::count_if(
      records_.begin(), records_.end(), [](const Record& record) { return record.included; }));
}

std::size_t RecordBatch::memory() const {
  return textBytes_ + records_.capacity() * sizeof(Record) +
         places_.capacity() * sizeof(std::uint32_t);
}

}  // namespace vel
