#include "tests/fuzz/fuzz_support.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <unistd.h>

namespace vel::fuzz {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

// A file system in memory, where there is one.
std::filesystem::path temporaryRoot() {
  std::error_code error;
  const std::filesystem::path memory = "/dev/shm";
  return access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path(error);
}

}  // namespace

std::string_view Parts::next() {
  constexpr std::string_view kEnd = "--\n";
  std::size_t at = 0;
  while (true) {
    at = rest_.find(kEnd, at);
    if (at == std::string_view::npos) break;
    if (at == 0 || rest_[at - 1] == '\n') break;
    ++at;
  }
  const std::string_view part = rest_.substr(0, at);
  rest_.remove_prefix(at == std::string_view::npos ? rest_.size() : at + kEnd.size());
  return part;
}

std::string_view lineOfPart(std::string_view part, std::size_t index) {
  while (true) {
    const std::size_t end = part.find('\n');
    if (index == 0) return part.substr(0, end);
    if (end == std::string_view::npos) return {};
    part.remove_prefix(end + 1);
    --index;
  }
}

int numberOf(std::string_view text, int limit) {
  int number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9' || number > 100'000'000) break;
    number = number * 10 + (c - '0');
  }
  return number % limit;
}

void check(bool holds, std::string_view what, const char* file, int line) {
  if (holds) return;
  std::fprintf(stderr, "%s:%d: %.*s\n", file, line, static_cast<int>(what.size()), what.data());
  std::abort();
}

Station::Station() {
  std::string place = (temporaryRoot() / "vel-fuzz-XXXXXX").string();
  check(mkdtemp(place.data()) != nullptr, "no folder for temporary files");
  path_ = place;
  folders_ = Folders::of(path_ / "vel");
  for (const auto& folder :
       {folders_.program, folders_.data, folders_.logs, folders_.eachLogs, folders_.pics}) {
    std::filesystem::create_directories(folder);
  }
}

Station::~Station() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

void put(const std::filesystem::path& file, std::string_view bytes) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  check(descriptor >= 0, "a file of the target's own cannot be opened");
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    check(count > 0, "a file of the target's own cannot be written");
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  check(::close(descriptor) == 0, "a file of the target's own cannot be closed");
}

std::string get(const std::filesystem::path& file) {
  std::string bytes;
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return bytes;
  std::array<char, 65536> piece{};
  while (true) {
    const ssize_t count = ::read(descriptor, piece.data(), piece.size());
    if (count <= 0) break;
    bytes.append(piece.data(), static_cast<std::size_t>(count));
  }
  ::close(descriptor);
  return bytes;
}

Encoding encodingOf(std::string_view name) {
  // Held open: the system would load its converters for each input anew.
  static const Encoding kCodePage932 = Encoding::codePage932();
  static const Encoding kUtf8 = *Encoding::named("UTF-8");
  static const Encoding kWesternEuropean = *Encoding::named("windows-1252");
  if (name == kUtf8.name()) return kUtf8;
  if (name == kWesternEuropean.name()) return kWesternEuropean;
  return kCodePage932;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    if (!character.wellFormed) return false;
    text.remove_prefix(character.size);
  }
  return true;
}

std::vector<std::string_view> plainLines(std::string_view bytes, bool loneCrEnds) {
  std::vector<std::string_view> lines;
  std::size_t begin = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const bool isCr = bytes[at] == '\r';
    const bool isPair = isCr && at + 1 < bytes.size() && bytes[at + 1] == '\n';
    // A CR that ends the file ends its last line.
    const bool ends =
        bytes[at] == '\n' || isPair || (isCr && (loneCrEnds || at + 1 == bytes.size()));
    if (!ends) continue;
    lines.push_back(bytes.substr(begin, at - begin));
    if (isPair) ++at;
    begin = at + 1;
  }
  if (begin < bytes.size()) lines.push_back(bytes.substr(begin));
  return lines;
}

std::string_view withoutMark(std::string_view bytes) {
  if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
  return bytes;
}

std::vector<std::string_view> plainFields(std::string_view line) {
  std::vector<std::string_view> fields;
  while (true) {
    const std::size_t comma = line.find(',');
    fields.push_back(line.substr(0, comma));
    if (comma == std::string_view::npos) return fields;
    line.remove_prefix(comma + 1);
  }
}

}  // namespace vel::fuzz
