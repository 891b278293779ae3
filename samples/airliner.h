#pragma once

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QString>
#include <string>

namespace vel::samples {

/// How an aircraft type looks from the side.
struct Airframe {
  /// Nose to tail, in pixels.
  double length = 500;
  /// Height of the fuselage, in pixels.
  double height = 54;
  /// Engines on the side that is seen.
  int engines = 1;
  /// The upper deck's share of the length; 0 for one deck.
  double upperDeck = 0;
  bool propellers = false;
  /// Engines at the tail instead of under the wing.
  bool tailEngines = false;
};

/// The shape for an ICAO type designator; an ordinary twin jet for one that it
/// does not know.
Airframe airframeOf(const std::string& type);

struct Livery {
  QColor fuselage;
  QColor tail;
  QColor stripe;
  /// Painted on the fuselage; both may be empty.
  QString name;
  QString registration;
};

/// Draws the aircraft with its nose to the left at (`x`, `y`), `y` being the
/// middle of the fuselage; its wheels stand groundBelow() under that.
void drawAirliner(QPainter& painter, double x, double y, const Airframe& frame,
                  const Livery& livery);

/// From the middle of the fuselage down to the ground, in pixels.
double groundBelow(const Airframe& frame);

/// The outline of fuselage, fin and wing, for a silhouette.
QPainterPath silhouette(double x, double y, const Airframe& frame);

}  // namespace vel::samples
