#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <functional>
#include <limits>
#include <utility>

#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

#include "core/file.h"
#include "core/platform.h"
#include "core/platform_folders.h"

namespace vel::platform {
namespace {

constexpr wchar_t kReplacement = L'\xFFFD';

// ERROR_DISK_QUOTA_EXCEEDED, which not every set of headers has.
constexpr DWORD kDiskQuotaExceeded = 1295;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

Error errorOf(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
      return {ErrorNumber::fileNotFound};
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY:
      return {ErrorNumber::pathNotFound};
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return {ErrorNumber::fileExists};
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kDiskQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
      return {ErrorNumber::diskFull};
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_WRITE_PROTECT:
    case ERROR_DELETE_PENDING:
    case ERROR_PRIVILEGE_NOT_HELD:
      return {ErrorNumber::permissionDenied};
    default:
      return {ErrorNumber::deviceIo};
  }
}

Error openError(DWORD code) {
  switch (code) {
    // No file can have such a name, so there is none.
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
      return {ErrorNumber::fileNotFound};
    default:
      return errorOf(code);
  }
}

Error renameError(DWORD code) {
  const Error error = errorOf(code);
  return error.number == ErrorNumber::permissionDenied ? Error{ErrorNumber::pathAccess} : error;
}

HANDLE toHandle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

Status fromResult(BOOL succeeded) {
  if (succeeded != 0) return {};
  return errorOf(GetLastError());
}

// The calls take texts of up to INT_MAX units; a longer one counts as no text.
int sizeOf(std::size_t size) {
  return size <= static_cast<std::size_t>(std::numeric_limits<int>::max()) ? static_cast<int>(size)
                                                                           : 0;
}

// Empty when the bytes are not valid in the code page.
std::wstring toWide(UINT page, std::string_view bytes, DWORD flags) {
  const int size = sizeOf(bytes.size());
  const int needed = MultiByteToWideChar(page, flags, bytes.data(), size, nullptr, 0);
  if (needed <= 0) return {};
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  const int made = MultiByteToWideChar(page, flags, bytes.data(), size, wide.data(), needed);
  wide.resize(static_cast<std::size_t>(std::max(made, 0)));
  return wide;
}

// A half of a surrogate pair without the other becomes U+FFFD in UTF-8, and
// the default character elsewhere.
std::string fromWide(UINT page, std::wstring_view wide) {
  const int size = sizeOf(wide.size());
  const int needed = WideCharToMultiByte(page, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  if (needed <= 0) return {};
  std::string bytes(static_cast<std::size_t>(needed), '\0');
  const int made =
      WideCharToMultiByte(page, 0, wide.data(), size, bytes.data(), needed, nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(std::max(made, 0)));
  return bytes;
}

// The system stops at 260 characters unless a path is absolute and says that
// it may be longer.
std::wstring systemPath(const std::filesystem::path& path) {
  constexpr std::size_t kShort = 240;
  std::filesystem::path native = path;
  native.make_preferred();
  std::wstring text = native.wstring();
  if (text.size() < kShort || text.starts_with(L"\\\\?\\")) return text;
  const DWORD needed = GetFullPathNameW(text.c_str(), 0, nullptr, nullptr);
  std::wstring full(needed, L'\0');
  const DWORD made = GetFullPathNameW(text.c_str(), needed, full.data(), nullptr);
  if (made == 0 || made >= needed) return text;
  full.resize(made);
  if (full.starts_with(L"\\\\")) return L"\\\\?\\UNC\\" + full.substr(2);
  return L"\\\\?\\" + full;
}

// The path from a root on, as the system sees it; itself where it does not say.
std::wstring fullName(const std::filesystem::path& path) {
  const std::wstring text = std::filesystem::path(path).make_preferred().wstring();
  std::wstring full(std::size_t{1} << 15, L'\0');
  const DWORD size =
      GetFullPathNameW(text.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (size == 0 || size >= full.size()) return text;
  full.resize(size);
  return full;
}

FileKind kindOfAttributes(DWORD attributes) {
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return FileKind::folder;
  return (attributes & FILE_ATTRIBUTE_DEVICE) != 0 ? FileKind::other : FileKind::regular;
}

// The system's unit of time.
using Ticks = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;

Ticks ticksOf(const FILETIME& time) {
  return Ticks(static_cast<long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
}

class CodePageTranscoder : public Transcoder {
 public:
  CodePageTranscoder(UINT page, UINT longestCharacter)
      : page_(page), longestCharacter_(longestCharacter) {}

  std::string decode(std::string_view bytes) override {
    std::wstring wide = valid(bytes);
    if (wide.empty()) wide = repaired(bytes);
    return fromWide(CP_UTF8, wide);
  }

  std::optional<std::string> encode(std::string_view utf8) override {
    if (utf8.empty()) return std::string();
    const std::wstring wide = toWide(CP_UTF8, utf8, MB_ERR_INVALID_CHARS);
    if (wide.empty()) return std::nullopt;
    std::string bytes = fromWide(page_, wide);
    // The system puts a similar character or a question mark where the code
    // page has none: only what comes back the same was held.
    if (valid(bytes) != wide) return std::nullopt;
    return bytes;
  }

 private:
  // Empty unless every byte belongs to a character.
  [[nodiscard]] std::wstring valid(std::string_view bytes) const {
    std::wstring wide = toWide(page_, bytes, MB_ERR_INVALID_CHARS);
    if (std::any_of(wide.begin(), wide.end(), [this](wchar_t c) { return isStray(c); })) return {};
    return wide;
  }

  // Code pages give the bytes that they leave undefined a control character,
  // and code page 932 some a private character or a no-break space.
  [[nodiscard]] bool isStray(wchar_t c) const {
    if (page_ == CP_UTF8) return false;
    if (c >= 0x80 && c < 0xA0) return !isIso8859();
    return page_ == 932 && (c == 0xA0 || (c >= 0xF8F0 && c <= 0xF8F3));
  }

  [[nodiscard]] bool isIso8859() const { return page_ >= 28591 && page_ <= 28605; }

  [[nodiscard]] std::wstring repaired(std::string_view bytes) const {
    std::wstring wide;
    while (!bytes.empty()) {
      std::wstring character;
      std::size_t size = firstSize(bytes);
      for (; size <= std::min<std::size_t>(longestCharacter_, bytes.size()); ++size) {
        character = valid(bytes.substr(0, size));
        if (!character.empty() || longestCharacter_ <= 2) break;
      }
      if (character.empty()) {
        character = kReplacement;
        size = 1;
      }
      wide += character;
      bytes.remove_prefix(size);
    }
    return wide;
  }

  // How many bytes the first character has at least.
  [[nodiscard]] std::size_t firstSize(std::string_view bytes) const {
    return longestCharacter_ == 2 && IsDBCSLeadByteEx(page_, static_cast<BYTE>(bytes[0])) != 0 ? 2
                                                                                               : 1;
  }

  UINT page_;
  UINT longestCharacter_;
};

// Upper case, without what separates words: "Windows-31J" is "WINDOWS31J".
std::string plainName(std::string_view name) {
  std::string plain;
  for (char c : name) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
    if (c != '-' && c != '_') plain += c;
  }
  return plain;
}

// The number of a code page by the name under which it is known elsewhere.
std::optional<UINT> codePageOf(std::string_view encodingName) {
  static constexpr std::array<std::pair<std::string_view, UINT>, 19> kNames = {{
      {"UTF8", CP_UTF8},   {"SHIFTJIS", 932},    {"SJIS", 932},        {"MS932", 932},
      {"WINDOWS31J", 932}, {"EUCJP", 20932},     {"GBK", 936},         {"GB2312", 936},
      {"GB18030", 54936},  {"EUCKR", 949},       {"BIG5", 950},        {"TIS620", 874},
      {"KOI8R", 20866},    {"KOI8U", 21866},     {"ASCII", 20127},     {"USASCII", 20127},
      {"LATIN1", 28591},   {"ISO885913", 28603}, {"ISO885915", 28605},
  }};
  const std::string plain = plainName(encodingName);
  for (const auto& [name, page] : kNames) {
    if (plain == name) return page;
  }
  const auto numbered = [&](std::string_view prefix) -> std::optional<UINT> {
    if (!plain.starts_with(prefix)) return std::nullopt;
    UINT number = 0;
    const char* end = plain.data() + plain.size();
    const auto read = std::from_chars(plain.data() + prefix.size(), end, number);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return number;
  };
  if (const auto part = numbered("ISO8859"); part && *part >= 1 && *part <= 9) {
    return 28590 + *part;
  }
  if (const auto page = numbered("WINDOWS")) return page;
  return numbered("CP");
}

char32_t mapCase(char32_t character, DWORD map) {
  std::wstring from;
  if (character >= 0x10000) {
    from += static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
    from += static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
  } else {
    from += static_cast<wchar_t>(character);
  }
  const int size = static_cast<int>(from.size());
  std::array<wchar_t, 4> to{};
  const int made = LCMapStringEx(LOCALE_NAME_INVARIANT, map, from.data(), size, to.data(),
                                 static_cast<int>(to.size()), nullptr, nullptr, 0);
  if (made != size) return character;
  if (size == 1) return static_cast<char32_t>(to[0]);
  return 0x10000 + ((static_cast<char32_t>(to[0]) - 0xD800) << 10) +
         (static_cast<char32_t>(to[1]) - 0xDC00);
}

class HandleLock : public InstanceLock {
 public:
  explicit HandleLock(HANDLE handle) : handle_(handle) {}
  HandleLock(const HandleLock&) = delete;
  HandleLock& operator=(const HandleLock&) = delete;
  ~HandleLock() override { CloseHandle(handle_); }

 private:
  HANDLE handle_;
};

std::unique_ptr<InstanceLock> lockOf(HANDLE handle) { return std::make_unique<HandleLock>(handle); }

// The user as the system writes it ("S-1-5-21-..."), the same in every session;
// empty where it does not say.
std::wstring userName() {
  HANDLE token = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return {};
  alignas(TOKEN_USER) std::array<char, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> room{};
  DWORD size = 0;
  std::wstring name;
  wchar_t* text = nullptr;
  if (GetTokenInformation(token, TokenUser, room.data(), static_cast<DWORD>(room.size()), &size) !=
          0 &&
      ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(room.data())->User.Sid, &text) !=
          0) {
    name = text;
    LocalFree(text);
  }
  CloseHandle(token);
  return name;
}

}  // namespace

std::filesystem::path pathFromUtf8(std::string_view utf8) {
  return std::filesystem::path(toWide(CP_UTF8, utf8, 0));
}

std::string utf8FromPath(const std::filesystem::path& path) {
  return fromWide(CP_UTF8, path.native());
}

std::unique_ptr<Transcoder> makeTranscoder(const std::string& encodingName) {
  const std::optional<UINT> page = codePageOf(encodingName);
  CPINFO info{};
  if (!page || GetCPInfo(*page, &info) == 0) return nullptr;
  return std::make_unique<CodePageTranscoder>(*page, info.MaxCharSize);
}

char32_t lowerCase(char32_t character) { return mapCase(character, LCMAP_LOWERCASE); }

char32_t upperCase(char32_t character) { return mapCase(character, LCMAP_UPPERCASE); }

std::filesystem::path absolutePath(const std::filesystem::path& path) {
  // The standard library takes the name of a share's computer for a folder.
  return fullName(path);
}

FileKind kindOf(const std::filesystem::path& path) {
  // "NUL" and the like are devices in every folder.
  const std::wstring full = fullName(path);
  if (full.starts_with(L"\\\\.\\")) return FileKind::other;
  const DWORD attributes = GetFileAttributesW(systemPath(path).c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) return kindOfAttributes(attributes);
  switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY:
    case ERROR_FILENAME_EXCED_RANGE:
      return FileKind::nothing;
    default:
      return FileKind::unknown;
  }
}

Result<std::vector<FolderEntry>> entriesOf(const std::filesystem::path& folder) {
  WIN32_FIND_DATAW found{};
  HANDLE search = FindFirstFileW(systemPath(folder / L"*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    switch (GetLastError()) {
      // A drive's root has not even the entries that stand for folders.
      case ERROR_FILE_NOT_FOUND:
        return std::vector<FolderEntry>();
      case ERROR_ACCESS_DENIED:
        return ErrorNumber::permissionDenied;
      default:
        return ErrorNumber::pathNotFound;
    }
  }
  std::vector<FolderEntry> entries;
  do {
    const std::wstring_view name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const bool isLink = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    entries.push_back(
        {name, isLink ? kindOf(folder / name) : kindOfAttributes(found.dwFileAttributes)});
  } while (FindNextFileW(search, &found) != 0);
  const DWORD code = GetLastError();
  FindClose(search);
  if (code != ERROR_NO_MORE_FILES) return ErrorNumber::deviceIo;
  return entries;
}

std::optional<FolderChange> lastChangeOf(const std::filesystem::path& folder) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(systemPath(folder).c_str(), GetFileExInfoStandard, &data) == 0) {
    return std::nullopt;
  }
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  const Ticks age = ticksOf(now) - ticksOf(data.ftLastWriteTime);
  const std::filesystem::file_time_type::duration time(ticksOf(data.ftLastWriteTime).count());
  return FolderChange{std::filesystem::file_time_type(time), age <= std::chrono::seconds(2)};
}

Result<std::intptr_t> openForReading(const std::filesystem::path& path) {
  const std::wstring name = systemPath(path);
  HANDLE file = CreateFileW(name.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                            FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    const Error error = openError(GetLastError());
    const DWORD attributes = GetFileAttributesW(name.c_str());
    const bool isFolder =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder ? Error{ErrorNumber::fileNotFound} : error;
  }
  // A name such as "NUL" or "COM1" opens a device, which may never end.
  if (GetFileType(file) != FILE_TYPE_DISK) {
    CloseHandle(file);
    return ErrorNumber::fileNotFound;
  }
  return reinterpret_cast<std::intptr_t>(file);
}

Result<std::intptr_t> createNew(const std::filesystem::path& path) {
  HANDLE file = CreateFileW(systemPath(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                            CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return errorOf(GetLastError());
  return reinterpret_cast<std::intptr_t>(file);
}

Result<std::size_t> readSome(std::intptr_t handle, char* data, std::size_t size) {
  constexpr std::size_t kMost = std::size_t{1} << 30;
  DWORD count = 0;
  if (ReadFile(toHandle(handle), data, static_cast<DWORD>(std::min(size, kMost)), &count,
               nullptr) == 0) {
    const DWORD code = GetLastError();
    if (code != ERROR_HANDLE_EOF) return errorOf(code);
  }
  return std::size_t{count};
}

Status rewind(std::intptr_t handle) {
  return fromResult(SetFilePointerEx(toHandle(handle), {}, nullptr, FILE_BEGIN));
}

// A file is asked for its identity by opening it.
std::optional<FileIdentity> identityOf(std::intptr_t /*handle*/) { return {}; }
std::optional<FileIdentity> identityOf(const std::filesystem::path& /*path*/) { return {}; }

Status writeAll(std::intptr_t handle, std::string_view bytes) {
  constexpr std::size_t kMost = std::size_t{1} << 30;
  while (!bytes.empty()) {
    DWORD count = 0;
    if (WriteFile(toHandle(handle), bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kMost)),
                  &count, nullptr) == 0) {
      return errorOf(GetLastError());
    }
    // A full volume may take nothing without a word.
    if (count == 0) return ErrorNumber::diskFull;
    bytes.remove_prefix(count);
  }
  return {};
}

Status flushToDisk(std::intptr_t handle) { return fromResult(FlushFileBuffers(toHandle(handle))); }

Status closeFile(std::intptr_t handle) { return fromResult(CloseHandle(toHandle(handle))); }

Status copyPermissions(std::intptr_t to, const std::filesystem::path& from) {
  const std::wstring source = systemPath(from);
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  const DWORD read =
      GetNamedSecurityInfoW(source.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                            nullptr, &list, nullptr, &descriptor);
  if (read != ERROR_SUCCESS) return errorOf(read);
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  // A volume without permissions has no list: nothing to carry over. What is
  // refused is no reason to lose the content.
  if (GetSecurityDescriptorControl(descriptor, &control, &revision) != 0 && list != nullptr) {
    HANDLE file = ReOpenFile(toHandle(to), READ_CONTROL | WRITE_DAC, kShareAll, 0);
    if (file != INVALID_HANDLE_VALUE) {
      const DWORD kind = (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                            : UNPROTECTED_DACL_SECURITY_INFORMATION;
      static_cast<void>(SetSecurityInfo(file, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | kind,
                                        nullptr, nullptr, list, nullptr));
      CloseHandle(file);
    }
  }
  LocalFree(descriptor);
  return {};
}

Status rename(const std::filesystem::path& from, const std::filesystem::path& to,
              Existing existing) {
  const DWORD replacing = existing == Existing::replaced ? MOVEFILE_REPLACE_EXISTING : 0U;
  if (MoveFileExW(systemPath(from).c_str(), systemPath(to).c_str(),
                  MOVEFILE_WRITE_THROUGH | replacing) != 0)
    return {};
  return renameError(GetLastError());
}

Status remove(const std::filesystem::path& path) {
  const std::wstring name = systemPath(path);
  if (DeleteFileW(name.c_str()) != 0) return {};
  const DWORD code = GetLastError();
  // A file may be marked as not to be written, as a table's copy is.
  const DWORD attributes = GetFileAttributesW(name.c_str());
  constexpr DWORD kFolderOrWritable = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
  if (code == ERROR_ACCESS_DENIED && attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & kFolderOrWritable) == FILE_ATTRIBUTE_READONLY &&
      SetFileAttributesW(name.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}) != 0 &&
      DeleteFileW(name.c_str()) != 0) {
    return {};
  }
  return errorOf(code);
}

Status flushFolder(const std::filesystem::path& folder) {
  // The file system keeps a journal of its folders, and a rename with
  // MOVEFILE_WRITE_THROUGH returns when it lasts: there is nothing to flush,
  // and no call for a folder that an ordinary user may make.
  static_cast<void>(folder);
  return {};
}

std::filesystem::path linkTarget(const std::filesystem::path& path) {
  const DWORD attributes = GetFileAttributesW(systemPath(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return path;
  }
  HANDLE file = CreateFileW(systemPath(path).c_str(), 0, kShareAll, nullptr, OPEN_EXISTING,
                            FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return path;
  std::wstring name(std::size_t{1} << 15, L'\0');
  const DWORD size =
      GetFinalPathNameByHandleW(file, name.data(), static_cast<DWORD>(name.size()), 0);
  CloseHandle(file);
  if (size == 0 || size >= name.size()) return path;
  name.resize(size);
  return name;
}

std::filesystem::path asStored(const std::filesystem::path& path) {
  WIN32_FIND_DATAW found{};
  HANDLE search = FindFirstFileW(systemPath(path).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return path;
  FindClose(search);
  return path.parent_path() / found.cFileName;
}

bool fileNamesIgnoreCase() { return true; }

std::filesystem::path executableFolder() {
  std::wstring name(MAX_PATH, L'\0');
  while (true) {
    const DWORD size = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    if (size < name.size()) {
      name.resize(size);
      return std::filesystem::path(name).parent_path();
    }
    name.resize(name.size() * 2);
  }
}

Result<std::unique_ptr<InstanceLock>> lockInstance(const std::string& key) {
  // One folder can be written in capitals or not; the name of a mutex cannot.
  std::wstring lower = toWide(CP_UTF8, key, 0);
  CharLowerBuffW(lower.data(), static_cast<DWORD>(lower.size()));
  // One name for all sessions, so the user is a part of it.
  lower = userName() + L'\n' + lower;
  std::array<wchar_t, 40> name{};
  std::swprintf(name.data(), name.size(), L"Global\\vel-%016llx",
                static_cast<unsigned long long>(std::hash<std::wstring>{}(lower)));
  HANDLE mutex = CreateMutexW(nullptr, FALSE, name.data());
  const DWORD code = GetLastError();
  if (mutex == nullptr) {
    // A copy that runs with other rights owns it.
    if (code == ERROR_ACCESS_DENIED) return std::unique_ptr<InstanceLock>();
    return errorOf(code);
  }
  if (code == ERROR_ALREADY_EXISTS) {
    CloseHandle(mutex);
    return std::unique_ptr<InstanceLock>();
  }
  return lockOf(mutex);
}

Result<std::unique_ptr<InstanceLock>> lockFolder(const std::filesystem::path& folder) {
  // A file that nobody else may open, and that is gone with its handle.
  const std::wstring name = systemPath(folder / L"vel.lock");
  constexpr int kTries = 5;
  for (int tries = 1;; ++tries) {
    HANDLE file = CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE) return lockOf(file);
    const DWORD code = GetLastError();
    if (code == ERROR_SHARING_VIOLATION) return std::unique_ptr<InstanceLock>();
    // Refused for a moment while the former holder's file goes, and for good in
    // a folder that may not be written.
    if (code != ERROR_ACCESS_DENIED || tries == kTries) return errorOf(code);
    Sleep(1);
  }
}

}  // namespace vel::platform
