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
  HfdlBrowser(BrowserFrame& frame, WebAccess& web);

  /// What other windows do for this one; set before load(). The button of a
  /// missing one is not shown.
  std::function<void()> showActivityChart;
  std::function<void()> showFrequencyChart;

  void load() override;
  void tablesChanged() override;

  [[nodiscard]] HfdlPanel* panel() const { return panel_; }

 protected:
  [[nodiscard]] int neededWidth() const override;
  void layOutFrames(int height, int width) override;
  std::unique_ptr<LogReader> makeReader(InputFile file) override;
  void readBegins() override;
  void rowsShown(std::size_t) override {}
  void readEnds() override;
  void lineKept() override { panel_->showSelectionAgain(); }
  void addFilterActions(QMenu&, const QModelIndex&) override {}
  [[nodiscard]] int registrationColumn() const override;
  [[nodiscard]] std::string flightToFind() override;
  void readyEditor(LineEditor editor, const std::string& key) override;
  void searchPhoto() override;
  void searchFlight() override;
  void openPhoto() override;
  void openRawLog() override;
  void openConfig() override;

 private:
  void fillTopRow();
  void jumpToAddressService();
  void openRawLogOfDirection();

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
