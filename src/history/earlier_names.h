#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vel {

/// Names that are looked for among the names of many lines: each is struck off
/// when it turns up. Made for few names and many lines without them.
class WantedNames {
 public:
  explicit WantedNames(std::vector<std::string> names);

  /// Strikes the name off, if it is wanted.
  void strike(std::string_view name) {
    const std::uint64_t hash = hashOf(name);
    for (std::size_t slot = hash & mask_; slots_[slot].number != 0; slot = (slot + 1) & mask_) {
      if (slots_[slot].hash == hash && names_[slots_[slot].number - 1] == name) {
        struck(slots_[slot].number - 1);
        return;
      }
    }
  }

  /// Those that did not turn up, in the order in which they were given.
  [[nodiscard]] std::vector<std::string> left() const;
  [[nodiscard]] bool isDone() const { return left_ == 0; }

 private:
  struct Slot {
    std::uint64_t hash = 0;
    std::size_t number = 0;  // of the name, counted from 1; 0 for none
  };

  // At most so many bytes tell names apart here; equal ones are compared whole.
  [[nodiscard]] static std::uint64_t hashOf(std::string_view name);
  void struck(std::size_t index);

  std::vector<std::string> names_;
  std::vector<bool> isStruck_;
  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  std::size_t left_ = 0;
};

/// Strikes off what the lines of a list log hold: flights of the first field
/// without the blanks around them, registrations of the third. Lines that are
/// no records do not count. BytePattern::kSlack bytes behind the text can be
/// read.
void strikeListNames(std::string_view lines, WantedNames& aircraft, WantedNames& flights);

}  // namespace vel
