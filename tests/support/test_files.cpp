#include "tests/support/test_files.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "core/file.h"
#include "core/text.h"

namespace vel::test {

TemporaryFolder::TemporaryFolder() {
  static std::atomic<unsigned> counter{std::random_device{}()};
  const std::filesystem::path root = std::filesystem::temp_directory_path();
  do {
    path_ = root / ("vel-test-" + std::to_string(counter++));
  } while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

std::filesystem::path TemporaryFolder::operator/(std::string_view name) const {
  return path_ / toPath(name);
}

TemporaryBase::TemporaryBase() : folders(Folders::of(path() / "vel")) {
  for (const auto& folder :
       {folders.program, folders.data, folders.logs, folders.eachLogs, folders.pics}) {
    std::filesystem::create_directories(folder);
  }
}

void TemporaryBase::writeData(std::string_view name,
                              std::initializer_list<std::string_view> lines) const {
  writeBytes(folders.data / toPath(name), cp932Lines(lines));
}

void TemporaryBase::writeLog(std::string_view name,
                             std::initializer_list<std::string_view> lines) const {
  writeBytes(folders.logs / toPath(name), cp932Lines(lines));
}

std::string TemporaryBase::data(std::string_view name) const {
  return Encoding::codePage932().decode(readBytes(folders.data / toPath(name)));
}

void writeBytes(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  ASSERT_TRUE(file.good()) << path;
}

void giveName(const std::filesystem::path& path, const std::string& name) {
  const std::filesystem::path between = path.parent_path() / "between two names";
  std::filesystem::rename(path, between);
  std::filesystem::rename(between, path.parent_path() / name);
}

std::string readBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::string cp932(std::string_view utf8) {
  const auto bytes = Encoding::codePage932().encode(utf8);
  EXPECT_TRUE(bytes.has_value()) << utf8;
  return bytes.value_or("");
}

std::string cp932Lines(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (const std::string_view line : lines) text += cp932(line) + "\r\n";
  return text;
}

}  // namespace vel::test
