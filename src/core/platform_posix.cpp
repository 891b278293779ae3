#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwctype>
#include <functional>
#include <system_error>

#include <fcntl.h>
#include <iconv.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/platform.h"

namespace vel::platform {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

Error errorOf(int code) {
  switch (code) {
    case ENOENT:
      return {ErrorNumber::fileNotFound};
    case ENOTDIR:
      return {ErrorNumber::pathNotFound};
    case EEXIST:
      return {ErrorNumber::fileExists};
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return {ErrorNumber::diskFull};
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return {ErrorNumber::permissionDenied};
    default:
      return {ErrorNumber::deviceIo};
  }
}

Error openError(int code, const std::filesystem::path& path) {
  if (code == ENOENT) {
    std::error_code ignored;
    if (path.has_parent_path() && !std::filesystem::is_directory(path.parent_path(), ignored)) {
      return {ErrorNumber::pathNotFound};
    }
  }
  return errorOf(code);
}

Error renameError(int code) {
  switch (code) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
      return {ErrorNumber::pathAccess};
    default:
      return errorOf(code);
  }
}

// One direction of iconv with its descriptor.
class Converter {
 public:
  Converter(const char* to, const char* from) : descriptor_(iconv_open(to, from)) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (ok()) iconv_close(descriptor_);
  }

  // The value that iconv_open gives where it fails.
  [[nodiscard]] bool ok() const {
    return reinterpret_cast<std::intptr_t>(descriptor_) != std::intptr_t{-1};
  }

  // Converts as much as it can and returns how many input bytes that were.
  std::size_t convert(std::string_view input, std::string& output) {
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(input.data());
    std::size_t inLeft = input.size();
    char piece[4096];
    while (inLeft > 0) {
      char* out = piece;
      std::size_t outLeft = sizeof piece;
      const std::size_t result = iconv(descriptor_, &in, &inLeft, &out, &outLeft);
      const int code = errno;
      output.append(piece, sizeof piece - outLeft);
      if (result == static_cast<std::size_t>(-1) && code != E2BIG) break;
    }
    return input.size() - inLeft;
  }

 private:
  iconv_t descriptor_;
};

class IconvTranscoder : public Transcoder {
 public:
  explicit IconvTranscoder(const std::string& name)
      : decoder_("UTF-8", name.c_str()), encoder_(name.c_str(), "UTF-8") {}

  [[nodiscard]] bool ok() const { return decoder_.ok() && encoder_.ok(); }

  std::string decode(std::string_view bytes) override {
    std::string text;
    text.reserve(bytes.size() * 2);
    while (!bytes.empty()) {
      bytes.remove_prefix(decoder_.convert(bytes, text));
      if (bytes.empty()) break;
      text += kReplacement;
      bytes.remove_prefix(1);
    }
    return text;
  }

  std::optional<std::string> encode(std::string_view utf8) override {
    std::string bytes;
    if (encoder_.convert(utf8, bytes) != utf8.size()) return std::nullopt;
    return bytes;
  }

 private:
  Converter decoder_;
  Converter encoder_;
};

locale_t utf8Locale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

Status fromResult(int result) {
  if (result == 0) return {};
  return errorOf(errno);
}

class FileLock : public InstanceLock {
 public:
  explicit FileLock(int descriptor) : descriptor_(descriptor) {}
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock() override { ::close(descriptor_); }

 private:
  int descriptor_;
};

// A folder that only this user can write: the session's run-time folder, or
// one of our own below the folder for temporary files.
Result<std::filesystem::path> privateFolder() {
  std::filesystem::path folder;
  if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime != nullptr && *runtime == '/') {
    folder = runtime;
  } else {
    folder = "/tmp/vel-" + std::to_string(geteuid());
    if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return errorOf(errno);
  }
  struct stat info {};
  if (lstat(folder.c_str(), &info) != 0) return errorOf(errno);
  if (!S_ISDIR(info.st_mode) || info.st_uid != geteuid()) return ErrorNumber::permissionDenied;
  return folder;
}

}  // namespace

std::filesystem::path pathFromUtf8(std::string_view utf8) { return std::filesystem::path(utf8); }

std::string utf8FromPath(const std::filesystem::path& path) { return path.native(); }

std::unique_ptr<Transcoder> makeTranscoder(const std::string& encodingName) {
  // An empty name stands for the session's encoding, and what follows a slash
  // asks for lossy conversion: neither names an encoding.
  if (encodingName.empty() || encodingName.find('/') != std::string::npos) return nullptr;
  auto transcoder = std::make_unique<IconvTranscoder>(encodingName);
  if (!transcoder->ok()) return nullptr;
  return transcoder;
}

char32_t lowerCase(char32_t character) {
  return static_cast<char32_t>(towlower_l(static_cast<wint_t>(character), utf8Locale()));
}

char32_t upperCase(char32_t character) {
  return static_cast<char32_t>(towupper_l(static_cast<wint_t>(character), utf8Locale()));
}

Result<std::intptr_t> openForReading(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  // No file can have a name that is too long, so there is none.
  if (descriptor < 0 && errno == ENAMETOOLONG) return ErrorNumber::fileNotFound;
  if (descriptor < 0) return openError(errno, path);
  struct stat info {};
  if (fstat(descriptor, &info) != 0) {
    const Error error = errorOf(errno);
    ::close(descriptor);
    return error;
  }
  if (!S_ISREG(info.st_mode)) {
    ::close(descriptor);
    return ErrorNumber::permissionDenied;
  }
  return std::intptr_t{descriptor};
}

Result<std::intptr_t> openForWriting(const std::filesystem::path& path) {
  const int descriptor =
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666);
  if (descriptor < 0) return openError(errno, path);
  return std::intptr_t{descriptor};
}

Result<std::size_t> readSome(std::intptr_t handle, char* data, std::size_t size) {
  while (true) {
    const ssize_t count = ::read(static_cast<int>(handle), data, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) return errorOf(errno);
  }
}

Status writeAll(std::intptr_t handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(static_cast<int>(handle), bytes.data(), bytes.size());
    if (count < 0) {
      if (errno == EINTR) continue;
      return errorOf(errno);
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return {};
}

Status flushToDisk(std::intptr_t handle) { return fromResult(fsync(static_cast<int>(handle))); }

Status closeFile(std::intptr_t handle) { return fromResult(::close(static_cast<int>(handle))); }

Status copyPermissions(std::intptr_t to, const std::filesystem::path& from) {
  struct stat info {};
  if (stat(from.c_str(), &info) != 0) return errorOf(errno);
  // The owner may only be carried over by a privileged user; the mode always.
  if (geteuid() == 0 && fchown(static_cast<int>(to), info.st_uid, info.st_gid) != 0) {
    return errorOf(errno);
  }
  return fromResult(fchmod(static_cast<int>(to), info.st_mode & 07777));
}

Status rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace) {
  if (replace) {
    if (::rename(from.c_str(), to.c_str()) == 0) return {};
    return renameError(errno);
  }
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
  if (errno != EINVAL && errno != ENOSYS) return renameError(errno);
  // A file system that cannot refuse by itself: ask first.
  struct stat info {};
  if (lstat(to.c_str(), &info) == 0) return ErrorNumber::fileExists;
  if (::rename(from.c_str(), to.c_str()) == 0) return {};
  return renameError(errno);
}

Status flushFolder(const std::filesystem::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return errorOf(errno);
  Status status = fromResult(fsync(descriptor));
  const Status closed = fromResult(::close(descriptor));
  // Some file systems cannot flush a folder and say EINVAL: nothing to do then.
  if (!status && status.error().number == ErrorNumber::deviceIo) status = {};
  return status ? closed : status;
}

std::filesystem::path asStored(const std::filesystem::path& path) { return path; }

bool fileNamesIgnoreCase() { return false; }

std::filesystem::path executableFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::current_path(error) : executable.parent_path();
}

Result<std::unique_ptr<InstanceLock>> lockInstance(const std::string& key) {
  Result<std::filesystem::path> folder = privateFolder();
  if (!folder) return folder.error();
  char name[40];
  std::snprintf(name, sizeof name, "vel-%016zx.lock", std::hash<std::string>{}(key));
  const auto path = *folder / name;
  const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor < 0) return errorOf(errno);
  if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    const int code = errno;
    ::close(descriptor);
    if (code == EWOULDBLOCK) return std::unique_ptr<InstanceLock>();
    return errorOf(code);
  }
  return std::unique_ptr<InstanceLock>(std::make_unique<FileLock>(descriptor));
}

}  // namespace vel::platform
