#include "samples/text_file.h"

#include <optional>

#include "core/file.h"
#include "core/text.h"
#include "samples/failure.h"

namespace vel::samples {

Status writeFile(const std::filesystem::path& path, std::string_view bytes) {
  const Status written = writeWholeFile(path, ".new", bytes);
  if (written) return {};
  return failure(toUtf8(path) + ": cannot write: " + written.error().text());
}

Status TextFile::write() const {
  const Result<Encoding> encoding = Encoding::named("CP932");
  if (!encoding) return failure("code page 932 is not available");
  const std::optional<std::string> encoded = encoding->encode(text_);
  if (!encoded) return failure(toUtf8(path_) + ": the text does not fit in code page 932");
  return writeFile(path_, *encoded);
}

}  // namespace vel::samples
