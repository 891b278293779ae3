#include "hfdl/ui/magnifier.h"

#include <gtest/gtest.h>

#include "tests/ui/charts/chart_station.h"

namespace vel::test {
namespace {

constexpr int kWidth = 400;
constexpr int kHeight = 300;

// Every pixel of the picture has a colour of its own.
QColor pixelOf(int x, int y) { return QColor(x % 256, y % 256, x / 256 * 16 + y / 256); }

// The picture at double scale differs in the four parts of each pixel as well.
QColor partOf(int x, int y, int part) { return QColor(x % 256, y % 256, 60 * part + x / 256); }

class MagnifierTest : public testing::Test {
 protected:
  static QImage sample(const QRect& area) {
    QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QRect picture(0, 0, kWidth, kHeight);
    for (int y = 0; y < area.height(); ++y) {
      for (int x = 0; x < area.width(); ++x) {
        const QPoint at = area.topLeft() + QPoint(x, y);
        if (picture.contains(at)) image.setPixelColor(x, y, pixelOf(at.x(), at.y()));
      }
    }
    return image;
  }

  // Shows the window and gives what it paints.
  QImage painted() {
    magnifier_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&magnifier_));
    QImage image(magnifier_.size(), QImage::Format_RGB32);
    magnifier_.render(&image);
    return image;
  }

  Magnifier magnifier_{sample, nullptr, nullptr};
};

TEST_F(MagnifierTest, EachOf150Times150PixelsIsABoxOfFourTimesFour) {
  magnifier_.setCentre(200, 150);
  const QImage image = painted();
  for (int i = 1; i <= 150; ++i) {
    for (int j = 1; j <= 150; ++j) {
      const QColor expected = pixelOf(200 - 75 + i, 150 - 75 + j);
      for (const QPoint corner : {QPoint(0, 0), QPoint(3, 0), QPoint(0, 3), QPoint(3, 3)}) {
        ASSERT_EQ(image.pixelColor(QPoint(4 * i, 4 * j) + corner), expected) << i << ' ' << j;
      }
    }
  }
}

TEST_F(MagnifierTest, DrawingBegins4PixelsFromTheCornerAndIsShownWhole) {
  magnifier_.setCentre(200, 150);
  const QImage image = painted();
  const QColor outside(Magnifier::kOutside);
  EXPECT_EQ(image.pixelColor(3, 3), outside);
  EXPECT_EQ(image.pixelColor(604, 603), outside);
  EXPECT_EQ(image.pixelColor(603, 603), pixelOf(200 + 75, 150 + 75));
  EXPECT_GE(image.width(), 604);
  EXPECT_GE(image.height(), 604);
}

TEST_F(MagnifierTest, SquareThatReachesOutsideThePictureIsLightGreyThere) {
  magnifier_.setCentre(0, 0);
  const QImage image = painted();
  const QColor outside(Magnifier::kOutside);
  // Column 75 is x = 0 of the picture.
  EXPECT_EQ(image.pixelColor(4 * 75, 4 * 75), pixelOf(0, 0));
  EXPECT_EQ(image.pixelColor(4 * 74 + 3, 4 * 75), outside);
  EXPECT_EQ(image.pixelColor(4 * 75, 4 * 74 + 3), outside);
  EXPECT_EQ(image.pixelColor(4, 4), outside);
  EXPECT_EQ(image.pixelColor(4 * 150, 4 * 150), pixelOf(75, 75));
}

TEST_F(MagnifierTest, FarCornerIsLightGreyBeyondTheLastPixel) {
  magnifier_.setCentre(kWidth - 1, kHeight - 1);
  const QImage image = painted();
  const QColor outside(Magnifier::kOutside);
  EXPECT_EQ(image.pixelColor(4 * 75 + 3, 4 * 75 + 3), pixelOf(kWidth - 1, kHeight - 1));
  EXPECT_EQ(image.pixelColor(4 * 76, 4 * 75), outside);
  EXPECT_EQ(image.pixelColor(4 * 75, 4 * 76), outside);
}

TEST_F(MagnifierTest, ShownAgainWithoutANewCentreItMovesBy75) {
  magnifier_.setCentre(300, 250);
  magnifier_.show();
  EXPECT_EQ(magnifier_.origin(), QPoint(225, 175));
  magnifier_.close();
  const QImage image = painted();
  EXPECT_EQ(magnifier_.origin(), QPoint(150, 100));
  EXPECT_EQ(image.pixelColor(4, 4), pixelOf(151, 101));
  magnifier_.close();
  magnifier_.setCentre(300, 250);
  magnifier_.show();
  EXPECT_EQ(magnifier_.origin(), QPoint(225, 175));
}

TEST_F(MagnifierTest, ClickDoesNothing) {
  magnifier_.setCentre(200, 150);
  const QImage before = painted();
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
    QTest::mouseClick(&magnifier_, button, {}, QPoint(100, 100));
  }
  EXPECT_TRUE(magnifier_.isVisible());
  EXPECT_EQ(painted(), before);
}

TEST_F(MagnifierTest, EscapeAndTheCloseControlCloseIt) {
  magnifier_.show();
  QTest::keyClick(&magnifier_, Qt::Key_Escape);
  EXPECT_FALSE(magnifier_.isVisible());
  magnifier_.show();
  magnifier_.close();
  EXPECT_FALSE(magnifier_.isVisible());
}

TEST(MagnifierAtDoubleScale, EachDevicePixelIsABoxOfFourTimesFourDevicePixels) {
  Magnifier magnifier(
      [](const QRect& area) {
        QImage image(area.size() * 2, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(2);
        for (int y = 0; y < image.height(); ++y) {
          for (int x = 0; x < image.width(); ++x) {
            image.setPixelColor(
                x, y, partOf(area.left() + x / 2, area.top() + y / 2, x % 2 + 2 * (y % 2)));
          }
        }
        return image;
      },
      nullptr, nullptr);
  magnifier.setCentre(200, 150);
  magnifier.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&magnifier));
  QImage image(magnifier.size() * 2, QImage::Format_RGB32);
  image.setDevicePixelRatio(2);
  magnifier.render(&image);
  for (int i = 1; i <= 150; ++i) {
    for (int j = 1; j <= 150; ++j) {
      for (int part = 0; part < 4; ++part) {
        const QPoint box(8 * i + 4 * (part % 2), 8 * j + 4 * (part / 2));
        const QColor expected = partOf(125 + i, 75 + j, part);
        ASSERT_EQ(image.pixelColor(box), expected) << i << ' ' << j << ' ' << part;
        ASSERT_EQ(image.pixelColor(box + QPoint(3, 3)), expected) << i << ' ' << j << ' ' << part;
      }
    }
  }
}

}  // namespace
}  // namespace vel::test
