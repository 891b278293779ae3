#include "web/ui/kml_export.h"

#include <QNetworkProxy>
#include <algorithm>
#include <chrono>

#include "core/file.h"
#include "core/helpers.h"
#include "tests/ui/web/http_server.h"
#include "tests/ui/web/web_fixture.h"

#ifndef _WIN32
#include "tests/support/file_size_limit.h"
#endif

namespace vel {
namespace {

using namespace std::chrono_literals;
using test::answer;
using test::waitFor;

constexpr std::string_view kOldKml = "<kml>of another aircraft</kml>\r\n";
constexpr std::string_view kKml = "<?xml version=\"1.0\"?>\r\n<kml>\n\x82\xA0\0</kml>";
constexpr std::size_t kMebibyte = std::size_t{1} << 20;

std::string failure(const std::string& english, const std::string& japanese) {
  return "KML export failed: " + english +
         ". temp.kml was left as it was. KMLの出力に失敗しました。" + japanese +
         "temp.kmlは元のままです。";
}

std::string cutShort() {
  return failure("the connection was closed before the answer was complete",
                 "応答が終わる前に接続が切れました。");
}

class KmlExportTest : public test::WebWindowTest {
 protected:
  void SetUp() override {
    useHost(server_.address());
    writeRawLog("JA8089", test::rawLine("H", "POS") + "\r\n");
    test::writeBytes(kml(), kOldKml);
  }
  void useHost(const std::string& host) const {
    test::writeBytes(base_.folders.program / "services.ini", "conversion=" + host + "\r\n");
  }
  [[nodiscard]] std::filesystem::path kml() const { return base_.folders.program / "temp.kml"; }
  [[nodiscard]] std::string stored() const { return test::readBytes(kml()); }
  [[nodiscard]] bool isOver() const { return !viewer()->kmlExport().isRunning(); }

  void openViewer() {
    makeProgram();
    open("JA8089");
  }
  /// Presses the button and waits for the end of the transfer.
  void exportLog() {
    if (program_ == nullptr) openViewer();
    press("Command1");
    ASSERT_TRUE(waitFor([this] { return isOver(); }));
  }
  void expectFailure(const std::string& message) {
    EXPECT_EQ(desktop_.messages, std::vector<std::string>{message});
    expectOldKml();
  }
  void expectOldKml() const {
    EXPECT_EQ(stored(), kOldKml);
    EXPECT_FALSE(fileExists(base_.folders.program / "temp.kml.part"));
    EXPECT_TRUE(desktop_.opened.empty());
  }
  void expectStored(std::string_view bytes) {
    EXPECT_EQ(desktop_.messages,
              std::vector<std::string>{"Complete download. Do you open with the Google earth?"});
    // Not EXPECT_EQ: nobody wants to read 64 MiB.
    EXPECT_TRUE(stored() == bytes);
    EXPECT_FALSE(fileExists(base_.folders.program / "temp.kml.part"));
  }

  test::HttpServer server_;
};

TEST_F(KmlExportTest, PostsTheEncodedRawTextWithItsOneHeaderLine) {
  writeRawLog("JA8089", "a b Az-_.* @ ~\r\n\x83\x41\xB1\n");
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  ASSERT_EQ(server_.requests.size(), 1u);
  EXPECT_EQ(test::bodyOf(server_.requests[0]), "dat=a+b+Az-_.*+@+%7E%0D%0A%83%41%B1%0D%0A");
  const std::vector<std::string> lines = test::headersOf(server_.requests[0]);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0], "POST /tools/qz2ge/ HTTP/1.1");
  EXPECT_EQ(
      std::count(lines.begin(), lines.end(), "Content-Type: application/x-www-form-urlencoded"), 1);
  // Besides it stands only what the transfer itself needs.
  std::vector<std::string> names;
  for (std::size_t i = 1; i < lines.size(); ++i)
    names.push_back(lines[i].substr(0, lines[i].find(':')));
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names,
            (std::vector<std::string>{"Accept-Encoding", "Accept-Language", "Connection",
                                      "Content-Length", "Content-Type", "Host", "User-Agent"}));
}

TEST_F(KmlExportTest, AnEmptyRawTextPostsDatAlone) {
  writeRawLog("JA8089", "");
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  ASSERT_EQ(server_.requests.size(), 1u);
  EXPECT_EQ(test::bodyOf(server_.requests[0]), "dat=");
  expectStored(kKml);
}

TEST_F(KmlExportTest, LinesThatAreNotShownAreSentToo) {
  writeRawLog("JA8089", "no marker\r\n" + test::rawLine("H", "") + "\r\n");
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  ASSERT_EQ(server_.requests.size(), 1u);
  EXPECT_EQ(test::bodyOf(server_.requests[0]),
            "dat=no+marker%0D%0AH%3E%2B*%3CSYN%3E%3CSYN%3E%3CSOH%3E2.JA8089%3CNAK%3EH13%3CSTX%3E"
            "M01AJL0012%3CETX%3E%3CCRC%3E%3CDEL%3E%0D%0A");
}

TEST_F(KmlExportTest, TheAnswerIsStoredUnchangedAndOpenedOnYes) {
  desktop_.answerYes = true;
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  expectStored(kKml);
  EXPECT_EQ(desktop_.opened, std::vector<std::string>{nativeText(kml())});
}

TEST_F(KmlExportTest, OnNoTheFileStaysAndNothingOpens) {
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  expectStored(kKml);
  EXPECT_TRUE(desktop_.opened.empty());
}

TEST_F(KmlExportTest, AFirstExportMakesTheFile) {
  std::filesystem::remove(kml());
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  expectStored(kKml);
}

TEST_F(KmlExportTest, AnAnswerInManyChunksIsJoinedWithoutSeparators) {
  std::string whole;
  server_.onRequest = [&whole](QTcpSocket& socket) {
    socket.write("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n");
    for (int i = 0; i < 300; ++i) {
      const std::string chunk =
          std::string(static_cast<std::size_t>(1 + i * 7), static_cast<char>('a' + i % 26)) +
          "\r\n";
      socket.write(QByteArray::number(static_cast<int>(chunk.size()), 16) + "\r\n");
      socket.write(chunk.data(), static_cast<qint64>(chunk.size()));
      socket.write("\r\n");
      socket.flush();
      whole += chunk;
    }
    socket.write("0\r\n\r\n");
    socket.disconnectFromHost();
  };
  exportLog();
  EXPECT_GT(whole.size(), 300'000u);
  expectStored(whole);
}

TEST_F(KmlExportTest, AnAnswerThatArrivesInPiecesOverTimeIsJoined) {
  openViewer();
  viewer()->kmlExport().setSilenceLimit(400ms);
  server_.onRequest = [this](QTcpSocket& socket) {
    socket.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n");
    // Longer than the limit in all, but never silent for so long.
    for (int i = 0; i < 10; ++i) {
      QTimer::singleShot(100 * (i + 1), &socket,
                         [&socket, i] { socket.write(QByteArray::number(i)); });
    }
  };
  exportLog();
  expectStored("0123456789");
}

TEST_F(KmlExportTest, AnEmptyAnswerIsStoredAsAnEmptyFile) {
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", ""); };
  exportLog();
  expectStored("");
}

class ErrorPageTest : public KmlExportTest, public testing::WithParamInterface<const char*> {};

TEST_P(ErrorPageTest, IsACompletedResponseAndIsStored) {
  server_.onRequest = [](QTcpSocket& socket) {
    answer(socket, GetParam(), "<html>Sorry</html>", "Content-Type: text/html\r\n");
  };
  exportLog();
  expectStored("<html>Sorry</html>");
}

INSTANTIATE_TEST_SUITE_P(Statuses, ErrorPageTest,
                         testing::Values("400 Bad Request", "401 Unauthorized", "403 Forbidden",
                                         "404 Not Found", "405 Method Not Allowed",
                                         "413 Payload Too Large", "418 Teapot",
                                         "500 Internal Server Error", "501 Not Implemented",
                                         "503 Service Unavailable", "504 Gateway Timeout"));

TEST_F(KmlExportTest, AConnectionCutInTheMiddleLeavesTheOldFile) {
  server_.onRequest = [](QTcpSocket& socket) {
    socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n<kml>only this");
    socket.disconnectFromHost();
  };
  exportLog();
  expectFailure(cutShort());
}

TEST_F(KmlExportTest, AConnectionCutBetweenChunksLeavesTheOldFile) {
  server_.onRequest = [](QTcpSocket& socket) {
    socket.write("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n<kml>\r\n");
    socket.disconnectFromHost();
  };
  exportLog();
  expectFailure(cutShort());
}

TEST_F(KmlExportTest, AnErrorPageCutInTheMiddleLeavesTheOldFile) {
  server_.onRequest = [](QTcpSocket& socket) {
    socket.write("HTTP/1.1 500 Internal Server Error\r\nContent-Length: 1000\r\n\r\n<html>");
    socket.disconnectFromHost();
  };
  exportLog();
  expectFailure(cutShort());
}

TEST_F(KmlExportTest, AConnectionClosedWithoutAnAnswerLeavesTheOldFile) {
  server_.onRequest = [](QTcpSocket& socket) { socket.disconnectFromHost(); };
  exportLog();
  expectFailure(cutShort());
}

TEST_F(KmlExportTest, AConnectionResetLeavesTheOldFile) {
  server_.onRequest = [](QTcpSocket& socket) {
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n<kml>");
    socket.flush();
    socket.abort();
  };
  exportLog();
  expectFailure(cutShort());
}

TEST_F(KmlExportTest, AServerThatNeverAnswersIsGivenUp) {
  openViewer();
  viewer()->kmlExport().setSilenceLimit(300ms);
  exportLog();
  expectFailure(failure("the conversion service was silent for 0.3 seconds",
                        "変換サービスから0.3秒間応答がありませんでした。"));
  EXPECT_EQ(server_.requests.size(), 1u);
  EXPECT_TRUE(waitFor([this] { return server_.disconnected == 1; }));
}

TEST_F(KmlExportTest, AServerThatFallsSilentInTheMiddleIsGivenUp) {
  openViewer();
  viewer()->kmlExport().setSilenceLimit(300ms);
  server_.onRequest = [](QTcpSocket& socket) {
    socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n<kml>");
  };
  exportLog();
  expectFailure(failure("the conversion service was silent for 0.3 seconds",
                        "変換サービスから0.3秒間応答がありませんでした。"));
}

TEST_F(KmlExportTest, ARefusedConnectionLeavesTheOldFile) {
  const std::string host = server_.address();
  server_.close();
  exportLog();
  expectFailure(
      failure("the conversion service at " + host + " could not be reached (Connection refused)",
              "変換サービス " + host + " に接続できませんでした。"));
}

TEST_F(KmlExportTest, AnAnswerOf65MebibytesIsRefusedByItsLength) {
  server_.onRequest = [](QTcpSocket& socket) {
    socket.write("HTTP/1.1 200 OK\r\nContent-Length: 68157440\r\n\r\n<kml>");
  };
  exportLog();
  expectFailure(failure("the answer is larger than 64 MiB", "応答が64MiBを超えています。"));
}

TEST_F(KmlExportTest, AnAnswerOf65MebibytesWithoutALengthIsRefusedWhileItArrives) {
  server_.onRequest = [](QTcpSocket& socket) {
    socket.write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
    socket.write(QByteArray(65 * static_cast<qsizetype>(kMebibyte), 'x'));
    socket.disconnectFromHost();
  };
  exportLog();
  expectFailure(failure("the answer is larger than 64 MiB", "応答が64MiBを超えています。"));
}

TEST_F(KmlExportTest, AnAnswerOf64MebibytesIsStored) {
  const std::string most(64 * kMebibyte, 'x');
  server_.onRequest = [&most](QTcpSocket& socket) { answer(socket, "200 OK", most); };
  exportLog();
  expectStored(most);
}

TEST_F(KmlExportTest, OneByteMoreIsRefused) {
  server_.onRequest = [](QTcpSocket& socket) {
    socket.write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
    socket.write(QByteArray(64 * static_cast<qsizetype>(kMebibyte) + 1, 'x'));
    socket.disconnectFromHost();
  };
  exportLog();
  expectFailure(failure("the answer is larger than 64 MiB", "応答が64MiBを超えています。"));
}

TEST_F(KmlExportTest, ASecondPressWhileOneRunsDoesNothing) {
  openViewer();
  press("Command1");
  ASSERT_TRUE(waitFor([this] { return server_.requests.size() == 1; }));
  press("Command1");
  QTest::keyClick(control<QPushButton>("Command1"), Qt::Key_Space);
  QTest::qWait(200);
  EXPECT_EQ(server_.requests.size(), 1u);
  EXPECT_TRUE(viewer()->kmlExport().isRunning());
  EXPECT_TRUE(desktop_.messages.empty());
}

TEST_F(KmlExportTest, AProgressBarAndCancelShowOnlyWhileOneRuns) {
  openViewer();
  EXPECT_FALSE(control<QProgressBar>("ProgressBar1")->isVisible());
  EXPECT_FALSE(control<QPushButton>("Command3")->isVisible());
  QTcpSocket* waiting = nullptr;
  server_.onRequest = [&waiting](QTcpSocket& socket) {
    waiting = &socket;
    socket.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n01234");
  };
  press("Command1");
  EXPECT_TRUE(control<QProgressBar>("ProgressBar1")->isVisible());
  EXPECT_TRUE(control<QPushButton>("Command3")->isVisible());
  EXPECT_TRUE(waitFor([this] { return control<QProgressBar>("ProgressBar1")->value() == 500; }));
  ASSERT_NE(waiting, nullptr);
  waiting->write("56789");
  ASSERT_TRUE(waitFor([this] { return isOver(); }));
  EXPECT_FALSE(control<QProgressBar>("ProgressBar1")->isVisible());
  EXPECT_FALSE(control<QPushButton>("Command3")->isVisible());
  expectStored("0123456789");
}

TEST_F(KmlExportTest, CancelGivesUpWithoutAWordAndTheNextExportWorks) {
  openViewer();
  press("Command1");
  ASSERT_TRUE(waitFor([this] { return server_.requests.size() == 1; }));
  press("Command3");
  EXPECT_TRUE(isOver());
  EXPECT_TRUE(waitFor([this] { return server_.disconnected == 1; }));
  EXPECT_TRUE(desktop_.messages.empty());
  expectOldKml();

  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  expectStored(kKml);
}

TEST_F(KmlExportTest, ClosingTheViewerCancels) {
  openViewer();
  press("Command1");
  ASSERT_TRUE(waitFor([this] { return server_.requests.size() == 1; }));
  press("Command2");
  EXPECT_TRUE(isOver());
  EXPECT_TRUE(waitFor([this] { return server_.disconnected == 1; }));
  EXPECT_TRUE(desktop_.messages.empty());
  expectOldKml();
}

TEST_F(KmlExportTest, EndingTheProgramInTheMiddleIsQuiet) {
  openViewer();
  press("Command1");
  ASSERT_TRUE(waitFor([this] { return server_.requests.size() == 1; }));
  web_.reset();
  EXPECT_TRUE(waitFor([this] { return server_.disconnected == 1; }));
  EXPECT_TRUE(desktop_.messages.empty());
  expectOldKml();
}

TEST_F(KmlExportTest, AnotherLogThatIsOpenedMeanwhileDoesNotChangeWhatIsSent) {
  writeRawLog("JA1", "another\r\n");
  QTcpSocket* waiting = nullptr;
  server_.onRequest = [&waiting](QTcpSocket& socket) { waiting = &socket; };
  openViewer();
  press("Command1");
  open("JA1");
  ASSERT_TRUE(waitFor([&waiting] { return waiting != nullptr; }));
  answer(*waiting, "200 OK", kKml);
  ASSERT_TRUE(waitFor([this] { return isOver(); }));
  EXPECT_NE(test::bodyOf(server_.requests[0]).find("JL0012POS"), std::string::npos);
  expectStored(kKml);
}

TEST_F(KmlExportTest, ALoopbackHostIsReachedWithoutTheProxy) {
  const QNetworkProxy before = QNetworkProxy::applicationProxy();
  QNetworkProxy::setApplicationProxy(
      QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), 1));
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  QNetworkProxy::setApplicationProxy(before);
  expectStored(kKml);
}

// Only POSIX has a limit that makes a disk full for one program.
#ifndef _WIN32
TEST_F(KmlExportTest, AFullDiskLeavesTheOldFile) {
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  {
    const test::FileSizeLimit full(1);
    exportLog();
  }
  expectFailure(failure("the file could not be written (ERROR #61)",
                        "ファイルに書き込めませんでした(ERROR #61)。"));
}
#endif

TEST_F(KmlExportTest, AFileThatCannotBeMadeIsReported) {
  std::filesystem::create_directories(base_.folders.program / "temp.kml.part" / "in the way");
  server_.onRequest = [](QTcpSocket& socket) { answer(socket, "200 OK", kKml); };
  exportLog();
  expectFailure(failure("the file could not be written (ERROR #70)",
                        "ファイルに書き込めませんでした(ERROR #70)。"));
}

TEST_F(KmlExportTest, AHostThatIsNoWebAddressIsReported) {
  useHost("file://etc");
  exportLog();
  expectFailure(failure("the conversion host in services.ini is not a web address: file://etc",
                        "services.iniの変換ホストがWebアドレスではありません。"));
}

TEST_F(KmlExportTest, AMissingCompanionServiceIsReported) {
  useHost("");
  exportLog();
  expectFailure(failure("the conversion service could not be started",
                        "変換サービスを起動できませんでした。"));
}

TEST_F(KmlExportTest, ACompanionServiceThatSaysSomethingElseIsReported) {
  useHost("");
  qputenv("VEL_STAND_IN", "other");
  makeProgram(QStringLiteral(VEL_STAND_IN_SERVICE));
  open("JA8089");
  exportLog();
  expectFailure(failure("the conversion service could not be started",
                        "変換サービスを起動できませんでした。"));
}

TEST_F(KmlExportTest, TheWindowStaysAliveWhileAServiceDoesNotStart) {
  useHost("");
  qputenv("VEL_STAND_IN", "silent");
  makeProgram(QStringLiteral(VEL_STAND_IN_SERVICE));
  open("JA8089");
  int ticks = 0;
  QTimer ticking;
  QObject::connect(&ticking, &QTimer::timeout, [&ticks] { ++ticks; });
  ticking.start(50);
  exportLog();
  EXPECT_GT(ticks, 50);
  expectFailure(failure("the conversion service could not be started",
                        "変換サービスを起動できませんでした。"));
}

}  // namespace
}  // namespace vel
