#pragma once

#include <QPoint>
#include <QScrollBar>
#include <chrono>
#include <string>

#include "hfdl/frequency_load.h"
#include "hfdl/frequency_tables.h"
#include "hfdl/ui/chart_picture.h"
#include "hfdl/ui/chart_window.h"
#include "hfdl/ui/magnifier.h"

namespace vel {

/// Which frequencies the ground stations announced in the last seven days. Keys:
/// Up, Down, the page keys, Home and End scroll; F5 loads again.
class FrequencyWindow : public ChartWindow {
  Q_OBJECT

 public:
  explicit FrequencyWindow(const Context& context);

  void Form_Load() override;
  /// The first activation loads and draws, later ones do nothing.
  void Form_Activate() override;
  void Form_Resize();
  void VScroll1_Change();
  /// A press at that point of the surface.
  void Picture1_MouseDown(Qt::MouseButton button, const QPoint& point);

  /// Loads the logs of seven days and draws; nothing while a load is under way.
  void loadFMTlog(std::chrono::local_days start);
  void DrawGraph();

  [[nodiscard]] const FrequencyTables& tables() const { return tables_; }
  [[nodiscard]] ChartPicture* picture() const { return picture_; }
  [[nodiscard]] Magnifier* magnifier() const { return magnifier_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void buildControls();
  void buildKeys();
  bool readLogs(FrequencyLoad& load);
  void showProgress(const std::string& text);
  void placeSurface();
  void reloadAndMagnify(const QPoint& point);

  QWidget* frame_ = nullptr;  // what is seen of the surface
  ChartPicture* picture_ = nullptr;
  QScrollBar* scroll_ = nullptr;  // VScroll1
  Magnifier* magnifier_ = nullptr;

  FrequencyTables tables_;
  std::chrono::local_days start_{};
  bool firstActivation_ = true;
  bool loading_ = false;
  int load_ = 0;  // numbers the loads: one that is no longer the newest stops
};

}  // namespace vel
