#include "samples/airliner.h"

#include <QFont>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPolygonF>
#include <map>

namespace vel::samples {
namespace {

const QColor kGlass(42, 52, 70);
const QColor kMetal(176, 182, 190);
const QColor kOutline(70, 76, 86);

constexpr double kLowWing = -0.26;

/// Places on the aircraft: `along` in lengths of the fuselage from the nose,
/// `up` in heights of the fuselage from its middle.
class Airliner {
 public:
  Airliner(QPainter& painter, double x, double y, const Airframe& frame, const Livery& livery)
      : painter_(painter), x_(x), y_(y), frame_(frame), livery_(livery) {}

  QPointF at(double along, double up) const {
    return {x_ + along * frame_.length, y_ - up * frame_.height};
  }

  QPainterPath fuselage() const {
    const double hump = frame_.upperDeck > 0 ? 0.32 : 0;
    QPainterPath path(at(0, -0.12));
    path.cubicTo(at(0.015, 0.15), at(0.045, 0.42 + hump), at(0.11, 0.5 + hump));
    if (hump > 0) {
      path.lineTo(at(0.08 + frame_.upperDeck, 0.5 + hump));
      path.cubicTo(at(0.14 + frame_.upperDeck, 0.5 + hump), at(0.15 + frame_.upperDeck, 0.5),
                   at(0.2 + frame_.upperDeck, 0.5));
    }
    path.lineTo(at(0.82, 0.5));
    path.cubicTo(at(0.9, 0.5), at(0.96, 0.44), at(1.0, 0.3));
    path.cubicTo(at(1.0, 0.22), at(0.99, 0.18), at(0.97, 0.14));
    path.cubicTo(at(0.86, -0.2), at(0.78, -0.5), at(0.66, -0.5));
    path.lineTo(at(0.12, -0.5));
    path.cubicTo(at(0.05, -0.5), at(0.01, -0.36), at(0, -0.12));
    return path;
  }

  QPainterPath fin() const {
    QPainterPath path(at(0.79, 0.48));
    path.cubicTo(at(0.84, 0.6), at(0.86, 0.9), at(0.925, 2.35));
    path.lineTo(at(0.995, 2.35));
    path.lineTo(at(0.965, 0.4));
    path.closeSubpath();
    return path;
  }

  /// The wing on the near side, its root at that height.
  QPolygonF wing(double root) const {
    return {{at(0.36, root), at(0.56, root - 0.06), at(0.715, root - 0.62), at(0.675, root - 0.66),
             at(0.36, root)}};
  }

  void draw() {
    if (frame_.propellers) drawWing(0.47);
    drawGear();
    drawFin();
    drawFuselage();
    drawWindows();
    drawTexts();
    drawTailplane();
    if (frame_.tailEngines) drawNacelle(0.76, 0.16, 0.11, 0.34);
    if (!frame_.propellers) {
      drawWing(kLowWing);
    } else {
      drawNacelle(0.38, 0.36, 0.15, 0.34);
      drawPropeller();
    }
    if (!frame_.tailEngines && !frame_.propellers) {
      const double size = frame_.engines == 2 ? 0.44 : 0.56;
      if (frame_.engines == 2) drawNacelle(0.46, -0.66, 0.085, size);
      drawNacelle(0.345, -0.58, 0.105, size);
    }
  }

 private:
  void drawFin() {
    const QPainterPath path = fin();
    painter_.setPen(QPen(kOutline, 1));
    painter_.setBrush(livery_.tail);
    painter_.drawPath(path);
    painter_.save();
    painter_.setClipPath(path);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(livery_.stripe);
    painter_.drawPolygon(
        QPolygonF({at(0.80, 0.75), at(1.0, 1.5), at(1.0, 1.05), at(0.86, 0.45), at(0.80, 0.45)}));
    painter_.restore();
  }

  void drawFuselage() {
    const QPainterPath path = fuselage();
    QLinearGradient light(at(0, 0.5), at(0, -0.5));
    light.setColorAt(0, livery_.fuselage.lighter(104));
    light.setColorAt(0.55, livery_.fuselage);
    light.setColorAt(1, livery_.fuselage.darker(145));
    painter_.setPen(QPen(kOutline, 1));
    painter_.setBrush(light);
    painter_.drawPath(path);
    painter_.save();
    painter_.setClipPath(path);
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(livery_.stripe);
    painter_.drawRect(QRectF(at(0, -0.24), at(1, -0.32)));
    // The tail's colour runs down over the end of the fuselage.
    painter_.setBrush(livery_.tail);
    painter_.drawPolygon(
        QPolygonF({at(0.80, 0.55), at(0.89, -0.6), at(1.02, -0.6), at(1.02, 0.6)}));
    painter_.restore();
  }

  void drawWindows() {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(kGlass);
    const double rise = frame_.upperDeck > 0 ? 0.2 : 0;
    painter_.drawPolygon(QPolygonF({at(0.022, 0.14 + rise * 0.6), at(0.062, 0.14 + rise * 0.6),
                                    at(0.062, 0.30 + rise), at(0.036, 0.27 + rise)}));
    drawWindowRow(0.10, 0.80, -0.02);
    if (frame_.upperDeck > 0) drawWindowRow(0.11, 0.09 + frame_.upperDeck, 0.44);
    painter_.setPen(QPen(kOutline, 1));
    painter_.setBrush(Qt::NoBrush);
    for (const double door : {0.085, 0.30, 0.62, 0.80}) {
      painter_.drawRect(QRectF(at(door, 0.13), at(door + 7 / frame_.length, -0.22)));
    }
  }

  void drawWindowRow(double from, double to, double up) {
    const double step = 7.5 / frame_.length;
    for (double along = from; along < to; along += step) {
      const QPointF corner = at(along, up + 0.05);
      painter_.drawRoundedRect(QRectF(corner.x(), corner.y(), 3.4, 4.6), 1.2, 1.2);
    }
  }

  void drawTexts() {
    const bool dark = livery_.fuselage.lightness() < 150;
    const double start = frame_.upperDeck > 0.3 ? 0.12 : 0.12 + frame_.upperDeck;
    const double room = frame_.length * ((frame_.propellers ? 0.35 : 0.66) - start);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    font.setPixelSize(static_cast<int>(frame_.height * 0.34));
    if (const double width = QFontMetricsF(font).horizontalAdvance(livery_.name); width > room) {
      font.setPixelSize(static_cast<int>(font.pixelSize() * room / width));
    }
    painter_.setFont(font);
    painter_.setPen(dark ? QColor(Qt::white) : nameColour());
    painter_.drawText(at(start, 0.18), livery_.name);
    font.setPixelSize(static_cast<int>(frame_.height * 0.24));
    painter_.setFont(font);
    painter_.setPen(dark ? QColor(Qt::white) : kOutline);
    painter_.drawText(at(frame_.tailEngines ? 0.62 : 0.68, 0.18), livery_.registration);
  }

  /// The tail's colour, or another where that could not be read.
  QColor nameColour() const {
    const int bright = livery_.fuselage.lightness();
    for (const QColor& colour : {livery_.tail, livery_.stripe}) {
      if (bright - colour.lightness() > 60) return colour;
    }
    return kOutline;
  }

  void drawTailplane() {
    painter_.setPen(QPen(kOutline, 1));
    painter_.setBrush(kMetal);
    const double lift = frame_.propellers ? 2.0 : 0.0;
    painter_.drawPolygon(QPolygonF({at(0.87, 0.26 + lift), at(0.945, 0.24 + lift),
                                    at(1.03, 0.05 + lift), at(0.995, 0.04 + lift)}));
  }

  void drawWing(double root) {
    painter_.setPen(QPen(kOutline, 1));
    QLinearGradient light(at(0.4, root), at(0.7, root - 0.8));
    light.setColorAt(0, QColor(205, 210, 216));
    light.setColorAt(1, QColor(140, 147, 156));
    painter_.setBrush(light);
    if (frame_.propellers) {
      painter_.drawPolygon(QPolygonF(
          {at(0.39, root), at(0.55, root), at(0.53, root + 0.14), at(0.41, root + 0.14)}));
      return;
    }
    painter_.drawPolygon(wing(root));
    painter_.setBrush(livery_.tail);
    painter_.drawPolygon(QPolygonF({at(0.675, root - 0.66), at(0.715, root - 0.62),
                                    at(0.745, root - 0.12), at(0.728, root - 0.12)}));
  }

  void drawNacelle(double along, double up, double length, double height) {
    const QRectF box(at(along, up + height / 2), at(along + length, up - height / 2));
    QPainterPath path;
    path.moveTo(box.left(), box.top() + box.height() * 0.12);
    path.cubicTo(box.left() + box.width() * 0.3, box.top() - box.height() * 0.05,
                 box.left() + box.width() * 0.6, box.top(), box.right(),
                 box.center().y() - box.height() * 0.18);
    path.lineTo(box.right(), box.center().y() + box.height() * 0.18);
    path.cubicTo(box.left() + box.width() * 0.6, box.bottom(), box.left() + box.width() * 0.3,
                 box.bottom() + box.height() * 0.05, box.left(),
                 box.bottom() - box.height() * 0.12);
    path.closeSubpath();
    painter_.setPen(QPen(kOutline, 1));
    painter_.setBrush(livery_.fuselage.lightness() > 200 ? livery_.fuselage.darker(108)
                                                         : livery_.fuselage);
    painter_.drawPath(path);
    painter_.setBrush(kMetal);
    painter_.drawEllipse(
        QRectF(box.left() - 3, box.top() + box.height() * 0.1, 7, box.height() * 0.8));
  }

  void drawPropeller() {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(QColor(60, 60, 60, 90));
    painter_.drawEllipse(at(0.375, 0.36), 3.5, frame_.height * 0.75);
  }

  void drawGear() {
    const double ground = -groundBelow(frame_) / frame_.height;
    const double radius = frame_.height * 0.13;
    for (const double along : {0.12, 0.50, 0.535}) {
      painter_.setPen(QPen(kMetal.darker(130), 4));
      painter_.drawLine(at(along, -0.4), at(along, ground + radius / frame_.height));
      painter_.setPen(Qt::NoPen);
      painter_.setBrush(QColor(30, 30, 32));
      const QPointF hub(at(along, ground).x(), at(along, ground).y() - radius);
      painter_.drawEllipse(hub, radius, radius);
      painter_.setBrush(kMetal);
      painter_.drawEllipse(hub, radius * 0.4, radius * 0.4);
    }
  }

  QPainter& painter_;
  double x_;
  double y_;
  const Airframe& frame_;
  const Livery& livery_;
};

}  // namespace

Airframe airframeOf(const std::string& type) {
  static const std::map<std::string, Airframe> kFrames = {
      {"A388", {545, 74, 2, 0.66, false, false}}, {"B748", {560, 58, 2, 0.24, false, false}},
      {"B744", {540, 58, 2, 0.20, false, false}}, {"B77W", {560, 56, 1, 0, false, false}},
      {"A35K", {560, 56, 1, 0, false, false}},    {"A359", {530, 56, 1, 0, false, false}},
      {"B772", {520, 57, 1, 0, false, false}},    {"B77L", {520, 57, 1, 0, false, false}},
      {"B78X", {540, 54, 1, 0, false, false}},    {"B789", {515, 54, 1, 0, false, false}},
      {"B788", {485, 55, 1, 0, false, false}},    {"A333", {520, 53, 1, 0, false, false}},
      {"A339", {520, 53, 1, 0, false, false}},    {"A332", {490, 54, 1, 0, false, false}},
      {"B763", {480, 52, 1, 0, false, false}},    {"B764", {510, 51, 1, 0, false, false}},
      {"MD11", {520, 54, 1, 0, false, false}},    {"A21N", {455, 48, 1, 0, false, false}},
      {"A320", {410, 49, 1, 0, false, false}},    {"A20N", {410, 49, 1, 0, false, false}},
      {"B738", {425, 47, 1, 0, false, false}},    {"B737", {385, 48, 1, 0, false, false}},
      {"E170", {370, 44, 1, 0, false, false}},    {"E75S", {380, 44, 1, 0, false, false}},
      {"E190", {405, 44, 1, 0, false, false}},    {"DH8D", {390, 42, 1, 0, true, false}},
      {"CRJ7", {385, 40, 1, 0, false, true}}};
  const auto found = kFrames.find(type);
  return found == kFrames.end() ? Airframe{430, 48, 1, 0, false, false} : found->second;
}

void drawAirliner(QPainter& painter, double x, double y, const Airframe& frame,
                  const Livery& livery) {
  Airliner(painter, x, y, frame, livery).draw();
}

double groundBelow(const Airframe& frame) { return frame.height * 1.08; }

QPainterPath silhouette(double x, double y, const Airframe& frame) {
  QPainter none;
  const Livery plain;
  const Airliner airliner(none, x, y, frame, plain);
  QPainterPath wing;
  wing.addPolygon(airliner.wing(kLowWing));
  return airliner.fuselage().united(airliner.fin()).united(wing);
}

}  // namespace vel::samples
