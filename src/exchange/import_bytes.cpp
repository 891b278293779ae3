#include "exchange/import_bytes.h"

#include <algorithm>
#include <limits>
#include <system_error>
#include <utility>

#include <zlib.h>

#include "exchange/list_saving.h"

namespace vel {
namespace {

constexpr std::size_t kBlock = std::size_t{256} << 10;
constexpr std::string_view kGzip = "\x1F\x8B";
constexpr std::string_view kZip = "PK\x03\x04";
constexpr std::string_view kEmptyZip = "PK\x05\x06";
constexpr std::string_view kDatabase{"SQLite format 3\0", 16};

Error brokenGzip() {
  return importError("The gzip file is damaged or cut off.", "gzipファイルが壊れています。");
}

}  // namespace

Error importError(std::string english, std::string_view japanese) {
  return {ErrorNumber::deviceIo, std::move(english) + ' ' + std::string(japanese)};
}

Error fileChanged() {
  return importError("The file changed while it was read.", "読込み中にファイルが変更されました。");
}

/// zlib's state, and what it unpacks into.
struct ImportBytes::Unpacking {
  Unpacking() = default;
  Unpacking(const Unpacking&) = delete;
  Unpacking& operator=(const Unpacking&) = delete;
  ~Unpacking() { inflateEnd(&stream); }

  z_stream stream{};
  std::unique_ptr<char[]> out = std::make_unique<char[]>(kBlock);
  bool inMember = false;  // of the members that a gzip may have several of
};

ImportBytes::Seen ImportBytes::lookAt(const std::filesystem::path& file) {
  std::error_code error;
  Seen seen;
  seen.size = std::filesystem::file_size(file, error);
  if (error) seen.size = 0;
  seen.time = std::filesystem::last_write_time(file, error);
  return seen;
}

ImportBytes::ImportBytes(std::filesystem::path path, InputFile file, const ImportLimits& limits)
    : path_(std::move(path)),
      file_(std::move(file)),
      limits_(limits),
      buffer_(std::make_unique<char[]>(kBlock)) {}

ImportBytes::~ImportBytes() = default;

Result<std::unique_ptr<ImportBytes>> ImportBytes::open(const std::filesystem::path& file,
                                                       const ImportLimits& limits) {
  const Seen seen = lookAt(file);
  Result<InputFile> opened = InputFile::open(file);
  if (!opened) return Error{opened.error().number, reasonOf(opened.error())};
  std::unique_ptr<ImportBytes> bytes(new ImportBytes(file, *std::move(opened), limits));
  bytes->seen_ = seen;
  while (bytes->waiting_ < kDatabase.size()) {
    const Result<std::size_t> got =
        bytes->file_.read(bytes->buffer_.get() + bytes->waiting_, kBlock - bytes->waiting_);
    if (!got) return Error{got.error().number, reasonOf(got.error())};
    if (*got == 0) break;
    bytes->waiting_ += *got;
    bytes->bytesRead_ += *got;
  }
  const std::string_view begin(bytes->buffer_.get(), bytes->waiting_);
  if (begin.starts_with(kZip) || begin.starts_with(kEmptyZip)) {
    return importError("This is a zip archive: unpack it first, then import a file of it.",
                       "zip形式です。展開してから取り込んでください。");
  }
  if (begin.starts_with(kGzip)) {
    auto unpacking = std::make_unique<Unpacking>();
    constexpr int kGzipOnly = 16;
    if (inflateInit2(&unpacking->stream, kGzipOnly + MAX_WBITS) != Z_OK) return brokenGzip();
    bytes->unpacking_ = std::move(unpacking);
  }
  return bytes;
}

bool ImportBytes::isDatabase() const {
  return std::string_view(buffer_.get(), waiting_).starts_with(kDatabase);
}

Result<std::string_view> ImportBytes::read() {
  if (waiting_ > 0) {
    return std::string_view(buffer_.get(), std::exchange(waiting_, 0));
  }
  const Result<std::size_t> got = file_.read(buffer_.get(), kBlock);
  if (!got) return Error{got.error().number, reasonOf(got.error())};
  bytesRead_ += *got;
  if (*got == 0 && !(lookAt(path_) == seen_ && bytesRead_ == seen_.size)) return fileChanged();
  return std::string_view(buffer_.get(), *got);
}

Result<std::string_view> ImportBytes::unpack() {
  z_stream& stream = unpacking_->stream;
  while (true) {
    if (stream.avail_in == 0) {
      const Result<std::string_view> packed = read();
      if (!packed) return packed.error();
      if (packed->empty()) {
        if (unpacking_->inMember) return brokenGzip();
        return std::string_view();
      }
      // zlib does not write to its input, but does not say so.
      stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed->data()));
      stream.avail_in = static_cast<uInt>(packed->size());
    }
    unpacking_->inMember = true;
    stream.next_out = reinterpret_cast<Bytef*>(unpacking_->out.get());
    stream.avail_out = static_cast<uInt>(kBlock);
    const int result = inflate(&stream, Z_NO_FLUSH);
    if (result == Z_STREAM_END) {
      unpacking_->inMember = false;
      if (inflateReset(&stream) != Z_OK) return brokenGzip();
    } else if (result != Z_OK && result != Z_BUF_ERROR) {
      return brokenGzip();
    }
    const std::size_t made = kBlock - stream.avail_out;
    if (made > 0) return std::string_view(unpacking_->out.get(), made);
  }
}

Result<std::string_view> ImportBytes::next() {
  Result<std::string_view> bytes = isPacked() ? unpack() : read();
  if (!bytes) return bytes;
  handedOut_ += bytes->size();
  if (handedOut_ > limits_.mostBytes) {
    return importError("The file unpacks to more than " + std::to_string(limits_.mostBytes >> 20) +
                           " MiB, which is the limit.",
                       "ファイルが大きすぎます。");
  }
  return bytes;
}

}  // namespace vel
