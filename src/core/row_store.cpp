#include "core/row_store.h"

#include <cstring>

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

const char* RowStore::keep(std::initializer_list<std::string_view> pieces, std::size_t length) {
  if (blockSize_ - blockUsed_ < length || blocks_.empty()) {
    blockSize_ = length > kBlockSize ? length : kBlockSize;
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize_));
    blockUsed_ = 0;
    reserved_ += blockSize_;
  }
  char* const place = blocks_.back().get() + blockUsed_;
  char* end = place;
  for (const std::string_view piece : pieces) {
    std::memcpy(end, piece.data(), piece.size());
    end += piece.size();
  }
  blockUsed_ += length;
  return place;
}

void RowStore::append(std::initializer_list<std::string_view> pieces) {
  std::size_t length = 0;
  for (const std::string_view piece : pieces) length += piece.size();
  if (size_ % kRowsPerBlock == 0) {
    rows_.push_back(std::make_unique_for_overwrite<Row[]>(kRowsPerBlock));
  }
  rows_.back()[size_ % kRowsPerBlock] = {keep(pieces, length), length};
  ++size_;
  kept_ += length;
}

std::string_view RowStore::field(std::size_t index, std::size_t field) const {
  return fieldOf(row(index), separator_, field);
}

void RowStore::setField(std::size_t index, std::size_t field, std::string_view bytes) {
  const std::string_view old = row(index);
  const std::string_view replaced = fieldOf(old, separator_, field);
  if (replaced.data() == nullptr) return;
  const auto before = static_cast<std::size_t>(replaced.data() - old.data());
  const std::string_view behind = old.substr(before + replaced.size());
  const std::size_t length = before + bytes.size() + behind.size();
  const char* changed = keep({old.substr(0, before), bytes, behind}, length);
  kept_ += length - old.size();
  rows_[index / kRowsPerBlock][index % kRowsPerBlock] = {changed, length};
}

void RowStore::clear() {
  rows_.clear();
  blocks_.clear();
  size_ = 0;
  blockUsed_ = blockSize_ = reserved_ = kept_ = 0;
}

std::size_t RowStore::overhead() const {
  return rows_.size() * kRowsPerBlock * sizeof(Row) + rows_.capacity() * sizeof(rows_[0]) +
         blocks_.capacity() * sizeof(blocks_[0]) + reserved_ - kept_;
}

}  // namespace vel
