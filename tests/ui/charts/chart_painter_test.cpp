#include "hfdl/ui/chart_painter.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <gtest/gtest.h>

#include "tests/ui/charts/chart_station.h"

namespace vel::test {
namespace {

constexpr Colour kRed{200, 0, 0};
constexpr Colour kBlue{0, 0, 255};

// The smallest rectangle, in device pixels, around everything that is not white.
QRect inked(const QImage& picture) {
  QRect found;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, y) != QColor(Qt::white)) found |= QRect(x, y, 1, 1);
    }
  }
  return found;
}

TEST(ChartPainter, RectangleFillsItsPixelsAndNoOthersAtEveryScale) {
  const Drawing drawing{40, 30, ChartFont::gothic, {Rect{10, 8, 12, 4, kRed}}};
  for (const double ratio : {1.0, 1.5, 2.0}) {
    const QImage picture = chartImage(drawing, ratio);
    EXPECT_EQ(picture.size(), (QSizeF(40, 30) * ratio).toSize());
    const auto device = [ratio](double value) { return static_cast<int>(value * ratio); };
    const QRect expected(device(10), device(8), device(12), device(4));
    EXPECT_EQ(inked(picture), expected) << ratio;
    for (int y = expected.top(); y <= expected.bottom(); ++y) {
      for (int x = expected.left(); x <= expected.right(); ++x) {
        ASSERT_EQ(picture.pixelColor(x, y), toQColor(kRed)) << ratio << ' ' << x << ' ' << y;
      }
    }
  }
}

TEST(ChartPainter, LinesAreOneLogicalPixelRightOfAndBelowTheirCoordinates) {
  const Drawing upright{40, 30, ChartFont::gothic, {Line{10, 5, 10, 25, kBlue}}};
  EXPECT_EQ(inked(chartImage(upright, 1)), QRect(10, 5, 1, 20));
  EXPECT_EQ(inked(chartImage(upright, 2)), QRect(20, 10, 2, 40));
  const Drawing level{40, 30, ChartFont::gothic, {Line{5, 10, 35, 10, kBlue}}};
  EXPECT_EQ(inked(chartImage(level, 1)), QRect(5, 10, 30, 1));
  EXPECT_EQ(inked(chartImage(level, 2)), QRect(10, 20, 60, 2));
  EXPECT_EQ(chartImage(level, 2).pixelColor(10, 20), toQColor(kBlue));
}

TEST(ChartPainter, LaterShapesCoverEarlierOnes) {
  const Drawing drawing{
      20, 20, ChartFont::gothic, {Rect{0, 0, 20, 20, kRed}, Rect{5, 5, 2, 2, kBlue}}};
  const QImage picture = chartImage(drawing, 1);
  EXPECT_EQ(picture.pixelColor(5, 5), toQColor(kBlue));
  EXPECT_EQ(picture.pixelColor(4, 5), toQColor(kRed));
}

TEST(ChartPainter, TextKeepsToItsSideOfItsPlace) {
  const auto inkOf = [](Align align) {
    return inked(
        chartImage({200, 40, ChartFont::gothic, {Text{100, 10, "13270", kRed, 15, align}}}, 1));
  };
  EXPECT_GE(inkOf(Align::left).left(), 100);
  EXPECT_LT(inkOf(Align::right).right(), 100);
  const QRect centred = inkOf(Align::centre);
  EXPECT_NEAR((centred.left() + centred.right()) / 2.0, 100, 2);
  for (const Align align : {Align::left, Align::centre, Align::right}) {
    EXPECT_GE(inkOf(align).top(), 9);
    EXPECT_LE(inkOf(align).bottom(), 10 + textHeight(15) + 1);
  }
}

TEST(ChartPainter, BlanksInFrontOfAFrequencyMoveItToTheRight) {
  const auto inkOf = [](const char* text) {
    return inked(chartImage({200, 40, ChartFont::gothic, {Text{20, 10, text, kRed, 8}}}, 1));
  };
  EXPECT_NEAR(inkOf("    2998").right(), inkOf("   12998").right(), 1);
  EXPECT_GT(inkOf("    2998").left(), inkOf("   12998").left() + 3);
}

TEST(ChartPainter, JapaneseAndLatinTextsHaveAGlyphForEveryCharacter) {
  for (const ChartFont kind : {ChartFont::mincho, ChartFont::gothic}) {
    const QFont font = chartFont(kind, 10);
    EXPECT_EQ(font.pixelSize(), 13);
    const QFontMetricsF metrics(font);
    for (const char16_t letter : std::u16string(u"Az09:/局周波数受信")) {
      EXPECT_TRUE(metrics.inFont(QChar(letter))) << static_cast<int>(letter);
    }
    EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('i')),
              metrics.horizontalAdvance(QLatin1Char('W')));
  }
  EXPECT_NE(QFontInfo(chartFont(ChartFont::mincho, 10)).family(),
            QFontInfo(chartFont(ChartFont::gothic, 10)).family());
}

TEST(ChartPainter, PartOfAChartIsThatPartOfTheWholeAndTransparentOutside) {
  const Drawing drawing{
      60, 50, ChartFont::gothic, {Rect{10, 10, 20, 5, kRed}, Text{2, 20, "8912", kBlue, 8}}};
  for (const double ratio : {1.0, 2.0}) {
    const QImage whole = chartImage(drawing, ratio);
    const QImage part = chartImage(drawing, QRect(-15, -25, 50, 60), ratio);
    const int scale = static_cast<int>(ratio);
    ASSERT_EQ(part.size(), QSize(50, 60) * scale);
    for (int y = 0; y < part.height(); ++y) {
      for (int x = 0; x < part.width(); ++x) {
        const QPoint at(x - 15 * scale, y - 25 * scale);
        if (whole.rect().contains(at)) {
          ASSERT_EQ(part.pixelColor(x, y), whole.pixelColor(at)) << x << ' ' << y;
        } else {
          ASSERT_EQ(part.pixelColor(x, y).alpha(), 0) << x << ' ' << y;
        }
      }
    }
  }
}

}  // namespace
}  // namespace vel::test
