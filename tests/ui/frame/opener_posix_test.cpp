#include <QTest>
#include <filesystem>

#include <gtest/gtest.h>

#include "core/file.h"
#include "core/ui/qt_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

/// A stand-in for the desktop's opening command, first on the search path,
/// that writes down how many arguments it got, and the first one.
class Opener : public testing::Test {
 protected:
  void SetUp() override {
    path_ = qgetenv("PATH");
    const std::string out = (folder_ / "out").string();
    test::writeBytes(folder_ / "xdg-open", "#!/bin/sh\nprintf '%s\\n%s' \"$#\" \"$1\" > '" + out +
                                               ".part'\nmv '" + out + ".part' '" + out + "'\n");
    fs::permissions(folder_ / "xdg-open", fs::perms::owner_all);
    qputenv("PATH", QByteArray::fromStdString(folder_.path().string()) + ':' + path_);
  }
  void TearDown() override { qputenv("PATH", path_); }

  /// What the command got: the number of arguments, a line end, the first one.
  [[nodiscard]] std::string received() const {
    const fs::path out = folder_ / "out";
    if (!QTest::qWaitFor([&] { return fileExists(out); })) return "nothing";
    const std::string bytes = test::readBytes(out);
    fs::remove(out);
    return bytes;
  }

  test::TemporaryFolder folder_;
  QByteArray path_;
};

TEST_F(Opener, AnAddressArrivesAsOneArgumentByteForByte) {
  for (const char* value :
       {"JA-8089",  "JA8089", "a b", "&", ";", "$(x)",        "`x`", "a\\b", "'", "\"",
        "%28BA%29", "%",      "#",   "*", "~", "日本語 表示", "-x",  "a\tb", "",  "<>|"}) {
    const std::string address = std::string("https://photos.example/search?regsearch=") + value;
    EXPECT_GE(openWithDesktop(address), 33) << value;
    EXPECT_EQ(received(), "1\n" + address);
  }
}

TEST_F(Opener, AFileArrivesAsOneArgumentByteForByte) {
  for (const char* name : {"JA-8089.jpg", "a b.jpg", "$(x)&;.jpg", "写真 表.jpg", "'\".jpg"}) {
    const fs::path file = folder_.path() / toPath(name);
    test::writeBytes(file, "x");
    EXPECT_GE(openWithDesktop(toUtf8(file)), 33) << name;
    EXPECT_EQ(received(), "1\n" + toUtf8(file));
  }
}

TEST_F(Opener, AFileThatDoesNotExistIsNotOpened) {
  EXPECT_EQ(openWithDesktop((folder_ / "missing.jpg").string()), 2);
  // What comes next is the first that arrives.
  const fs::path present = folder_.path() / "present.jpg";
  test::writeBytes(present, "x");
  EXPECT_GE(openWithDesktop(toUtf8(present)), 33);
  EXPECT_EQ(received(), "1\n" + toUtf8(present));
}

TEST_F(Opener, WithoutAnOpeningCommandTheResultSaysSo) {
  qputenv("PATH", "/nonexistent");
  EXPECT_EQ(openWithDesktop("https://photos.example/"), 31);
}

TEST_F(Opener, TheRealDesktopOpensThroughIt) {
  QtDesktop desktop;
  EXPECT_GE(desktop.open("https://home.example/?F=N 1&;$(x)日本"), 33);
  EXPECT_EQ(received(), "1\nhttps://home.example/?F=N 1&;$(x)日本");
}

}  // namespace
}  // namespace vel
