#include <algorithm>
#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>

#include "core/file.h"
#include "tests/ui/frame/the_program.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using test::kLongEnough;
using testing::HasSubstr;

class TheProgramOnPosix : public test::TheProgram {
 protected:
  /// True once the program handles that signal.
  [[nodiscard]] bool handles(int signal) const {
    QFile status(QStringLiteral("/proc/%1/status").arg(process_.processId()));
    if (!status.open(QIODevice::ReadOnly)) return false;
    for (const QByteArray& line : status.readAll().split('\n')) {
      if (!line.startsWith("SigCgt:")) continue;
      return (line.mid(7).trimmed().toULongLong(nullptr, 16) >> (signal - 1) & 1U) != 0;
    }
    return false;
  }
};

TEST_F(TheProgramOnPosix, SaysWhatIsMissingWhereTheSystemConvertsNoText) {
  // A program with sanitizers wants to be the first to be loaded.
  environment_.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("verify_asan_link_order=0"));
  environment_.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(VEL_NO_CONVERTER));
  start({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 1);
  EXPECT_THAT(errors_, HasSubstr("CP932"));
}

TEST_F(TheProgramOnPosix, SavesItsSettingsWhenTheSystemEndsIt) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    fs::remove(settings());
    start({});
    ASSERT_TRUE(QTest::qWaitFor([&] { return handles(signal); }, kLongEnough));
    ASSERT_EQ(kill(static_cast<pid_t>(process_.processId()), signal), 0);
    finish();
    EXPECT_EQ(process_.exitCode(), 0) << signal;
    const std::string saved = fileExists(settings()) ? test::readBytes(settings()) : "";
    EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 18) << signal;
  }
}

TEST_F(TheProgramOnPosix, EndsBehindAMessageThatNobodyAnswers) {
  base_.writeLog("20260102_list.csv", {"five,fields,only,2,3"});
  start({});
  ASSERT_TRUE(QTest::qWaitFor([&] { return handles(SIGTERM); }, kLongEnough));
  // The message is shown a moment later.
  QTest::qWait(1500);
  ASSERT_EQ(kill(static_cast<pid_t>(process_.processId()), SIGTERM), 0);
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_TRUE(fileExists(settings()));
}

// The program as it is installed: no station lies beside it.
class TheInstalledProgram : public test::TheProgram {
 protected:
  void SetUp() override {
    test::TheProgram::SetUp();
    environment_.insert(QStringLiteral("XDG_CONFIG_HOME"),
                        QString::fromStdString((base_.folders.base / "config").string()));
  }
  void startAlone(const QStringList& options) {
    process_.setProcessEnvironment(environment_);
    process_.start(QStringLiteral(VEL_PROGRAM), options);
    ASSERT_TRUE(process_.waitForStarted());
  }
  void remember(const fs::path& folder) {
    fs::create_directories(base_.folders.base / "config/vel");
    test::writeBytes(base_.folders.base / "config/vel/station", folder.string() + "\n");
  }
};

TEST_F(TheInstalledProgram, OpensTheStationThatItsUserChoseLast) {
  remember(base_.folders.program);
  startAlone({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 0) << errors_;
  EXPECT_TRUE(QFile::exists(picture()));
}

TEST_F(TheInstalledProgram, SaysThatNoStationIsKnownWhereNobodyCanBeAsked) {
  remember(base_.folders.base / "gone" / "vel");
  startAlone({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 1);
  EXPECT_FALSE(QFile::exists(picture()));
  EXPECT_THAT(errors_, HasSubstr("No station is known"));
}

TEST_F(TheInstalledProgram, MakesASampleStationThatItThenOpens) {
  const fs::path sample = base_.folders.base / "sample";
  QProcess maker;
  maker.start(QStringLiteral(VEL_SAMPLE_MAKER), {QString::fromStdString(sample.string())});
  ASSERT_TRUE(maker.waitForFinished(kLongEnough));
  ASSERT_EQ(maker.exitCode(), 0) << maker.readAllStandardError().toStdString();
  remember(sample / "vel");
  startAlone({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 0) << errors_;
  EXPECT_TRUE(QFile::exists(picture()));
}

}  // namespace
}  // namespace vel
