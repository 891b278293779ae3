#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/folders.h"
#include "core/text.h"

/// What a fuzzing engine calls with each input; every target defines it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace vel::fuzz {

/// An input cut into its parts: each but the last one ends with a line "--".
/// Inputs can so be written and read as text.
class Parts {
 public:
  Parts(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  /// The next part, or what is left where no line "--" follows.
  std::string_view next();

  /// All that is left.
  [[nodiscard]] std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
};

/// The line (0-based) of a part, without its line end; empty past the last one.
[[nodiscard]] std::string_view lineOfPart(std::string_view part, std::size_t index);

/// A number from decimal digits at the beginning of a text, below the limit.
[[nodiscard]] int numberOf(std::string_view text, int limit);

/// Ends the process where a property does not hold, as a crash would.
void check(bool holds, std::string_view what, const char* file = __builtin_FILE(),
           int line = __builtin_LINE());

/// A base folder that serves all inputs of a process; removed at its end.
class Station {
 public:
  Station();
  Station(const Station&) = delete;
  Station& operator=(const Station&) = delete;
  ~Station();

  [[nodiscard]] const Folders& folders() const { return folders_; }

 private:
  std::filesystem::path path_;
  Folders folders_;
};

/// Writes a file in place; the bytes of a file that is there are replaced.
void put(const std::filesystem::path& file, std::string_view bytes);
/// The bytes of a file; nothing for one that is missing.
[[nodiscard]] std::string get(const std::filesystem::path& file);

/// The encoding for a name in an input: UTF-8, windows-1252, or else code page 932.
[[nodiscard]] Encoding encodingOf(std::string_view name);

/// True for UTF-8 by the strict rules.
[[nodiscard]] bool isUtf8(std::string_view text);

/// The lines of a file by the plain rules: LF and CR LF end a line, a CR alone
/// where it is said so. The last line may end with the file.
[[nodiscard]] std::vector<std::string_view> plainLines(std::string_view bytes, bool loneCrEnds);

/// The same without a byte order mark of UTF-8.
[[nodiscard]] std::string_view withoutMark(std::string_view bytes);

/// The fields of a line.
[[nodiscard]] std::vector<std::string_view> plainFields(std::string_view line);

}  // namespace vel::fuzz
