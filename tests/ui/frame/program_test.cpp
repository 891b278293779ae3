// The program itself, started as a user or the system starts and ends it.

#include <QFile>
#include <QProcess>
#include <QTest>
#include <algorithm>
#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>

#include "core/file.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

constexpr int kLongEnough = 60'000;

class TheProgram : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* table :
         {"aircraft.csv", "FLIGHT.csv", "airport.csv", "letter.csv", "ICAO24.csv"}) {
      base_.writeData(table, {});
    }
    base_.writeLog("20260102_list.csv", {"A1,O,R,D,E,Q,M,01:00:00"});
    base_.writeLog("202601020000_HFDL_FMT.log", {});
    environment_ = QProcessEnvironment::systemEnvironment();
  }

  void start(QStringList options) {
    options += {QStringLiteral("--program-folder"),
                QString::fromStdString(base_.folders.program.string())};
    process_.setProcessEnvironment(environment_);
    process_.start(QStringLiteral(VEL_PROGRAM), options);
    ASSERT_TRUE(process_.waitForStarted());
  }
  void finish() {
    ASSERT_TRUE(process_.waitForFinished(kLongEnough));
    EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
    output_ = process_.readAllStandardOutput().toStdString();
    errors_ = process_.readAllStandardError().toStdString();
  }
  void withoutDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
      environment_.remove(QString::fromLatin1(name));
    }
  }
  [[nodiscard]] QString picture() const {
    return QString::fromStdString((base_.folders.base / "window.png").string());
  }
  [[nodiscard]] fs::path settings() const { return base_.folders.program / "vel.env"; }

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

  test::TemporaryBase base_;
  QProcessEnvironment environment_;
  QProcess process_;
  std::string output_;
  std::string errors_;
};

TEST_F(TheProgram, TellsItsOptionsAndVersionWithoutADisplay) {
  withoutDisplay();
  start({QStringLiteral("--help")});
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_THAT(output_, AllOf(HasSubstr("--program-folder DIR"), HasSubstr("--screenshot FILE"),
                             HasSubstr("--version")));
  start({QStringLiteral("--version")});
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_EQ(output_, "vel 1.0.0\n");
}

TEST_F(TheProgram, RefusesAnUnknownOptionWithoutADisplay) {
  withoutDisplay();
  start({QStringLiteral("--nonsense")});
  finish();
  EXPECT_NE(process_.exitCode(), 0);
  EXPECT_THAT(errors_, HasSubstr("--nonsense"));
}

TEST_F(TheProgram, SavesAPictureThoughThereIsAMessage) {
  base_.writeLog("20260102_list.csv", {"A1,O,R,D,E,Q,M,01:00:00", "five,fields,only,2,3"});
  start({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 0);
  EXPECT_TRUE(QFile::exists(picture()));
  EXPECT_THAT(errors_, HasSubstr("Found 1 lines of incorrect data.  不正な行が 1行 ありました。"));
}

TEST_F(TheProgram, EndsWithAMessageWhenNoPictureCanBeMade) {
  fs::remove(base_.folders.data / "airport.csv");
  start({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 1);
  EXPECT_FALSE(QFile::exists(picture()));
  EXPECT_THAT(errors_, HasSubstr("Not found data\\airport.csv"));
}

TEST_F(TheProgram, SaysWhatIsMissingWhereTheSystemConvertsNoText) {
  // A program with sanitizers wants to be the first to be loaded.
  environment_.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("verify_asan_link_order=0"));
  environment_.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(VEL_NO_CONVERTER));
  start({QStringLiteral("--screenshot"), picture()});
  finish();
  EXPECT_EQ(process_.exitCode(), 1);
  EXPECT_THAT(errors_, HasSubstr("CP932"));
}

TEST_F(TheProgram, SavesItsSettingsWhenTheSystemEndsIt) {
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

TEST_F(TheProgram, EndsBehindAMessageThatNobodyAnswers) {
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
class TheInstalledProgram : public TheProgram {
 protected:
  void SetUp() override {
    TheProgram::SetUp();
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
