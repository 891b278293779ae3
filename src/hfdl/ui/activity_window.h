#pragma once

#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "hfdl/activity_load.h"
#include "hfdl/ui/chart_picture.h"
#include "hfdl/ui/chart_window.h"

namespace vel {

/// How busy the ground stations were over 24 hours, counted from the log that
/// the HFDL browser shows.
class ActivityWindow : public ChartWindow {
  Q_OBJECT

 public:
  /// `shownLog` gives the name of the log selected in the HFDL browser, or an
  /// empty text when none is.
  ActivityWindow(const Context& context, std::function<std::string()> shownLog);

  void Form_Load() override;
  void Form_Activate() override;
  void Command1_Click();  ///< "Reflesh"
  void Option1_Click();
  void Combo1_Click();

  /// Counts the log. A call from inside a running load makes that one start
  /// afresh.
  void fmtDataLoad();
  void drowGraph();

  [[nodiscard]] const ActivityCounts& counts() const { return counts_; }
  [[nodiscard]] ChartPicture* picture() const { return picture_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void buildControls();
  void loadOnce();
  [[nodiscard]] ActivityQuery query(const std::string& log) const;
  void take(const ActivityLoad& load, int station);
  void nameDay(const std::string& log);
  void showSlot(std::optional<std::size_t> slot, const QPoint& position);
  bool moveSlot(int key);

  std::function<std::string()> shownLog_;
  QComboBox* station_ = nullptr;              // Combo1
  std::array<QRadioButton*, 2> option_ = {};  // Option1: the last 24 hours, the log's day
  ChartPicture* picture_ = nullptr;

  std::vector<std::string> stations_;  // as they stand in the log
  ActivityCounts counts_;
  std::chrono::local_seconds reference_;
  std::size_t keySlot_ = ActivityCounts::kReferenceSlot;  // whose counts the keys show
  bool loading_ = false;
  bool restart_ = false;
};

}  // namespace vel
