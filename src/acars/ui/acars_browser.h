#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <functional>

#include "acars/list_log.h"
#include "acars/ui/detail_panel.h"
#include "acars/ui/filter_frame.h"
#include "log/ui/log_browser.h"
#include "tables/tables.h"
#include "web/ui/web_access.h"

namespace vel {

/// The main window: the ACARS list logs with their filters, and below the list
/// the details of the selected line.
class AcarsBrowser : public LogBrowser {
  Q_OBJECT

 public:
  /// The web access outlives the window.
  AcarsBrowser(BrowserFrame& frame, WebAccess& web);

  /// What other windows do for this one; set before load(). Missing ones do
  /// nothing, and their buttons are not shown.
  std::function<void(int step)> prepareTour;
  std::function<void()> showTour;

  void load() override;

  void tablesChanged() override;

  /// Puts every filter back as it is at load and reads the log once.
  void clearFilters();

  [[nodiscard]] FilterFrame* filters() const { return filters_; }
  [[nodiscard]] DetailPanel* panel() const { return panel_; }

 protected:
  void takeOver() override;
  [[nodiscard]] int neededWidth() const override;
  void layOutFrames(int height, int width) override;
  std::unique_ptr<LogReader> makeReader(InputFile file) override;
  void readBegins() override {}
  void rowsShown(std::size_t count) override;
  void readEnds() override;
  void lineKept() override;
  void addFilterActions(QMenu& menu, const QModelIndex& clicked) override;
  [[nodiscard]] QString noLineHint() const override;
  void takeFiltersBack() override;
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
  void addShortcuts();
  void keepPhotoEngine();
  void keepFlightEngine();
  void takeTour();

  WebAccess& web_;
  Tables tables_;
  QWidget* upper_;  // Frame6
  QWidget* topRow_;
  FilterFrame* filters_;
  DetailPanel* panel_;  // Frame4
  QPushButton* config_;
  QPushButton* tour_;
  QLabel* version_;
};

}  // namespace vel
