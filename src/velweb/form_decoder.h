#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vel {

/// Reads one field out of a posted form (`name=value&...`) that arrives in
/// pieces of any size: "+" stands for a blank, "%XX" for a byte, and a "%"
/// without two hexadecimal digits for itself. Only the first field of that
/// name counts. Holds nothing but the state between two bytes.
class FormFieldDecoder {
 public:
  explicit FormFieldDecoder(std::string name) : name_(std::move(name)) {}

  /// The decoded bytes of the field's value in this piece of the form.
  [[nodiscard]] std::string decode(std::string_view piece);

  /// What an unfinished code at the end of the form stands for.
  [[nodiscard]] std::string finish();

  /// True once the field's name was seen.
  [[nodiscard]] bool found() const { return found_; }

 private:
  enum class Place { name, value, elsewhere };

  void takeCharacter(char c, std::string& value);
  void takeByte(char byte, std::string& value);

  std::string name_;
  std::string currentName_;
  std::string pendingCode_;  // "%" or "%X"
  Place place_ = Place::name;
  bool found_ = false;
};

}  // namespace vel
