#include "tests/velweb/documents.h"

namespace vel::test {

std::string readXml(std::string_view text, pugi::xml_document& xml) {
  const pugi::xml_parse_result result =
      xml.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_ws_pcdata_single,
                      pugi::encoding_utf8);
  if (result) return {};
  return std::string(result.description()) + " at byte " + std::to_string(result.offset);
}

std::string textProblem(std::string_view document) {
  for (std::size_t i = 0; i < document.size();) {
    const auto byte = static_cast<unsigned char>(document[i]);
    const std::string place = " at byte " + std::to_string(i);
    if (byte < 0x80) {
      if ((byte < 0x20 && byte != '\n') || byte == 0x7F) return "a control character" + place;
      ++i;
      continue;
    }
    const std::size_t size = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
    if (byte < 0xC2 || byte > 0xF4 || i + size > document.size()) return "a bad byte" + place;
    for (std::size_t k = 1; k < size; ++k) {
      if ((static_cast<unsigned char>(document[i + k]) & 0xC0) != 0x80) return "a bad byte" + place;
    }
    const auto second = static_cast<unsigned char>(document[i + 1]);
    if ((byte == 0xE0 && second < 0xA0) || (byte == 0xED && second > 0x9F) ||
        (byte == 0xF0 && second < 0x90) || (byte == 0xF4 && second > 0x8F)) {
      return "a bad character" + place;
    }
    if (byte == 0xC2 && second < 0xA0) return "a control character" + place;
    i += size;
  }
  return {};
}

}  // namespace vel::test
