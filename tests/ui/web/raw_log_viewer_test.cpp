#include "web/ui/raw_log_viewer.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QRawFont>
#include <QScrollBar>

#include <gmock/gmock.h>

#include "app/ui/browser_window.h"
#include "core/helpers.h"
#include "core/ui/twips.h"
#include "tests/support/system_files.h"
#include "tests/ui/support/settled_places.h"
#include "tests/ui/web/web_fixture.h"

namespace vel {
namespace {

using test::rawLine;
using test::shownBlock;
using test::waitFor;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kNotFound = "Not found log file.";
constexpr const char* kNote =
    "現在RAW形式のログファイルにのみ対応しています。"
    "RAW形式のファイルをMSG形式に変換して表示しています。";

class RawLogViewerTest : public test::WebWindowTest {
 protected:
  void SetUp() override {
    makeProgram();
    other_.resize(200, 100);
  }
  /// Brings another window to the front, then the viewer again.
  void leaveAndComeBack() {
    other_.show();
    other_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other_));
    comeBack();
  }
  void comeBack() {
    viewer()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(viewer()));
    letWindowRead();
  }
  void append(const std::string& name, const std::string& line) const {
    const std::string before = test::readBytes(base_.folders.eachLogs / (name + ".log"));
    writeRawLog(name, before + line + "\r\n");
  }
  [[nodiscard]] std::string caption() const { return viewer()->windowTitle().toStdString(); }
  [[nodiscard]] std::string selected() const {
    return control<FindableText>("Text1")->textCursor().selectedText().toStdString();
  }

  QWidget other_;
};

TEST_F(RawLogViewerTest, ShowsPathAndMessages) {
  writeRawLog("JA8089", rawLine("HDR", "POS") + "\r\n" + rawLine("HDR2", "A<CR><VF>B") + "\r\n");
  open("JA8089");
  EXPECT_EQ(caption(), "Log browser - " + nativeText(base_.folders.eachLogs / "JA8089.log"));
  EXPECT_EQ(text(), shownBlock("HDR", "POS") + shownBlock("HDR2", "A\nB"));
  EXPECT_EQ(viewer()->rawText(),
            rawLine("HDR", "POS") + "\r\n" + rawLine("HDR2", "A<CR><VF>B") + "\r\n");
  EXPECT_TRUE(desktop_.messages.empty());
}

TEST_F(RawLogViewerTest, AMultiBlockPartIsCutAtEtb) {
  writeRawLog("JA8089", rawLine("HDR", "PART ONE", "<ETB>") + "\r\n");
  open("JA8089");
  EXPECT_EQ(text(), shownBlock("HDR", "PART ONE"));
}

TEST_F(RawLogViewerTest, AnEmptyBodyAndALineWithoutTheMarkerAreNotShownButStayInTheRawText) {
  const std::string bytes =
      rawLine("HDR", "") + "\r\nno marker\r\n" + rawLine("HDR", "SHOWN<LF>") + "\r\n";
  writeRawLog("JA8089", bytes);
  open("JA8089");
  EXPECT_EQ(text(), shownBlock("HDR", "SHOWN<LF>"));
  EXPECT_EQ(viewer()->rawText(), bytes);
}

TEST_F(RawLogViewerTest, TwentyThousandLinesShowTheFirstTenThousandAndOne) {
  std::string bytes;
  for (int i = 1; i <= 20'000; ++i) bytes += rawLine("H" + std::to_string(i), "X") + "\r\n";
  writeRawLog("JA8089", bytes);
  open("JA8089");
  EXPECT_THAT(text(), testing::EndsWith(shownBlock("H10001", "X")));
  EXPECT_EQ(viewer()->rawText(), bytes.substr(0, bytes.find("H10002>")));
  auto* label = control<QLabel>("Label1");
  EXPECT_TRUE(label->isVisible());
  EXPECT_EQ(label->text().toStdString(), "First 10,001 lines only 先頭10,001行のみ");
}

TEST_F(RawLogViewerTest, AWholeLogSaysNothingOfLeftOutLines) {
  writeRawLog("JA8089", rawLine("HDR", "POS") + "\r\n");
  open("JA8089");
  EXPECT_FALSE(control<QLabel>("Label1")->isVisible());
}

TEST_F(RawLogViewerTest, AFileOfAnotherFormGivesTheNote) {
  writeRawLog("JA8089", "[MSG] JA8089 POS\r\n");
  open("JA8089");
  EXPECT_EQ(text(), kNote);
}

TEST_F(RawLogViewerTest, ALogWithoutAMessageSaysSoInBothLanguages) {
  writeRawLog("JA8089", "");
  open("JA8089");
  auto* label = control<QLabel>("Label1");
  EXPECT_TRUE(label->isVisible());
  EXPECT_EQ(label->text().toStdString(), "No message yet まだメッセージがありません");
  writeRawLog("JA8089", rawLine("HDR", "POS") + "\r\n");
  open("JA8089");
  EXPECT_FALSE(label->isVisible());
}

TEST_F(RawLogViewerTest, AMissingFileIsSaidAndNoWindowOpens) {
  web_->rawLogs().open("JA8089");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotFound));
  EXPECT_FALSE(viewer()->isVisible());
  EXPECT_EQ(caption(), "Log browser - " + nativeText(base_.folders.eachLogs / "JA8089.log"));
}

TEST_F(RawLogViewerTest, AMissingFileIsSaidWithItsOwnCaptionOverAnEmptyText) {
  writeRawLog("JA8089", rawLine("HDR", "POS") + "\r\n");
  const std::string folder = nativeText(base_.folders.eachLogs / "");
  for (const char* name : {"JA1", "../secret"}) {
    open("JA8089");
    ASSERT_NE(text(), "");
    std::string captionThen;
    std::string textThen = "none";
    bool visibleThen = false;
    desktop_.onMessage = [&](const std::string&) {
      captionThen = caption();
      textThen = text();
      visibleThen = viewer()->isVisible();
    };
    web_->rawLogs().open(name);
    EXPECT_EQ(captionThen, "Log browser - " + folder + name + ".log");
    EXPECT_EQ(textThen, "");
    EXPECT_TRUE(visibleThen);
    EXPECT_FALSE(viewer()->isVisible());
  }
}

TEST_F(RawLogViewerTest, AHugeLogLeavesTheWindowAliveWhileItLoads) {
  std::string body;
  for (int i = 0; i < 100'000; ++i) body += "<CR><VF>";
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += rawLine("HDR", body + "END") + "\r\n";
  writeRawLog("JA8089", bytes);
  int ticks = 0;
  QTimer ticking;
  QObject::connect(&ticking, &QTimer::timeout, [&ticks] { ++ticks; });
  ticking.start(0);
  web_->rawLogs().open("JA8089");
  EXPECT_TRUE(viewer()->isVisible());
  EXPECT_EQ(text(), "");
  letWindowRead();
  EXPECT_THAT(text(), testing::EndsWith("END\n\n"));
  EXPECT_GT(ticks, 40);
}

TEST_F(RawLogViewerTest, AnotherLogOpenedInTheMiddleIsTheOneThatIsShown) {
  std::string bytes;
  for (int i = 0; i < 10'000; ++i) bytes += rawLine("HDR", std::to_string(i)) + "\r\n";
  writeRawLog("JA8089", bytes);
  writeRawLog("JA1", rawLine("HDR", "TWO") + "\r\n");
  web_->rawLogs().open("JA8089");
  QCoreApplication::processEvents();
  open("JA1");
  EXPECT_EQ(text(), shownBlock("HDR", "TWO"));
  EXPECT_EQ(viewer()->rawText(), rawLine("HDR", "TWO") + "\r\n");
}

TEST_F(RawLogViewerTest, ClosedInTheMiddleItShowsTheLogWholeTheNextTime) {
  std::string bytes;
  for (int i = 0; i < 10'000; ++i) bytes += rawLine("HDR", std::to_string(i)) + "\r\n";
  writeRawLog("JA8089", bytes);
  web_->rawLogs().open("JA8089");
  QCoreApplication::processEvents();
  viewer()->close();
  EXPECT_TRUE(program_->context().jobs.isIdle());
  open("JA8089");
  EXPECT_THAT(text(), testing::StartsWith(shownBlock("HDR", "0")));
  EXPECT_THAT(text(), testing::EndsWith(shownBlock("HDR", "9999")));
}

TEST_F(RawLogViewerTest, AMissingFileClosesTheWindowThatShowsAnotherLog) {
  writeRawLog("JA8089", rawLine("HDR", "POS") + "\r\n");
  open("JA8089");
  web_->rawLogs().open("JA1");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotFound));
  EXPECT_FALSE(viewer()->isVisible());
  EXPECT_EQ(text(), "");
}

TEST_F(RawLogViewerTest, NamesThatLeaveTheFolderHaveNoRawLog) {
  test::writeBytes(base_.folders.logs / "secret.log", rawLine("HDR", "POS") + "\r\n");
  for (const char* name : {"../secret", "..\\secret", "C:secret", "/secret", "a/../../secret", "..",
                           "JA\n8089", "JA\x01", "JA\x7F"}) {
    desktop_.messages.clear();
    web_->rawLogs().open(name);
    EXPECT_THAT(desktop_.messages, ElementsAre(kNotFound)) << name;
    EXPECT_TRUE(viewer() == nullptr || !viewer()->isVisible()) << name;
  }
}

TEST_F(RawLogViewerTest, TheFileIsFoundWhateverItsLetterCase) {
  test::writeBytes(base_.folders.eachLogs / "ja8089.LOG", rawLine("HDR", "POS") + "\r\n");
  open("JA8089");
  EXPECT_EQ(caption(), "Log browser - " + nativeText(base_.folders.eachLogs / "ja8089.LOG"));
  EXPECT_EQ(text(), shownBlock("HDR", "POS"));
}

TEST_F(RawLogViewerTest, AFileThatCannotBeReadIsReportedOnceAndTheWindowStays) {
  const test::RefusedFile refused(base_.folders.eachLogs / "JA8089.log",
                                  test::RefusedFile::Refuses::reading);
  open("JA8089");
  EXPECT_THAT(desktop_.messages, ElementsAre(test::RefusedFile::kReadingError));
  EXPECT_TRUE(viewer()->isVisible());
  EXPECT_EQ(text(), "");
}

TEST_F(RawLogViewerTest, OneWindowShowsOneLogAfterAnother) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  writeRawLog("JA1", rawLine("HDR", "TWO") + "\r\n");
  open("JA8089");
  RawLogViewer* first = viewer();
  open("JA1");
  EXPECT_EQ(viewer(), first);
  EXPECT_EQ(text(), shownBlock("HDR", "TWO"));
  EXPECT_EQ(viewer()->rawText(), rawLine("HDR", "TWO") + "\r\n");
}

TEST_F(RawLogViewerTest, ComingToTheFrontAgainReadsTheFileAgain) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  append("JA8089", rawLine("HDR", "TWO"));
  EXPECT_EQ(text(), shownBlock("HDR", "ONE"));
  leaveAndComeBack();
  EXPECT_EQ(text(), shownBlock("HDR", "ONE") + shownBlock("HDR", "TWO"));
  EXPECT_EQ(viewer()->rawText(), rawLine("HDR", "ONE") + "\r\n" + rawLine("HDR", "TWO") + "\r\n");
}

TEST_F(RawLogViewerTest, AReplacedFileReplacesWhatIsShown) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  writeRawLog("JA8089", rawLine("HDR", "TWO") + "\r\n");
  leaveAndComeBack();
  EXPECT_EQ(text(), shownBlock("HDR", "TWO"));
}

TEST_F(RawLogViewerTest, AGrownLogKeepsTheReadersPlaceAndSelection) {
  std::string bytes;
  for (int i = 0; i < 200; ++i) bytes += rawLine("HDR", std::to_string(i)) + "\r\n";
  writeRawLog("JA8089", bytes);
  open("JA8089");
  auto* area = control<FindableText>("Text1");
  QTextCursor cursor = area->textCursor();
  cursor.setPosition(4000);
  cursor.setPosition(4010, QTextCursor::KeepAnchor);
  area->setTextCursor(cursor);
  const int down = area->verticalScrollBar()->value();
  const std::string marked = selected();
  EXPECT_GT(down, 0);
  append("JA8089", rawLine("HDR", "NEW"));
  leaveAndComeBack();
  EXPECT_THAT(text(), HasSubstr("NEW"));
  EXPECT_EQ(area->verticalScrollBar()->value(), down);
  EXPECT_EQ(selected(), marked);
}

TEST_F(RawLogViewerTest, ComingBackFromItsOwnDialogReadsNothing) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  append("JA8089", rawLine("HDR", "TWO"));
  {
    QDialog dialog(viewer());
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(
        waitFor([&dialog] { return QGuiApplication::focusWindow() == dialog.windowHandle(); }));
  }
  comeBack();
  ASSERT_EQ(QGuiApplication::focusWindow(), viewer()->windowHandle());
  EXPECT_EQ(text(), shownBlock("HDR", "ONE"));
  leaveAndComeBack();
  EXPECT_EQ(text(), shownBlock("HDR", "ONE") + shownBlock("HDR", "TWO"));
}

TEST_F(RawLogViewerTest, ALogThatIsGoneClosesTheWindowWhenItComesToTheFront) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  std::filesystem::remove(base_.folders.eachLogs / "JA8089.log");
  leaveAndComeBack();
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotFound));
  EXPECT_FALSE(viewer()->isVisible());
}

TEST_F(RawLogViewerTest, CloseClosesTheWindowAndTheNextLookUpOpensItAgain) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  press("Command2");
  EXPECT_FALSE(viewer()->isVisible());
  open("JA8089");
  EXPECT_TRUE(viewer()->isVisible());
  EXPECT_EQ(text(), shownBlock("HDR", "ONE"));
}

TEST_F(RawLogViewerTest, WithoutSavedSettingsItOpens9975WideAnd8310High) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  ASSERT_TRUE(waitFor([this] { return outerTwips(*viewer()) == QRect(0, 0, 9975, 8310); }));
}

TEST_F(RawLogViewerTest, ItsPlaceIsTakenFromTheSettingsAndGivenBackOnClosing) {
  Settings& env = program_->settings();
  env.env_Form3_Top = 600;
  env.env_Form3_Left = 750;
  env.env_Form3_Height = 6000;
  env.env_Form3_Width = 10500;
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  ASSERT_TRUE(waitFor([this] { return outerTwips(*viewer()) == QRect(750, 600, 10500, 6000); }));
  // The place is kept up for a moment after the window was shown.
  ASSERT_TRUE(test::placesSettle());
  viewer()->move(80, 60);
  viewer()->resize(720, 420);
  ASSERT_TRUE(waitFor([this] { return viewer()->size() == QSize(720, 420); }));
  const QRect outer = viewer()->frameGeometry();
  press("Command2");
  EXPECT_EQ(env.env_Form3_Top, outer.y() * 15);
  EXPECT_EQ(env.env_Form3_Left, outer.x() * 15);
  EXPECT_EQ(env.env_Form3_Height, outer.height() * 15);
  EXPECT_EQ(env.env_Form3_Width, outer.width() * 15);
  open("JA8089");
  EXPECT_TRUE(waitFor([this, outer] { return viewer()->frameGeometry() == outer; }));
}

TEST_F(RawLogViewerTest, AMaximisedWindowGivesItsNormalPlaceBack) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  ASSERT_TRUE(test::placesSettle());
  // What stood for less may have been the size of the maximised window.
  desktop_.passed += std::chrono::seconds(1);
  viewer()->showMaximized();
  ASSERT_TRUE(waitFor([this] { return viewer()->isMaximized(); }));
  QCoreApplication::processEvents();
  press("Command2");
  const Settings& env = program_->settings();
  EXPECT_EQ(env.env_Form3_Width, 9975);
  EXPECT_EQ(env.env_Form3_Height, 8310);
}

TEST_F(RawLogViewerTest, DamagedPlacesInTheSettingsDoNoHarm) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  Settings& env = program_->settings();
  for (const double damaged :
       {-1e300, 1e300, 0.0, -5.0, std::numeric_limits<double>::quiet_NaN()}) {
    env.env_Form3_Top = env.env_Form3_Left = env.env_Form3_Height = env.env_Form3_Width = damaged;
    open("JA8089");
    EXPECT_GE(viewer()->width(), viewer()->minimumWidth());
    EXPECT_GE(viewer()->height(), viewer()->minimumHeight());
    press("Command2");
  }
}

TEST_F(RawLogViewerTest, ExtremeSizesOfTheSettingsFileKeepTheTitleBarInSight) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  for (const char* size : {"0", "-1", "1", "999999999", "1E+38", "-1E+38"}) {
    for (const char* place : {"0", "-999999999", "999999999"}) {
      SCOPED_TRACE(std::string(size) + " at " + place);
      const std::string s = size;
      const std::string p = place;
      test::writeBytes(base_.folders.program / "vel.env",
                       "\"env_Form3_Top\"," + p + "\r\n\"env_Form3_Left\"," + p +
                           "\r\n\"env_Form3_Height\"," + s + "\r\n\"env_Form3_Width\"," + s +
                           "\r\n");
      Settings& env = program_->settings();
      ASSERT_TRUE(LoadEnv(desktop_, base_.folders.program / "vel.env", program_->context().encoding,
                          program_->context().services.defaultSearches(), env)
                      .ok());
      open("JA8089");
      const QRect outer = viewer()->frameGeometry();
      EXPECT_GE(outer.width(), viewer()->minimumWidth());
      EXPECT_GE(outer.height(), viewer()->minimumHeight());
      EXPECT_LE(outer.width(), screen.width());
      EXPECT_LE(outer.height(), screen.height());
      EXPECT_GE(outer.top(), screen.top());
      EXPECT_LE(outer.top() + 20, screen.bottom());
      EXPECT_LT(outer.left(), screen.right());
      EXPECT_GT(outer.right(), screen.left());
      press("Command2");
    }
  }
}

class ClosingBrowser : public BrowserWindow {
 public:
  explicit ClosingBrowser(BrowserFrame& frame)
      : BrowserWindow(frame, QSize(6000, 6000), QSize(1500, 1500)) {}
  void load() override { Q_EMIT loaded(); }
  [[nodiscard]] int shownRows() const override { return 0; }

 protected:
  void layOutFrames(int, int) override {}
};

TEST_F(RawLogViewerTest, ClosingABrowserClosesTheViewerBeforeTheSettingsAreSaved) {
  program_->settings().env_Form3_Top = 450;
  program_->settings().env_Form3_Left = 300;
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  ClosingBrowser browser(*program_);
  browser.show();
  open("JA8089");
  ASSERT_TRUE(test::placesSettle());
  viewer()->resize(640, 480);
  viewer()->move(75, 45);
  ASSERT_TRUE(waitFor([this] { return viewer()->size() == QSize(640, 480); }));
  const QRect outer = outerTwips(*viewer());
  browser.close();
  EXPECT_FALSE(viewer()->isVisible());
  EXPECT_TRUE(desktop_.ended);
  const std::string saved = test::readBytes(base_.folders.program / "vel.env");
  EXPECT_THAT(saved,
              HasSubstr("\"env_Form3_Top\"," + std::to_string(outer.y()) +
                        "\r\n\"env_Form3_Left\"," + std::to_string(outer.x()) +
                        "\r\n\"env_Form3_Height\"," + std::to_string(outer.height()) +
                        "\r\n\"env_Form3_Width\"," + std::to_string(outer.width()) + "\r\n"));
}

TEST_F(RawLogViewerTest, TheFramesFollowTheWindowsOuterSize) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  ASSERT_TRUE(test::placesSettle());
  for (const QSize size : {QSize(665, 554), QSize(900, 700), viewer()->minimumSize()}) {
    viewer()->resize(size);
    ASSERT_TRUE(waitFor([this, size] { return viewer()->size() == size; }));
    const QRect outer = outerTwips(*viewer());
    const auto* area = control<FindableText>("Text1");
    const auto* buttons = control<QWidget>("Frame1");
    EXPECT_EQ(toTwips(area->width()), outer.width() - 360);
    EXPECT_EQ(toTwips(area->height()), outer.height() - 975);
    EXPECT_EQ(toTwips(buttons->y()), outer.height() - 750);
    EXPECT_LE(area->geometry().bottom(), buttons->y());
  }
}

TEST_F(RawLogViewerTest, AtTheSmallestSizeNothingOverlapsAndTheButtonsFit) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  ASSERT_TRUE(test::placesSettle());
  viewer()->resize(10, 10);
  ASSERT_TRUE(waitFor([this] { return viewer()->size() == viewer()->minimumSize(); }));
  const QRect inside = viewer()->rect();
  const auto* area = control<FindableText>("Text1");
  const auto* buttons = control<QWidget>("Frame1");
  EXPECT_GT(area->height(), 100);
  EXPECT_TRUE(inside.contains(area->geometry()));
  EXPECT_TRUE(inside.contains(buttons->geometry()));
  EXPECT_FALSE(area->geometry().intersects(buttons->geometry()));
  for (const char* name : {"Command1", "Command2"}) {
    const auto* button = control<QPushButton>(name);
    EXPECT_GE(button->width(), button->sizeHint().width()) << name;
    EXPECT_TRUE(buttons->rect().contains(button->geometry())) << name;
  }
}

TEST_F(RawLogViewerTest, TheTextIsReadOnlyInAFixedPitchFontWithJapaneseLetters) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  auto* area = control<FindableText>("Text1");
  QTest::keyClicks(area, QStringLiteral("typed"));
  EXPECT_EQ(text(), shownBlock("HDR", "ONE"));
  const QFontMetrics metrics(area->font());
  EXPECT_EQ(metrics.horizontalAdvance(QStringLiteral("iiii")),
            metrics.horizontalAdvance(QStringLiteral("WWWW")));
  EXPECT_EQ(metrics.horizontalAdvance(QStringLiteral("現在")),
            metrics.horizontalAdvance(QStringLiteral("WWWW")));
  const QRawFont raw = QRawFont::fromFont(area->font());
  EXPECT_TRUE(raw.supportsCharacter(QChar(u'現')));
  EXPECT_TRUE(raw.supportsCharacter(QChar(u'あ')));
}

TEST_F(RawLogViewerTest, EveryControlHasANameAndAToolTip) {
  writeRawLog("JA8089", rawLine("HDR", "ONE") + "\r\n");
  open("JA8089");
  for (const char* name : {"Text1", "Text2", "Command1", "Command2", "Command3", "Command4",
                           "Command5", "Command6", "ProgressBar1"}) {
    const auto* widget = control<QWidget>(name);
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << name;
    EXPECT_FALSE(widget->toolTip().isEmpty()) << name;
  }
  EXPECT_EQ(control<QPushButton>("Command1")->text().toStdString(),
            "Send to QZ2GE && Open with Google Earth");
  EXPECT_EQ(control<QPushButton>("Command2")->text().toStdString(), "Close");
}

TEST_F(RawLogViewerTest, TextOverTheAirIsNeverTakenAsMarkup) {
  writeRawLog("JA8089", rawLine("<b>H</b>", "<b>bold</b> &amp; <img src=x>") + "\r\n");
  open("JA8089");
  EXPECT_EQ(text(), shownBlock("<b>H</b>", "<b>bold</b> &amp; <img src=x>"));
}

TEST_F(RawLogViewerTest, AnEndlessLineIsShownInPieces) {
  const std::string body(900'000, 'x');
  writeRawLog("JA8089", rawLine("HDR", body) + "\r\n" + rawLine("HDR", "LAST") + "\r\n");
  open("JA8089");
  std::string shown = text();
  EXPECT_THAT(shown, testing::EndsWith(shownBlock("HDR", "LAST")));
  const auto* area = control<FindableText>("Text1");
  EXPECT_GT(area->document()->blockCount(), 100);
  EXPECT_EQ(std::count(shown.begin(), shown.end(), 'x'), 900'000);
  EXPECT_EQ(viewer()->rawText().size(),
            test::readBytes(base_.folders.eachLogs / "JA8089.log").size());
}

TEST_F(RawLogViewerTest, LineBreaksWithoutEndAreLeftOutPastHalfAMillion) {
  std::string body;
  for (int i = 0; i < 120'000; ++i) body += "<CR><VF>";
  std::string bytes;
  for (int i = 0; i < 5; ++i) bytes += rawLine("HDR", body + "END") + "\r\n";
  writeRawLog("JA8089", bytes);
  open("JA8089");
  EXPECT_THAT(text(), testing::EndsWith("[The rest is not shown. 以降は表示されません。]"));
  EXPECT_EQ(control<FindableText>("Text1")->document()->blockCount(), 500'001);
}

}  // namespace
}  // namespace vel
