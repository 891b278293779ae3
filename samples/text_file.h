#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "core/result.h"

namespace vel::samples {

/// Creates or replaces a file. Fails, naming the file, unless every byte is on
/// the disk.
Status writeFile(const std::filesystem::path& path, std::string_view bytes);

/// A text file as the two decoders write it: code page 932, each line ended by
/// CR LF. Lines are collected in memory as UTF-8; nothing is on disk before
/// write().
class TextFile {
 public:
  explicit TextFile(std::filesystem::path path) : path_(std::move(path)) {}

  /// Adds one line; `utf8` holds no line end of its own.
  void addLine(const std::string& utf8) {
    text_ += utf8;
    text_ += "\r\n";
  }

  /// Encodes and writes everything, replacing a file of that name. Fails on a
  /// character outside code page 932 and on any error of the file system.
  Status write() const;

 private:
  std::filesystem::path path_;
  std::string text_;
};

}  // namespace vel::samples
