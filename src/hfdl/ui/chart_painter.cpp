#include "hfdl/ui/chart_painter.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <map>

#include "core/ui/japanese_fonts.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

QColor toQColor(Colour colour) { return QColor(colour.red, colour.green, colour.blue); }

// A chart has texts of two or three sizes: their fonts are made once.
class TextPainter {
 public:
  TextPainter(QPainter& painter, ChartFont font)
      : painter_(painter), font_(font), ratio_(painter.device()->devicePixelRatioF()) {}

  void paint(const Text& text) {
    const Sized& sized = sizedFor(text.points);
    const QString string = toQString(text.text);
    double x = text.x;
    if (text.align != Align::left) {
      const double width = sized.metrics.horizontalAdvance(string);
      x -= text.align == Align::centre ? width / 2 : width;
    }
    // The font's own line may be higher or lower than that of the drawing.
    const double spare = textHeight(text.points) - sized.metrics.height();
    const double base = text.y + spare / 2 + sized.metrics.ascent();
    painter_.setFont(sized.font);
    painter_.setPen(toQColor(text.colour));
    painter_.drawText(QPointF(snapped(x, ratio_), snapped(base, ratio_)), string);
  }

 private:
  struct Sized {
    QFont font;
    QFontMetricsF metrics;
  };

  const Sized& sizedFor(double points) {
    const auto found = fonts_.find(points);
    if (found != fonts_.end()) return found->second;
    const QFont font = chartFont(font_, points);
    return fonts_.emplace(points, Sized{font, QFontMetricsF(font, painter_.device())})
        .first->second;
  }

  QPainter& painter_;
  ChartFont font_;
  double ratio_;
  std::map<double, Sized> fonts_;
};

QRectF rectOf(const Rect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

// Lines are level or upright.
QRectF rectOf(const Line& line) {
  return {std::min(line.x1, line.x2), std::min(line.y1, line.y2),
          std::max(1.0, std::abs(line.x2 - line.x1)), std::max(1.0, std::abs(line.y2 - line.y1))};
}

// Letters may reach a little over the line's height.
bool touches(const Text& text, const QRectF& area) {
  const double height = textHeight(text.points);
  return text.y + 2 * height > area.top() && text.y - height < area.bottom();
}

}  // namespace

QFont chartFont(ChartFont font, double points) {
  QFont made;
  made.setFamilies(
      japaneseFamilies(font == ChartFont::mincho ? JapaneseFont::mincho : JapaneseFont::gothic));
  made.setPixelSize(static_cast<int>(std::lround(textHeight(points))));
  made.setFixedPitch(true);
  // Letters in black and grey alone stay clear when they are enlarged.
  made.setStyleStrategy(QFont::NoSubpixelAntialias);
  return made;
}

void paintChart(QPainter& painter, const Drawing& drawing, const QRectF& area) {
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.fillRect(QRectF(0, 0, drawing.width, drawing.height), Qt::white);
  TextPainter texts(painter, drawing.font);
  for (const Shape& shape : drawing.shapes) {
    if (const auto* text = std::get_if<Text>(&shape)) {
      if (touches(*text, area)) texts.paint(*text);
      continue;
    }
    const auto* rect = std::get_if<Rect>(&shape);
    const QRectF filled = rect != nullptr ? rectOf(*rect) : rectOf(std::get<Line>(shape));
    const Colour colour = rect != nullptr ? rect->colour : std::get<Line>(shape).colour;
    if (filled.intersects(area)) painter.fillRect(filled, toQColor(colour));
  }
}

QImage chartImage(const Drawing& drawing, const QRect& area, double ratio) {
  const QSizeF size = QSizeF(area.size()) * ratio;
  QImage image(static_cast<int>(std::ceil(size.width())),
               static_cast<int>(std::ceil(size.height())), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.translate(-area.topLeft());
  painter.setClipRect(QRectF(0, 0, drawing.width, drawing.height));
  paintChart(painter, drawing, area);
  return image;
}

QImage chartImage(const Drawing& drawing, double ratio) {
  const QRect all(0, 0, static_cast<int>(std::lround(drawing.width)),
                  static_cast<int>(std::lround(drawing.height)));
  return chartImage(drawing, all, ratio).convertToFormat(QImage::Format_RGB32);
}

}  // namespace vel
