#include "samples/photo.h"

#include <QBuffer>
#include <QFont>
#include <QImage>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <array>

#include "core/file.h"
#include "samples/airliner.h"
#include "samples/failure.h"
#include "samples/random.h"
#include "samples/text_file.h"

namespace vel::samples {
namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 420;
constexpr int kHorizon = 268;
/// The line on which the wheels stand.
constexpr int kGround = 330;
constexpr int kJpegQuality = 90;

/// Sky from the top to the horizon at one time of the day.
struct Daylight {
  QColor top;
  QColor bottom;
  QColor grass;
};

QFont boldFont(int pixels) {
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setBold(true);
  font.setPixelSize(pixels);
  return font;
}

void drawSky(QPainter& painter, const Daylight& light, Random& random) {
  QLinearGradient sky(0, 0, 0, kHorizon);
  sky.setColorAt(0, light.top);
  sky.setColorAt(1, light.bottom);
  painter.fillRect(0, 0, kWidth, kHorizon, sky);
  painter.setPen(Qt::NoPen);
  for (int cloud = 0; cloud < 5; ++cloud) {
    const int x = random.between(-40, kWidth);
    const int y = random.between(20, 170);
    for (int puff = 0; puff < 6; ++puff) {
      painter.setBrush(QColor(255, 255, 255, random.between(26, 60)));
      painter.drawEllipse(QPointF(x + random.between(0, 110), y + random.between(-9, 9)),
                          random.between(22, 46), random.between(8, 16));
    }
  }
}

void drawHills(QPainter& painter, const Daylight& light, Random& random) {
  QPainterPath hills(QPointF(0, kHorizon));
  double x = 0;
  hills.lineTo(0, kHorizon - 14);
  while (x < kWidth) {
    const double width = random.between(70, 150);
    hills.quadTo(x + width / 2, kHorizon - random.between(16, 44), x + width, kHorizon - 12);
    x += width;
  }
  hills.lineTo(kWidth, kHorizon);
  painter.setBrush(light.bottom.darker(125));
  painter.drawPath(hills);
}

void drawRunway(QPainter& painter, const Daylight& light) {
  QLinearGradient grass(0, kHorizon, 0, kHeight);
  grass.setColorAt(0, light.grass);
  grass.setColorAt(1, light.grass.darker(135));
  painter.fillRect(0, kHorizon, kWidth, kHeight - kHorizon, grass);
  QLinearGradient asphalt(0, 300, 0, 368);
  asphalt.setColorAt(0, QColor(112, 115, 120));
  asphalt.setColorAt(1, QColor(84, 86, 92));
  painter.fillRect(0, 300, kWidth, 68, asphalt);
  painter.fillRect(0, 304, kWidth, 2, QColor(235, 235, 235, 200));
  painter.fillRect(0, 362, kWidth, 3, QColor(235, 235, 235, 220));
  for (int x = -20; x < kWidth; x += 96) {
    painter.fillRect(x, 344, 52, 3, QColor(240, 240, 240, 190));
  }
}

void drawCaption(QPainter& painter, const Aircraft& aircraft, const Airline& airline) {
  painter.fillRect(0, kHeight - 38, kWidth, 38, QColor(20, 26, 38, 215));
  painter.setPen(Qt::white);
  painter.setFont(boldFont(20));
  painter.drawText(QRectF(14, kHeight - 38, 200, 38), Qt::AlignVCenter | Qt::AlignLeft,
                   QString::fromStdString(aircraft.registration));
  painter.setFont(boldFont(14));
  painter.setPen(QColor(205, 214, 228));
  painter.drawText(QRectF(150, kHeight - 38, kWidth - 164, 38), Qt::AlignVCenter | Qt::AlignRight,
                   QString::fromStdString(airline.name + "   " + aircraft.type));
}

Status save(const QImage& image, const std::filesystem::path& path) {
  // The writer does not tell whether closing a file failed, so it gets none.
  QBuffer buffer;
  QImageWriter writer(&buffer, "jpg");
  writer.setQuality(kJpegQuality);
  if (!writer.write(image)) {
    return failure(toUtf8(path) + ": cannot encode: " + writer.errorString().toStdString());
  }
  return writeFile(path, buffer.data().toStdString());
}

}  // namespace

Status writePhoto(const std::filesystem::path& folder, const Aircraft& aircraft,
                  const Airline& airline, std::uint64_t seed) {
  static const std::array<Daylight, 4> kDaylights = {
      Daylight{QColor(72, 140, 214), QColor(206, 230, 246), QColor(112, 158, 84)},
      Daylight{QColor(108, 164, 222), QColor(236, 240, 238), QColor(128, 162, 92)},
      Daylight{QColor(84, 104, 160), QColor(250, 206, 160), QColor(112, 132, 78)},
      Daylight{QColor(140, 158, 178), QColor(222, 227, 231), QColor(116, 146, 96)}};
  Random random(seed, "photo " + aircraft.registration);
  const Daylight& light = kDaylights[random.below(kDaylights.size())];

  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  drawSky(painter, light, random);
  drawHills(painter, light, random);
  drawRunway(painter, light);

  const Airframe frame = airframeOf(aircraft.type);
  const double left = (kWidth - frame.length) / 2 - 8;
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(20, 22, 28, 90));
  painter.drawEllipse(QRectF(left + 10, kGround - 7, frame.length - 20, 16));
  drawAirliner(
      painter, left, kGround - groundBelow(frame), frame,
      {QColor(QString::fromStdString(airline.fuselageColour)),
       QColor(QString::fromStdString(airline.tailColour)),
       QColor(QString::fromStdString(airline.stripeColour)), QString::fromStdString(airline.name),
       QString::fromStdString(aircraft.registration)});
  drawCaption(painter, aircraft, airline);
  if (!painter.end()) return failure(aircraft.registration + ": cannot draw the photo");
  return save(image, folder / (aircraft.registration + ".jpg"));
}

Status writeNoImage(const std::filesystem::path& folder) {
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient back(0, 0, 0, kHeight);
  back.setColorAt(0, QColor(236, 239, 243));
  back.setColorAt(1, QColor(214, 219, 226));
  painter.fillRect(image.rect(), back);
  const Airframe frame = airframeOf("B789");
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(186, 193, 203));
  painter.drawPath(silhouette((kWidth - frame.length) / 2, 215, frame));
  painter.setPen(QColor(112, 121, 134));
  painter.setFont(boldFont(34));
  painter.drawText(QRectF(0, 270, kWidth, 70), Qt::AlignCenter, QStringLiteral("No image"));
  if (!painter.end()) return failure("noimage.jpg: cannot draw the picture");
  return save(image, folder / "noimage.jpg");
}

}  // namespace vel::samples
