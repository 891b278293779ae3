#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "core/file.h"
#include "core/result.h"

namespace vel {

/// What an import takes at most, so that a hostile or broken file ends with a
/// message and not with the memory.
struct ImportLimits {
  std::size_t longestRow = std::size_t{16} << 20;    ///< bytes
  std::uint64_t mostBytes = std::uint64_t{2} << 30;  ///< of the unpacked file
  std::size_t mostRows = 5'000'000;
  std::size_t mostMemory = std::size_t{1} << 30;  ///< bytes of records that are kept
};

/// A failure of an import, with its message in both languages.
[[nodiscard]] Error importError(std::string english, std::string_view japanese);

/// The bytes of a file that is read once from its beginning: as they are, or
/// unpacked where the file is a gzip, whatever its name.
class ImportBytes {
 public:
  /// An Error with its message where the file cannot be opened or is a zip.
  static Result<std::unique_ptr<ImportBytes>> open(const std::filesystem::path& file,
                                                   const ImportLimits& limits);
  ~ImportBytes();
  ImportBytes(const ImportBytes&) = delete;
  ImportBytes& operator=(const ImportBytes&) = delete;

  /// The next bytes, empty at the end; the view lives until the next call. At the
  /// end of a file that was changed meanwhile an Error.
  Result<std::string_view> next();

  /// True for an SQLite database, which is not read from here.
  [[nodiscard]] bool isDatabase() const;
  /// True when the file is a gzip.
  [[nodiscard]] bool isPacked() const { return unpacking_ != nullptr; }

  [[nodiscard]] std::uint64_t fileSize() const { return seen_.size; }
  /// Bytes of the file read so far.
  [[nodiscard]] std::uint64_t bytesRead() const { return bytesRead_; }

 private:
  struct Unpacking;
  struct Seen {
    std::uint64_t size = 0;
    std::filesystem::file_time_type time;
    friend bool operator==(const Seen&, const Seen&) = default;
  };

  ImportBytes(std::filesystem::path path, InputFile file, const ImportLimits& limits);
  static Seen lookAt(const std::filesystem::path& file);
  Result<std::string_view> read();
  Result<std::string_view> unpack();

  std::filesystem::path path_;
  InputFile file_;
  ImportLimits limits_;
  Seen seen_;
  std::unique_ptr<char[]> buffer_;
  std::size_t waiting_ = 0;  // bytes that were read to know the file by
  std::uint64_t bytesRead_ = 0;
  std::uint64_t handedOut_ = 0;
  std::unique_ptr<Unpacking> unpacking_;
};

/// An Error where the file at the path is another one than when it was looked at.
[[nodiscard]] Error fileChanged();

}  // namespace vel
