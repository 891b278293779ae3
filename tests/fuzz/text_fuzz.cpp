// Text conversion: what is decoded is text, what is encoded comes back, and the
// helpers that count characters agree with a plain cut.

#include <algorithm>

#include "core/helpers.h"
#include "tables/record.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

void checkEncoding(const Encoding& encoding, std::string_view bytes) {
  const std::string text = encoding.decode(bytes);
  check(isUtf8(text), "decoded bytes that are no text");
  check(encoding.decode(bytes) == text, "decoding depends on what was decoded before");
  const auto stored = encoding.encode(text);
  if (stored) {
    check(encoding.decode(*stored) == text, "a text that comes back as another one");
    check(encoding.encode(text) == stored, "encoding depends on what was encoded before");
  }
  // Where every byte was a character, encoding has a place for each.
  const bool damaged = text.find("\xEF\xBF\xBD") != std::string::npos;
  check(damaged || stored.has_value(), "decoded text that cannot be encoded");
  const auto given = encoding.encode(bytes);
  if (given && isUtf8(bytes)) {
    check(length(encoding.decode(*given)) == length(bytes), "characters got lost");
  }
  if (!isUtf8(bytes)) return;
  const bool stores = canBeStored(encoding, bytes);
  check(!stores || given.has_value(), "a text without bytes that could be stored");
  check(!canBeKey(encoding, bytes) || stores, "a key that cannot be stored");
}

void checkCharacters(std::string_view text) {
  std::vector<std::string_view> characters;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t size = firstCharacter(rest).size;
    check(size >= 1 && size <= rest.size(), "a character beyond the text");
    characters.push_back(rest.substr(0, size));
    rest.remove_prefix(size);
  }
  const auto from = [&](std::size_t begin, std::size_t end) {
    std::string piece;
    for (std::size_t i = begin; i < std::min(end, characters.size()); ++i) piece += characters[i];
    return piece;
  };
  const std::size_t count = characters.size();
  check(length(text) == count, "another length");
  for (const std::size_t n : {std::size_t{0}, std::size_t{1}, count / 2, count, count + 3}) {
    check(Left(text, n) == from(0, n), "another beginning");
    check(Right(text, n) == from(count - std::min(n, count), count), "another end");
    check(Mid(text, n + 1) == from(n, count), "another rest");
    check(Mid(text, n + 1, 3) == from(n, n + 3), "another middle");
  }
  check(isUtf8(text) == isUtf8(toLower(text)) && isUtf8(text) == isUtf8(toUpper(text)),
        "another case is no text");
  check(length(toLower(text)) == count && length(toUpper(text)) == count, "another case is longer");
  std::string joined;
  for (const std::string_view piece : split(text, ',')) joined.append(piece).append(",");
  joined.pop_back();
  check(joined == text, "pieces that are not the text");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vel;
  static const Encoding codePage932 = Encoding::codePage932();
  static const Encoding utf8 = fuzz::encodingOf("UTF-8");
  static const Encoding latin = fuzz::encodingOf("windows-1252");
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const Encoding* encoding : {&codePage932, &utf8, &latin}) {
    fuzz::checkEncoding(*encoding, bytes);
  }
  fuzz::checkCharacters(bytes);
  std::size_t position = 1;
  const std::size_t word = FindUpperWord3(std::string(bytes), position);
  fuzz::check(word <= length(bytes), "a word beyond the text");
  return 0;
}
