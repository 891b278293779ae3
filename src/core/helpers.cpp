#include "core/helpers.h"

#include "core/text.h"

namespace vel {
namespace {

bool isCapital(char c) { return c >= 'A' && c <= 'Z'; }

}  // namespace

std::string ZeroPad(std::string_view value, std::size_t width) {
  const std::string padded = "0000000000" + std::string(value);
  return std::string(Right(padded, width));
}

std::string ZeroPad(long long value, std::size_t width) {
  return ZeroPad(std::to_string(value), width);
}

std::size_t FindUpperWord3(std::string_view text, std::size_t& position) {
  if (length(text) < 7) return 0;
  // Positions count characters, the search runs over bytes: blanks and capital
  // letters are single bytes in UTF-8.
  const std::size_t start = text.size() - Mid(text, position).size();
  std::size_t blank = text.find(' ', start);
  while (blank != std::string_view::npos) {
    const std::string_view word = text.substr(blank + 1, 4);
    if (word.size() == 4 && isCapital(word[0]) && isCapital(word[1]) && isCapital(word[2]) &&
        word[3] == ' ') {
      position = length(text.substr(0, blank)) + 2;
      return position;
    }
    blank = text.find(' ', blank + 1);
  }
  position = 0;
  return 0;
}

int ShellOpen(Desktop& desktop, const std::string& target) { return desktop.open(target); }

std::string nativeText(const std::filesystem::path& path) {
  std::filesystem::path native = path;
  return toUtf8(native.make_preferred());
}

}  // namespace vel
