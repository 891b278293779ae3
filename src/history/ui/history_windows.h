#pragma once

#include <functional>
#include <memory>
#include <string>

#include "history/ui/history_window.h"
#include "history/ui/report_window.h"

namespace vel {

/// The two windows over all days, which both browsers share. Each is made when
/// it is first asked for.
class HistoryWindows {
 public:
  /// The context outlives the windows.
  explicit HistoryWindows(const Context& context) : context_(context) {}
  HistoryWindows(const HistoryWindows&) = delete;
  HistoryWindows& operator=(const HistoryWindows&) = delete;

  /// What a double click in them does; set before they are used.
  decltype(HistoryWindow::openMessage) openMessage;
  decltype(ReportWindow::selectLine) selectLine;
  std::function<void(QTableView& list, const QString& title)> saveList;

  [[nodiscard]] HistoryWindow& find() {
    if (!find_) {
      find_ = std::make_unique<HistoryWindow>(context_);
      find_->openMessage = openMessage;
      find_->saveList = saveList;
    }
    return *find_;
  }

  [[nodiscard]] ReportWindow& report() {
    if (!report_) {
      report_ = std::make_unique<ReportWindow>(context_);
      report_->selectLine = selectLine;
      report_->saveList = saveList;
    }
    return *report_;
  }

  /// Closes both, as the program does at its end.
  void close() {
    if (find_) find_->close();
    if (report_) report_->close();
  }

 private:
  const Context& context_;
  std::unique_ptr<HistoryWindow> find_;
  std::unique_ptr<ReportWindow> report_;
};

}  // namespace vel
