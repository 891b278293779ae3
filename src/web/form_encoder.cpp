#include "web/form_encoder.h"

#include "core/text.h"

namespace vel {
namespace {

bool isLeadByte(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xEF);
}

bool staysAsItIs(unsigned char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 0x40 && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z') || byte == '*' || byte == '-' || byte == '.' || byte == '_';
}

void appendCode(std::string& encoded, unsigned char high, unsigned char low) {
  encoded += '%';
  encoded += kHexDigits[high];
  encoded += kHexDigits[low];
}

}  // namespace

void FormEncoder::add(std::string_view bytes, std::string& encoded) {
  for (const char each : bytes) {
    const auto byte = static_cast<unsigned char>(each);
    const auto high = static_cast<unsigned char>(byte >> 4);
    const auto low = static_cast<unsigned char>(byte & 0x0F);
    if (lead_ != 0) {
      const auto leadLow = static_cast<unsigned char>(lead_ & 0x0F);
      lead_ = 0;
      // The one-digit code of a trail byte below 0x10 leaves the second digit
      // of the code before it in place; the conversion expects that.
      if (byte < 0x10) {
        appendCode(encoded, low, leadLow);
      } else {
        appendCode(encoded, high, low);
      }
    } else if (isLeadByte(byte)) {
      lead_ = byte;
      appendCode(encoded, high, low);
    } else if (byte == ' ') {
      encoded += '+';
    } else if (staysAsItIs(byte)) {
      encoded += each;
    } else {
      appendCode(encoded, high, low);
    }
  }
}

std::string encodeForm(std::string_view bytes) {
  std::string encoded;
  encoded.reserve(bytes.size() * 2);
  FormEncoder().add(bytes, encoded);
  return encoded;
}

}  // namespace vel
