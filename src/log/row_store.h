#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <vector>

namespace vel {

/// The rows of a list, kept as the bytes of their fields joined by one
/// separator: 16 bytes for a row beside its text. Rows are only added, changed
/// in place, or cleared all at once.
class RowStore {
 public:
  explicit RowStore(char separator) : separator_(separator) {}

  [[nodiscard]] std::size_t size() const { return size_; }

  /// Adds a row; the text is copied.
  void append(std::string_view row) { append({row}); }

  /// Adds a row whose text is these pieces, one behind the other.
  void append(std::initializer_list<std::string_view> pieces);

  /// Room for one more row of at most so many bytes, to be written there and
  /// then added. The pointer lives until the next call of any other member.
  [[nodiscard]] char* room(std::size_t most) {
    const bool fits = blocksUsed_ > 0 && blocks_[blocksUsed_ - 1].size - filled_ >= most;
    return fits ? blocks_[blocksUsed_ - 1].text.get() + filled_ : roomInNewBlock(most);
  }

  /// Adds the row that was written to room(): its first `length` bytes.
  void addWritten(std::size_t length) {
    if (size_ % kRowsPerBlock == 0 && size_ == rows_.size() * kRowsPerBlock) addRowBlock();
    rows_[size_ / kRowsPerBlock][size_ % kRowsPerBlock] = {
        blocks_[blocksUsed_ - 1].text.get() + filled_, length};
    ++size_;
    filled_ += length;
    kept_ += length;
  }

  /// The whole row. The view lives until the row is changed or cleared.
  [[nodiscard]] std::string_view row(std::size_t index) const {
    const Row& found = at(index);
    return {found.text, found.length};
  }

  /// One field (0-based), empty when the row has fewer.
  [[nodiscard]] std::string_view field(std::size_t index, std::size_t field) const;

  /// Puts bytes without the separator into one field of a row.
  void setField(std::size_t index, std::size_t field, std::string_view bytes);

  /// Removes every row. The memory that they took is kept for the next ones;
  /// what was not needed since the last call is given back.
  void clear();

  /// Bytes of memory for all rows beside their text.
  [[nodiscard]] std::size_t overhead() const;

 private:
  struct Row {
    const char* text;
    std::size_t length;
  };

  // Rows lie in blocks of their own, so that a million of them are never moved.
  static constexpr std::size_t kRowsPerBlock = 4096;

  [[nodiscard]] const Row& at(std::size_t index) const {
    return rows_[index / kRowsPerBlock][index % kRowsPerBlock];
  }
  struct Block {
    std::unique_ptr<char[]> text;
    std::size_t size;
  };

  char* writePieces(std::initializer_list<std::string_view> pieces, std::size_t length);
  char* roomInNewBlock(std::size_t most);
  void addRowBlock();

  char separator_;
  std::size_t size_ = 0;
  std::vector<std::unique_ptr<Row[]>> rows_;
  std::vector<Block> blocks_;
  std::size_t blocksUsed_ = 0;  // the last one of them is being filled
  std::size_t filled_ = 0;      // bytes of it
  std::size_t kept_ = 0;        // bytes of text in use
};

/// The field (0-based) of a text, empty when there are fewer.
[[nodiscard]] std::string_view fieldOf(std::string_view text, char separator, std::size_t field);

}  // namespace vel
