#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "tables/table_files.h"

namespace vel {

/// Records of one table, each with a key of its own, that go into the table in
/// one rewrite. A record is a full line in the table's encoding, without its
/// line end; its key is its first field.
class RecordBatch {
 public:
  explicit RecordBatch(Table table) : table_(table) {}

  [[nodiscard]] Table table() const { return table_; }

  /// Adds a record and copies it. False, and nothing is added, where its key is
  /// empty or there already, or where it holds a line end or a double quote.
  bool add(std::string_view record);

  /// The number of the record with that key.
  [[nodiscard]] std::optional<std::size_t> find(std::string_view key) const;

  [[nodiscard]] std::size_t size() const { return records_.size(); }
  /// The view lives as long as the batch.
  [[nodiscard]] std::string_view record(std::size_t number) const {
    return {records_[number].text, records_[number].length};
  }

  /// Puts another record of the same key in a record's place.
  void replace(std::size_t number, std::string_view record);

  /// Whether a record is written; all are at first. One that is not leaves the
  /// table's lines of its key as they are.
  void setIncluded(std::size_t number, bool included) { records_[number].included = included; }
  [[nodiscard]] bool isIncluded(std::size_t number) const { return records_[number].included; }
  [[nodiscard]] std::size_t includedCount() const;

  /// A record of a key that the table does not have: where it has one by the
  /// time of the rewrite, that line stays as it is.
  void setOnlyAdded(std::size_t number) { records_[number].onlyAdded = true; }
  [[nodiscard]] bool isOnlyAdded(std::size_t number) const { return records_[number].onlyAdded; }

  /// Bytes of memory that the records take.
  [[nodiscard]] std::size_t memory() const;

 private:
  struct Record {
    const char* text;
    std::uint32_t length;
    std::uint32_t keyLength;
    std::uint32_t hash;
    bool included;
    bool onlyAdded;
  };

  [[nodiscard]] std::size_t placeOf(std::string_view key, std::uint32_t hash) const;
  const char* keep(std::string_view text);
  void growPlaces();

  Table table_;
  std::vector<Record> records_;
  std::vector<std::uint32_t> places_;  // number + 1 by hash, 0 where there is none
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t blockFilled_ = 0;  // of the last block
  std::size_t blockSize_ = 0;
  std::size_t textBytes_ = 0;
};

}  // namespace vel
