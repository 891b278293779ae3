#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/result.h"

namespace vel {
struct FileIdentity;
}

/// Whatever differs between the platforms: one implementation file each
/// (platform_posix.cpp, platform_windows.cpp), called only by core.
namespace vel::platform {

/// A path from UTF-8 text, and back. Never fails: where the platform's paths
/// are not bytes, what is no text becomes U+FFFD.
std::filesystem::path pathFromUtf8(std::string_view utf8);
std::string utf8FromPath(const std::filesystem::path& path);

/// The platform's own converter between one byte encoding and UTF-8.
class Transcoder {
 public:
  virtual ~Transcoder() = default;
  /// Bytes that are no character give U+FFFD each.
  virtual std::string decode(std::string_view bytes) = 0;
  /// Nothing when the encoding cannot hold the text.
  virtual std::optional<std::string> encode(std::string_view utf8) = 0;
};

/// Nothing when the platform does not know the encoding.
std::unique_ptr<Transcoder> makeTranscoder(const std::string& encodingName);

/// Simple case conversion of one character; the character itself if it has none.
char32_t lowerCase(char32_t character);
char32_t upperCase(char32_t character);

/// Handles are file descriptors or Windows handles; kNoFile stands for none.
/// A call that a signal interrupted is made again, each of them.
constexpr std::intptr_t kNoFile = -1;

/// Opens a regular file; whatever else has the name counts as missing, and is
/// never waited for.
Result<std::intptr_t> openForReading(const std::filesystem::path& path);

/// Makes a file that was not there; 58 when the name is taken, also by a link.
Result<std::intptr_t> createNew(const std::filesystem::path& path);

Result<std::size_t> readSome(std::intptr_t handle, char* data, std::size_t size);
/// The next read is from the beginning of the file.
Status rewind(std::intptr_t handle);

/// Of an open file, and of what a path leads to; see vel::identityOf.
std::optional<FileIdentity> identityOf(std::intptr_t handle);
std::optional<FileIdentity> identityOf(const std::filesystem::path& path);

Status writeAll(std::intptr_t handle, std::string_view bytes);
Status flushToDisk(std::intptr_t handle);
Status closeFile(std::intptr_t handle);

/// Gives an open file the group and the mode, or the access list, of another
/// file as far as the system lets this user; fails only where the other file
/// cannot be looked at.
Status copyPermissions(std::intptr_t to, const std::filesystem::path& from);

/// What a rename does where the target exists.
enum class Existing { kept, replaced };

/// The rename of renameFile and replaceFile. A target that exists and is kept
/// is fileExists.
Status rename(const std::filesystem::path& from, const std::filesystem::path& to,
              Existing existing);

/// Removes a file or a link, never a folder; 53 when there is none.
Status remove(const std::filesystem::path& path);

Status flushFolder(const std::filesystem::path& folder);

/// Where the file lies that a symbolic link leads to; the path itself where it
/// is no link.
std::filesystem::path linkTarget(const std::filesystem::path& path);

/// The path of an existing file with the letter case of its name as stored.
std::filesystem::path asStored(const std::filesystem::path& path);

/// True where file names that differ only in letter case are the same file.
bool fileNamesIgnoreCase();

/// The folder of the running executable.
std::filesystem::path executableFolder();

/// A lock is held while its object lives; the system releases it even after a
/// crash.
class InstanceLock {
 public:
  virtual ~InstanceLock() = default;
};

/// The lock of this user and this key, the same in every session of the user,
/// or nothing when another process has it. An Error when the lock cannot be
/// made at all.
Result<std::unique_ptr<InstanceLock>> lockInstance(const std::string& key);

/// The lock of a folder, whoever asks, or nothing when it is taken. An Error
/// when the folder cannot hold a lock.
Result<std::unique_ptr<InstanceLock>> lockFolder(const std::filesystem::path& folder);

}  // namespace vel::platform
