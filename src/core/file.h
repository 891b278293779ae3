#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/result.h"

namespace vel {

namespace platform {
class InstanceLock;
}

/// A path from UTF-8 text, and back.
[[nodiscard]] std::filesystem::path toPath(std::string_view utf8);
[[nodiscard]] std::string toUtf8(const std::filesystem::path& path);

/// What tells a file, as it is now, from any other that may take its name, and
/// from itself once its content or who may read it has changed.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::int64_t changedAt = 0;  ///< nanoseconds since 1970

  bool operator==(const FileIdentity&) const = default;
};

/// The identity of what the path leads to. Nothing where it leads nowhere, and
/// on systems on which asking is no cheaper than opening the file.
[[nodiscard]] std::optional<FileIdentity> identityOf(const std::filesystem::path& path);

/// A file open for reading; closed with the object. Other programs may read,
/// write, rename and remove the file meanwhile.
class InputFile {
 public:
  /// 53 when there is none, 76 when its folder is missing, 70 when refused, 57
  /// otherwise. Only a regular file is one: a folder, a device or a pipe counts
  /// as missing and is never waited for.
  static Result<InputFile> open(const std::filesystem::path& path);

  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&& other) noexcept;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  /// Reads up to `size` bytes; 0 at the end of the file.
  Result<std::size_t> read(char* data, std::size_t size);

  /// The next read is from the beginning again.
  Status rewind();

  /// As identityOf() of a path that leads to it.
  [[nodiscard]] std::optional<FileIdentity> identity() const;

 private:
  explicit InputFile(std::intptr_t handle) : handle_(handle) {}
  std::intptr_t handle_;
};

/// A file being written. Unless finish() succeeded, nothing may be relied on:
/// the destructor closes the file but keeps whatever was written.
class OutputFile {
 public:
  /// Makes a new file; what has its name is removed before, and a symbolic link
  /// is never followed. 70 for a folder in its place, 58 where somebody else
  /// makes one of that name in the same moment.
  static Result<OutputFile> create(const std::filesystem::path& path);

  OutputFile(OutputFile&& other) noexcept;
  OutputFile& operator=(OutputFile&& other) = delete;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// Appends through a buffer; 61 when the disk is full.
  Status write(std::string_view bytes);

  /// Gives the file the group and the mode of another one, which a rename would
  /// otherwise lose, as far as the system lets this user. Fails only where the
  /// other file cannot be looked at.
  Status copyPermissions(const std::filesystem::path& from);

  /// Closes the file; what was written may be anything.
  void abandon();

  /// Writes what is buffered, flushes it to the disk and closes. After it,
  /// failed or not, the file is closed.
  Status finish();

 private:
  explicit OutputFile(std::intptr_t handle);
  Status flush();

  std::intptr_t handle_;
  std::string buffer_;
};

/// Renames within one volume. 58 when the target exists, 75 when refused
/// (held by another program, or access denied), 53 when the source is missing.
Status renameFile(const std::filesystem::path& from, const std::filesystem::path& to);

/// As renameFile, but puts the source in the place of an existing target.
Status replaceFile(const std::filesystem::path& from, const std::filesystem::path& to);

/// A file that is written whole: beside its place under its name with a suffix
/// added (".new"), down to the disk, then renamed into its place. A failure, or
/// an object that goes before, leaves the old file as it was and nothing beside
/// it. The old file's group and mode carry over; a file that is a symbolic link
/// is written at its target's place, and the link stays.
class WholeFile {
 public:
  static Result<WholeFile> create(const std::filesystem::path& file, std::string_view suffix);

  WholeFile(WholeFile&& other) noexcept;
  WholeFile& operator=(WholeFile&& other) = delete;
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;
  ~WholeFile();

  Status write(std::string_view bytes) { return output_.write(bytes); }

  /// Puts the new file in its place. After it, failed or not, nothing more can
  /// be written.
  Status finish();

 private:
  WholeFile(std::filesystem::path place, std::filesystem::path temporary, OutputFile output)
      : place_(std::move(place)), temporary_(std::move(temporary)), output_(std::move(output)) {}

  std::filesystem::path place_;
  std::filesystem::path temporary_;  // empty once there is none
  OutputFile output_;
};

/// Writes a file whole in one go.
Status writeWholeFile(const std::filesystem::path& file, std::string_view suffix,
                      std::string_view bytes);

/// Removes what a crash may have left beside a file that is written whole.
void removeLeftOver(const std::filesystem::path& file, std::string_view suffix);

/// Where the file lies that a symbolic link leads to, also where nothing lies
/// there; the path itself where it is no link.
[[nodiscard]] std::filesystem::path linkTarget(const std::filesystem::path& path);

/// Removes a file or a symbolic link, never a folder; 53 when there is none.
Status removeFile(const std::filesystem::path& path);

/// Flushes the folder's entries to the disk, so that renames in it last. A file
/// system that has no such thing counts as flushed.
Status flushFolder(const std::filesystem::path& folder);

/// The lock of a folder, for one change of its files at a time: held while the
/// object lives, and not left behind by a crash. It keeps nobody out who does
/// not ask for it.
class FolderLock {
 public:
  /// Nothing while another holder has it, in this program or another one. For a
  /// folder that cannot hold a lock (a foreign file system, or one that may not
  /// be read) the object locks nothing.
  static std::optional<FolderLock> take(const std::filesystem::path& folder);

  FolderLock(FolderLock&& other) noexcept;
  FolderLock& operator=(FolderLock&& other) noexcept;
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock();

 private:
  explicit FolderLock(std::unique_ptr<platform::InstanceLock> lock);
  std::unique_ptr<platform::InstanceLock> lock_;
};

/// True when the path leads to a regular file.
[[nodiscard]] bool fileExists(const std::filesystem::path& path);

/// The names of the folder's regular files, sorted by name with letter case
/// ignored, as UTF-8. 76 when there is no such folder.
Result<std::vector<std::string>> listFolder(const std::filesystem::path& folder);

/// The folder's file of that name whatever its letter case (ASCII letters):
/// the exact name first, else the first match by name. Nothing when none.
[[nodiscard]] std::optional<std::filesystem::path> findFile(const std::filesystem::path& folder,
                                                            std::string_view name);

/// The path under which a file of that name is read or written: where it was
/// found whatever its letter case, else the folder joined with the name.
[[nodiscard]] std::filesystem::path fileIn(const std::filesystem::path& folder,
                                           std::string_view name);

/// As fileIn, for a folder in the folder.
[[nodiscard]] std::filesystem::path folderIn(const std::filesystem::path& folder,
                                             std::string_view name);

/// True when a name that came over the air stays within its folder: no
/// separator, no colon, no "..", no control character.
[[nodiscard]] bool isSafeFileName(std::string_view name);

/// True when two texts are equal with the case of ASCII letters ignored.
[[nodiscard]] bool equalIgnoringCase(std::string_view left, std::string_view right);

/// Answers, row after row, whether a folder holds a file, whatever the case of
/// its name. The listing is kept while the folder itself does not change.
class FolderIndex {
 public:
  explicit FolderIndex(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// Lists the folder anew if it changed.
  void refresh();

  /// True when the folder held a file of that name at the last refresh.
  [[nodiscard]] bool holds(std::string_view name) const;

  /// The path of the file of that name, or nothing; refreshes before.
  [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view name);

 private:
  using Names = std::vector<std::pair<std::string, std::string>>;  // lower-case name, name
  [[nodiscard]] Names::const_iterator firstOf(const std::string& key) const;

  std::filesystem::path folder_;
  std::filesystem::file_time_type listedAt_{};
  bool settled_ = false;
  Names names_;  // sorted
};

}  // namespace vel
