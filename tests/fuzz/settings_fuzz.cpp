// The settings: whatever the file holds, what was read is saved and read again
// the same, and saving twice changes no byte.

#include "core/settings.h"
#include "tests/fuzz/fuzz_support.h"
#include "tests/support/recording_desktop.h"

namespace vel::fuzz {
namespace {

std::string textOf(const Settings& settings) {
  std::string text;
  for (const std::string* each : {&settings.env_regDefName0, &settings.env_regDefUrl0,
                                  &settings.env_FltDefName0, &settings.env_FltDefUrl0}) {
    check(isUtf8(*each), "a setting that is no text");
    text += *each + '\n';
  }
  for (const double each :
       {settings.env_Form3_Top, settings.env_Form3_Left, settings.env_Form3_Height,
        settings.env_Form3_Width, settings.env_Form1_Top, settings.env_Form1_Left,
        settings.env_Form1_Height, settings.env_Form1_Width}) {
    text += formatSetting("", each) + '\n';
  }
  for (const int each : {settings.env_regSchCmb, settings.env_fltSchCmb, settings.env_Form1_WinS,
                         settings.env_fltSchZsp, settings.env_keepCsrPos, settings.env_Config}) {
    text += std::to_string(each) + '\n';
  }
  return text;
}

void run(const Station& station, Parts parts) {
  const Encoding encoding = encodingOf(lineOfPart(parts.next(), 0));
  const std::string_view bytes = parts.rest();
  const auto file = station.folders().program / "vel.env";
  put(file, bytes);
  for (const std::string_view line : plainLines(withoutMark(bytes), true)) {
    const auto setting = parseSetting(line);
    if (!setting) continue;
    if (setting->first.find('"') != std::string::npos) continue;
    const auto again = parseSetting(formatSetting(setting->first, setting->second));
    check(again.ok() && *again == *setting, "a line that is not read as it was written");
  }
  test::RecordingDesktop desktop;
  Settings settings;
  check(LoadEnv(desktop, file, encoding, {"https://a.example/", "/?F="}, settings).ok(), "no file");
  const std::string before = textOf(settings);
  check(SaveEnv(file, encoding, settings).ok(), "the settings cannot be saved");
  const std::string saved = get(file);
  check(LoadEnv(desktop, file, encoding, {"https://b.example/", "/"}, settings).ok(), "no file");
  check(textOf(settings) == before, "what was saved is not what was read");
  check(SaveEnv(file, encoding, settings).ok(), "the settings cannot be saved again");
  check(get(file) == saved, "saving again changes the file");
  check(!std::filesystem::exists(station.folders().program / "vel.env.new"), "a file is left");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
