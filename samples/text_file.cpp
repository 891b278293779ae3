#include "text_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>

#include <iconv.h>

namespace vel::samples {

namespace {

/// The text in code page 932, or nothing where it does not fit in there.
std::optional<std::string> toCodePage932(const std::string& utf8) {
  // glibc's CP932 maps as Windows does; plain Shift_JIS would change the tilde
  // and the backslash.
  const iconv_t converter = iconv_open("CP932", "UTF-8");
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    return std::nullopt;
  }
  // A UTF-8 text never grows in code page 932.
  std::string encoded(utf8.size(), '\0');
  std::string source = utf8;
  char* in = source.data();
  std::size_t inLeft = source.size();
  char* out = encoded.data();
  std::size_t outLeft = encoded.size();
  const std::size_t result = iconv(converter, &in, &inLeft, &out, &outLeft);
  const bool closed = iconv_close(converter) == 0;
  // A result above 0 counts characters that were replaced by look-alikes.
  if (result != 0 || !closed) {
    return std::nullopt;
  }
  encoded.resize(encoded.size() - outLeft);
  return encoded;
}

}  // namespace

Outcome writeWholeFile(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file) {
    return Outcome::failure(path.string() + ": cannot create: " + std::strerror(errno));
  }
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) {
    return Outcome::failure(path.string() + ": cannot write: " + std::strerror(errno));
  }
  return Outcome::success();
}

Outcome TextFile::write() const {
  const std::optional<std::string> encoded = toCodePage932(text_);
  if (!encoded) {
    return Outcome::failure(path_.string() + ": the text does not fit in code page 932");
  }
  return writeWholeFile(path_, *encoded);
}

}  // namespace vel::samples
