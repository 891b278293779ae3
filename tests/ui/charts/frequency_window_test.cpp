#include "hfdl/ui/frequency_window.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QImageReader>
#include <QMenu>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cstdio>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hfdl/frequency_chart.h"
#include "hfdl/ui/chart_painter.h"
#include "tests/ui/charts/chart_station.h"
#include "tests/ui/support/paint_watch.h"

namespace vel::test {
namespace {

using namespace frequency_chart;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QColor kMark(30, 30, 30);
const QColor kWhite(Qt::white);
const QColor kDay(60, 60, 150);

std::string header(const std::string& stamp) {
  return "[3]------------------------[" + stamp + "]\r\n";
}

std::string frequencies(const std::string& list, const std::string& station) {
  return "   FREQUENCIES    = [ " + list + " ] (" + station + ")\r\n";
}

class FrequencyWindowTest : public testing::Test {
 protected:
  void write(const std::string& bytes, const std::string& log = "202611170000_HFDL_FMT.log") {
    writeBytes(station_.base.folders.logs / log, bytes);
  }
  // So many stations with seven frequencies each: more than the window shows.
  void writeManyStations(int count) {
    std::string log = header("2026/11/15 06:00:00");
    for (int i = 0; i < count; ++i) {
      log += frequencies("2998 5583 6535 8912 10027 13276 17919", "Station " + std::to_string(i));
    }
    write(log);
  }

  void open() {
    window_.open();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
    finishJobs();
  }

  QScrollBar* scroll() const { return window_.findChild<QScrollBar*>(QStringLiteral("VScroll1")); }
  QWidget* frame() const { return window_.picture()->parentWidget(); }
  /// x of a moment of the seven days from the 11th.
  [[nodiscard]] double x(int day, int hour, int minute) const {
    return xOf((day - 11) * 1440 + hour * 60 + minute, window_.picture()->width());
  }
  /// y in the middle of the marks of a row of the first station.
  static double rowMiddle(int row) {
    return kFirstStation + kStationHeight + row * kRowHeight + kMarkTop + kMarkHeight / 2;
  }
  QImage painted() { return window_.picture()->grab().toImage(); }
  [[nodiscard]] std::vector<std::string> texts() const {
    std::vector<std::string> found;
    for (const Shape& shape : window_.picture()->drawing().shapes) {
      if (const auto* text = std::get_if<Text>(&shape)) found.push_back(text->text);
    }
    return found;
  }

  /// Presses the button there and closes the magnifier that it shows. True
  /// when one was shown, modally.
  bool pressMagnifies(Qt::MouseButton button, const QPoint& point) {
    bool shown = false;
    QTimer closing;
    QObject::connect(&closing, &QTimer::timeout, [&] {
      if (!window_.magnifier()->isVisible()) return;
      shown = QApplication::activeModalWidget() == window_.magnifier();
      square_ = window_.magnifier()->grab().toImage();
      window_.magnifier()->close();
    });
    closing.start(10);
    QTest::mouseClick(window_.picture(), button, {}, point);
    EXPECT_FALSE(window_.magnifier()->isVisible()) << "not inside the press";
    finishJobs();
    if (window_.magnifier()->isVisible()) {
      EXPECT_TRUE(waitFor([this] { return !window_.magnifier()->isVisible(); }));
    }
    return shown;
  }

  ChartStation station_;
  FrequencyWindow window_{station_.context()};
  QImage square_;
};

TEST_F(FrequencyWindowTest, FirstActivationLoadsAndDrawsLaterOnesDoNot) {
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Molokai"));
  open();
  ASSERT_EQ(window_.tables().stationCount(), 1U);
  EXPECT_THAT(texts(), testing::IsSupersetOf({"Molokai", "    2998"}));
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Auckland"));
  open();
  window_.whenActivated();
  finishJobs();
  EXPECT_EQ(window_.tables().stationName(0), "Molokai");
}

TEST_F(FrequencyWindowTest, ClosedAndOpenedAgainItLoadsAnew) {
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Molokai"));
  open();
  window_.close();
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Auckland"));
  open();
  EXPECT_EQ(window_.tables().stationName(0), "Auckland");
}

TEST_F(FrequencyWindowTest, MarkStandsAtItsMinuteInItsRowAndWhiteBesideIt) {
  write(header("2026/11/15 07:03:00") + frequencies("2998 5583", "Molokai") +
        header("2026/11/15 09:07:00") + frequencies("5583", "Molokai"));
  open();
  const QImage image = painted();
  const double first = std::floor(x(15, 7, 3) + 0.5);
  const double second = std::floor(x(15, 9, 7) + 0.5);
  EXPECT_EQ(colourAt(image, first, rowMiddle(0)), kMark);
  EXPECT_EQ(colourAt(image, first, rowMiddle(1)), kMark);
  EXPECT_EQ(colourAt(image, second, rowMiddle(1)), kMark);
  EXPECT_EQ(colourAt(image, second, rowMiddle(0)), kWhite);
  EXPECT_EQ(colourAt(image, first - 1, rowMiddle(0)), kWhite);
  EXPECT_EQ(colourAt(image, first + 1, rowMiddle(0)), kWhite);
  EXPECT_EQ(colourAt(image, first, rowMiddle(0) + kMarkHeight / 2 + 1), kWhite);
}

TEST_F(FrequencyWindowTest, EmptyLogsFolderDrawsOnlyTheGridAndItsLabels) {
  open();
  EXPECT_EQ(window_.tables().stationCount(), 0U);
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
  const QImage image = painted();
  EXPECT_EQ(colourAt(image, std::floor(x(12, 0, 0) + 0.5), 100), kDay);
  EXPECT_EQ(colourAt(image, std::floor(x(11, 2, 0) + 0.5), 100), QColor(240, 240, 240));
  EXPECT_EQ(colourAt(image, std::floor(x(11, 6, 0) + 0.5), 100), QColor(100, 150, 100));
  EXPECT_EQ(colourAt(image, std::floor(x(11, 6, 0) + 0.5) + 2, 100), kWhite);
  EXPECT_EQ(colourAt(image, std::floor(x(12, 0, 0) + 0.5), 19), kWhite);
  EXPECT_EQ(colourAt(image, std::floor(x(12, 0, 0) + 0.5), image.height() - 9), kWhite);
  EXPECT_THAT(texts(), testing::IsSupersetOf({"11/11", "11/17", "11/18", "06", "18"}));
  std::filesystem::remove_all(station_.base.folders.logs);
  QTest::keyClick(&window_, Qt::Key_F5);
  finishJobs();
  EXPECT_THAT(station_.desktop.messages, IsEmpty());
}

TEST_F(FrequencyWindowTest, LabelsKeepInsideTheSurface) {
  writeManyStations(3);
  open();
  const QImage image = painted();
  for (int y = 0; y < image.height(); ++y) {
    ASSERT_EQ(image.pixelColor(image.width() - 1, y), kWhite) << y;
    ASSERT_EQ(image.pixelColor(0, y), kWhite) << y;
  }
}

TEST_F(FrequencyWindowTest, ProgressGrowsByACharacterForEachFileAndIsNavyAt50x50) {
  write("", "202611010000_HFDL_FMT.log");
  write("", "202611110000_HFDL_FMT.log");
  write("", "202611170000_HFDL_FMT.log");
  write("", "202611190000_HFDL_FMT.log");
  open();
  std::vector<std::string> progress;
  bool navy = false;
  PaintWatch paints(window_.picture());
  paints.onPaint = [&] {
    const Drawing& drawing = window_.picture()->drawing();
    const Text* text = std::get_if<Text>(&drawing.shapes.front());
    if (drawing.shapes.size() != 1 || text == nullptr) return;
    progress.push_back(text->text);
    EXPECT_EQ(text->x, 50);
    EXPECT_EQ(text->y, 50);
    EXPECT_EQ(text->colour, (Colour{0, 0, 128}));
    EXPECT_FALSE(scroll()->isEnabled());
    const QImage image = chartImage(drawing, 1);
    for (int y = 50; y < 64; ++y) {
      for (int x = 50; x < 140; ++x) navy = navy || image.pixelColor(x, y) == QColor(0, 0, 128);
    }
  };
  QTest::keyClick(&window_, Qt::Key_F5);
  ASSERT_THAT(progress, ElementsAre("Loading ")) << "drawn before the work begins";
  finishJobs();
  progress.erase(std::unique(progress.begin(), progress.end()), progress.end());
  EXPECT_THAT(progress, ElementsAre("Loading ", "Loading .o", "Loading .oo"));
  EXPECT_TRUE(navy);
  EXPECT_TRUE(scroll()->isEnabled());
}

TEST_F(FrequencyWindowTest, LoadUnderWayKeepsASecondOneFromStarting) {
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Molokai"));
  write(header("2026/11/16 06:00:00") + frequencies("2998", "Auckland"),
        "202611160000_HFDL_FMT.log");
  window_.open();
  int asked = 0;
  QTimer between;
  QObject::connect(&between, &QTimer::timeout, [&] {
    if (drivenJobs->isIdle()) return;
    ++asked;
    const std::size_t before = window_.tables().stationCount();
    window_.loadFMTlog(std::chrono::local_days(std::chrono::year(2020) / 1 / 1));
    window_.resize(window_.width() + 1, window_.height());
    EXPECT_EQ(window_.tables().stationCount(), before);
  });
  between.start(0);
  finishJobs();
  EXPECT_GT(asked, 0);
  EXPECT_EQ(window_.tables().stationCount(), 2U);
}

TEST_F(FrequencyWindowTest, LogsOfOtherDatesAreNotShown) {
  write(header("2026/11/01 06:00:00") + frequencies("2998", "Early"), "202611010000_HFDL_FMT.log");
  write(header("2026/11/30 06:00:00") + frequencies("2998", "Late"), "202611300000_HFDL_FMT.log");
  open();
  EXPECT_EQ(window_.tables().stationCount(), 0U);
}

TEST_F(FrequencyWindowTest, LogThatVanishesIsToldOnceAndTheOthersAreShown) {
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Molokai"),
        "202611150000_HFDL_FMT.log");
  write(header("2026/11/16 06:00:00") + frequencies("2998", "Auckland"),
        "202611160000_HFDL_FMT.log");
  window_.open();
  std::filesystem::remove(station_.base.folders.logs / "202611160000_HFDL_FMT.log");
  finishJobs();
  EXPECT_THAT(station_.desktop.messages, ElementsAre("ERROR #53"));
  ASSERT_EQ(window_.tables().stationCount(), 1U);
  EXPECT_THAT(texts(), testing::Contains("Molokai"));
  EXPECT_FALSE(station_.desktop.ended);
}

TEST_F(FrequencyWindowTest, TenThousandAndOneTimeStampsAreToldAndDrawn) {
  std::string log;
  char stamp[64];
  for (int i = 0; i < 10001; ++i) {
    std::snprintf(stamp, sizeof stamp, "2026/11/15 %02d:%02d:%02d", i / 3600, i / 60 % 60, i % 60);
    log += header(stamp) + frequencies("2998", "Molokai");
  }
  write(log);
  open();
  EXPECT_THAT(station_.desktop.messages,
              ElementsAre("データ量が多く一部のデータを処理できませんでした。（10001件）"
                          "サポートまでお問い合わせください。"));
  EXPECT_EQ(colourAt(painted(), std::floor(x(15, 1, 0) + 0.5), rowMiddle(0)), kMark);
}

TEST_F(FrequencyWindowTest, StationsAndFrequenciesPastTheTablesAreToldOnce) {
  std::string log =
      header("2026/11/15 06:00:00") + frequencies("1 2 3 4 5 6 7 8 9 10 11 12", "Station 0");
  for (int i = 1; i < 32; ++i) log += frequencies("2998", "Station " + std::to_string(i));
  write(log);
  open();
  EXPECT_EQ(window_.tables().stationCount(), 31U);
  EXPECT_THAT(
      station_.desktop.messages,
      ElementsAre("1 station and 1 frequency are not shown. 1局と1周波数は表示されません。"));
}

TEST_F(FrequencyWindowTest, OnlyLostTimePointsAreToldBeforeTheChartIsDrawn) {
  std::string log;
  char stamp[64];
  for (int i = 0; i < 10001; ++i) {
    std::snprintf(stamp, sizeof stamp, "2026/11/15 %02d:%02d:%02d", i / 3600, i / 60 % 60, i % 60);
    log += header(stamp) + frequencies("2998", "Molokai");
  }
  log += frequencies("1 2 3 4 5 6 7 8 9 10 11 12", "Agana");
  write(log);
  std::vector<bool> drawn;
  station_.desktop.onMessage = [&](const std::string&) {
    drawn.push_back(scroll()->isEnabled() &&
                    colourAt(painted(), std::floor(x(15, 1, 0) + 0.5), rowMiddle(0)) == kMark);
  };
  open();
  EXPECT_THAT(drawn, ElementsAre(false, true));
}

TEST_F(FrequencyWindowTest, ScrollBarSlidesTheSurfaceUp) {
  writeManyStations(20);
  open();
  ASSERT_EQ(scroll()->maximum(), window_.picture()->height() - frame()->height());
  ASSERT_GT(scroll()->maximum(), 300);
  scroll()->setValue(123);
  EXPECT_EQ(window_.picture()->y(), -123);
  EXPECT_EQ(window_.picture()->x(), 0);
}

TEST_F(FrequencyWindowTest, KeysScroll) {
  writeManyStations(31);
  open();
  const int page = frame()->height();
  QTest::keyClick(&window_, Qt::Key_PageDown);
  EXPECT_EQ(window_.picture()->y(), -page);
  QTest::keyClick(&window_, Qt::Key_Down);
  EXPECT_EQ(window_.picture()->y(), -page - scroll()->singleStep());
  QTest::keyClick(&window_, Qt::Key_Up);
  QTest::keyClick(&window_, Qt::Key_PageUp);
  EXPECT_EQ(window_.picture()->y(), 0);
  QTest::keyClick(&window_, Qt::Key_End);
  EXPECT_EQ(window_.picture()->y(), frame()->height() - window_.picture()->height());
  QTest::keyClick(&window_, Qt::Key_Home);
  EXPECT_EQ(window_.picture()->y(), 0);
  for (auto* button : window_.findChildren<QToolButton*>()) {
    button->setFocus();
    QTest::keyClick(button, Qt::Key_PageDown);
    EXPECT_EQ(window_.picture()->y(), -page);
    QTest::keyClick(button, Qt::Key_Home);
  }
}

TEST_F(FrequencyWindowTest, WheelOverTheChartScrolls) {
  writeManyStations(20);
  open();
  const auto turn = [&](int delta) {
    const QPoint point = window_.picture()->mapTo(&window_, QPoint(300, 100 + scroll()->value()));
    QWheelEvent event(point, window_.mapToGlobal(point), QPoint(), QPoint(0, delta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    // Only what comes from the outside travels on to parents.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(window_.windowHandle(), &event);
  };
  turn(-120);
  const int lower = window_.picture()->y();
  EXPECT_LT(lower, 0);
  turn(120);
  EXPECT_GT(window_.picture()->y(), lower);
}

TEST_F(FrequencyWindowTest, LeftButtonDoesNothing) {
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Molokai"));
  open();
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Auckland"));
  EXPECT_FALSE(pressMagnifies(Qt::LeftButton, QPoint(300, 60)));
  EXPECT_EQ(window_.tables().stationName(0), "Molokai");
}

TEST_F(FrequencyWindowTest, AnyOtherButtonLoadsAgainAndEnlargesAroundThePoint) {
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Molokai"));
  open();
  int number = 0;
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
    const std::string name = "Station " + std::to_string(++number);
    write(header("2026/11/15 07:03:00") + frequencies("2998", name));
    const double markX = std::floor(x(15, 7, 3) + 0.5);
    const QPoint point = QPointF(markX + 20, rowMiddle(0) - 10).toPoint();
    EXPECT_TRUE(pressMagnifies(button, point)) << button;
    EXPECT_EQ(window_.tables().stationName(0), name);
    EXPECT_EQ(window_.magnifier()->origin(), point - QPoint(75, 75));
    // The mark's pixel (X0 + i, Y0 + j) is the box from (4i, 4j) on.
    const QPoint box(4 * (75 - 20), 4 * (75 + 10));
    EXPECT_EQ(square_.pixelColor(box), kMark);
    EXPECT_EQ(square_.pixelColor(box + QPoint(3, 3)), kMark);
    EXPECT_EQ(square_.pixelColor(box + QPoint(4, 0)), kWhite);
    EXPECT_EQ(square_.pixelColor(box - QPoint(1, 0)), kWhite);
  }
}

TEST_F(FrequencyWindowTest, PressAtTheCornerEnlargesASquareThatReachesOutside) {
  open();
  ASSERT_TRUE(pressMagnifies(Qt::RightButton, QPoint(1, 0)));
  const QColor outside(Magnifier::kOutside);
  EXPECT_EQ(square_.pixelColor(4, 4), outside);
  EXPECT_EQ(square_.pixelColor(4 * 74, 4 * 75), kWhite);
  EXPECT_EQ(square_.pixelColor(4 * 74 - 1, 4 * 75), outside);
  EXPECT_EQ(square_.pixelColor(4 * 74, 4 * 75 - 1), outside);
}

TEST_F(FrequencyWindowTest, ReloadByTheMouseKeepsTheScrolledPlace) {
  writeManyStations(31);
  open();
  scroll()->setValue(400);
  ASSERT_TRUE(pressMagnifies(Qt::RightButton, QPoint(300, 450)));
  EXPECT_EQ(scroll()->value(), 400);
  EXPECT_EQ(window_.picture()->y(), -400);
}

TEST_F(FrequencyWindowTest, ToolTipSaysHowToEnlarge) {
  EXPECT_EQ(window_.picture()->toolTip().toStdString(), "Right-click to enlarge");
}

TEST_F(FrequencyWindowTest, ResizedWindowIsDrawnForItsNewSize) {
  write(header("2026/11/15 07:03:00") + frequencies("2998", "Molokai"));
  open();
  for (const QSize size : {QSize(1270, 780), QSize(760, 400)}) {
    window_.resize(size);
    EXPECT_TRUE(waitFor([&] { return window_.size() == size; }));
    EXPECT_EQ(window_.picture()->size(), frame()->size());
    EXPECT_EQ(colourAt(painted(), std::floor(x(15, 7, 3) + 0.5), rowMiddle(0)), kMark);
    EXPECT_EQ(colourAt(painted(), std::floor(x(16, 0, 0) + 0.5), frame()->height() - 12), kDay);
  }
}

TEST_F(FrequencyWindowTest, SavedPictureIsAReadablePngOfAllStations) {
  writeManyStations(31);
  open();
  const QString file = QString::fromStdString((station_.base / "week.png").string());
  window_.picture()->chooseFile = [&](const QString&) { return file; };
  auto* button = window_.findChild<QToolButton*>();
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->text().toStdString(), "Save picture as PNG...");
  QTest::mouseClick(button, Qt::LeftButton);
  {
    QImageReader reader(file);
    EXPECT_EQ(reader.format(), "png");
    EXPECT_EQ(reader.read().size(), window_.picture()->size());
  }
  EXPECT_GT(window_.picture()->height(), frame()->height());
  std::filesystem::remove(station_.base / "week.png");
  QTest::keyClick(&window_, Qt::Key_S, Qt::ControlModifier);
  EXPECT_TRUE(std::filesystem::exists(station_.base / "week.png"));
}

TEST_F(FrequencyWindowTest, CopyPutsThePictureOnTheClipboard) {
  open();
  QGuiApplication::clipboard()->clear();
  QTest::keyClick(&window_, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), window_.picture()->size());
}

TEST_F(FrequencyWindowTest, ClosedDuringALoadItStopsAndOpensAgain) {
  write(header("2026/11/15 06:00:00") + frequencies("2998", "Molokai"));
  window_.open();
  window_.close();
  finishJobs();
  EXPECT_EQ(window_.tables().stationCount(), 0U);
  EXPECT_FALSE(window_.isVisible());
  open();
  EXPECT_EQ(window_.tables().stationCount(), 1U);
  EXPECT_TRUE(scroll()->isEnabled());
}

TEST_F(FrequencyWindowTest, ClosedWhileAMessageIsShownItOpensAgain) {
  write(header("2026/11/15 06:00:00") + frequencies("1 2 3 4 5 6 7 8 9 10 11 12", "Molokai"));
  station_.desktop.onMessage = [this](const std::string&) { window_.close(); };
  window_.open();
  finishJobs();
  EXPECT_FALSE(window_.isVisible());
  station_.desktop.onMessage = nullptr;
  open();
  EXPECT_EQ(station_.desktop.messages.size(), 2U);
  EXPECT_THAT(texts(), testing::Contains("Molokai"));
  EXPECT_TRUE(scroll()->isEnabled());
}

TEST_F(FrequencyWindowTest, ReopenedTheChartStartsAtTheTop) {
  writeManyStations(31);
  open();
  scroll()->setValue(400);
  window_.close();
  open();
  EXPECT_EQ(scroll()->value(), 0);
  EXPECT_EQ(window_.picture()->y(), 0);
}

TEST_F(FrequencyWindowTest, DatesAndHoursStayAboveTheRowsWhenTheseAreScrolled) {
  writeManyStations(31);
  open();
  const auto upperPart = [this] {
    return frame()->grab(QRect(0, 0, frame()->width(), 20)).toImage();
  };
  const QImage top = upperPart();
  for (const int place : {1, 137, scroll()->maximum()}) {
    scroll()->setValue(place);
    EXPECT_EQ(upperPart(), top) << place;
  }
  // What is saved has the axis once, at its top.
  EXPECT_EQ(window_.picture()->picture().copy(0, 0, frame()->width(), 20),
            top.convertToFormat(QImage::Format_RGB32));
}

TEST_F(FrequencyWindowTest, MagnifierTellsTheHoursAndTheDateOfItsPart) {
  writeManyStations(31);
  open();
  scroll()->setValue(400);
  const QPoint point(static_cast<int>(x(15, 7, 0)), 600);
  ASSERT_TRUE(pressMagnifies(Qt::RightButton, point));
  const int below = 4 * (Magnifier::kSquare + 2);
  ASSERT_GT(square_.height(), below + 10);
  const double left = window_.magnifier()->origin().x() + 1;
  const auto enlarged = [&](int hour) {
    return static_cast<int>(4 + 4 * (std::floor(x(15, hour, 0) + 0.5) - left));
  };
  EXPECT_EQ(square_.pixelColor(enlarged(8), below + 2), QColor(100, 150, 100));
  EXPECT_EQ(square_.pixelColor(enlarged(8) + 10, below + 2), kWhite);
  EXPECT_EQ(square_.pixelColor(enlarged(0), below + 2), kDay);
}

TEST_F(FrequencyWindowTest, ToolTipTellsStationFrequencyDayAndTimeAndIsNoMarkup) {
  write(header("2026/11/15 06:00:00") + frequencies("2998", "<img src=x width=3000>"));
  open();
  const QPoint point(static_cast<int>(std::ceil(x(15, 7, 0))), static_cast<int>(rowMiddle(0)));
  QHelpEvent help(QEvent::ToolTip, point, window_.picture()->mapToGlobal(point));
  QCoreApplication::sendEvent(window_.picture(), &help);
  EXPECT_FALSE(Qt::mightBeRichText(QToolTip::text()));
  QString shown = QToolTip::text();
  // The sign without width that makes a tag harmless.
  shown.remove(QChar(0x2060));
  EXPECT_THAT(shown.toStdString(),
              testing::StartsWith("<img src=x width=3000>\n2998\n2026/11/15 07:0"));
  EXPECT_THAT(shown.toStdString(), testing::EndsWith("\nRight-click to enlarge"));
}

TEST_F(FrequencyWindowTest, ArrowKeysMoveThePointFromRowToRowAndKeepItInSight) {
  writeManyStations(31);
  open();
  QTest::keyClick(&window_, Qt::Key_Right);
  ASSERT_TRUE(window_.picture()->point().has_value());
  const QPoint first = *window_.picture()->point();
  QTest::keyClick(&window_, Qt::Key_Right);
  EXPECT_GT(window_.picture()->point()->x(), first.x());
  QTest::keyClick(&window_, Qt::Key_Left);
  EXPECT_EQ(*window_.picture()->point(), first);
  QTest::keyClick(&window_, Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(window_.picture()->point()->x(), first.x() + 1);
  int last = first.y();
  for (int i = 0; i < 400; ++i) {
    QTest::keyClick(&window_, Qt::Key_Down);
    const QPoint point = *window_.picture()->point();
    EXPECT_GE(point.y(), last);
    last = point.y();
    const int seen = point.y() + window_.picture()->y();
    ASSERT_GE(seen, kAxisHeight);
    ASSERT_LT(seen, frame()->height());
    ASSERT_TRUE(placeTip(window_.tables(),
                         std::chrono::local_days(std::chrono::year(2026) / 11 / 11),
                         window_.picture()->width(), point.x(), point.y())
                    .starts_with("Station "));
  }
  EXPECT_TRUE(QToolTip::text().startsWith(QStringLiteral("Station 30\n17919\n2026/11/")));
  EXPECT_EQ(scroll()->value(), scroll()->maximum());
  for (int i = 0; i < 400; ++i) QTest::keyClick(&window_, Qt::Key_Up);
  EXPECT_TRUE(QToolTip::text().startsWith(QStringLiteral("Station 0\n2998\n2026/11/")));
  EXPECT_EQ(scroll()->value(), 0);
}

TEST_F(FrequencyWindowTest, MenuKeysOpenAMenuThatEnlargesSavesCopiesAndLoadsAgain) {
  write(header("2026/11/15 07:03:00") + frequencies("2998", "Molokai"));
  open();
  // The keys are the active window's: after a menu or the magnifier it becomes that
  // again, and they are pressed until they are heard.
  const auto menuAfter = [this](Qt::Key key, Qt::KeyboardModifiers modifier) {
    QMenu* menu = nullptr;
    EXPECT_TRUE(QTest::qWaitFor([&] {
      if (QApplication::activeWindow() != &window_) window_.activateWindow();
      QTest::keyClick(&window_, key, modifier);
      menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      return menu != nullptr;
    }));
    return menu;
  };
  for (const auto& [key, modifier] :
       {std::pair(Qt::Key_Menu, Qt::NoModifier), std::pair(Qt::Key_F10, Qt::ShiftModifier)}) {
    QMenu* menu = menuAfter(key, modifier);
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->objectName().toStdString(), "ChartMenu");
    std::vector<std::string> captions;
    for (const QAction* action : menu->actions()) {
      captions.push_back(action->text().remove(QLatin1Char('&')).toStdString());
    }
    EXPECT_THAT(captions,
                ElementsAre("Enlarge", "Save picture as PNG...", "Copy picture", "Reload"));
    QTest::keyClick(menu, Qt::Key_Escape);
    EXPECT_FALSE(menu->isVisible());
  }
  QTest::keyClick(&window_, Qt::Key_Right);
  const QPoint point = *window_.picture()->point();
  write(header("2026/11/15 07:03:00") + frequencies("2998", "Auckland"));
  QMenu* menu = menuAfter(Qt::Key_Menu, Qt::NoModifier);
  ASSERT_NE(menu, nullptr);
  QTest::keyClick(menu, Qt::Key_E);
  finishJobs();
  EXPECT_EQ(window_.tables().stationName(0), "Auckland");
  EXPECT_TRUE(window_.magnifier()->isVisible());
  EXPECT_EQ(QApplication::activeModalWidget(), window_.magnifier());
  EXPECT_EQ(window_.magnifier()->origin(), point - QPoint(75, 75));
  window_.magnifier()->close();
  EXPECT_EQ(window_.picture()->point(), point) << "still there";
  write(header("2026/11/15 07:03:00") + frequencies("2998", "Agana"));
  menu = menuAfter(Qt::Key_Menu, Qt::NoModifier);
  ASSERT_NE(menu, nullptr);
  QTest::keyClick(menu, Qt::Key_R);
  finishJobs();
  EXPECT_EQ(window_.tables().stationName(0), "Agana");
  EXPECT_FALSE(window_.magnifier()->isVisible());
}

TEST_F(FrequencyWindowTest, MouseAloneOpensNoMenu) {
  open();
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(300, 60),
                          window_.picture()->mapToGlobal(QPoint(300, 60)));
  QCoreApplication::sendEvent(window_.picture(), &event);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

}  // namespace
}  // namespace vel::test
