#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QListView>

#include <gmock/gmock.h>

#include "core/ui/twips.h"
#include "tests/ui/support/acars_window.h"

namespace vel {
namespace {

class AcarsLayout : public test::AcarsWindowTest {
 protected:
  void startWithFont(double scale) {
    font_ = QApplication::font();
    QFont larger = font_;
    larger.setPointSizeF(larger.pointSizeF() * scale);
    QApplication::setFont(larger);
    base_.writeData("letter.csv", {"JL,JAL,Japan Airlines,Japan Airlines Company Limited"});
    start();
    select(0);
  }
  void TearDown() override {
    if (font_ != QFont()) QApplication::setFont(font_);
  }

  /// What a user reads or operates, as it is shown.
  [[nodiscard]] std::vector<QWidget*> controls() const {
    std::vector<QWidget*> found;
    for (QWidget* widget : window().findChildren<QWidget*>()) {
      const bool isControl = qobject_cast<QAbstractButton*>(widget) != nullptr ||
                             qobject_cast<QLineEdit*>(widget) != nullptr ||
                             qobject_cast<QComboBox*>(widget) != nullptr ||
                             qobject_cast<QLabel*>(widget) != nullptr ||
                             qobject_cast<QListView*>(widget) != nullptr ||
                             widget->objectName() == QLatin1String("Image1") ||
                             widget->objectName() == QLatin1String("xLView1");
      const bool isPartOfAnother = qobject_cast<QLineEdit*>(widget->parent()) != nullptr ||
                                   qobject_cast<QAbstractItemView*>(widget->parent()) != nullptr;
      if (isControl && widget->isVisible() && !isPartOfAnother) found.push_back(widget);
    }
    return found;
  }
  /// A style makes buttons wider than their text needs.
  static QSize neededBy(const QWidget& widget) {
    QSize needed = widget.minimumSizeHint();
    if (const auto* push = qobject_cast<const QPushButton*>(&widget)) {
      QString shown = push->text();
      shown.remove(QLatin1Char('&'));
      needed.setWidth(qMin(needed.width(), push->fontMetrics().horizontalAdvance(shown) + 10));
    }
    return needed;
  }
  static std::string nameOf(const QWidget& widget) {
    if (!widget.objectName().isEmpty()) return widget.objectName().toStdString();
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
      return "label " + label->text().toStdString();
    }
    return widget.metaObject()->className();
  }
  [[nodiscard]] QRect placeOf(const QWidget& widget) const {
    return {widget.mapTo(&window(), QPoint()), widget.size()};
  }

  void expectNothingClipped() const {
    for (const QWidget* widget : controls()) {
      const QSize needed = neededBy(*widget);
      EXPECT_GE(widget->height(), needed.height()) << nameOf(*widget);
      EXPECT_GE(widget->width(), needed.width()) << nameOf(*widget);
      for (const QWidget* parent = widget->parentWidget(); parent != nullptr;
           parent = parent->parentWidget()) {
        const QRect place(widget->mapTo(parent, QPoint()), widget->size());
        EXPECT_TRUE(parent->rect().contains(place))
            << nameOf(*widget) << " leaves " << nameOf(*parent);
      }
    }
  }
  void expectNoOverlap() const {
    const std::vector<QWidget*> all = controls();
    for (std::size_t i = 0; i < all.size(); ++i) {
      for (std::size_t j = i + 1; j < all.size(); ++j) {
        EXPECT_FALSE(placeOf(*all[i]).intersects(placeOf(*all[j])))
            << nameOf(*all[i]) << " and " << nameOf(*all[j]);
      }
    }
  }

 private:
  QFont font_;
};

TEST_F(AcarsLayout, AtTheDesignedSizeNothingIsClippedAndNothingOverlaps) {
  startWithFont(1.0);
  ASSERT_GT(controls().size(), 50U);
  expectNothingClipped();
  expectNoOverlap();
}

TEST_F(AcarsLayout, AQuarterLargerFontClipsNothing) {
  startWithFont(1.25);
  expectNothingClipped();
  expectNoOverlap();
}

TEST_F(AcarsLayout, AtTheSmallestSizeNothingOfThePanelIsClipped) {
  startWithFont(1.0);
  window().resize(window().minimumSize().width(), window().height());
  expectNothingClipped();
  expectNoOverlap();
}

TEST_F(AcarsLayout, ATitleBarLeavesThePanelsControlsInTheWindow) {
  startWithFont(1.0);
  // The panel's place counts from the outer height: as much as a title bar
  // takes of it lies below the window's edge.
  constexpr int kTitleBar = 30;
  const QWidget& panel = find<QWidget>("Frame4");
  for (const QWidget* widget : controls()) {
    if (!panel.isAncestorOf(widget)) continue;
    const int bottom = widget->mapTo(&panel, QPoint(0, widget->height())).y();
    EXPECT_LE(bottom, panel.height() - kTitleBar) << nameOf(*widget);
  }
}

TEST_F(AcarsLayout, TheDesignedSizeIsLargeEnough) {
  start();
  EXPECT_GE(toTwips(window().frameGeometry().width()), 12600);
  EXPECT_GE(toTwips(window().frameGeometry().height()), 10500);
}

TEST_F(AcarsLayout, TheFramesFollowTheWindow) {
  start();
  for (const QSize size : {QSize(1000, 700), QSize(1100, 613), QSize(960, 500)}) {
    window().resize(size);
    const int height = toTwips(window().frameGeometry().height());
    const int width = toTwips(window().frameGeometry().width());
    ASSERT_EQ(window().size(), size);
    EXPECT_EQ(find<QWidget>("Frame6").height(), (height - 3615) / 15);
    EXPECT_EQ(list().height(), (height - 4815) / 15);
    EXPECT_EQ(find<QWidget>("Frame4").y(), (height - 3630) / 15);
    EXPECT_EQ(find<QWidget>("Frame4").width(), width / 15);
    EXPECT_EQ(find<QWidget>("Frame6").width(), width / 15);
    EXPECT_EQ(list().width(), (width - 345) / 15);
    EXPECT_EQ(find<QWidget>("Frame7").width(), (width - 345) / 15);
  }
}

TEST_F(AcarsLayout, BelowItsHeightTheListIsGoneAndNotNegative) {
  start();
  window().resize(1000, 0);
  const int height = toTwips(window().frameGeometry().height());
  ASSERT_LT(height, 4815);
  EXPECT_EQ(list().height(), 0);
  EXPECT_EQ(find<QWidget>("Frame6").height(), (height - 3615) / 15);
  EXPECT_EQ(find<QWidget>("Frame4").y(), (height - 3630) / 15);
  window().resize(1000, 700);
  EXPECT_GT(list().height(), 300);
}

TEST_F(AcarsLayout, TheMainWindowCarriesItsCaptionAndItsVersion) {
  start();
  EXPECT_EQ(window().windowTitle(), QStringLiteral("VEL LIST.csv Browser"));
  EXPECT_EQ(text("Label4"), "Ver1.0.0");
}

}  // namespace
}  // namespace vel
