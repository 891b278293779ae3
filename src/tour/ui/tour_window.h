#pragma once

#include <QAbstractSlider>
#include <QDialog>
#include <QList>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <array>

#include "tour/tour_logic.h"
#include "tour/ui/tour_host.h"
#include "tour/ui/tour_marks.h"
#include "tour/ui/whole_lines.h"

namespace vel {

/// The tour: stands beside the control that the current step explains, frames
/// it, and points at it with blinking arrows. Keys: Alt+N or Right, Alt+P or
/// Left, Esc; Up, Down and the page keys scroll the text.
///
/// `host` and `state` belong to the caller and outlive the window. The state
/// keeps the step from one opening to the next.
class TourWindow : public QDialog {
  Q_OBJECT

 public:
  TourWindow(const TourHost& host, TourState& state);
  ~TourWindow() override;

  [[nodiscard]] QSize sizeHint() const override;

  /// A tick of the blink timer.
  void blink();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void goBack();
  void goOn();
  void reportPosition();
  void buildControls();
  void buildKeys();
  void fitToFont();
  /// Gives the explanation letters of this size, as a part of the window's own.
  void useLetters(int percent);
  void showStep();
  void followHost();
  /// Takes the step's size and place.
  void moveToStep();
  /// The outer height, in twips, at which all of the text is seen in a window
  /// that stands there, with that outer width.
  [[nodiscard]] int neededHeight(const TourRect& outer) const;
  /// What the step explains and is in sight, in pixels on the screen.
  [[nodiscard]] QList<QRect> shownControls() const;
  /// Where the arrows of a window with this inner place stand.
  [[nodiscard]] std::array<std::optional<TourPointer>, kTourPointerCount> arrowsOf(
      const TourRect& inner) const;
  void pointAtControls();
  void applyBlink();
  void frameControls(const QList<QRect>& controls);
  void removeFrames(qsizetype keep);
  void scrollText(QAbstractSlider::SliderAction action);
  /// This window's and the main window's top left corner, in twips.
  [[nodiscard]] TourPoint ownCorner() const;
  [[nodiscard]] TourPoint hostCorner() const;
  [[nodiscard]] int pointerSize() const;

  const TourHost& host_;
  TourState& state_;
  Blink blink_ = Blink::on;
  PointerSet pointers_ = {};
  bool followPending_ = false;
  QSize placedFrame_;  ///< what the frame added to the size at the last move to a step

  QVBoxLayout* layout_ = nullptr;
  WholeLines* text_ = nullptr;
  PositionLabel* position_ = nullptr;
  QPushButton* previous_ = nullptr;
  QPushButton* next_ = nullptr;
  QPushButton* close_ = nullptr;
  QTimer* timer_ = nullptr;
  std::array<PointerPicture*, kTourPointerCount> pictures_ = {};
  QList<QPointer<ControlFrame>> frames_;
};

}  // namespace vel
