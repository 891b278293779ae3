#include "core/settings.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "core/line_reader.h"
#include "core/program_files.h"

namespace vel {
namespace {

using Member = std::variant<std::string Settings::*, int Settings::*, double Settings::*>;

struct Entry {
  std::string_view key;
  Member member;
};

// In the order in which the file is written.
constexpr std::array<Entry, 18> kEntries = {{
    {"env_regDefName0", &Settings::env_regDefName0},
    {"env_regDefUrl0", &Settings::env_regDefUrl0},
    {"env_FltDefName0", &Settings::env_FltDefName0},
    {"env_FltDefUrl0", &Settings::env_FltDefUrl0},
    {"env_regSchCmb", &Settings::env_regSchCmb},
    {"env_fltSchCmb", &Settings::env_fltSchCmb},
    {"env_Form3_Top", &Settings::env_Form3_Top},
    {"env_Form3_Left", &Settings::env_Form3_Left},
    {"env_Form3_Height", &Settings::env_Form3_Height},
    {"env_Form3_Width", &Settings::env_Form3_Width},
    {"env_Form1_Top", &Settings::env_Form1_Top},
    {"env_Form1_Left", &Settings::env_Form1_Left},
    {"env_Form1_Height", &Settings::env_Form1_Height},
    {"env_Form1_Width", &Settings::env_Form1_Width},
    {"env_Form1_WinS", &Settings::env_Form1_WinS},
    {"env_fltSchZsp", &Settings::env_fltSchZsp},
    {"env_keepCsrPos", &Settings::env_keepCsrPos},
    {"env_Config", &Settings::env_Config},
}};

// False when the value is of the wrong kind for the setting. A text comes in
// the encoding's bytes.
bool assign(Settings& settings, const Entry& entry, const SettingValue& value,
            const Encoding& encoding) {
  const Member& member = entry.member;
  if (const auto* text = std::get_if<std::string Settings::*>(&member)) {
    const auto* bytes = std::get_if<std::string>(&value);
    if (bytes == nullptr) return false;
    settings.*(*text) = encoding.decode(*bytes);
    settings.asRead[std::string(entry.key)] = {settings.*(*text), *bytes};
    return true;
  }
  double number = 0;
  if (const auto* truth = std::get_if<bool>(&value)) {
    number = *truth ? 1 : 0;
  } else if (const auto* given = std::get_if<double>(&value)) {
    number = *given;
  } else {
    return false;
  }
  if (const auto* real = std::get_if<double Settings::*>(&member)) {
    settings.*(*real) = number;
    return true;
  }
  if (std::abs(number) > std::numeric_limits<int>::max()) return false;
  settings.*std::get<int Settings::*>(member) = static_cast<int>(std::lround(number));
  return true;
}

// The text in the encoding's bytes. A line end would make two lines of it.
std::optional<std::string> oneLine(const Encoding& encoding, const std::string& text) {
  if (text.find_first_of("\r\n") != std::string::npos) return std::nullopt;
  return encoding.encode(text);
}

std::string bytesOf(const Settings& settings, const Entry& entry, const std::string& text,
                    const Encoding& encoding) {
  const auto read = settings.asRead.find(entry.key);
  const bool isKnown = read != settings.asRead.end();
  if (isKnown && read->second.text == text) return read->second.bytes;
  if (auto bytes = oneLine(encoding, text)) return *std::move(bytes);
  return isKnown ? read->second.bytes : std::string();
}

SettingValue valueOf(const Settings& settings, const Entry& entry, const Encoding& encoding) {
  const Member& member = entry.member;
  if (const auto* text = std::get_if<std::string Settings::*>(&member)) {
    return bytesOf(settings, entry, settings.*(*text), encoding);
  }
  if (const auto* real = std::get_if<double Settings::*>(&member)) return settings.*(*real);
  return static_cast<double>(settings.*std::get<int Settings::*>(member));
}

// True for a name that leads somewhere, or that cannot be looked at.
bool isTaken(const std::filesystem::path& file) {
  std::error_code error;
  return std::filesystem::status(file, error).type() != std::filesystem::file_type::not_found;
}

Error unreadable(ErrorNumber number) {
  return {number,
          "Can't read vel.env. It is left as it is, and the settings are not saved this time."
          "　vel.envを読めません。vel.envはそのままにし、今回の設定は保存しません。"};
}

Status readLines(LineReader& lines, const Encoding& encoding, Settings& settings) {
  while (true) {
    const auto line = lines.next();
    if (!line) return unreadable(line.error().number);
    if (!*line || lines.wasCut()) return {};
    if (Trim(**line).empty()) continue;
    const auto record = parseSetting(**line);
    if (!record) return {};
    const auto* entry = kEntries.begin();
    while (entry != kEntries.end() && entry->key != record->first) ++entry;
    if (entry != kEntries.end() && !assign(settings, *entry, record->second, encoding)) return {};
  }
}

Status readFile(const std::filesystem::path& file, const Encoding& encoding, Settings& settings) {
  Result<InputFile> opened = InputFile::open(file);
  if (!opened) return isTaken(file) ? unreadable(opened.error().number) : Status();
  LineReader lines(std::move(*opened), LineReader::kLongestLine, LoneCr::endsLine);
  return readLines(lines, encoding, settings);
}

std::string shortestDecimal(double number) {
  std::array<char, 400> text;
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  return std::string(text.data(), end.ptr);
}

}  // namespace

std::string formatSetting(std::string_view key, const SettingValue& value) {
  std::string line = '"' + std::string(key) + "\",";
  if (const auto* text = std::get_if<std::string>(&value)) return line + '"' + *text + '"';
  if (const auto* truth = std::get_if<bool>(&value)) return line + (*truth ? "#TRUE#" : "#FALSE#");
  return line + shortestDecimal(std::get<double>(value));
}

Result<std::pair<std::string, SettingValue>> parseSetting(std::string_view line) {
  line = Trim(line);
  const bool quotedKey = line.starts_with('"');
  const std::size_t keyEnd = quotedKey ? line.find('"', 1) : line.find(',');
  if (keyEnd == std::string_view::npos) return ErrorNumber::typeMismatch;
  std::string key(quotedKey ? line.substr(1, keyEnd - 1) : Trim(line.substr(0, keyEnd)));
  const std::size_t comma = line.find(',', keyEnd);
  if (comma == std::string_view::npos) return ErrorNumber::typeMismatch;
  const std::string_view value = Trim(line.substr(comma + 1));
  const auto found = [&](SettingValue read) { return std::pair(std::move(key), std::move(read)); };

  // The value is the line's last field, so it ends with the line's last quote:
  // a name that holds a quote itself comes back whole.
  if (value.starts_with('"')) {
    if (value.size() < 2 || !value.ends_with('"')) return ErrorNumber::typeMismatch;
    return found(std::string(value.substr(1, value.size() - 2)));
  }
  if (value == "#TRUE#" || value == "#FALSE#") return found(value == "#TRUE#");
  double number = 0;
  const char* end = value.data() + value.size();
  const auto read = std::from_chars(value.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || !std::isfinite(number)) {
    return ErrorNumber::typeMismatch;
  }
  return found(number);
}

Status LoadEnv(Desktop& desktop, const std::filesystem::path& file, const Encoding& encoding,
               const DefaultSearches& defaults, Settings& settings) {
  WriteRunLog(desktop, "Start LoadEnv");
  settings = Settings();
  settings.env_regDefUrl0 = defaults.regDefUrl0;
  settings.env_FltDefUrl0 = defaults.fltDefUrl0;
  for (const Entry& entry : kEntries) {
    const auto* text = std::get_if<std::string Settings::*>(&entry.member);
    if (text == nullptr) continue;
    settings.asRead[std::string(entry.key)] = {
        settings.*(*text), oneLine(encoding, settings.*(*text)).value_or(std::string())};
  }
  Status read = readFile(file, encoding, settings);
  settings.mayBeSaved = read.ok();
  WriteRunLog(desktop, "End LoadEnv");
  return read;
}

Status SaveEnv(const std::filesystem::path& file, const Encoding& encoding,
               const Settings& settings) {
  if (!settings.mayBeSaved) return ErrorNumber::permissionDenied;
  std::string lines;
  for (const Entry& entry : kEntries) {
    lines += formatSetting(entry.key, valueOf(settings, entry, encoding)) + "\r\n";
  }
  return writeWholeFile(file, kSettingsSuffix, lines);
}

}  // namespace vel
