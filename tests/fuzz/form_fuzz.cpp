// The form that the conversion takes: encoder and decoder against plain second
// ones, in pieces of any size, and one against the other.

#include <array>
#include <cstdio>

#include "tests/fuzz/fuzz_support.h"
#include "velweb/form_decoder.h"
#include "web/form_encoder.h"

namespace vel::fuzz {
namespace {

std::string code(unsigned value) {
  std::array<char, 4> text{};
  std::snprintf(text.data(), text.size(), "%%%02X", value);
  return text.data();
}

bool isLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xEF);
}

std::string plainlyEncoded(std::string_view bytes) {
  constexpr std::string_view kStays =
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz@*-._";
  std::string form;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const auto byte = static_cast<unsigned char>(bytes[at]);
    if (isLead(byte)) {
      form += code(byte);
      if (++at == bytes.size()) break;
      const auto trail = static_cast<unsigned char>(bytes[at]);
      if (trail >= 0x10) {
        form += code(trail);
      } else {
        // One digit in place of two, in front of the second one of the lead's code.
        const std::string both = code(trail).substr(2) + form.substr(form.size() - 1);
        form += "%" + both;
      }
    } else if (byte == ' ') {
      form += '+';
    } else if (byte != 0 && kStays.find(bytes[at]) != std::string_view::npos) {
      form += bytes[at];
    } else {
      form += code(byte);
    }
  }
  return form;
}

int valueOf(char digit) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const char small = digit >= 'A' && digit <= 'F' ? static_cast<char>(digit + 32) : digit;
  const std::size_t value = kDigits.find(small);
  return digit == '\0' || value == std::string_view::npos ? -1 : static_cast<int>(value);
}

std::string plainlyDecoded(std::string_view text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isCode = text[at] == '%' && at + 2 < text.size() && valueOf(text[at + 1]) >= 0 &&
                        valueOf(text[at + 2]) >= 0;
    if (isCode) {
      bytes += static_cast<char>(valueOf(text[at + 1]) * 16 + valueOf(text[at + 2]));
      at += 2;
    } else {
      bytes += text[at] == '+' ? ' ' : text[at];
    }
  }
  return bytes;
}

/// The value of the first field of that name.
std::optional<std::string> plainField(std::string_view form, std::string_view name) {
  while (true) {
    const std::size_t end = form.find('&');
    const std::string_view field = form.substr(0, end);
    const std::size_t equals = field.find('=');
    if (equals != std::string_view::npos && plainlyDecoded(field.substr(0, equals)) == name) {
      return plainlyDecoded(field.substr(equals + 1));
    }
    if (end == std::string_view::npos) return std::nullopt;
    form.remove_prefix(end + 1);
  }
}

std::optional<std::string> fieldInPieces(std::string_view form, const std::string& name,
                                         std::size_t piece) {
  FormFieldDecoder decoder(name);
  std::string value;
  for (std::size_t at = 0; at < form.size(); at += piece) {
    value += decoder.decode(form.substr(at, piece));
  }
  value += decoder.finish();
  return decoder.found() ? std::optional(value) : std::nullopt;
}

void run(std::string_view bytes) {
  const std::string form = plainlyEncoded(bytes);
  check(encodeForm(bytes) == form, "another form");
  check(form.size() <= 3 * bytes.size(), "a form that is too long");
  for (const std::size_t piece : {1U, 2U, 3U, 7U}) {
    FormEncoder encoder;
    std::string inPieces;
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
      encoder.add(bytes.substr(at, piece), inPieces);
    }
    check(inPieces == form, "pieces change the form");
    check(fieldInPieces(bytes, "dat", piece) == plainField(bytes, "dat"), "another field");
    check(fieldInPieces("dat=" + form, "dat", piece) == plainlyDecoded(form), "another value");
  }
  // Malformed text alone is not the same afterwards.
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (!isLead(static_cast<unsigned char>(bytes[at]))) continue;
    if (++at < bytes.size() && static_cast<unsigned char>(bytes[at]) < 0x10) return;
  }
  check(plainlyDecoded(form) == bytes, "what was sent is not what arrives");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vel::fuzz::run({reinterpret_cast<const char*>(data), size});
  return 0;
}
