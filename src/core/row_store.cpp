#include "core/row_store.h"

#include <cstring>
#include <string>

namespace vel {
namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 18;

}  // namespace

std::string_view fieldOf(std::string_view text, char separator, std::size_t field) {
  const char* begin = text.data();
  const char* end = begin + text.size();
  const char* from = begin;
  for (const char* at = begin; at != end; ++at) {
    if (*at != separator) continue;
    if (field == 0) return {from, static_cast<std::size_t>(at - from)};
    --field;
    from = at + 1;
  }
  if (field != 0) return {};
  return {from, static_cast<std::size_t>(end - from)};
}

const char* RowStore::keep(std::string_view text) {
  if (blockSize_ - blockUsed_ < text.size() || blocks_.empty()) {
    blockSize_ = text.size() > kBlockSize ? text.size() : kBlockSize;
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize_));
    blockUsed_ = 0;
    reserved_ += blockSize_;
  }
  char* place = blocks_.back().get() + blockUsed_;
  std::memcpy(place, text.data(), text.size());
  blockUsed_ += text.size();
  return place;
}

void RowStore::append(std::string_view row) {
  rows_.push_back({keep(row), row.size()});
  kept_ += row.size();
}

std::string_view RowStore::field(std::size_t index, std::size_t field) const {
  return fieldOf(row(index), separator_, field);
}

void RowStore::setField(std::size_t index, std::size_t field, std::string_view bytes) {
  const std::string_view old = row(index);
  const std::string_view replaced = fieldOf(old, separator_, field);
  if (replaced.data() == nullptr) return;
  const auto before = static_cast<std::size_t>(replaced.data() - old.data());
  std::string changed(old.substr(0, before));
  changed += bytes;
  changed += old.substr(before + replaced.size());
  kept_ += changed.size() - old.size();
  rows_[index] = {keep(changed), changed.size()};
}

void RowStore::clear() {
  rows_.clear();
  rows_.shrink_to_fit();
  blocks_.clear();
  blockUsed_ = blockSize_ = reserved_ = kept_ = 0;
}

std::size_t RowStore::overhead() const {
  return rows_.capacity() * sizeof(Row) + blocks_.capacity() * sizeof(blocks_[0]) + reserved_ -
         kept_;
}

}  // namespace vel
