#include "core/ui/readable_colours.h"

#include <QApplication>
#include <QEvent>
#include <algorithm>
#include <cmath>

namespace vel {
namespace {

constexpr double kReadable = 4.5;
// More where a colour is changed at all: thin letters are painted weaker.
constexpr double kWanted = kReadable + 1;
constexpr int kSteps = 20;

double luminance(const QColor& colour) {
  const auto channel = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * channel(colour.redF()) + 0.7152 * channel(colour.greenF()) +
         0.0722 * channel(colour.blueF());
}

QColor mixed(const QColor& from, const QColor& to, double part) {
  const auto between = [part](float a, float b) { return static_cast<float>(a + (b - a) * part); };
  return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                          between(from.blueF(), to.blueF()));
}

// A colour on its way to another one, as far as it is readable on a third.
QColor until(const QColor& from, const QColor& to, const QColor& on) {
  for (int step = 0; step < kSteps; ++step) {
    const QColor colour = mixed(from, to, static_cast<double>(step) / kSteps);
    if (contrastOf(colour, on) >= kWanted) return colour;
  }
  return to;
}

void strengthen(QPalette& colours, QPalette::ColorGroup group) {
  const QColor text = colours.color(group, QPalette::HighlightedText);
  const QColor selected = colours.color(group, QPalette::Highlight);
  if (contrastOf(text, selected) < kReadable) {
    // Away from its letters.
    const QColor end = luminance(text) > 0.5 ? Qt::black : Qt::white;
    colours.setColor(group, QPalette::Highlight, until(selected, end, text));
  }
  const QColor base = colours.color(group, QPalette::Base);
  const QColor hint = colours.color(group, QPalette::PlaceholderText);
  const QColor seen = mixed(base, hint, hint.alphaF());
  if (contrastOf(seen, base) < kReadable) {
    QColor full = colours.color(group, QPalette::Text);
    full.setAlpha(255);
    colours.setColor(group, QPalette::PlaceholderText, until(seen, full, base));
  }
}

}  // namespace

double contrastOf(const QColor& left, const QColor& right) {
  const double a = luminance(left) + 0.05;
  const double b = luminance(right) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

QPalette readableColours(QPalette theme) {
  for (const auto group : {QPalette::Active, QPalette::Inactive}) strengthen(theme, group);
  return theme;
}

ReadableColours::ReadableColours() {
  apply();
  qApp->installEventFilter(this);
}

void ReadableColours::apply() {
  if (applying_) return;
  applying_ = true;
  const QPalette theme = QApplication::palette();
  const QPalette readable = readableColours(theme);
  if (readable != theme) QApplication::setPalette(readable);
  applying_ = false;
}

bool ReadableColours::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) apply();
  return false;
}

}  // namespace vel
