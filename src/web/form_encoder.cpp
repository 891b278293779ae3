#include "web/form_encoder.h"

namespace vel {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

bool isLeadByte(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xEF);
}

bool staysAsItIs(unsigned char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 0x40 && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z') || byte == '*' || byte == '-' || byte == '.' || byte == '_';
}

void appendCode(std::string& encoded, unsigned char high, unsigned char low) {
  encoded += '%';
  encoded += kDigits[high];
  encoded += kDigits[low];
}

}  // namespace

std::string encodeForm(std::string_view bytes) {
  std::string encoded;
  encoded.reserve(bytes.size() * 2);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    const auto low = static_cast<unsigned char>(byte & 0x0F);
    if (isLeadByte(byte)) {
      appendCode(encoded, byte >> 4, low);
      if (++i == bytes.size()) break;
      const auto trail = static_cast<unsigned char>(bytes[i]);
      // The one-digit code of a trail byte below 0x10 leaves the second digit
      // of the code before it in place; the conversion expects that.
      if (trail < 0x10) {
        appendCode(encoded, trail, low);
      } else {
        appendCode(encoded, trail >> 4, trail & 0x0F);
      }
    } else if (byte == ' ') {
      encoded += '+';
    } else if (staysAsItIs(byte)) {
      encoded += static_cast<char>(byte);
    } else {
      appendCode(encoded, byte >> 4, low);
    }
  }
  return encoded;
}

}  // namespace vel
