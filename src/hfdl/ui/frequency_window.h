#pragma once

#include <QLayout>
#include <QMenu>
#include <QPoint>
#include <QScrollBar>
#include <chrono>
#include <optional>
#include <string>

#include "core/job.h"
#include "hfdl/frequency_load.h"
#include "hfdl/frequency_tables.h"
#include "hfdl/ui/chart_picture.h"
#include "hfdl/ui/chart_window.h"
#include "hfdl/ui/magnifier.h"
#include "hfdl/ui/time_axis.h"

namespace vel {

/// Which frequencies the ground stations announced in the last seven days. Keys:
/// the arrows move a point, Up, Down, the page keys, Home and End scroll, Menu
/// and Shift+F10 open the menu, F5 loads again.
class FrequencyWindow : public ChartWindow {
  Q_OBJECT

 public:
  explicit FrequencyWindow(const Context& context);

  /// The first activation loads and draws, later ones do nothing.
  void whenActivated() override;

  /// Loads the logs of seven days and draws; nothing while a load is under way.
  void loadFMTlog(std::chrono::local_days start);
  void DrawGraph();

  [[nodiscard]] const FrequencyTables& tables() const { return tables_; }
  [[nodiscard]] ChartPicture* picture() const { return picture_; }
  [[nodiscard]] Magnifier* magnifier() const { return magnifier_; }

 protected:
  void whenOpened() override;
  void whenClosed() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void buildControls();
  void buildActions();
  void buildKeys();
  [[nodiscard]] QLayout* buildButtons();
  void showMenu();

  void reload();
  void enlarge();
  void reloadAndEnlarge(const QPoint& point);
  void load(std::chrono::local_days start, std::optional<QPoint> enlarged);
  void finishLoad(std::optional<QPoint> enlarged);
  void showProgress();
  void showMagnifier(const QPoint& point);

  void placeSurface();
  void slideSurface();
  void surfacePressed(Qt::MouseButton button, const QPoint& point);
  void movePoint(int columns, int rows);
  [[nodiscard]] QRect seenRows() const;
  [[nodiscard]] QString tipAt(const QPoint& point) const;
  void showPointTip(const QPoint& point);

  QWidget* frame_ = nullptr;  // what is seen of the surface
  ChartPicture* picture_ = nullptr;
  TimeAxis* axis_ = nullptr;
  QScrollBar* scroll_ = nullptr;  // VScroll1
  Magnifier* magnifier_ = nullptr;
  QAction* enlarge_ = nullptr;
  QAction* reload_ = nullptr;
  QMenu* menu_ = nullptr;

  std::optional<QPoint> point_;  // on the surface, for who works with the keys

  FrequencyTables tables_;
  std::chrono::local_days start_{};
  bool firstActivation_ = true;
  // The load under way, its messages included; the slot steps it.
  std::optional<FrequencyLoad> week_;
  JobSlot weekJob_;
  std::string shownProgress_;  // empty while the chart is shown
};

}  // namespace vel
