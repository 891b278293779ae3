#pragma once

#include <QPushButton>
#include <functional>

#include "core/file.h"
#include "hfdl/ui/hfdl_panel.h"
#include "log/ui/log_browser.h"
#include "tables/tables.h"
#include "web/ui/web_access.h"

namespace vel {

/// The second main window: the HFDL formatted logs, and below the list the
/// aircraft and the flight of the selected line.
class HfdlBrowser : public LogBrowser {
  Q_OBJECT

 public:
  /// The web access outlives the window.
  HfdlBrowser(Program& program, WebAccess& web);

  /// What other windows do for this one; set before load(). The button of a
  /// missing one is not shown.
  std::function<void()> showActivityChart;
  std::function<void()> showFrequencyChart;

  void load() override;

  /// The look-up row: ICAO24 address service (0), photo search (1), flight
  /// search (2), raw log (3).
  void Command7_Click(int index);
  /// The two charts, and the way back to the ACARS browser.
  void Command8_Click();
  void Command10_Click();
  void Command12_Click();

  [[nodiscard]] HfdlPanel* panel() const { return panel_; }

 protected:
  void layOutFrames(int height, int width) override;
  std::unique_ptr<LogReader> makeReader(InputFile file) override;
  void readBegins() override;
  void rowsShown(std::size_t) override {}
  void readEnds() override;
  void lineKept() override { panel_->showSelectionAgain(); }
  void addFilterActions(QMenu&, const QModelIndex&) override {}
  void searchPhoto() override;
  void searchFlight() override;
  void openPhoto() override;
  void openRawLog() override;

 private:
  void fillTopRow();
  void jumpToAddressService();

  WebAccess& web_;
  Tables tables_;
  FolderIndex photos_;
  QWidget* canvas_;
  QWidget* topRow_;
  QPushButton* activityChart_;   // Command8
  QPushButton* frequencyChart_;  // Command10
  HfdlPanel* panel_;             // Frame4
};

}  // namespace vel
