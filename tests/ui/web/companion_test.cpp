#include "web/ui/companion.h"

#include <gmock/gmock.h>

#include "core/file.h"
#include "tests/ui/web/running_services.h"
#include "tests/ui/web/web_fixture.h"

namespace vel {
namespace {

using test::waitFor;
using testing::HasSubstr;

QString velweb() { return QStringLiteral(VEL_VELWEB); }

class CompanionTest : public test::WebWindowTest {
 protected:
  /// The process numbers of the velwebs that serve this test's folder.
  [[nodiscard]] std::vector<long long> services() const {
    return test::runningServices(base_.folders.program.string());
  }
  [[nodiscard]] bool serviceEnds() const {
    return waitFor([this] { return services().empty(); });
  }
  [[nodiscard]] std::string exportedKml() {
    desktop_.messages.clear();
    press("Command1");
    EXPECT_TRUE(waitFor([this] { return !desktop_.messages.empty(); }));
    EXPECT_EQ(desktop_.messages,
              std::vector<std::string>{"Complete download. Do you open with the Google earth?"});
    return test::readBytes(base_.folders.program / "temp.kml");
  }
  [[nodiscard]] std::string askedHomepage() {
    std::string answered;
    web_->site().requestHomepage(viewer(), [&](const std::string& host) { answered = host; });
    EXPECT_TRUE(waitFor([&answered] { return !answered.empty(); }));
    return answered;
  }
  void openLog() {
    writeRawLog(
        "JA8089",
        test::cp932Lines(
            {"2026/11/20 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA8089<NAK>200<STX>M00AJL0012"
             "POSN38160W077075,,211733,360,OTT<ETX><CRC><DEL>",
             "2026/11/20 01:05:12 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA8089<NAK>H11<STX>M01AJL0012"
             "臨時便<CR><VF>NO POSITION<ETX><CRC><DEL>",
             "2026/11/20 01:10:13 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA8089<NAK>162<STX>M02AJL0012"
             "N 44.203,W 86.546,31965,6, 290<ETX><CRC><DEL>"}));
    makeProgram(velweb());
    open("JA8089");
  }
};

TEST_F(CompanionTest, ARawLogBecomesAKmlFileWithoutAnyHostNamed) {
  openLog();
  EXPECT_TRUE(services().empty());
  const std::string kml = exportedKml();
  EXPECT_THAT(kml, testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kml "));
  EXPECT_THAT(kml, HasSubstr("JA8089"));
  EXPECT_THAT(kml, HasSubstr("JL0012"));
  EXPECT_THAT(kml, HasSubstr("2026-11-20T01:00:11"));
  EXPECT_THAT(kml, HasSubstr("<coordinates>-77.125000,38.266667"));
  EXPECT_THAT(kml, HasSubstr("<coordinates>-86.546000,44.203000"));
  EXPECT_THAT(kml, HasSubstr("<LineString>"));
}

TEST_F(CompanionTest, OneServiceServesEveryExport) {
  openLog();
  const std::string first = exportedKml();
  const std::vector<long long> started = services();
  ASSERT_EQ(started.size(), 1u);
  EXPECT_EQ(exportedKml(), first);
  EXPECT_EQ(services(), started);
}

TEST_F(CompanionTest, AServiceThatHasEndedIsStartedAgain) {
  openLog();
  const std::string first = exportedKml();
  const std::vector<long long> started = services();
  ASSERT_EQ(started.size(), 1u);
  ASSERT_TRUE(test::killProcess(started[0]));
  ASSERT_TRUE(serviceEnds());
  // The program knows of it as soon as it has collected the process.
  ASSERT_TRUE(
      waitFor([&] { return !std::filesystem::exists("/proc/" + std::to_string(started[0])); }));
  EXPECT_EQ(exportedKml(), first);
  EXPECT_EQ(services().size(), 1u);
}

TEST_F(CompanionTest, TheFlightPageAndTheExportShareOneService) {
  openLog();
  const std::string homepage = askedHomepage();
  EXPECT_THAT(homepage, testing::StartsWith("http://127.0.0.1:"));
  EXPECT_FALSE(exportedKml().empty());
  EXPECT_EQ(askedHomepage(), homepage);
  EXPECT_EQ(services().size(), 1u);
}

TEST_F(CompanionTest, TheServiceEndsWithTheWindows) {
  openLog();
  EXPECT_FALSE(exportedKml().empty());
  ASSERT_EQ(services().size(), 1u);
  web_.reset();
  EXPECT_TRUE(services().empty());
}

class HolderTest : public CompanionTest {
 protected:
  /// Starts a program that holds the service, and waits for the address.
  void start() {
    holder_.start(QStringLiteral(VEL_COMPANION_HOLDER),
                  {velweb(), QString::fromStdString(base_.folders.program.string())});
    ASSERT_TRUE(waitFor([this] { return holder_.canReadLine(); }));
    EXPECT_THAT(holder_.readLine().toStdString(), testing::StartsWith("http://127.0.0.1:"));
    ASSERT_EQ(services().size(), 1u);
  }

  QProcess holder_;
};

TEST_F(HolderTest, TheServiceEndsWithTheProgram) {
  start();
  holder_.write("\n");
  ASSERT_TRUE(waitFor([this] { return holder_.state() == QProcess::NotRunning; }));
  EXPECT_EQ(holder_.exitCode(), 0);
  EXPECT_TRUE(services().empty());
}

TEST_F(HolderTest, TheServiceEndsAlsoWhenTheProgramIsKilled) {
  start();
  ASSERT_TRUE(test::killProcess(holder_.processId()));
  ASSERT_TRUE(waitFor([this] { return holder_.state() == QProcess::NotRunning; }));
  EXPECT_EQ(holder_.exitStatus(), QProcess::CrashExit);
  EXPECT_TRUE(serviceEnds());
}

}  // namespace
}  // namespace vel
