#include <cerrno>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwctype>
#include <functional>
#include <limits>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <iconv.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/file.h"
#include "core/platform.h"
#include "core/platform_folders.h"

namespace vel::platform {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Makes a call again that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call) {
  while (true) {
    const auto result = call();
    if (result != -1 || errno != EINTR) return result;
  }
}

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

FileIdentity identityFrom(const struct stat& info) {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  return {info.st_dev, info.st_ino, info.st_ctim.tv_sec * kNanoseconds + info.st_ctim.tv_nsec};
}

locale_t utf8Locale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

Status fromResult(int result) {
  if (result == 0) return {};
  return errorOf(errno);
}

class DescriptorLock : public InstanceLock {
 public:
  explicit DescriptorLock(int descriptor) : descriptor_(descriptor) {}
  DescriptorLock(const DescriptorLock&) = delete;
  DescriptorLock& operator=(const DescriptorLock&) = delete;
  ~DescriptorLock() override { ::close(descriptor_); }

 private:
  int descriptor_;
};

// The result of a call that locks the descriptor, as a lock that owns it.
Result<std::unique_ptr<InstanceLock>> lockOf(int descriptor, int result) {
  if (result == 0) {
    return std::unique_ptr<InstanceLock>(std::make_unique<DescriptorLock>(descriptor));
  }
  const int code = errno;
  ::close(descriptor);
  if (code == EWOULDBLOCK || code == EACCES) return std::unique_ptr<InstanceLock>();
  return errorOf(code);
}

// The home folder that the system has for this user: a session may have its
// own idea of it.
std::filesystem::path homeFolder() {
  std::vector<char> room(1024);
  while (room.size() <= std::size_t{1} << 20) {
    passwd entry{};
    passwd* found = nullptr;
    const int code = getpwuid_r(geteuid(), &entry, room.data(), room.size(), &found);
    if (code == 0) return found != nullptr && found->pw_dir != nullptr ? found->pw_dir : "";
    if (code == ERANGE) room.resize(room.size() * 2);
    if (code != ERANGE && code != EINTR) break;
  }
  return {};
}

// True for a folder of this user's own, which is made where it is missing.
bool isOwnFolder(const std::filesystem::path& folder) {
  if (uninterrupted([&] { return mkdir(folder.c_str(), 0700); }) != 0 && errno != EEXIST) {
    return false;
  }
  struct stat info {};
  return uninterrupted([&] { return lstat(folder.c_str(), &info); }) == 0 &&
         S_ISDIR(info.st_mode) && info.st_uid == geteuid();
}

// Where every session of this user looks: below the home folder, or, for a
// user without one, below the folder for temporary files.
std::vector<std::filesystem::path> userFolders() {
  std::vector<std::filesystem::path> folders;
  std::filesystem::path folder = homeFolder();
  bool usable = folder.is_absolute();
  for (const char* name : {".local", "state", "vel"}) {
    folder /= name;
    usable = usable && isOwnFolder(folder);
  }
  if (usable) folders.push_back(folder);
  const std::filesystem::path temporary = "/tmp/vel-" + std::to_string(geteuid());
  if (isOwnFolder(temporary)) folders.push_back(temporary);
  return folders;
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

std::filesystem::path absolutePath(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::absolute(path, error).lexically_normal();
}

FileKind kindOf(const std::filesystem::path& path) {
  std::error_code error;
  switch (std::filesystem::status(path, error).type()) {
    case std::filesystem::file_type::not_found:
      return FileKind::nothing;
    case std::filesystem::file_type::regular:
      return FileKind::regular;
    case std::filesystem::file_type::directory:
      return FileKind::folder;
    case std::filesystem::file_type::none:
    case std::filesystem::file_type::unknown:
      return FileKind::unknown;
    default:
      return FileKind::other;
  }
}

Result<std::vector<FolderEntry>> entriesOf(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entries(folder, error);
  while (error == std::errc::interrupted) {
    entries = std::filesystem::directory_iterator(folder, error);
  }
  if (error) {
    return error == std::errc::permission_denied ? ErrorNumber::permissionDenied
                                                 : ErrorNumber::pathNotFound;
  }
  std::vector<FolderEntry> found;
  for (; entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    // What the folder's list says already need not be looked up.
    std::error_code ignored;
    const FileKind kind = entries->is_regular_file(ignored) ? FileKind::regular
                          : entries->is_directory(ignored)  ? FileKind::folder
                                                            : FileKind::other;
    found.push_back({entries->path().filename(), kind});
  }
  if (error) return ErrorNumber::deviceIo;
  return found;
}

std::optional<FolderChange> lastChangeOf(const std::filesystem::path& folder) {
  std::error_code error;
  const auto time = std::filesystem::last_write_time(folder, error);
  if (error) return std::nullopt;
  const auto age = std::filesystem::file_time_type::clock::now() - time;
  return FolderChange{time, age <= std::chrono::seconds(2)};
}

Result<std::intptr_t> openForReading(const std::filesystem::path& path) {
  const int descriptor = uninterrupted(
      [&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); });
  // No file can have a name that is too long, so there is none; and what can
  // only be opened from its other end is none either.
  if (descriptor < 0 && (errno == ENAMETOOLONG || errno == ENXIO || errno == ENODEV)) {
    return ErrorNumber::fileNotFound;
  }
  if (descriptor < 0) return openError(errno, path);
  struct stat info {};
  if (uninterrupted([&] { return fstat(descriptor, &info); }) != 0) {
    const Error error = errorOf(errno);
    ::close(descriptor);
    return error;
  }
  if (!S_ISREG(info.st_mode)) {
    ::close(descriptor);
    return ErrorNumber::fileNotFound;
  }
  return std::intptr_t{descriptor};
}

Result<std::intptr_t> createNew(const std::filesystem::path& path) {
  const int descriptor = uninterrupted([&] {
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  });
  if (descriptor < 0) return openError(errno, path);
  return std::intptr_t{descriptor};
}

Result<std::size_t> readSome(std::intptr_t handle, char* data, std::size_t size) {
  const ssize_t count = uninterrupted([&] { return ::read(static_cast<int>(handle), data, size); });
  if (count < 0) return errorOf(errno);
  return static_cast<std::size_t>(count);
}

Status rewind(std::intptr_t handle) {
  return lseek(static_cast<int>(handle), 0, SEEK_SET) == 0 ? Status() : errorOf(errno);
}

std::optional<FileIdentity> identityOf(std::intptr_t handle) {
  struct stat info {};
  if (uninterrupted([&] { return fstat(static_cast<int>(handle), &info); }) != 0) return {};
  return identityFrom(info);
}

std::optional<FileIdentity> identityOf(const std::filesystem::path& path) {
  struct stat info {};
  if (uninterrupted([&] { return stat(path.c_str(), &info); }) != 0) return {};
  return identityFrom(info);
}

Status writeAll(std::intptr_t handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = uninterrupted(
        [&] { return ::write(static_cast<int>(handle), bytes.data(), bytes.size()); });
    if (count < 0) return errorOf(errno);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return {};
}

Status flushToDisk(std::intptr_t handle) {
  return fromResult(uninterrupted([&] { return fsync(static_cast<int>(handle)); }));
}

Status closeFile(std::intptr_t handle) {
  // An interrupted close has closed: the descriptor may be another file's now.
  if (::close(static_cast<int>(handle)) == 0 || errno == EINTR) return {};
  return errorOf(errno);
}

Status copyPermissions(std::intptr_t to, const std::filesystem::path& from) {
  struct stat info {};
  if (uninterrupted([&] { return stat(from.c_str(), &info); }) != 0) return errorOf(errno);
  const int descriptor = static_cast<int>(to);
  // Only a privileged user may give a file away, and others only to a group of
  // their own. What is refused, or what the file system does not have, is no
  // reason to lose the content.
  constexpr uid_t kSameOwner = std::numeric_limits<uid_t>::max();
  const uid_t owner = geteuid() == 0 ? info.st_uid : kSameOwner;
  static_cast<void>(uninterrupted([&] { return fchown(descriptor, owner, info.st_gid); }));
  static_cast<void>(uninterrupted([&] { return fchmod(descriptor, info.st_mode & 07777); }));
  return {};
}

Status rename(const std::filesystem::path& from, const std::filesystem::path& to,
              Existing existing) {
  const auto renamed = [&] {
    return uninterrupted([&] { return ::rename(from.c_str(), to.c_str()); }) == 0
               ? Status()
               : Status(renameError(errno));
  };
  if (existing == Existing::replaced) return renamed();
  if (uninterrupted([&] {
        return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
      }) == 0) {
    return {};
  }
  if (errno != EINVAL && errno != ENOSYS) return renameError(errno);
  // A file system that cannot refuse by itself: ask first.
  struct stat info {};
  if (uninterrupted([&] { return lstat(to.c_str(), &info); }) == 0) return ErrorNumber::fileExists;
  return renamed();
}

Status remove(const std::filesystem::path& path) {
  if (uninterrupted([&] { return ::unlink(path.c_str()); }) == 0) return {};
  return errorOf(errno);
}

Status flushFolder(const std::filesystem::path& folder) {
  const int descriptor =
      uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (descriptor < 0) return errorOf(errno);
  const int flushed = uninterrupted([&] { return fsync(descriptor); });
  // Some file systems cannot flush a folder and say so: nothing to do then.
  Status status;
  if (flushed != 0 && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) {
    status = errorOf(errno);
  }
  const Status closed = closeFile(descriptor);
  return status ? closed : status;
}

std::filesystem::path linkTarget(const std::filesystem::path& path) {
  constexpr int kMostLinks = 40;
  std::filesystem::path target = path;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code error;
    const std::filesystem::path next = std::filesystem::read_symlink(target, error);
    if (error) return target;
    target = target.parent_path() / next;
  }
  return path;
}

std::filesystem::path asStored(const std::filesystem::path& path) { return path; }

bool fileNamesIgnoreCase() { return false; }

std::filesystem::path executableFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::current_path(error) : executable.parent_path();
}

Result<std::unique_ptr<InstanceLock>> lockInstance(const std::string& key) {
  // One file holds the locks of all program folders, each at its own byte.
  constexpr std::size_t kLastByte = std::numeric_limits<off_t>::max() - 1;
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = static_cast<off_t>(std::hash<std::string>{}(key)&kLastByte);
  lock.l_len = 1;
  Result<std::unique_ptr<InstanceLock>> result = ErrorNumber::permissionDenied;
  for (const std::filesystem::path& folder : userFolders()) {
    const std::filesystem::path file = folder / "running";
    const int descriptor = uninterrupted([&] {
      return ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    });
    if (descriptor < 0) {
      result = errorOf(errno);
    } else {
      result =
          lockOf(descriptor, uninterrupted([&] { return fcntl(descriptor, F_OFD_SETLK, &lock); }));
    }
    if (result) break;
  }
  return result;
}

Result<std::unique_ptr<InstanceLock>> lockFolder(const std::filesystem::path& folder) {
  const int descriptor =
      uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (descriptor < 0) return errorOf(errno);
  return lockOf(descriptor, uninterrupted([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }));
}

}  // namespace vel::platform
