#include "velweb/form_decoder.h"

#include <utility>

#include "core/text.h"

namespace vel {
namespace {}  // namespace

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
    if (hexDigit(c)) {
      pendingCode_ += c;
      if (pendingCode_.size() < 3) continue;
      const unsigned byte = *hexDigit(pendingCode_[1]) << 4 | *hexDigit(pendingCode_[2]);
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
