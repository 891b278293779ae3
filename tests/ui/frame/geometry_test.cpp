#include <filesystem>

#include <gmock/gmock.h>

#include "core/ui/twips.h"
#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/plain_browser.h"
#include "tests/ui/support/settled_places.h"

namespace vel {
namespace {

class BrowserGeometry : public test::AcarsWindowTest {
 protected:
  // A place that stood for less may have been that of the next window state.
  static constexpr std::chrono::milliseconds kLongEnough{500};

  void saveGeometry(int top, int left, int height, int width, int state) const {
    test::writeBytes(base_.folders.program / "vel.env",
                     "\"env_Form1_Top\"," + std::to_string(top) + "\r\n\"env_Form1_Left\"," +
                         std::to_string(left) + "\r\n\"env_Form1_Height\"," +
                         std::to_string(height) + "\r\n\"env_Form1_Width\"," +
                         std::to_string(width) + "\r\n\"env_Form1_WinS\"," + std::to_string(state) +
                         "\r\n");
  }
  /// Waits until the window's place has settled after it was shown.
  static void letSettle() { ASSERT_TRUE(test::placesSettle()); }

  static QRect outerTwips(const BrowserWindow& window) {
    const QRect pixels = window.frameGeometry();
    return {toTwips(pixels.x()), toTwips(pixels.y()), toTwips(pixels.width()),
            toTwips(pixels.height())};
  }
  /// Waits until the common place is this one: a corner with the frame and a
  /// size without it, in pixels.
  [[nodiscard]] bool isRecorded(const BrowserWindow& window, const QRect& place) const {
    return QTest::qWaitFor([&] {
      return window.pos() == place.topLeft() && window.size() == place.size() &&
             program_->place().normal() == outerTwips(window);
    });
  }
  void closeAndStartAgain() {
    window().close();
    program_.reset();
    desktop_.ended = false;
    start();
    letSettle();
  }
};

TEST_F(BrowserGeometry, WithoutSettingsTheWindowHasItsDesignedSize) {
  start();
  letSettle();
  EXPECT_EQ(outerTwips(window()).size(), window().designedSize());
  EXPECT_FALSE(window().isMaximized());
}

TEST_F(BrowserGeometry, ASavedPlaceComesBackInTwips) {
  saveGeometry(600, 450, 9000, 14700, 0);
  start();
  letSettle();
  EXPECT_EQ(outerTwips(window()), QRect(450, 600, 14700, 9000));
}

TEST_F(BrowserGeometry, ASavedWidthBelowTwoThousandCountsAsNone) {
  saveGeometry(600, 450, 9000, 1999, 2);
  start();
  letSettle();
  EXPECT_EQ(outerTwips(window()).size(), window().designedSize());
}

TEST_F(BrowserGeometry, ASavedHeightBelowFiveHundredCountsAsNone) {
  saveGeometry(600, 450, 499, 14700, 0);
  start();
  letSettle();
  EXPECT_EQ(outerTwips(window()).size(), window().designedSize());
}

TEST_F(BrowserGeometry, AMinimisedStateIsNeverRestored) {
  saveGeometry(600, 450, 9000, 14700, 1);
  start();
  letSettle();
  EXPECT_FALSE(window().isMinimized());
  EXPECT_EQ(outerTwips(window()), QRect(450, 600, 14700, 9000));
}

TEST_F(BrowserGeometry, AMaximisedStateIsRestored) {
  saveGeometry(600, 450, 9000, 14700, 2);
  start();
  letSettle();
  EXPECT_TRUE(window().isMaximized());
  // The place it had before is still the one to save.
  EXPECT_EQ(settings().env_Form1_WinS, 2);
  EXPECT_EQ(settings().env_Form1_Width, 14700);
  EXPECT_EQ(settings().env_Form1_Left, 450);
}

TEST_F(BrowserGeometry, AResizeAndAMoveAreRecorded) {
  start();
  letSettle();
  window().resize(1010, 640);
  window().move(30, 45);
  EXPECT_TRUE(QTest::qWaitFor([this] { return settings().env_Form1_Top == 45 * 15; }));
  const QRect place = outerTwips(window());
  EXPECT_EQ(settings().env_Form1_WinS, 0);
  EXPECT_EQ(settings().env_Form1_Left, place.x());
  EXPECT_EQ(settings().env_Form1_Top, place.y());
  EXPECT_EQ(settings().env_Form1_Width, place.width());
  EXPECT_EQ(settings().env_Form1_Height, place.height());
  EXPECT_EQ(place.x(), 30 * 15);
  EXPECT_EQ(place.y(), 45 * 15);
}

TEST_F(BrowserGeometry, NothingIsRecordedWhileTheSettingsAreLoaded) {
  start();
  letSettle();
  const double width = settings().env_Form1_Width;
  const double left = settings().env_Form1_Left;
  program_->place().settingsLoading();
  window().resize(1010, 640);
  window().move(77, 88);
  ASSERT_TRUE(QTest::qWaitFor([this] { return window().pos() == QPoint(77, 88); }));
  QCoreApplication::processEvents();
  EXPECT_EQ(settings().env_Form1_Width, width);
  EXPECT_EQ(settings().env_Form1_Left, left);
}

TEST_F(BrowserGeometry, AWindowClosedMinimisedComesBackAtItsLastNormalPlace) {
  start();
  letSettle();
  window().resize(1010, 640);
  window().move(30, 45);
  desktop_.passed += kLongEnough;
  const QRect normal = outerTwips(window());
  window().showMinimized();
  ASSERT_TRUE(QTest::qWaitFor([this] { return settings().env_Form1_WinS == 1; }));
  EXPECT_EQ(settings().env_Form1_Height, normal.height());
  closeAndStartAgain();
  EXPECT_FALSE(window().isMinimized());
  EXPECT_FALSE(window().isMaximized());
  EXPECT_EQ(outerTwips(window()), normal);
}

TEST_F(BrowserGeometry, AWindowClosedMaximisedOpensMaximised) {
  start();
  letSettle();
  window().resize(1010, 640);
  desktop_.passed += kLongEnough;
  const int normalWidth = outerTwips(window()).width();
  window().showMaximized();
  EXPECT_TRUE(QTest::qWaitFor([this] { return settings().env_Form1_WinS == 2; }));
  EXPECT_EQ(settings().env_Form1_Width, normalWidth);
  closeAndStartAgain();
  EXPECT_TRUE(window().isMaximized());
}

TEST_F(BrowserGeometry, ASizeGivenAMomentBeforeMaximisingIsTheNormalOne) {
  start();
  letSettle();
  window().resize(1010, 640);
  ASSERT_TRUE(isRecorded(window(), QRect(window().pos(), QSize(1010, 640))));
  desktop_.passed += kLongEnough;
  window().resize(1030, 670);
  const QRect normal = outerTwips(window());
  window().showMaximized();
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return settings().env_Form1_WinS == 2 && settings().env_Form1_Width == normal.width();
  }));
  EXPECT_EQ(settings().env_Form1_Height, normal.height());
}

TEST_F(BrowserGeometry, APlaceOutsideEveryScreenIsBroughtBack) {
  saveGeometry(-300000, 900000, 9000, 14700, 0);
  start();
  letSettle();
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  EXPECT_TRUE(area.contains(window().frameGeometry().topLeft()));
}

TEST_F(BrowserGeometry, ASavedSizeLargerThanTheScreenIsCutDownToIt) {
  saveGeometry(600, 450, 30000, 45000, 0);
  start();
  letSettle();
  const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
  EXPECT_EQ(window().frameGeometry(), area);
  const QWidget& panel = find<QWidget>("Frame4");
  EXPECT_TRUE(area.contains(panel.mapToGlobal(QPoint(0, 0))));
}

TEST_F(BrowserGeometry, ExtremePlacesAndSizesKeepTheTitleBarOnTheScreen) {
  for (const QRect& saved :
       {QRect(-2147483, -2147483, 2147483, 2147483), QRect(0, -150, 14700, 9000),
        QRect(450, 600, 2000, 500), QRect(15000, 11990, 14700, 9000)}) {
    saveGeometry(saved.y(), saved.x(), saved.height(), saved.width(), 0);
    start();
    letSettle();
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect place = window().frameGeometry();
    EXPECT_GE(place.top(), area.top());
    EXPECT_LE(place.top(), area.bottom() - 20);
    EXPECT_LE(place.left(), area.right() - 40);
    EXPECT_GE(place.right(), area.left() + 40);
    window().close();
    program_.reset();
    desktop_.ended = false;
  }
}

TEST_F(BrowserGeometry, TheLeastSizeIsThatOfTheWindowWithItsFrame) {
  start();
  letSettle();
  const QMargins frame = frameOf(window());
  ASSERT_FALSE(frame.isNull());
  EXPECT_EQ(window().minimumSize().grownBy(frame), QSize(968, 318));
}

TEST_F(BrowserGeometry, TheOtherBrowserTakesTheSamePlace) {
  program_ = std::make_unique<Program>(desktop_, base_.folders);
  program_->setBrowsers(
      [](BrowserFrame& owner) { return std::make_unique<test::PlainBrowser>(owner); },
      [](BrowserFrame& owner) { return std::make_unique<test::PlainBrowser>(owner); });
  ASSERT_TRUE(program_->Main());
  ASSERT_TRUE(QTest::qWaitFor(
      [this] { return program_->mainWindow() != nullptr && program_->mainWindow()->isVisible(); }));
  letSettle();
  BrowserWindow& first = *program_->mainWindow();
  BrowserWindow& second = *program_->otherWindow();
  first.resize(700, 500);
  first.move(20, 30);
  ASSERT_TRUE(isRecorded(first, QRect(20, 30, 700, 500)));
  const QRect place = first.frameGeometry();
  program_->switchBrowser(first);
  letSettle();
  EXPECT_EQ(second.frameGeometry(), place);
  second.resize(600, 400);
  second.move(60, 70);
  ASSERT_TRUE(isRecorded(second, QRect(60, 70, 600, 400)));
  const QRect moved = second.frameGeometry();
  program_->switchBrowser(second);
  letSettle();
  EXPECT_EQ(first.frameGeometry(), moved);
  desktop_.passed += kLongEnough;
  first.showMaximized();
  ASSERT_TRUE(QTest::qWaitFor([this] { return program_->place().state() == kMaximised; }));
  program_->switchBrowser(first);
  letSettle();
  EXPECT_TRUE(second.isMaximized());
  second.showNormal();
  ASSERT_TRUE(QTest::qWaitFor([this] { return program_->place().state() == kNormal; }));
  program_->switchBrowser(second);
  letSettle();
  EXPECT_FALSE(first.isMaximized());
}

}  // namespace
}  // namespace vel
