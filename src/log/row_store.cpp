#include "log/row_store.h"

#include <algorithm>
#include <cstring>

namespace vel {
namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 18;

}  // namespace

std::string_view fieldOf(std::string_view text, char separator, std::size_t field) {
  // A field may be a megabyte long.
  std::size_t from = 0;
  for (; field > 0; --field) {
    const std::size_t end = text.find(separator, from);
    if (end == std::string_view::npos) return {};
    from = end + 1;
  }
  return text.substr(from, text.find(separator, from) - from);
}

char* RowStore::roomInNewBlock(std::size_t most) {
  const bool nextIsLargeEnough = blocksUsed_ < blocks_.size() && blocks_[blocksUsed_].size >= most;
  if (!nextIsLargeEnough) {
    const std::size_t size = std::max(most, kBlockSize);
    blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(blocksUsed_),
                   Block{std::make_unique_for_overwrite<char[]>(size), size});
  }
  filled_ = 0;
  return blocks_[blocksUsed_++].text.get();
}

void RowStore::addRowBlock() {
  rows_.push_back(std::make_unique_for_overwrite<Row[]>(kRowsPerBlock));
}

char* RowStore::writePieces(std::initializer_list<std::string_view> pieces, std::size_t length) {
  char* const place = room(length);
  char* end = place;
  for (const std::string_view piece : pieces) {
    if (!piece.empty()) std::memcpy(end, piece.data(), piece.size());
    end += piece.size();
  }
  return place;
}

void RowStore::append(std::initializer_list<std::string_view> pieces) {
  std::size_t length = 0;
  for (const std::string_view piece : pieces) length += piece.size();
  writePieces(pieces, length);
  addWritten(length);
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
  const char* changed = writePieces({old.substr(0, before), bytes, behind}, length);
  filled_ += length;
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
