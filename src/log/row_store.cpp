#include "log/row_store.h"

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

RowStore::Block& RowStore::blockFor(std::size_t length) {
  if (blocksUsed_ > 0 && blocks_[blocksUsed_ - 1].size - filled_ >= length) {
    return blocks_[blocksUsed_ - 1];
  }
  const bool nextIsLargeEnough =
      blocksUsed_ < blocks_.size() && blocks_[blocksUsed_].size >= length;
  if (!nextIsLargeEnough) {
    const std::size_t size = length > kBlockSize ? length : kBlockSize;
    blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(blocksUsed_),
                   Block{std::make_unique_for_overwrite<char[]>(size), size});
  }
  filled_ = 0;
  return blocks_[blocksUsed_++];
}

char* RowStore::keep(std::initializer_list<std::string_view> pieces, std::size_t length) {
  Block& block = blockFor(length);
  char* const place = block.text.get() + filled_;
  char* end = place;
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) std::memcpy(end, piece.data(), piece.size());
    end += piece.size();
  }
  filled_ += length;
  return place;
}

void RowStore::append(std::initializer_list<std::string_view> pieces) {
  std::size_t length = 0;
  for (const std::string_view piece : pieces) length += piece.size();
  if (size_ == rows_.size() * kRowsPerBlock) {
    rows_.push_back(std::make_unique_for_overwrite<Row[]>(kRowsPerBlock));
  }
  rows_[size_ / kRowsPerBlock][size_ % kRowsPerBlock] = {keep(pieces, length), length};
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
  blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(blocksUsed_), blocks_.end());
  rows_.resize((size_ + kRowsPerBlock - 1) / kRowsPerBlock);
  blocksUsed_ = filled_ = kept_ = size_ = 0;
}

std::size_t RowStore::overhead() const {
  std::size_t bytes = rows_.size() * (kRowsPerBlock * sizeof(Row) + sizeof(rows_[0]));
  for (const Block& block : blocks_) bytes += block.size + sizeof block;
  return bytes - kept_;
}

}  // namespace vel
