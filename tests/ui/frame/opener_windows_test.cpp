#include <QTest>
#include <filesystem>
#include <fstream>

#include <windows.h>
#include <gtest/gtest.h>

#include "core/file.h"
#include "core/platform.h"
#include "core/ui/qt_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

const std::wstring kClasses = L"Software\\Classes\\";

// Where classes can be set: this user's, unless the system passes them over, as
// Wine 8 does; those of all users then.
HKEY classesOwner() {
  const std::wstring probe = kClasses + L"vel-test-probe";
  RegSetKeyValueW(HKEY_CURRENT_USER, probe.c_str(), nullptr, REG_SZ, L"", sizeof(wchar_t));
  HKEY merged = nullptr;
  const bool counts = RegOpenKeyW(HKEY_CLASSES_ROOT, L"vel-test-probe", &merged) == ERROR_SUCCESS;
  if (counts) RegCloseKey(merged);
  RegDeleteTreeW(HKEY_CURRENT_USER, probe.c_str());
  return counts ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

/// The kinds of file and of address that a stand-in opens, each under the verb
/// "Open" alone.
class Opener : public testing::Test {
 protected:
  void SetUp() override {
    const std::wstring command = L'"' +
                                 (platform::executableFolder() / "opened_with.exe").wstring() +
                                 L"\" \"" + (folder_ / "out").wstring() + L"\" \"%1\"";
    owner_ = classesOwner();
    for (const wchar_t* kind : {L"vel-test-file", L"vel-test"}) {
      ASSERT_NO_FATAL_FAILURE(setKey(kind, L"URL:vel"));
      ASSERT_NO_FATAL_FAILURE(setKey(std::wstring(kind) + L"\\shell\\Open\\command", command));
    }
    ASSERT_NO_FATAL_FAILURE(setKey(L".veltest", L"vel-test-file"));
    ASSERT_EQ(RegSetKeyValueW(owner_, (kClasses + L"vel-test").c_str(), L"URL Protocol", REG_SZ,
                              L"", sizeof(wchar_t)),
              ERROR_SUCCESS);
  }
  void TearDown() override {
    for (const wchar_t* kind : {L"vel-test-file", L"vel-test", L".veltest"}) {
      RegDeleteTreeW(owner_, (kClasses + kind).c_str());
    }
  }

  // A key with its default value.
  void setKey(const std::wstring& name, const std::wstring& value) const {
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    ASSERT_EQ(
        RegSetKeyValueW(owner_, (kClasses + name).c_str(), nullptr, REG_SZ, value.c_str(), size),
        ERROR_SUCCESS);
  }

  /// What the program was started with: one argument, the root folder as the
  /// working folder and the show command 0 in front of it.
  [[nodiscard]] std::string received() const {
    const fs::path out = folder_ / "out";
    // While it is renamed into place, it is there and nobody else may open it.
    const auto isReadable = [&] { return std::ifstream(out).is_open(); };
    if (!QTest::qWaitFor(isReadable, 20'000)) return "nothing";
    const std::string bytes = test::readBytes(out);
    fs::remove(out);
    return bytes;
  }
  static std::string once(const std::string& target) { return "1\nC:\\\n0\n" + target; }

  test::TemporaryFolder folder_;
  HKEY owner_ = nullptr;
};

TEST_F(Opener, AnAddressArrivesAsItIs) {
  for (const char* value : {"JA-8089", "JA8089", "a b", "&", ";", "$(x)", "`x`", "a\\b", "'",
                            "%28BA%29", "%", "#", "*", "~", "日本語 表示", "-x", "<>|"}) {
    const std::string address = std::string("vel-test://photos.example/?regsearch=") + value;
    EXPECT_GE(openWithDesktop(address), 33) << value;
    EXPECT_EQ(received(), once(address));
  }
}

TEST_F(Opener, AFileArrivesAsItIs) {
  for (const char* name : {"JA-8089.veltest", "a b.veltest", "$(x)&;.veltest", "写真 表.veltest"}) {
    const fs::path file = folder_.path() / toPath(name);
    test::writeBytes(file, "x");
    EXPECT_GE(openWithDesktop(toUtf8(file)), 33) << name;
    EXPECT_EQ(received(), once(toUtf8(file)));
  }
}

TEST_F(Opener, AFileThatDoesNotExistIsNotOpened) {
  EXPECT_EQ(openWithDesktop((folder_ / "missing.veltest").string()), 2);
  QTest::qWait(100);
  EXPECT_FALSE(fileExists(folder_ / "out"));
}

TEST_F(Opener, WithoutAProgramForItTheResultSaysSo) {
  const fs::path file = folder_.path() / "JA8089.vel-nobody";
  test::writeBytes(file, "x");
  EXPECT_EQ(openWithDesktop(toUtf8(file)), 31);
}

TEST_F(Opener, TheRealDesktopOpensThroughIt) {
  QtDesktop desktop;
  EXPECT_GE(desktop.open("vel-test://home.example/?F=N 1&;$(x)日本"), 33);
  EXPECT_EQ(received(), once("vel-test://home.example/?F=N 1&;$(x)日本"));
}

}  // namespace
}  // namespace vel
