#include <algorithm>
#include <filesystem>
#include <vector>

#include <windows.h>
#include <gmock/gmock.h>

#include "core/file.h"
#include "core/text.h"
#include "tests/ui/frame/the_program.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using test::kLongEnough;
using testing::HasSubstr;

struct Search {
  DWORD process;
  std::vector<HWND> windows;
};

BOOL CALLBACK collect(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == search.process) search.windows.push_back(window);
  return TRUE;
}

class TheProgramOnWindows : public test::TheProgram {
 protected:
  [[nodiscard]] std::vector<HWND> windows() const {
    Search search{static_cast<DWORD>(process_.processId()), {}};
    EnumWindows(collect, reinterpret_cast<LPARAM>(&search));
    return search.windows;
  }
  /// Its window with a text in the title that users see; null without one.
  [[nodiscard]] HWND shownWindow(const wchar_t* text) const {
    for (HWND window : windows()) {
      std::wstring title(200, L'\0');
      title.resize(static_cast<std::size_t>(
          GetWindowTextW(window, title.data(), static_cast<int>(title.size()))));
      if (IsWindowVisible(window) != 0 && title.find(text) != std::wstring::npos) return window;
    }
    return nullptr;
  }
  [[nodiscard]] bool showsWindow(const wchar_t* text) const {
    return QTest::qWaitFor([&] { return shownWindow(text) != nullptr; }, kLongEnough);
  }
  /// The user logs out, as the system tells every window of a program.
  void logOut() const {
    for (HWND window : windows()) {
      DWORD_PTR agreed = 0;
      SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, static_cast<LPARAM>(ENDSESSION_LOGOFF),
                          SMTO_ABORTIFHUNG, kLongEnough, &agreed);
    }
    for (HWND window : windows()) {
      PostMessageW(window, WM_ENDSESSION, TRUE, static_cast<LPARAM>(ENDSESSION_LOGOFF));
    }
  }
  void expectSettingsSaved() const {
    const std::string saved = fileExists(settings()) ? test::readBytes(settings()) : "";
    EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 18);
  }
};

TEST_F(TheProgramOnWindows, SavesItsSettingsWhenTheUserLogsOut) {
  start({});
  ASSERT_TRUE(showsWindow(L"Database Maneger"));
  logOut();
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  expectSettingsSaved();
}

TEST_F(TheProgramOnWindows, LogsOutBehindAMessageThatNobodyAnswers) {
  base_.writeLog("20260102_list.csv", {"five,fields,only,2,3"});
  start({});
  ASSERT_TRUE(showsWindow(L"Database Maneger"));
  // The message is shown a moment later.
  ASSERT_TRUE(QTest::qWaitFor([this] { return windows().size() > 1; }, kLongEnough));
  logOut();
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  expectSettingsSaved();
}

TEST_F(TheProgramOnWindows, AFolderWithBlanksAndJapaneseLettersServesAsWell) {
  const fs::path base = base_.path() / toPath("無線 の 記録");
  fs::create_directories(base);
  for (const char* folder : {"data", "logs", "pics", "vel"}) {
    fs::rename(base_.path() / folder, base / folder);
  }
  const fs::path file = base / toPath("画面 1.png");
  process_.setProcessEnvironment(environment_);
  process_.start(
      QStringLiteral(VEL_PROGRAM),
      {QStringLiteral("--program-folder"), QString::fromStdWString((base / "vel").wstring()),
       QStringLiteral("--screenshot"), QString::fromStdWString(file.wstring())});
  finish();
  EXPECT_EQ(process_.exitCode(), 0) << errors_;
  EXPECT_TRUE(fileExists(file));
}

TEST_F(TheProgramOnWindows, ASecondCopyIsRefusedWhateverTheFoldersLetterCase) {
  start({});
  ASSERT_TRUE(showsWindow(L"Database Maneger"));
  QProcess second;
  second.start(QStringLiteral(VEL_PROGRAM),
               {QStringLiteral("--program-folder"),
                QString::fromStdString(base_.folders.program.string()).toUpper(),
                QStringLiteral("--screenshot"), picture()});
  ASSERT_TRUE(second.waitForFinished(kLongEnough));
  EXPECT_FALSE(QFile::exists(picture()));
  EXPECT_THAT(second.readAllStandardError().toStdString(), HasSubstr("既に起動されています。"));
  logOut();
  finish();
}

}  // namespace
}  // namespace vel
