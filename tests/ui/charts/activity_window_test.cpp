#include "hfdl/ui/activity_window.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QImageReader>
#include <QTextDocument>
#include <QTimer>
#include <QToolTip>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hfdl/activity_chart.h"
#include "tests/ui/charts/chart_station.h"
#include "tests/ui/support/paint_watch.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kLog = "202611170000_HFDL_FMT.log";

const QColor kRed(255, 64, 64);
const QColor kGreen(128, 255, 128);
const QColor kBlue(128, 128, 255);
const QColor kYellow(255, 255, 128);
const QColor kWhite(Qt::white);

// A message at a time of the 17th, as the decoder writes it.
std::string message(const std::string& time, const std::string& kind, const std::string& station) {
  return "[3]------------------------[2026/11/17 " + time + "]\r\n" + kind +
         "\r\n  GS NAME         = " + station + "\r\n";
}

std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

class ActivityWindowTest : public testing::Test {
 protected:
  void write(const std::string& bytes, const std::string& log = kLog) {
    writeBytes(station_.base.folders.logs / log, bytes);
  }

  void open() {
    window_.open();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
    finishJobs();
  }

  template <typename T>
  T* child(const char* name) const {
    T* found = window_.findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  QComboBox* chooser() const { return child<QComboBox>("Combo1"); }
  QRadioButton* option(int i) const {
    return child<QRadioButton>(i == 0 ? "Option1(0)" : "Option1(1)");
  }
  QPushButton* refresh() const { return child<QPushButton>("Command1"); }
  [[nodiscard]] std::vector<std::string> stations() const {
    std::vector<std::string> names;
    for (int i = 0; i < chooser()->count(); ++i) {
      names.push_back(chooser()->itemText(i).toStdString());
    }
    return names;
  }
  static void press(QAbstractButton* button) {
    QTest::mouseClick(button, Qt::LeftButton);
    finishJobs();
  }
  static void pressKey(QWidget* widget, Qt::Key key) {
    QTest::keyClick(widget, key);
    finishJobs();
  }

  [[nodiscard]] ActivityPlot plot() const {
    const ChartPicture* picture = window_.picture();
    return {static_cast<double>(picture->width()), static_cast<double>(picture->height()), 1};
  }
  /// The painted colour in the middle of a slot, at a value of the scale.
  QColor painted(std::size_t slot, double value, int scale) {
    const QImage image = window_.picture()->grab().toImage();
    const double x = (plot().slotLeft(slot) + plot().slotLeft(slot + 1)) / 2;
    return colourAt(image, x, plot().base() - (plot().base() - plot().top()) * value / scale);
  }

  ChartStation station_;
  std::string shown_ = kLog;
  ActivityWindow window_{station_.context(), [this] { return shown_; }};
};

TEST_F(ActivityWindowTest, OpensWithAllStationsAndTheLast24Hours) {
  write(message("11:58:00", " SQUITTER", "Molokai, Hawaii") +
        message("11:00:00", " UP LINK", "Auckland, New Zealand"));
  open();
  EXPECT_EQ(chooser()->currentText().toStdString(), "ALL");
  EXPECT_THAT(stations(), ElementsAre("ALL", "Molokai, Hawaii  1", "Auckland, New Zealand  1"));
  EXPECT_TRUE(option(0)->isChecked());
  EXPECT_EQ(option(0)->text().remove(QLatin1Char('&')).toStdString(), "Current");
  EXPECT_EQ(option(1)->text().remove(QLatin1Char('&')).toStdString(), "Day 2026/11/17");
  EXPECT_EQ(refresh()->text().remove(QLatin1Char('&')).toStdString(), "Reflesh");
  EXPECT_EQ(window_.counts().squitters[143], 1) << "11:58 seen from 12:05";
  EXPECT_EQ(window_.counts().uplinks[137], 1);
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
}

TEST_F(ActivityWindowTest, BarsHaveTheirHeightAndColourOnTheScreenAndWhiteStandsAboveThem) {
  write(repeated(10, message("06:00:00", " SQUITTER", "A")) +
        repeated(20, message("06:01:00", " DOWN LINK", "A")) +
        repeated(30, message("06:02:00", " UP LINK", "A")) +
        repeated(20, message("06:03:00", " UP LINK", "A") + "   CRC FAILED\r\n"));
  open();
  press(option(1));
  EXPECT_EQ(painted(36, 5, 100), kRed);
  EXPECT_EQ(painted(36, 15, 100), kGreen);
  EXPECT_EQ(painted(36, 45, 100), kBlue);
  EXPECT_EQ(painted(36, 70, 100), kYellow);
  EXPECT_EQ(painted(36, 85, 100), kWhite);
  EXPECT_EQ(painted(35, 5, 100), kWhite);
  EXPECT_EQ(painted(37, 5, 100), kWhite);
  const QImage image = window_.picture()->grab().toImage();
  EXPECT_EQ(image.pixelColor(1, 1), kWhite);
  EXPECT_EQ(image.pixelColor(image.width() - 2, image.height() - 2), kWhite);
  EXPECT_EQ(colourAt(image, plot().left(), plot().base() - 50), QColor(Qt::black));
}

TEST_F(ActivityWindowTest, BarTopLiesOnTheExactPixelRow) {
  write(repeated(37, message("06:00:00", " SQUITTER", "A")));
  open();
  press(option(1));
  const QImage image = window_.picture()->grab().toImage();
  const double x = (plot().slotLeft(36) + plot().slotLeft(37)) / 2;
  const double top = plot().barTop(37, 100);
  EXPECT_EQ(colourAt(image, x, top), kRed);
  EXPECT_EQ(colourAt(image, x, top - 1), kWhite);
}

TEST_F(ActivityWindowTest, ExactlyAHundredMessagesFillTheScaleAndOneMoreTakesTheNext) {
  write(repeated(100, message("06:00:00", " SQUITTER", "A")));
  open();
  press(option(1));
  EXPECT_EQ(painted(36, 99, 100), kRed);
  write(repeated(101, message("06:00:00", " SQUITTER", "A")));
  press(refresh());
  EXPECT_EQ(painted(36, 100, 150), kRed);
  EXPECT_EQ(painted(36, 104, 150), kWhite);
  write(repeated(501, message("06:00:00", " SQUITTER", "A")));
  press(refresh());
  EXPECT_EQ(painted(36, 490, 1000), kRed);
  EXPECT_EQ(painted(36, 510, 1000), kWhite);
}

TEST_F(ActivityWindowTest, ShortlyAfterMidnightTheSlotsBeforeItStayEmpty) {
  station_.desktop.time =
      std::chrono::local_days(std::chrono::year(2026) / 11 / 17) + std::chrono::minutes(20);
  write(message("23:50:00", " SQUITTER", "A"), "202611160000_HFDL_FMT.log");
  write(message("00:05:00", " SQUITTER", "A"));
  open();
  for (std::size_t slot = 0; slot < 142; ++slot) EXPECT_EQ(window_.counts().total(slot), 0);
  EXPECT_EQ(window_.counts().squitters[142], 1);
}

TEST_F(ActivityWindowTest, DayOptionShowsTheViewedDayFromMidnightToMidnight) {
  write(message("00:00:00", " SQUITTER", "A") + message("23:59:59", " UP LINK", "A"));
  open();
  press(option(1));
  EXPECT_EQ(window_.counts().squitters[0], 1);
  EXPECT_EQ(window_.counts().uplinks[143], 1);
  press(option(0));
  EXPECT_EQ(window_.counts().squitters[0], 0) << "midnight is slot 71 seen from 12:05";
  EXPECT_EQ(window_.counts().squitters[71], 1);
}

TEST_F(ActivityWindowTest, AnotherStationCountsOnlyItsMessages) {
  write(repeated(3, message("06:00:00", " SQUITTER", "A")) +
        repeated(5, message("06:00:00", " SQUITTER", "B")));
  open();
  press(option(1));
  EXPECT_EQ(window_.counts().squitters[36], 8);
  chooser()->setFocus();
  pressKey(chooser(), Qt::Key_Down);
  EXPECT_EQ(window_.counts().squitters[36], 3);
  EXPECT_EQ(painted(36, 2, 100), kRed);
  pressKey(chooser(), Qt::Key_Down);
  EXPECT_EQ(window_.counts().squitters[36], 5);
  EXPECT_THAT(stations(), ElementsAre("ALL", "A  3", "B  5"));
  pressKey(chooser(), Qt::Key_Home);
  EXPECT_EQ(window_.counts().squitters[36], 8);
}

TEST_F(ActivityWindowTest, RefleshCountsTheLogThatTheBrowserShowsNow) {
  write(message("06:00:00", " SQUITTER", "A"));
  write("[3]------------------------[2026/11/16 07:00:00]\r\n UP LINK\r\n",
        "202611160000_HFDL_FMT.log");
  open();
  shown_ = "202611160000_HFDL_FMT.log";
  press(option(1));
  EXPECT_EQ(window_.counts().uplinks[42], 1);
  EXPECT_EQ(option(1)->text().remove(QLatin1Char('&')).toStdString(), "Day 2026/11/16");
  EXPECT_THAT(window_.windowTitle().toStdString(), testing::HasSubstr(shown_));
  shown_ = kLog;
  press(refresh());
  EXPECT_EQ(window_.counts().uplinks[42], 0);
  EXPECT_EQ(window_.counts().squitters[36], 1);
}

TEST_F(ActivityWindowTest, ActivationOnlyRedraws) {
  write(message("11:58:00", " SQUITTER", "A"));
  open();
  write(repeated(7, message("11:58:00", " SQUITTER", "A")));
  window_.whenActivated();
  open();
  EXPECT_EQ(window_.counts().squitters[143], 1);
  pressKey(&window_, Qt::Key_F5);
  EXPECT_EQ(window_.counts().squitters[143], 7);
}

TEST_F(ActivityWindowTest, ClosedAndOpenedAgainItLoadsAnewForAllStations) {
  write(message("11:58:00", " SQUITTER", "A"));
  open();
  chooser()->setCurrentIndex(1);
  finishJobs();
  window_.close();
  write(message("11:58:00", " SQUITTER", "B"));
  open();
  EXPECT_THAT(stations(), ElementsAre("ALL", "B  1"));
  EXPECT_EQ(chooser()->currentIndex(), 0);
  EXPECT_EQ(window_.counts().squitters[143], 1);
}

TEST_F(ActivityWindowTest, WithoutASelectedLogTheChartIsEmpty) {
  shown_.clear();
  open();
  EXPECT_EQ(window_.counts().largestTotal, 0);
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
  press(option(1));
  EXPECT_EQ(painted(36, 5, 100), kWhite);
}

TEST_F(ActivityWindowTest, LogThatVanishedIsToldOnceAndLeavesAnEmptyChart) {
  write(repeated(50, message("11:58:00", " SQUITTER", "A")));
  open();
  EXPECT_EQ(painted(143, 22, 100), kRed);
  std::filesystem::remove(station_.base.folders.logs / kLog);
  press(refresh());
  EXPECT_THAT(station_.desktop.messages, ElementsAre("ERROR #53"));
  EXPECT_EQ(painted(143, 22, 100), kWhite);
  EXPECT_FALSE(station_.desktop.ended);
}

TEST_F(ActivityWindowTest, LogThatVanishesWhileItIsReadIsCountedToItsEnd) {
  write(repeated(30000, message("11:58:00", " SQUITTER", "A")));
  window_.open();
  std::filesystem::remove(station_.base.folders.logs / kLog);
  finishJobs();
  EXPECT_EQ(window_.counts().squitters[143], 30000);
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
}

TEST_F(ActivityWindowTest, HeadersWithoutATimeCountAtMidnightAndNamelessStationsAreNoEntry) {
  write("[3]------------------------[2026/11/17]\r\n SQUITTER\r\n  GS NAME         =\r\n" +
        message("06:00:00", " SQUITTER", ""));
  open();
  press(option(1));
  EXPECT_EQ(window_.counts().squitters[0], 1);
  EXPECT_EQ(window_.counts().squitters[36], 1);
  EXPECT_THAT(stations(), ElementsAre("ALL"));
}

TEST_F(ActivityWindowTest, ThirtySecondStationIsToldOnceAfterTheLoad) {
  std::string log;
  for (int i = 0; i < 33; ++i) {
    log += message("11:58:00", " SQUITTER", "Station " + std::to_string(i));
  }
  write(log);
  open();
  EXPECT_EQ(chooser()->count(), 1 + 31);
  EXPECT_EQ(window_.counts().squitters[143], 33);
  EXPECT_THAT(station_.desktop.messages,
              ElementsAre("2 stations are not shown. 2局は表示されません。"));
}

TEST_F(ActivityWindowTest, EventsRunWhileALongLogIsRead) {
  write(repeated(300'000, message("11:58:00", " SQUITTER", "A")));
  window_.open();
  int turns = 0;
  QTimer between;
  QObject::connect(&between, &QTimer::timeout, [&] { ++turns; });
  between.start(0);
  finishJobs();
  EXPECT_GT(turns, 3);
  EXPECT_EQ(window_.counts().squitters[143], 300'000);
}

TEST_F(ActivityWindowTest, LastRequestWinsOverTheLoadUnderWay) {
  write(message("06:00:00", " SQUITTER", "A") + message("13:00:00", " SQUITTER", "A"));
  open();
  QTest::mouseClick(refresh(), Qt::LeftButton);
  QTest::mouseClick(option(1), Qt::LeftButton);
  finishJobs();
  EXPECT_EQ(window_.counts().squitters[36], 1) << "the day, not the last 24 hours";
  EXPECT_EQ(window_.counts().squitters[78], 1);
}

TEST_F(ActivityWindowTest, StationChosenDuringALoadIsTakenBack) {
  write(repeated(40000, message("11:58:00", " SQUITTER", "A")));
  open();
  ASSERT_EQ(chooser()->count(), 2);
  QTest::mouseClick(refresh(), Qt::LeftButton);
  chooser()->setCurrentIndex(1);
  finishJobs();
  EXPECT_EQ(chooser()->currentIndex(), 0);
  EXPECT_EQ(window_.counts().squitters[143], 40000);
}

TEST_F(ActivityWindowTest, ClosedDuringALoadItStops) {
  write(repeated(40000, message("11:58:00", " SQUITTER", "A")));
  open();
  QTest::mouseClick(refresh(), Qt::LeftButton);
  window_.close();
  finishJobs();
  EXPECT_EQ(window_.counts().squitters[143], 0);
  EXPECT_FALSE(window_.isVisible());
}

TEST_F(ActivityWindowTest, ChartIsDrawnAnewBeforeAMessageAboutItsLoad) {
  std::string log;
  for (int i = 0; i < 32; ++i) {
    log += message("11:58:00", " SQUITTER", "Station " + std::to_string(i));
  }
  write(message("11:58:00", " SQUITTER", "A"));
  open();
  write(log);
  PaintWatch paints(window_.picture());
  int told = 0;
  station_.desktop.onMessage = [&](const std::string&) {
    ++told;
    EXPECT_GT(paints.count, 0);
    EXPECT_EQ(painted(143, 16, 100), kRed);
  };
  press(refresh());
  EXPECT_EQ(told, 1);
}

TEST_F(ActivityWindowTest, StationsOfAnEarlierLogGiveUpTheirPlaces) {
  std::string early;
  std::string late;
  for (int i = 0; i < 31; ++i) {
    early += message("06:00:00", " SQUITTER", "Early " + std::to_string(i));
    late += message("07:00:00", " SQUITTER", "Late " + std::to_string(i));
  }
  write(early);
  write(late, "202611160000_HFDL_FMT.log");
  open();
  ASSERT_EQ(chooser()->count(), 1 + 31);
  shown_ = "202611160000_HFDL_FMT.log";
  press(refresh());
  EXPECT_EQ(chooser()->count(), 1 + 31);
  EXPECT_EQ(chooser()->itemText(31).toStdString(), "Late 30  1");
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
}

TEST_F(ActivityWindowTest, ChosenStationStaysChosenWhereverItStandsInTheNextLog) {
  write(message("11:00:00", " SQUITTER", "A") + message("11:00:00", " SQUITTER", "B"));
  open();
  chooser()->setFocus();
  pressKey(chooser(), Qt::Key_End);
  write(message("11:00:00", " SQUITTER", "C") + repeated(2, message("11:00:00", " SQUITTER", "B")) +
        message("11:00:00", " SQUITTER", "A"));
  press(refresh());
  EXPECT_EQ(chooser()->currentText().toStdString(), "B  2");
  EXPECT_EQ(window_.counts().squitters[137], 2);
  write(message("11:00:00", " SQUITTER", "C"));
  press(refresh());
  EXPECT_EQ(chooser()->currentText().toStdString(), "ALL") << "the log does not have it";
  EXPECT_EQ(window_.counts().squitters[137], 1);
}

TEST_F(ActivityWindowTest, OpensWithTheDayWhereTheBrowserShowsAnotherThanToday) {
  shown_ = "202611160000_HFDL_FMT.log";
  write("[3]------------------------[2026/11/16 07:00:00]\r\n UP LINK\r\n", shown_);
  open();
  EXPECT_TRUE(option(1)->isChecked());
  EXPECT_EQ(window_.counts().uplinks[42], 1);
  window_.close();
  shown_ = kLog;
  open();
  EXPECT_TRUE(option(0)->isChecked());
}

TEST_F(ActivityWindowTest, LongStationNameIsCutInTheChooserAndWholeInItsToolTip) {
  const std::string name = "<b>" + std::string(247, 'W');
  write(message("11:00:00", " SQUITTER", name));
  open();
  chooser()->setFocus();
  pressKey(chooser(), Qt::Key_Down);
  EXPECT_THAT(chooser()->currentText().toStdString(), testing::EndsWith("\u2026  1"));
  EXPECT_LT(window_.minimumSizeHint().width(), 800);
  EXPECT_LT(chooser()->width(), 400);
  for (const QString& tip :
       {chooser()->toolTip(), chooser()->itemData(1, Qt::ToolTipRole).toString()}) {
    QTextDocument shown;
    if (Qt::mightBeRichText(tip)) {
      shown.setHtml(tip);
    } else {
      shown.setPlainText(tip);
    }
    QString text = shown.toPlainText();
    // Folded lines, and the sign without width that makes a tag harmless.
    text.remove(QLatin1Char('\n')).remove(QChar(0x2060));
    EXPECT_THAT(text.toStdString(), testing::StartsWith(name));
  }
}

TEST_F(ActivityWindowTest, ChartSaysStationAndDay) {
  write(message("06:00:00", " SQUITTER", "Agana, Guam"));
  open();
  const auto texts = [this] {
    std::vector<std::string> found;
    for (const Shape& shape : window_.picture()->drawing().shapes) {
      if (const auto* text = std::get_if<Text>(&shape)) found.push_back(text->text);
    }
    return found;
  };
  EXPECT_THAT(texts(), testing::Contains("ALL  24h to 2026/11/17 12:05"));
  press(option(1));
  chooser()->setFocus();
  pressKey(chooser(), Qt::Key_Down);
  EXPECT_THAT(texts(), testing::Contains("Agana, Guam  2026/11/17"));
}

TEST_F(ActivityWindowTest, FocusDrawsAFrameAndLeavesTheChartItsColours) {
  write(repeated(50, message("11:58:00", " SQUITTER", "A")));
  open();
  window_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
  const QImage before = window_.picture()->grab().toImage();
  window_.picture()->setFocus(Qt::TabFocusReason);
  ASSERT_TRUE(window_.picture()->hasFocus());
  const QImage after = window_.picture()->grab().toImage();
  EXPECT_NE(after.pixelColor(0, after.height() / 2), before.pixelColor(0, after.height() / 2));
  const QRect inside = after.rect().adjusted(3, 3, -3, -3);
  EXPECT_EQ(after.copy(inside), before.copy(inside));
}

TEST_F(ActivityWindowTest, ToolTipTellsASlotsTimeAndCounts) {
  write(repeated(4, message("11:58:00", " SQUITTER", "A")));
  open();
  const QPoint point =
      QPointF((plot().slotLeft(143) + plot().slotLeft(144)) / 2, plot().base() - 5).toPoint();
  QHelpEvent help(QEvent::ToolTip, point, window_.picture()->mapToGlobal(point));
  QCoreApplication::sendEvent(window_.picture(), &help);
  EXPECT_EQ(QToolTip::text().toStdString(),
            "11:55 - 12:05\nSquitter: 4\nDownlink: 0\nUplink: 0\nCRC failed: 0\nTotal: 4");
  QHelpEvent outside(QEvent::ToolTip, QPoint(2, 2), window_.picture()->mapToGlobal(QPoint(2, 2)));
  QCoreApplication::sendEvent(window_.picture(), &outside);
  EXPECT_TRUE(waitFor([] { return !QToolTip::isVisible(); }));
}

TEST_F(ActivityWindowTest, KeysStepThroughTheSlotsToolTips) {
  open();
  window_.picture()->setFocus();
  QTest::keyClick(window_.picture(), Qt::Key_Home);
  EXPECT_TRUE(QToolTip::text().startsWith(QStringLiteral("12:05 - 12:15\n")));
  QTest::keyClick(window_.picture(), Qt::Key_Right);
  EXPECT_TRUE(QToolTip::text().startsWith(QStringLiteral("12:15 - 12:25\n")));
  QTest::keyClick(window_.picture(), Qt::Key_Left);
  QTest::keyClick(window_.picture(), Qt::Key_Left);
  EXPECT_TRUE(QToolTip::text().startsWith(QStringLiteral("12:05 - 12:15\n")));
  QTest::keyClick(window_.picture(), Qt::Key_End);
  EXPECT_TRUE(QToolTip::text().startsWith(QStringLiteral("12:05 - 12:15\n")));
}

TEST_F(ActivityWindowTest, ContextMenuOffersToSaveAndToCopy) {
  open();
  EXPECT_EQ(window_.picture()->contextMenuPolicy(), Qt::ActionsContextMenu);
  std::vector<std::string> captions;
  for (const QAction* action : window_.picture()->actions()) {
    captions.push_back(action->text().remove(QLatin1Char('&')).toStdString());
  }
  EXPECT_THAT(captions, ElementsAre("Save picture as PNG...", "Copy picture"));
}

TEST_F(ActivityWindowTest, SavedPictureIsAReadablePngOfTheWholeChart) {
  write(repeated(50, message("11:58:00", " SQUITTER", "A")));
  open();
  const QString file = QString::fromStdString((station_.base / "chart.png").string());
  QString suggested;
  window_.picture()->chooseFile = [&](const QString& name) {
    suggested = name;
    return file;
  };
  QTest::keyClick(&window_, Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(suggested.toStdString(), "ground_stations.png");
  QImageReader reader(file);
  EXPECT_EQ(reader.format(), "png");
  const QImage saved = reader.read();
  EXPECT_EQ(saved.size(), window_.picture()->size());
  EXPECT_EQ(saved.convertToFormat(QImage::Format_RGB32), window_.picture()->picture());
  EXPECT_EQ(colourAt(saved, plot().slotLeft(143) + 1, plot().base() - 5), kRed);
}

TEST_F(ActivityWindowTest, PictureThatCannotBeSavedIsToldAndNoFileNameSavesNothing) {
  shown_.clear();
  open();
  window_.picture()->chooseFile = [](const QString&) { return QString(); };
  window_.picture()->saveAction()->trigger();
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
  const QString file = QString::fromStdString((station_.base / "missing").string() + "/chart.png");
  window_.picture()->chooseFile = [&](const QString&) { return file; };
  window_.picture()->saveAction()->trigger();
  EXPECT_THAT(station_.desktop.messages,
              ElementsAre("The picture could not be saved. 画像を保存できませんでした。"));
}

TEST_F(ActivityWindowTest, CopyPutsThePictureOnTheClipboard) {
  write(repeated(50, message("11:58:00", " SQUITTER", "A")));
  open();
  QGuiApplication::clipboard()->clear();
  QTest::keyClick(&window_, Qt::Key_C, Qt::ControlModifier);
  const QImage copied = QGuiApplication::clipboard()->image();
  EXPECT_EQ(copied.size(), window_.picture()->size());
  EXPECT_EQ(colourAt(copied, plot().slotLeft(143) + 1, plot().base() - 5), kRed);
}

TEST_F(ActivityWindowTest, ResizedWindowIsDrawnForItsNewSize) {
  write(repeated(50, message("11:58:00", " SQUITTER", "A")));
  open();
  for (const QSize size : {QSize(1200, 800), QSize(700, 400)}) {
    window_.resize(size);
    EXPECT_TRUE(waitFor([&] { return window_.size() == size; }));
    EXPECT_EQ(painted(143, 22, 100), kRed);
    EXPECT_EQ(painted(143, 55, 100), kWhite);
  }
}

TEST_F(ActivityWindowTest, SurfaceIsWhiteInADarkTheme) {
  QPalette dark(QColor(40, 40, 40));
  dark.setColor(QPalette::Base, Qt::black);
  window_.setPalette(dark);
  open();
  const QImage image = window_.picture()->grab().toImage();
  EXPECT_EQ(image.pixelColor(1, 1), kWhite);
  EXPECT_EQ(painted(36, 5, 100), kWhite);
}

TEST_F(ActivityWindowTest, EveryControlHasANameForScreenReaders) {
  open();
  for (const char* name : {"Combo1", "Option1(0)", "Option1(1)", "Command1", "Picture1"}) {
    EXPECT_FALSE(child<QWidget>(name)->accessibleName().isEmpty()) << name;
  }
}

}  // namespace
}  // namespace vel::test
