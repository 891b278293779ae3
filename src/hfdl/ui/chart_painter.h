#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRectF>

#include "hfdl/shapes.h"

namespace vel {

/// The font of a chart's texts: "ＭＳ 明朝" or "ＭＳ ゴシック", else the IPA font of
/// that kind, else any font that has Japanese letters.
[[nodiscard]] QFont chartFont(ChartFont font, double points);

/// Paints the drawing on a white ground. Shapes that lie wholly outside `area`
/// (in the drawing's coordinates) may be left out.
void paintChart(QPainter& painter, const Drawing& drawing, const QRectF& area);

/// A part of the drawing as a picture with `ratio` device pixels to a logical
/// one. What lies outside the drawing is transparent.
[[nodiscard]] QImage chartImage(const Drawing& drawing, const QRect& area, double ratio);

/// The whole drawing as a picture, without transparency.
[[nodiscard]] QImage chartImage(const Drawing& drawing, double ratio);

}  // namespace vel
