#pragma once

#include <functional>
#include <optional>

#include "hfdl/ui/chart_picture.h"
#include "history/history_strip.h"

namespace vel {

/// A strip of bars that can be clicked, or chosen with the arrow keys and Enter,
/// and saved or copied as a picture from its menu.
class StripPicture : public ChartPicture {
  Q_OBJECT

 public:
  using StripMaker = std::function<Strip(double width, double height, double ratio)>;
  using BarText = std::string (*)(const StripBar& bar);

  /// `barText` is the tool tip of a bar.
  StripPicture(Desktop& desktop, const QString& fileName, const QString& objectName,
               BarText barText, QWidget* parent);

  /// Shows what `make` gives, now and whenever size or scale change.
  void setStrip(StripMaker make);

  /// The bars as they are shown.
  [[nodiscard]] std::vector<StripBar> bars() const;

 Q_SIGNALS:
  /// A bar with messages was clicked, or chosen with the keys.
  void barChosen(const vel::StripBar& bar);

 protected:
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void moveCursor(int direction);
  void showText(const StripBar& bar);

  BarText barText_;
  StripMaker make_;
  std::optional<StripBar> cursor_;  // of the keys
};

}  // namespace vel
