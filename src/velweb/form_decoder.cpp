#include "velweb/form_decoder.h"

#include <utility>

namespace vel {
namespace {

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

std::string FormFieldDecoder::decode(std::string_view piece) {
  std::string value;
  value.reserve(piece.size());
  for (const char c : piece) {
    if (pendingCode_.empty()) {
      if (c == '%') {
        pendingCode_ = '%';
      } else {
        takeCharacter(c, value);
      }
      continue;
    }
    if (hexValue(c) >= 0) {
      pendingCode_ += c;
      if (pendingCode_.size() < 3) continue;
      const int byte = hexValue(pendingCode_[1]) << 4 | hexValue(pendingCode_[2]);
      pendingCode_.clear();
      takeByte(static_cast<char>(byte), value);
      continue;
    }
    value += finish();
    if (c == '%') {
      pendingCode_ = '%';
    } else {
      takeCharacter(c, value);
    }
  }
  return value;
}

std::string FormFieldDecoder::finish() {
  std::string value;
  for (const char c : std::exchange(pendingCode_, {})) takeByte(c, value);
  return value;
}

// A character of the form itself: the separators and the plus have a meaning.
void FormFieldDecoder::takeCharacter(char c, std::string& value) {
  if (c == '&') {
    place_ = Place::name;
    currentName_.clear();
  } else if (c == '=' && place_ == Place::name) {
    place_ = currentName_ == name_ && !found_ ? Place::value : Place::elsewhere;
    found_ = found_ || place_ == Place::value;
  } else {
    takeByte(c == '+' ? ' ' : c, value);
  }
}

// A byte that stands for itself.
void FormFieldDecoder::takeByte(char byte, std::string& value) {
  if (place_ == Place::value) {
    value += byte;
  } else if (place_ == Place::name && currentName_.size() <= name_.size()) {
    currentName_ += byte;
  }
}

}  // namespace vel
