#include <QApplication>
#include <QHeaderView>
#include <QImage>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextCursor>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "acars/ui/acars_browser.h"
#include "app/ui/program.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/ui/support/window_driver.h"
#include "tests/ui/tour/tour_geometry.h"
#include "tour/ui/tour_window.h"
#include "tour/ui/window_tour_host.h"

namespace vel {
namespace {

using test::distance;
using test::edgeOf;
using test::edgesOf;
using test::pointsAt;

constexpr QSize kDesignedPixels(15000 / 15, 10800 / 15);
constexpr int kPanelHeight = 3630 / 15;
constexpr int kWholeWindowStep = 22;
constexpr int kThanksStep = 29;
constexpr double kNone = 1e9;

/// The controls that the steps explain, by the names that the window's users
/// know them under. Column titles, rows and the whole window are not among them.
const std::map<int, QStringList>& controlNames() {
  static const std::map<int, QStringList> names = {
      {1, {"Combo1"}},    {2, {"Command5"}},
      {8, {"Image1"}},    {9, {"Command7(0)"}},
      {10, {"Text1"}},    {11, {"Frame2"}},
      {12, {"Text2(0)"}}, {13, {"Text2(1)"}},
      {14, {"Text3"}},    {15, {"List1"}},
      {17, {"Command2"}}, {16, {"Command3(0)", "Command3(1)"}},
      {18, {"Combo3"}},   {19, {"Command7(1)"}},
      {20, {"Frame3"}},   {21, {"Text2(3)", "Text2(4)"}},
      {23, {"Text4(0)"}}, {24, {"Text4(2)"}},
      {25, {"Text4(6)"}}, {26, {"Command9"}},
      {27, {"Label3"}},   {28, {"Text2(5)", "Text2(6)"}},
  };
  return names;
}

const std::map<int, QList<int>>& explainedColumns() {
  static const std::map<int, QList<int>> columns = {{3, {1}}, {4, {2}}, {5, {4, 5}}, {6, {6}}};
  return columns;
}

bool isPanelStep(int step) { return (step >= 8 && step <= 22) || step == 28; }

/// The program's real main window with the tour as main() wires it.
class RealTourTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_GE(screen().width(), 1280) << "Run this on one of the screen_*.json screens";
    ASSERT_GE(screen().height(), 800);
    base_.writeData("aircraft.csv", {"JA8089,B744", "N445FX,E545"});
    base_.writeData("FLIGHT.csv", {"NH0201,RJTTRJAA,Ferry", "EW8207,EGJJEDDT,-"});
    base_.writeData("letter.csv", {"NH,ANA,All Nippon", "EW,EWG,Eurowings"});
    base_.writeData("airport.csv", {"RJTT,Tokyo Haneda 東京 HND", "RJAA,Tokyo Narita 成田 NRT",
                                    "EGJJ,Jersey Airport JER", "EDDT,Berlin Tegel TXL"});
    base_.writeLog(
        "20260101_list.csv",
        {"Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time",
         "NH0201,O,JA8089,RJTT,RJAA,B744,臨時便,0:00:04",
         "EW8207,X,N445FX,EGJJ,EDDT,E545,-,0:00:23", "FR7722,×,RA-73097,EGPF,EGAE,B738,-,0:01:08"});
    savePhoto("JA8089.jpg", 300, 200);
    savePhoto("noimage.jpg", 150, 100);

    program_.setBrowsers(
        [this](BrowserFrame& owner) {
          auto made = std::make_unique<AcarsBrowser>(owner, web_);
          made->prepareTour = [this](int step) { state_.step = step; };
          made->showTour = [this, window = made.get()] {
            const WindowTourHost host(window);
            TourWindow(host, state_).exec();
          };
          browser_ = made.get();
          return made;
        },
        nullptr);
    ASSERT_TRUE(program_.Main());
    ASSERT_TRUE(QTest::qWaitFor([this] { return browser_ != nullptr && browser_->isVisible(); },
                                test::kPatience));
    // A window that was just shown keeps itself in its place for a moment.
    QTest::qWait(kSettleMilliseconds);
    // A little above the middle, as window managers do.
    browser_->move((screen().width() - kDesignedPixels.width()) / 2,
                   (screen().height() - kDesignedPixels.height()) / 3);
    resizeOuter(kDesignedPixels);
    ASSERT_EQ(browser_->frameGeometry().size(), kDesignedPixels);
    ASSERT_EQ(desktop_.messages, std::vector<std::string>());
  }

  static constexpr int kSettleMilliseconds = 700;

  static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }

  /// The size of the main window with its frame.
  void resizeOuter(const QSize& size) const {
    browser_->resize(size - (browser_->frameGeometry().size() - browser_->size()));
    QTest::qWait(5);
    letWindowManagerAct();
  }

  /// A real window manager frames, moves and resizes windows some time after
  /// it was asked to.
  static void letWindowManagerAct() {
    if (QGuiApplication::platformName() != QStringLiteral("offscreen")) QTest::qWait(200);
  }

  void savePhoto(const char* name, int width, int height) const {
    QImage photo(width, height, QImage::Format_RGB32);
    photo.fill(QColor(80, 140, 200));
    ASSERT_TRUE(photo.save(QString::fromStdString((base_.folders.pics / name).string()), "JPG"));
  }

  /// A control of the main window, never one of the tour.
  [[nodiscard]] QWidget* control(const QString& name) const {
    auto* found = browser_->centralWidget()->findChild<QWidget*>(name);
    EXPECT_NE(found, nullptr) << name.toStdString();
    return found;
  }
  [[nodiscard]] QTableView* list() const { return qobject_cast<QTableView*>(control("xLView1")); }
  static QRect onScreen(const QWidget* widget, const QRect& within) {
    return {widget->mapToGlobal(within.topLeft()), within.size()};
  }

  void selectLine(int row) const {
    const QRect cell = list()->visualRect(list()->model()->index(row, 1));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
    ASSERT_EQ(list()->currentIndex().row(), row);
    ASSERT_TRUE(QTest::qWaitFor([this] { return control("Frame2")->isVisible(); }));
  }

  /// Where the controls of a step are on the screen, taken from the window.
  [[nodiscard]] QList<QRect> controlsOf(int step) const {
    QList<QRect> places;
    if (const auto named = controlNames().find(step); named != controlNames().end()) {
      for (const QString& name : named->second) {
        EXPECT_TRUE(control(name)->isVisible()) << name.toStdString();
        places.append(onScreen(control(name), control(name)->rect()));
      }
    }
    if (const auto titles = explainedColumns().find(step); titles != explainedColumns().end()) {
      const QHeaderView* header = list()->horizontalHeader();
      for (const int column : titles->second) {
        places.append(onScreen(header->viewport(),
                               {header->sectionViewportPosition(column), 0,
                                header->sectionSize(column), header->viewport()->height()}));
      }
    }
    if (step == 7) {
      // Line, flight and photo mark of the selected line.
      const int row = std::max(0, list()->currentIndex().row());
      QRect cells;
      for (int column = 0; column < 3; ++column) {
        cells |= list()->visualRect(list()->model()->index(row, column));
      }
      places.append(onScreen(list()->viewport(), cells));
    }
    if (step == kWholeWindowStep) places.append(browser_->frameGeometry());
    return places;
  }

  /// The step's own place, wherever the screen ends.
  [[nodiscard]] QPoint stepsPlace(int step, const QSize& tour) const {
    const QRect main = browser_->frameGeometry();
    if (step == kThanksStep) {
      return main.topLeft() +
             QPoint((main.width() - tour.width()) / 2, (main.height() - tour.height()) / 2);
    }
    const TourStep& s = *tourStep(step);
    const double left = s.left / 15.0 + (step == kWholeWindowStep ? main.width() : 0);
    const double top = s.top / 15.0 + (isPanelStep(step) ? main.height() - kPanelHeight : 0);
    return main.topLeft() +
           QPoint(static_cast<int>(std::lround(left)), static_cast<int>(std::lround(top)));
  }

  /// Presses "Tour", runs the script while the tour is open, and closes it.
  void takeTour(const std::function<void(TourWindow&)>& script) {
    bool taken = false;
    QTimer::singleShot(0, browser_, [&] {
      const QPointer<TourWindow> tour =
          qobject_cast<TourWindow*>(QApplication::activeModalWidget());
      ASSERT_NE(tour, nullptr);
      taken = true;
      ASSERT_TRUE(QTest::qWaitFor([&tour] { return QApplication::activeWindow() == tour; }));
      letWindowManagerAct();
      // A tick takes the tour's own frame into account; two keep the blink on.
      tour->blink();
      tour->blink();
      script(*tour);
      if (tour != nullptr) tour->close();
    });
    QTest::mouseClick(control("Command4"), Qt::LeftButton);
    ASSERT_TRUE(taken);
  }

  static void key(const TourWindow& tour, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    ASSERT_NE(tour.focusWidget(), nullptr);
    QTest::keyClick(tour.focusWidget(), key, modifiers);
  }

  static QString text(const TourWindow& tour) {
    return tour.findChild<QPlainTextEdit*>(QStringLiteral("Text1"))->toPlainText();
  }
  static QString expectedText(int step) {
    return QString::fromStdString(shownText(step))
        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  }

  /// The step's own place where it is on the screen, else one that is.
  void expectPlace(const TourWindow& tour, int step) const {
    const QPoint own = stepsPlace(step, tour.frameGeometry().size());
    if (screen().contains(QRect(own, tour.frameGeometry().size()))) {
      EXPECT_EQ(tour.pos(), own);
    } else {
      EXPECT_TRUE(screen().contains(tour.frameGeometry()));
    }
  }

  void expectFramedAndInSight(const TourWindow& tour, const QList<QRect>& controls) const {
    QList<QRect> framed;
    for (const ControlFrame* frame : browser_->findChildren<ControlFrame*>()) {
      if (frame->isVisible()) framed.append(onScreen(frame, frame->rect()));
    }
    ASSERT_EQ(framed.size(), controls.size());
    for (qsizetype i = 0; i < controls.size(); ++i) {
      const QRect inWindow = controls[i] & onScreen(browser_, browser_->rect());
      EXPECT_TRUE(framed[i].contains(inWindow));
      EXPECT_TRUE(controls[i].adjusted(-5, -5, 5, 5).contains(framed[i]));
      if (state_.step != kWholeWindowStep) {
        EXPECT_FALSE(tour.frameGeometry().intersects(controls[i]));
      }
    }
  }

  /// Each pointer of the step stands on the edge nearest its control.
  void expectPointers(const TourWindow& tour, int step, const QList<QRect>& controls) const {
    for (int i = 0; i < kTourPointerCount; ++i) {
      SCOPED_TRACE("pointer " + std::to_string(i));
      const auto* pointer = tour.findChild<PointerPicture*>(QStringLiteral("Image1(%1)").arg(i));
      ASSERT_NE(pointer, nullptr);
      if (!tourStep(step)->pointers[static_cast<std::size_t>(i)]) {
        EXPECT_FALSE(pointer->isVisible());
        continue;
      }
      const int edge = edgeOf(pointer);
      ASSERT_NE(edge, -1);
      double pointed = kNone;
      double nearest = kNone;
      for (const QRect& each : controls) {
        nearest = std::min(nearest, distance(tour.geometry(), each));
        if (!pointsAt(pointer, each)) continue;
        pointed = std::min(pointed, distance(edgesOf(tour.geometry())[edge], each));
      }
      ASSERT_LT(pointed, kNone) << "points at nothing";
      // Over a maximised window every edge is as near as the other.
      if (nearest > 0 || step != kWholeWindowStep) {
        EXPECT_LE(pointed, nearest + 1);
      }
    }
  }

  void expectStep(const TourWindow& tour, int step) const {
    SCOPED_TRACE("step " + std::to_string(step));
    letWindowManagerAct();
    ASSERT_EQ(state_.step, step);
    EXPECT_EQ(text(tour), expectedText(step));
    expectPlace(tour, step);
    const QList<QRect> controls = controlsOf(step);
    EXPECT_EQ(controls.isEmpty(), step == kThanksStep);
    expectFramedAndInSight(tour, controls);
    expectPointers(tour, step, controls);
  }

  test::TemporaryBase base_;
  test::RecordingDesktop desktop_;
  Program program_{desktop_, base_.folders};
  WebAccess web_{program_.context()};
  TourState state_;
  AcarsBrowser* browser_ = nullptr;
};

TEST_F(RealTourTest, WalksByKeyBesideEveryControlFramingItAndPointingAtIt) {
  selectLine(1);
  takeTour([this](TourWindow& tour) {
    for (int step = 1; step <= 29; ++step) {
      expectStep(tour, step);
      ASSERT_TRUE(tour.isVisible());
      if (step % 2 == 0) {
        key(tour, Qt::Key_Right);
      } else {
        key(tour, Qt::Key_N, Qt::AltModifier);
      }
    }
    EXPECT_FALSE(tour.isVisible());
    EXPECT_EQ(state_.step, 1);
  });
  EXPECT_TRUE(browser_->findChildren<ControlFrame*>().isEmpty());
  takeTour([this](TourWindow& tour) { expectStep(tour, 1); });
}

TEST_F(RealTourTest, WalksBackByKeyAndEscapeLeavesIt) {
  selectLine(0);
  takeTour([this](TourWindow& tour) {
    for (int step = 29; step >= 1; --step) {
      if (step % 2 == 0) {
        key(tour, Qt::Key_Left);
      } else {
        key(tour, Qt::Key_P, Qt::AltModifier);
      }
      expectStep(tour, step);
    }
    key(tour, Qt::Key_Escape);
    EXPECT_FALSE(tour.isVisible());
  });
  EXPECT_EQ(state_.step, 1);
}

TEST_F(RealTourTest, ResumesWhereItWasLeftUntilTheWindowLoadsAgain) {
  selectLine(0);
  takeTour([this](TourWindow& tour) {
    for (int i = 0; i < 11; ++i) key(tour, Qt::Key_Right);
    expectStep(tour, 12);
    key(tour, Qt::Key_Escape);
    EXPECT_FALSE(tour.isVisible());
  });
  takeTour([this](TourWindow& tour) { expectStep(tour, 12); });
  browser_->load();
  EXPECT_TRUE(QTest::qWaitFor([this] { return state_.step == 1; }));
  takeTour([this](TourWindow& tour) { expectStep(tour, 1); });
}

TEST_F(RealTourTest, WithoutASelectedLineShowsTheFramesAndHidesThemAgain) {
  ASSERT_LT(list()->currentIndex().row(), 0);
  const auto framesShown = [this] {
    std::string shown;
    for (const char* name : {"Frame1", "Frame2", "Frame3", "Label5"}) {
      if (control(QString::fromLatin1(name))->isVisible()) shown += std::string(name) + " ";
    }
    return shown;
  };
  ASSERT_EQ(framesShown(), "Label5 ");
  takeTour([&](TourWindow& tour) {
    EXPECT_EQ(framesShown(), "Frame1 Frame2 Frame3 ");
    for (int step = 1; step <= 29; ++step) {
      expectStep(tour, step);
      key(tour, Qt::Key_Right);
    }
  });
  EXPECT_EQ(framesShown(), "Label5 ");
}

TEST_F(RealTourTest, StepsMarkedPanelFollowTheResizedWindowAndTheOthersStay) {
  selectLine(2);
  takeTour([this](TourWindow& tour) {
    for (int step = 1; step <= 28; ++step) {
      SCOPED_TRACE(step);
      const QPoint before = stepsPlace(step, tour.frameGeometry().size());
      resizeOuter(kDesignedPixels - QSize(0, 90));
      ASSERT_EQ(browser_->frameGeometry().height(), kDesignedPixels.height() - 90);
      expectStep(tour, step);
      if (step != kWholeWindowStep) {
        EXPECT_EQ(tour.pos(), before - QPoint(0, isPanelStep(step) ? 90 : 0));
      }
      resizeOuter(kDesignedPixels);
      expectStep(tour, step);
      key(tour, Qt::Key_Right);
    }
  });
}

TEST_F(RealTourTest, AWiderAndHigherWindowKeepsEveryStepRight) {
  selectLine(0);
  browser_->move(0, 0);
  resizeOuter(screen().size() - QSize(40, 40));
  takeTour([this](TourWindow& tour) {
    for (int step = 1; step <= 29; ++step) {
      expectStep(tour, step);
      key(tour, Qt::Key_Right);
    }
  });
}

/// Whether each step's text can be read as it stands in its window.
class ReadableTourTest : public RealTourTest {
 protected:
  /// Every step shows its whole text, covers nothing of what it explains, and
  /// no scroll bar is to be seen.
  void expectWholeTexts() {
    selectLine(0);
    takeTour([&](TourWindow& tour) {
      for (int step = 1; step <= 29; ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        ASSERT_EQ(state_.step, step);
        letWindowManagerAct();
        const auto* box = tour.findChild<QPlainTextEdit*>(QStringLiteral("Text1"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return box->toPlainText() == expectedText(step); }));
        EXPECT_EQ(box->verticalScrollBar()->maximum(), 0);
        EXPECT_FALSE(box->verticalScrollBar()->isVisible());
        expectPlace(tour, step);
        expectFramedAndInSight(tour, controlsOf(step));
        key(tour, Qt::Key_Right);
      }
    });
  }

  /// Nothing is painted of a line that sticks out of the viewport.
  static void expectWholeLines(QPlainTextEdit& box) {
    const QImage seen = box.viewport()->grab().toImage();
    const int height = box.viewport()->height();
    const QRgb paper = seen.pixel(0, seen.height() - 1);
    QTextCursor cursor = box.cursorForPosition({2, 2});
    bool more = true;
    for (; more; more = cursor.movePosition(QTextCursor::Down)) {
      const QRect line = box.cursorRect(cursor);
      if (line.top() >= height || line.bottom() < height) continue;
      for (int y = line.top() + 1; y < height; ++y) {
        for (int x = 0; x < seen.width(); ++x) ASSERT_EQ(seen.pixel(x, y), paper) << x << "," << y;
      }
    }
  }
};

TEST_F(ReadableTourTest, EveryStepShowsItsWholeTextAndCoversNothingOfItsControl) {
  expectWholeTexts();
}

TEST_F(ReadableTourTest, WhatCannotBeShownAtOnceIsScrolledByWholeLines) {
  selectLine(0);
  takeTour([](TourWindow& tour) {
    auto* box = tour.findChild<QPlainTextEdit*>(QStringLiteral("Text1"));
    for (int height = tour.height(); height > tour.height() / 2; --height) {
      SCOPED_TRACE(height);
      box->setFixedHeight(height - tour.height() / 3);
      ASSERT_TRUE(QTest::qWaitFor([&] { return box->height() == box->maximumHeight(); }));
      expectWholeLines(*box);
    }
    EXPECT_TRUE(box->verticalScrollBar()->isVisible());
  });
}

/// The same for a user whose letters are a quarter larger.
class LargeLettersTourTest : public ReadableTourTest {
 protected:
  void SetUp() override {
    QFont larger = usual_;
    larger.setPointSizeF(usual_.pointSizeF() * 1.25);
    QApplication::setFont(larger);
    ReadableTourTest::SetUp();
  }
  void TearDown() override { QApplication::setFont(usual_); }

  QFont usual_ = QApplication::font();
};

TEST_F(LargeLettersTourTest, EveryStepShowsItsWholeTextAndCoversNothingOfItsControl) {
  expectWholeTexts();
}

TEST_F(LargeLettersTourTest, TheTextIsNeverSmallerThanUsualLetters) {
  selectLine(0);
  takeTour([&](TourWindow& tour) {
    const auto* box = tour.findChild<QPlainTextEdit*>(QStringLiteral("Text1"));
    for (int step = 1; step <= 29; ++step) {
      EXPECT_GE(QFontInfo(box->font()).pixelSize() + 1, QFontInfo(usual_).pixelSize()) << step;
      key(tour, Qt::Key_Right);
    }
  });
}

/// What a window manager puts around windows, in pixels.
struct OuterFrame {
  int title;
  int border;
};

/// Every step of the designed window under title bars of usual heights: the
/// window's controls as they are, the outer frames of both windows made up.
class FramedTourTest : public RealTourTest {
 protected:
  void sweep(const QRect& screenArea, const QPoint& corner, const OuterFrame& frame) {
    const TourSize tour{(tourInner_.width() + 2 * frame.border) * 15,
                        (tourInner_.height() + frame.title + frame.border) * 15};
    const TourRect main = twips(QRect(corner, kDesignedPixels));
    const std::vector<TourRect> screens = {twips(screenArea)};
    const int panelTop = main.height - 3630;
    for (const auto& [step, atOrigin] : controls_) {
      SCOPED_TRACE("step " + std::to_string(step));
      std::vector<TourRect> controls;
      for (const QRect& each : atOrigin) {
        controls.push_back(twips(each.translated(corner + QPoint(frame.border, frame.title))));
      }
      const auto place = tourPosition(step, main, panelTop, tour, screens, controls);
      ASSERT_TRUE(place);
      const TourRect outer{place->left, place->top, tour.width, tour.height};
      ASSERT_GE(outer.left, screens[0].left);
      ASSERT_LE(outer.right(), screens[0].right());
      ASSERT_GE(outer.top, screens[0].top);
      ASSERT_LE(outer.bottom(), screens[0].bottom());
      for (const TourRect& each : controls) {
        ASSERT_TRUE(outer.right() <= each.left || each.right() <= outer.left ||
                    outer.bottom() <= each.top || each.bottom() <= outer.top);
      }
      const TourStep& s = *tourStep(step);
      const TourPoint own{main.left + s.left, main.top + s.top + (s.panel ? panelTop : 0)};
      if (own.left + tour.width <= screens[0].right() &&
          own.top + tour.height <= screens[0].bottom()) {
        ASSERT_EQ(*place, own);
        ++ownPlaces_;
      }
      ++places_;
    }
  }

  void sweepFrames(const QRect& screenArea, const QPoint& corner) {
    for (const int border : {0, 1, 4, 6}) {
      for (int title = 20; title <= 30; ++title) {
        SCOPED_TRACE("title " + std::to_string(title) + " border " + std::to_string(border));
        ASSERT_NO_FATAL_FAILURE(sweep(screenArea, corner, {title, border}));
      }
    }
    ASSERT_NO_FATAL_FAILURE(sweep(screenArea, corner, {0, 0}));
  }

  void measure() {
    selectLine(0);
    for (int step = 1; step <= 28; ++step) {
      if (step == kWholeWindowStep) continue;
      for (const QRect& each : controlsOf(step)) {
        controls_[step].append(each.translated(-browser_->geometry().topLeft()));
      }
    }
    takeTour([this](TourWindow& tour) { tourInner_ = tour.size(); });
    ASSERT_EQ(controls_.size(), 27U);
  }

  static TourRect twips(const QRect& r) {
    return {r.x() * 15, r.y() * 15, r.width() * 15, r.height() * 15};
  }

  std::map<int, QList<QRect>> controls_;
  QSize tourInner_;
  int places_ = 0;
  int ownPlaces_ = 0;
};

TEST_F(FramedTourTest, OnALargeScreenEveryStepStandsAtItsOwnPlaceBesideItsControl) {
  measure();
  sweepFrames({0, 0, 1920, 1200}, {300, 100});
  EXPECT_EQ(places_, 27 * 45);
  EXPECT_EQ(ownPlaces_, places_);
}

TEST_F(FramedTourTest, OnScreensThatAreTooLowNoStepCoversItsControl) {
  measure();
  for (const QRect& area :
       {QRect(0, 0, 1280, 800), QRect(0, 28, 1366, 740), QRect(0, 0, 1440, 860)}) {
    for (int left = 0; left <= 280; left += 70) {
      for (int top = area.top(); top <= 90; top += 15) {
        SCOPED_TRACE(std::to_string(area.width()) + ": " + std::to_string(left) + ", " +
                     std::to_string(top));
        ASSERT_NO_FATAL_FAILURE(sweepFrames(area, {left, top}));
      }
    }
  }
  EXPECT_LT(ownPlaces_, places_);
  EXPECT_GT(ownPlaces_, places_ / 2);
}

}  // namespace
}  // namespace vel
