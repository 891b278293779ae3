#include "core/file.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/platform.h"
#include "core/platform_folders.h"

namespace vel {
namespace {

constexpr std::size_t kWriteBuffer = std::size_t{1} << 18;

std::string lowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return lower;
}

}  // namespace

std::filesystem::path toPath(std::string_view utf8) { return platform::pathFromUtf8(utf8); }

std::string toUtf8(const std::filesystem::path& path) { return platform::utf8FromPath(path); }

Result<InputFile> InputFile::open(const std::filesystem::path& path) {
  Result<std::intptr_t> handle = platform::openForReading(path);
  if (!handle) return handle.error();
  return InputFile(*handle);
}

InputFile::InputFile(InputFile&& other) noexcept
    : handle_(std::exchange(other.handle_, platform::kNoFile)) {}

InputFile& InputFile::operator=(InputFile&& other) noexcept {
  std::swap(handle_, other.handle_);
  return *this;
}

InputFile::~InputFile() {
  // Nothing is lost when the close of a file that was only read fails.
  if (handle_ != platform::kNoFile) static_cast<void>(platform::closeFile(handle_));
}

Result<std::size_t> InputFile::read(char* data, std::size_t size) {
  return platform::readSome(handle_, data, size);
}

Status InputFile::rewind() { return platform::rewind(handle_); }

std::optional<FileIdentity> InputFile::identity() const { return platform::identityOf(handle_); }

std::optional<FileIdentity> identityOf(const std::filesystem::path& path) {
  return platform::identityOf(path);
}

OutputFile::OutputFile(std::intptr_t handle) : handle_(handle) { buffer_.reserve(kWriteBuffer); }

Result<OutputFile> OutputFile::create(const std::filesystem::path& path) {
  if (const Status removed = removeFile(path);
      !removed && removed.error().number == ErrorNumber::permissionDenied) {
    return removed.error();
  }
  Result<std::intptr_t> handle = platform::createNew(path);
  if (!handle) return handle.error();
  return OutputFile(*handle);
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : handle_(std::exchange(other.handle_, platform::kNoFile)), buffer_(std::move(other.buffer_)) {}

OutputFile::~OutputFile() { abandon(); }

void OutputFile::abandon() {
  // Without finish() the content is given up anyway.
  if (handle_ == platform::kNoFile) return;
  static_cast<void>(platform::closeFile(std::exchange(handle_, platform::kNoFile)));
}

Status OutputFile::write(std::string_view bytes) {
  if (buffer_.size() + bytes.size() > kWriteBuffer) {
    if (const Status flushed = flush(); !flushed) return flushed;
  }
  if (bytes.size() > kWriteBuffer) return platform::writeAll(handle_, bytes);
  buffer_ += bytes;
  return {};
}

Status OutputFile::copyPermissions(const std::filesystem::path& from) {
  return platform::copyPermissions(handle_, from);
}

Status OutputFile::flush() {
  const Status written = platform::writeAll(handle_, buffer_);
  buffer_.clear();
  return written;
}

Status OutputFile::finish() {
  Status status = flush();
  if (status) status = platform::flushToDisk(handle_);
  const Status closed = platform::closeFile(std::exchange(handle_, platform::kNoFile));
  return status ? closed : status;
}

Status renameFile(const std::filesystem::path& from, const std::filesystem::path& to) {
  return platform::rename(from, to, platform::Existing::kept);
}

Status replaceFile(const std::filesystem::path& from, const std::filesystem::path& to) {
  return platform::rename(from, to, platform::Existing::replaced);
}

namespace {

std::filesystem::path withSuffix(std::filesystem::path path, std::string_view suffix) {
  path += suffix;
  return path;
}

}  // namespace

Result<WholeFile> WholeFile::create(const std::filesystem::path& file, std::string_view suffix) {
  const std::filesystem::path place = linkTarget(file);
  const std::filesystem::path temporary = withSuffix(place, suffix);
  Result<OutputFile> output = OutputFile::create(temporary);
  if (!output) return output.error();
  WholeFile whole(place, temporary, std::move(*output));
  if (fileExists(place)) {
    if (const Status status = whole.output_.copyPermissions(place); !status) return status.error();
  }
  return whole;
}

WholeFile::WholeFile(WholeFile&& other) noexcept
    : place_(std::move(other.place_)),
      temporary_(std::exchange(other.temporary_, {})),
      output_(std::move(other.output_)) {}

WholeFile::~WholeFile() {
  if (temporary_.empty()) return;
  output_.abandon();
  static_cast<void>(removeFile(temporary_));
}

Status WholeFile::finish() {
  Status status = output_.finish();
  if (status) status = replaceFile(temporary_, place_);
  if (!status) return status;
  temporary_.clear();
  return flushFolder(place_.parent_path());
}

Status writeWholeFile(const std::filesystem::path& file, std::string_view suffix,
                      std::string_view bytes) {
  Result<WholeFile> whole = WholeFile::create(file, suffix);
  if (!whole) return whole.error();
  if (const Status written = whole->write(bytes); !written) return written;
  return whole->finish();
}

void removeLeftOver(const std::filesystem::path& file, std::string_view suffix) {
  // Where this fails, the next write says so.
  static_cast<void>(removeFile(withSuffix(file, suffix)));
  static_cast<void>(removeFile(withSuffix(linkTarget(file), suffix)));
}

std::filesystem::path linkTarget(const std::filesystem::path& path) {
  return platform::linkTarget(path);
}

Status removeFile(const std::filesystem::path& path) { return platform::remove(path); }

FolderLock::FolderLock(std::unique_ptr<platform::InstanceLock> lock) : lock_(std::move(lock)) {}
FolderLock::FolderLock(FolderLock&& other) noexcept = default;
FolderLock& FolderLock::operator=(FolderLock&& other) noexcept = default;
FolderLock::~FolderLock() = default;

std::optional<FolderLock> FolderLock::take(const std::filesystem::path& folder) {
  Result<std::unique_ptr<platform::InstanceLock>> lock = platform::lockFolder(folder);
  if (!lock) return FolderLock(nullptr);
  if (*lock == nullptr) return std::nullopt;
  return FolderLock(std::move(*lock));
}

Status flushFolder(const std::filesystem::path& folder) { return platform::flushFolder(folder); }

bool fileExists(const std::filesystem::path& path) {
  return platform::kindOf(path) == platform::FileKind::regular;
}

Result<std::vector<std::string>> listFolder(const std::filesystem::path& folder) {
  const Result<std::vector<platform::FolderEntry>> entries = platform::entriesOf(folder);
  if (!entries) return entries.error();
  std::vector<std::string> names;
  for (const platform::FolderEntry& entry : *entries) {
    if (entry.kind == platform::FileKind::regular) names.push_back(toUtf8(entry.name));
  }
  std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
    const int order = lowerAscii(left).compare(lowerAscii(right));
    return order != 0 ? order < 0 : left < right;
  });
  return names;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() && lowerAscii(left) == lowerAscii(right);
}

std::optional<std::filesystem::path> findFile(const std::filesystem::path& folder,
                                              std::string_view name) {
  const std::filesystem::path exact = folder / toPath(name);
  if (fileExists(exact)) return platform::asStored(exact);
  if (platform::fileNamesIgnoreCase()) return std::nullopt;
  const Result<std::vector<std::string>> names = listFolder(folder);
  if (!names) return std::nullopt;
  const auto match = std::find_if(names->begin(), names->end(), [&](const std::string& other) {
    return equalIgnoringCase(other, name);
  });
  if (match == names->end()) return std::nullopt;
  return folder / toPath(*match);
}

std::filesystem::path fileIn(const std::filesystem::path& folder, std::string_view name) {
  const auto found = findFile(folder, name);
  return found ? *found : folder / toPath(name);
}

std::filesystem::path folderIn(const std::filesystem::path& folder, std::string_view name) {
  const std::filesystem::path exact = folder / toPath(name);
  if (platform::fileNamesIgnoreCase() || platform::kindOf(exact) == platform::FileKind::folder) {
    return exact;
  }
  const Result<std::vector<platform::FolderEntry>> entries = platform::entriesOf(folder);
  if (!entries) return exact;
  std::vector<std::string> names;
  for (const platform::FolderEntry& entry : *entries) {
    std::string other = toUtf8(entry.name);
    if (equalIgnoringCase(other, name) && entry.kind == platform::FileKind::folder) {
      names.push_back(std::move(other));
    }
  }
  const auto first = std::min_element(names.begin(), names.end());
  return first == names.end() ? exact : folder / toPath(*first);
}

bool isSafeFileName(std::string_view name) {
  if (name.find("..") != std::string_view::npos) return false;
  return std::none_of(name.begin(), name.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F || c == '/' || c == '\\' || c == ':';
  });
}

FolderIndex::Names::const_iterator FolderIndex::firstOf(const std::string& key) const {
  const auto first = std::lower_bound(
      names_.begin(), names_.end(), key,
      [](const auto& entry, const std::string& wanted) { return entry.first < wanted; });
  return first == names_.end() || first->first != key ? names_.end() : first;
}

bool FolderIndex::holds(std::string_view name) const {
  return firstOf(lowerAscii(name)) != names_.end();
}

std::optional<std::filesystem::path> FolderIndex::find(std::string_view name) {
  refresh();
  const std::string key = lowerAscii(name);
  const auto first = firstOf(key);
  if (first == names_.end()) return std::nullopt;
  for (auto entry = first; entry != names_.end() && entry->first == key; ++entry) {
    if (entry->second == name) return folder_ / toPath(entry->second);
  }
  return folder_ / toPath(first->second);
}

void FolderIndex::refresh() {
  const std::optional<platform::FolderChange> change = platform::lastChangeOf(folder_);
  if (!change) {
    names_.clear();
    settled_ = false;
    return;
  }
  if (settled_ && change->time == listedAt_) return;
  // A folder that changed a moment ago may change again within the same tick
  // of its clock: such a listing is not kept.
  settled_ = !change->isRecent;
  listedAt_ = change->time;
  names_.clear();
  const Result<std::vector<std::string>> listed = listFolder(folder_);
  if (!listed) {
    settled_ = false;
    return;
  }
  for (const std::string& listedName : *listed) {
    names_.emplace_back(lowerAscii(listedName), listedName);
  }
  std::sort(names_.begin(), names_.end());
}

}  // namespace vel
