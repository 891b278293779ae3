#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "core/desktop.h"
#include "core/file.h"
#include "core/result.h"
#include "core/text.h"

namespace vel {

/// A value as the settings file holds it: quoted text, a bare number, or
/// #TRUE# / #FALSE#.
using SettingValue = std::variant<std::string, double, bool>;

/// Window states as they are saved.
enum WindowState : int { kNormal = 0, kMinimised = 1, kMaximised = 2 };

/// A text as the file holds it, so that it can be written back unchanged.
struct TextAsRead {
  std::string text;   ///< decoded
  std::string bytes;  ///< as they stand in the file
};

/// The program-wide settings, kept in vel.env. Geometry is in twips (1/1440
/// inch; 15 to a logical pixel).
struct Settings {
  std::string env_regDefName0 = "USER DEF";  ///< name of the user's photo search
  std::string env_regDefUrl0;                ///< its address prefix
  std::string env_FltDefName0 = "USER DEF";  ///< name of the user's flight search
  std::string env_FltDefUrl0;                ///< its address prefix
  int env_regSchCmb = 0;                     ///< selected photo search
  int env_fltSchCmb = 0;                     ///< selected flight search
  double env_Form3_Top = 0;                  ///< raw log viewer
  double env_Form3_Left = 0;
  double env_Form3_Height = 8310;
  double env_Form3_Width = 9975;
  double env_Form1_Top = 0;  ///< both browsers
  double env_Form1_Left = 0;
  double env_Form1_Height = 0;  ///< 0 means never saved
  double env_Form1_Width = 0;
  int env_Form1_WinS = kNormal;
  int env_fltSchZsp = 0;   ///< 1 drops leading zeros in the user's flight search
  int env_keepCsrPos = 0;  ///< 1 keeps the selected line when a log is re-read
  int env_Config = 0;      ///< non-zero shows the Config button

  /// What the file held for its texts, or else their defaults, by key.
  std::map<std::string, TextAsRead, std::less<>> asRead = {};
  /// False when the file is there and could not be read: it is not overwritten.
  bool mayBeSaved = true;
};

/// The two address prefixes that the defaults start from.
struct DefaultSearches {
  std::string regDefUrl0;
  std::string fltDefUrl0;
};

/// Assigns every default, then takes over what the file holds. Blank lines are
/// skipped; reading stops at the first damaged line, and no file leaves the
/// defaults. A file that is there and cannot be read is an Error with the
/// message for the user; the settings are then never saved.
Status LoadEnv(Desktop& desktop, const std::filesystem::path& file, const Encoding& encoding,
               const DefaultSearches& defaults, Settings& settings);

/// Writes all eighteen lines through a temporary file beside the old one and a
/// rename, so that a failure leaves the old file as it was. A text that was not
/// changed is written with the bytes that were read; one that the encoding
/// cannot hold keeps the bytes it had, or else the default's, and costs no other
/// setting. A file that could not be read is left alone: 70.
Status SaveEnv(const std::filesystem::path& file, const Encoding& encoding,
               const Settings& settings);

/// One line of the file without its line end, `"key",value`, as text or in the
/// bytes of an encoding.
[[nodiscard]] std::string formatSetting(std::string_view key, const SettingValue& value);

/// The key and the value of a line; an error for a line of another form.
Result<std::pair<std::string, SettingValue>> parseSetting(std::string_view line);

}  // namespace vel
