#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace vel {

[[nodiscard]] constexpr bool isDigitChar(char c) { return c >= '0' && c <= '9'; }
[[nodiscard]] constexpr bool isCapitalChar(char c) { return c >= 'A' && c <= 'Z'; }

/// Reads a short text from left to right. Each `take` moves past what it took;
/// one that fails leaves the place where it was.
class TextScan {
 public:
  explicit TextScan(std::string_view text) : rest_(text) {}

  [[nodiscard]] std::string_view rest() const { return rest_; }
  [[nodiscard]] bool atEnd() const { return rest_.empty(); }
  [[nodiscard]] bool nextIsDigit() const { return !atEnd() && isDigitChar(rest_.front()); }

  /// True when a number or a word ends here.
  [[nodiscard]] bool atBoundary() const {
    return atEnd() || !(nextIsDigit() || isCapitalChar(rest_.front()) || rest_.front() == '.');
  }

  bool take(std::string_view literal) {
    if (!rest_.starts_with(literal)) return false;
    rest_.remove_prefix(literal.size());
    return true;
  }

  /// One of two letters: +1 for the first, -1 for the second.
  std::optional<int> takeSign(char positive, char negative) {
    if (take({&positive, 1})) return 1;
    if (take({&negative, 1})) return -1;
    return std::nullopt;
  }

  /// A number of exactly `width` characters (at most 9): digits, of which up
  /// to two leading ones may be blanks.
  std::optional<int> takeNumber(std::size_t width) {
    if (rest_.size() < width) return std::nullopt;
    int number = 0;
    for (std::size_t i = 0; i < width; ++i) {
      const char c = rest_[i];
      const bool padding =
          c == ' ' && i < 2 && i + 1 < width && number == 0 && (i == 0 || rest_[0] == ' ');
      if (!padding && !isDigitChar(c)) return std::nullopt;
      number = number * 10 + (padding ? 0 : c - '0');
    }
    rest_.remove_prefix(width);
    return number;
  }

  /// Exactly `width` digits, whatever they say.
  bool takeDigits(std::size_t width) {
    if (countDigits() < width) return false;
    rest_.remove_prefix(width);
    return true;
  }

  /// Exactly `width` capital letters.
  bool takeCapitals(std::size_t width) {
    if (rest_.size() < width) return false;
    for (std::size_t i = 0; i < width; ++i) {
      if (!isCapitalChar(rest_[i])) return false;
    }
    rest_.remove_prefix(width);
    return true;
  }

  /// Blanks, any number of them.
  void skipBlanks() {
    while (rest_.starts_with(' ')) rest_.remove_prefix(1);
  }

  /// Blanks and line breaks.
  void skipSpace() {
    while (!atEnd() && (rest_.front() == ' ' || rest_.front() == '\n' || rest_.front() == '\r')) {
      rest_.remove_prefix(1);
    }
  }

  /// Everything up to and with the next comma; nothing when there is none.
  std::optional<std::string_view> takeField() {
    const std::size_t comma = rest_.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    const std::string_view field = rest_.substr(0, comma);
    rest_.remove_prefix(comma + 1);
    return field;
  }

  [[nodiscard]] std::size_t countDigits() const {
    std::size_t count = 0;
    while (count < rest_.size() && isDigitChar(rest_[count])) ++count;
    return count;
  }

 private:
  std::string_view rest_;
};

}  // namespace vel
