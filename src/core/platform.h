#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/result.h"

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
constexpr std::intptr_t kNoFile = -1;

Result<std::intptr_t> openForReading(const std::filesystem::path& path);
Result<std::intptr_t> openForWriting(const std::filesystem::path& path);
Result<std::size_t> readSome(std::intptr_t handle, char* data, std::size_t size);
Status writeAll(std::intptr_t handle, std::string_view bytes);
Status flushToDisk(std::intptr_t handle);
Status closeFile(std::intptr_t handle);
Status copyPermissions(std::intptr_t to, const std::filesystem::path& from);

/// The rename of renameFile (replace false) and replaceFile (replace true).
Status rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace);
Status flushFolder(const std::filesystem::path& folder);

/// The path of an existing file with the letter case of its name as stored.
std::filesystem::path asStored(const std::filesystem::path& path);

/// True where file names that differ only in letter case are the same file.
bool fileNamesIgnoreCase();

/// The folder of the running executable.
std::filesystem::path executableFolder();

/// Held while the program runs; released by the system even after a crash.
class InstanceLock {
 public:
  virtual ~InstanceLock() = default;
};

/// The lock of this user and this key, or nothing when another process has it.
/// An Error when the lock cannot be made at all.
Result<std::unique_ptr<InstanceLock>> lockInstance(const std::string& key);

}  // namespace vel::platform
