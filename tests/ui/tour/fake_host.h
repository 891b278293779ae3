#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include "tour/tour_steps.h"
#include "tour/ui/tour_host.h"

namespace vel::test {

/// A window of the ACARS browser's designed size, with a control of the right
/// name for every step, placed so that no step's tour window covers its own.
class FakeHost : public QWidget, public TourHost {
 public:
  FakeHost() {
    setWindowTitle(QStringLiteral("VEL LIST.csv Browser"));
    add("Combo1", {10, 10, 225, 22});
    add("Command5", {290, 10, 80, 22});
    add("title 1", {40, 75, 76, 20});
    add("title 2", {116, 75, 36, 20});
    add("title 4", {200, 75, 80, 20});
    add("title 5", {280, 75, 80, 20});
    add("title 6", {365, 75, 120, 20});
    add("rows", {8, 96, 190, 330});
    add("Text4(0)", {40, 48, 70, 20});
    add("Text4(2)", {200, 48, 150, 20});
    add("Text4(6)", {590, 48, 60, 20});
    add("Command9", {720, 48, 60, 20});
    add("Label3", {670, 20, 100, 20});
    addToPanel("Image1", {8, 8, 110, 120});
    addToPanel("Command7(0)", {8, 142, 100, 22});
    addToPanel("Text1", {8, 172, 100, 20});
    addToPanel("Frame2", {225, 8, 165, 190});
    addToPanel("Text2(0)", {232, 22, 50, 20});
    addToPanel("Text2(1)", {300, 22, 50, 20});
    addToPanel("Command2", {350, 47, 38, 20});
    addToPanel("Combo3", {240, 142, 100, 20});
    addToPanel("Command7(1)", {345, 142, 40, 20});
    addToPanel("Command3(0)", {395, 62, 24, 20});
    addToPanel("Command3(1)", {395, 87, 24, 20});
    addToPanel("Text3", {420, 22, 100, 20});
    addToPanel("List1", {425, 47, 140, 90});
    addToPanel("Frame3", {610, 8, 200, 100});
    addToPanel("Text2(3)", {615, 32, 40, 20});
    addToPanel("Text2(4)", {660, 32, 140, 20});
    addToPanel("Text2(5)", {605, 142, 40, 20});
    addToPanel("Text2(6)", {650, 142, 140, 20});

    move(0, 0);
    resize(kWidth, kHeight);
    show();
    resizeOuter(kWidth, kHeight);
  }

  /// The designed size of the browser's window with its frame: 12,600 x 10,500 twips.
  static constexpr int kWidth = 840;
  static constexpr int kHeight = 700;

  void resizeOuter(int width, int height) {
    const QSize border = frameGeometry().size() - size();
    resize(QSize(width, height) - border);
  }

  [[nodiscard]] QWidget* control(const QString& name) const { return findChild<QWidget*>(name); }

  [[nodiscard]] QRect outerGeometry() const override { return frameGeometry(); }
  [[nodiscard]] int panelTop() const override { return frameGeometry().height() * 15 - 3630; }
  [[nodiscard]] QList<QRect> controlsOf(int step) const override {
    QList<QRect> controls;
    if (tourStep(step) == nullptr) return controls;
    for (const TourTarget& target : tourStep(step)->targets) {
      if (target.kind == TourTargetKind::window) {
        controls.append(geometry());
        continue;
      }
      QString name = QString::fromUtf8(target.name.data(), static_cast<int>(target.name.size()));
      if (target.kind == TourTargetKind::columnTitle) {
        name = QStringLiteral("title %1").arg(target.column);
      }
      if (target.kind == TourTargetKind::listRows) name = QStringLiteral("rows");
      const QWidget* found = control(name);
      if (found == nullptr || !found->isVisible()) continue;
      controls.append(QRect(found->mapToGlobal(QPoint(0, 0)), found->size()));
    }
    return controls;
  }
  [[nodiscard]] QWidget* window() const override { return const_cast<FakeHost*>(this); }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QWidget::resizeEvent(event);
    for (const PanelControl& entry : panel_) {
      entry.widget->move(entry.place.x(), panelTop() / 15 + entry.place.y());
    }
  }

 private:
  struct PanelControl {
    QWidget* widget;
    QRect place;
  };

  QWidget* add(const char* name, const QRect& place) {
    auto* button = new QPushButton(QString::fromLatin1(name), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setGeometry(place);
    return button;
  }
  void addToPanel(const char* name, const QRect& place) {
    panel_.append({add(name, place), place});
  }

  QList<PanelControl> panel_;
};

}  // namespace vel::test
