#pragma once

#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/job.h"
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

  /// Only draws the chart again.
  void whenActivated() override;

  /// Counts the log that the browser shows, then draws the chart. One that is
  /// under way ends without a trace.
  void fmtDataLoad();
  void drowGraph();

  [[nodiscard]] const ActivityCounts& counts() const { return counts_; }
  [[nodiscard]] ChartPicture* picture() const { return picture_; }

 protected:
  void whenOpened() override;
  void whenClosed() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void buildControls();
  QRadioButton* makeOption(const QString& name);
  void chooseStation();
  [[nodiscard]] ActivityQuery query(const std::string& log) const;
  void finishLoad(const ActivityLoad& load, std::chrono::local_seconds reference,
                  const Status& status);
  void showNothing(std::chrono::local_seconds reference);
  void fillChooser(const std::vector<StationTotal>& stations, std::optional<std::size_t> chosen);
  void nameDay(const std::string& log);
  void showSlot(std::optional<std::size_t> slot, const QPoint& position);
  bool moveSlot(int key);

  std::function<std::string()> shownLog_;
  QComboBox* station_ = nullptr;      // Combo1
  QRadioButton* upToNow_ = nullptr;   // Option1(0)
  QRadioButton* dayOfLog_ = nullptr;  // Option1(1)
  ChartPicture* picture_ = nullptr;

  std::vector<std::string> stations_;  // of the chooser, as they stand in the log
  ActivityCounts counts_;
  std::chrono::local_seconds reference_;
  std::size_t keySlot_ = ActivityCounts::kReferenceSlot;  // whose counts the keys show
  JobSlot count_;
};

}  // namespace vel
