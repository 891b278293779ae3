#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vel::test {

/// The usual font enlarged, as long as it lives.
class ScaledFont {
 public:
  explicit ScaledFont(double scale) : before_(QApplication::font()) {
    QFont larger = before_;
    larger.setPointSizeF(larger.pointSizeF() * scale);
    QApplication::setFont(larger);
  }
  ScaledFont(const ScaledFont&) = delete;
  ScaledFont& operator=(const ScaledFont&) = delete;
  ~ScaledFont() { QApplication::setFont(before_); }

 private:
  QFont before_;
};

/// What a user reads or operates in a window, as it is shown.
inline std::vector<QWidget*> controlsOf(const QWidget& window) {
  std::vector<QWidget*> found;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    const bool isControl = qobject_cast<QAbstractButton*>(widget) != nullptr ||
                           qobject_cast<QLineEdit*>(widget) != nullptr ||
                           qobject_cast<QComboBox*>(widget) != nullptr ||
                           qobject_cast<QLabel*>(widget) != nullptr ||
                           qobject_cast<QAbstractItemView*>(widget) != nullptr ||
                           widget->objectName() == QLatin1String("Image1");
    const bool isPartOfAnother = qobject_cast<QLineEdit*>(widget->parent()) != nullptr ||
                                 qobject_cast<QComboBox*>(widget->parent()) != nullptr ||
                                 qobject_cast<QAbstractItemView*>(widget->parent()) != nullptr;
    if (isControl && widget->isVisible() && !isPartOfAnother) found.push_back(widget);
  }
  return found;
}

/// A style makes buttons wider than their text needs.
inline QSize neededBy(const QWidget& widget) {
  QSize needed = widget.minimumSizeHint();
  if (const auto* push = qobject_cast<const QPushButton*>(&widget)) {
    QString shown = push->text();
    shown.replace(QLatin1String("&&"), QLatin1String("\1"));
    shown.remove(QLatin1Char('&'));
    needed.setWidth(qMin(needed.width(), push->fontMetrics().horizontalAdvance(shown) + 10));
  }
  return needed;
}

inline std::string nameOf(const QWidget& widget) {
  if (!widget.objectName().isEmpty()) return widget.objectName().toStdString();
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    return "label " + label->text().toStdString();
  }
  return widget.metaObject()->className();
}

/// Every control is as large as it needs to be and lies within its parents.
inline void expectNothingClipped(const QWidget& window) {
  for (const QWidget* widget : controlsOf(window)) {
    const QSize needed = neededBy(*widget);
    EXPECT_GE(widget->height(), needed.height()) << nameOf(*widget);
    EXPECT_GE(widget->width(), needed.width()) << nameOf(*widget);
    // Up to its window, which may stand anywhere beside the one it belongs to.
    for (const QWidget* parent = widget; !parent->isWindow();) {
      parent = parent->parentWidget();
      const QRect place(widget->mapTo(parent, QPoint()), widget->size());
      EXPECT_TRUE(parent->rect().contains(place))
          << nameOf(*widget) << " leaves " << nameOf(*parent);
    }
  }
}

inline void expectNoOverlap(const QWidget& window) {
  const std::vector<QWidget*> all = controlsOf(window);
  const auto placeOf = [&](const QWidget& widget) {
    return QRect(widget.mapTo(&window, QPoint()), widget.size());
  };
  for (std::size_t i = 0; i < all.size(); ++i) {
    for (std::size_t j = i + 1; j < all.size(); ++j) {
      EXPECT_FALSE(placeOf(*all[i]).intersects(placeOf(*all[j])))
          << nameOf(*all[i]) << " and " << nameOf(*all[j]);
    }
  }
}

/// The panel's place counts from the outer height: as much as a title bar takes
/// of it lies below the window's edge.
inline void expectRoomForTitleBar(const QWidget& panel, const QWidget& window) {
  constexpr int kTitleBar = 30;
  for (const QWidget* widget : controlsOf(window)) {
    if (!panel.isAncestorOf(widget)) continue;
    const int bottom = widget->mapTo(&panel, QPoint(0, widget->height())).y();
    EXPECT_LE(bottom, panel.height() - kTitleBar) << nameOf(*widget);
  }
}

}  // namespace vel::test
