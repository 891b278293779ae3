#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <functional>

#include "acars/list_log.h"
#include "acars/ui/detail_panel.h"
#include "acars/ui/filter_frame.h"
#include "core/ui/browser_window.h"
#include "core/ui/log_list_model.h"
#include "core/ui/xlview.h"
#include "tables/tables.h"
#include "web/ui/web_access.h"

namespace vel {

/// The main window: the ACARS list logs with their filters, and below the list
/// the details of the selected line.
class AcarsBrowser : public BrowserWindow {
  Q_OBJECT

 public:
  /// The web access outlives the window.
  AcarsBrowser(Program& program, WebAccess& web);

  /// What other windows do for this one; set before Form_Load. Missing ones do
  /// nothing, and their buttons are not shown.
  std::function<void(int step)> prepareTour;
  std::function<void()> showTour;

  void Form_Load() override;
  void Form_Activate() override;
  [[nodiscard]] int shownRows() const override;

  /// Fills the log file chooser and selects a log, which reads it.
  void GetLogFileList();

  /// Reads the selected log into the list. A call from inside a running read
  /// makes that read start afresh, so that the last one determines the list.
  void GetLogData();

  void Combo1_Click();
  void Combo2_Click();
  void Combo3_Click();
  void Command4_Click();
  void Command5_Click();
  /// The look-up row: photo search (0), flight search (1), raw log (3).
  void Command7_Click(int index);
  void Command9_Click();
  void Command10_Click();
  void Command11_Click();

  [[nodiscard]] xLView* list() const { return list_; }
  [[nodiscard]] LogListModel* model() const { return model_; }
  [[nodiscard]] FilterFrame* filters() const { return filters_; }
  [[nodiscard]] DetailPanel* panel() const { return panel_; }

 protected:
  void layOutFrames(int height, int width) override;

 private:
  enum class ReadEnd { finished, overtaken, programEnds };

  QWidget* makeTopRow();
  void addShortcuts();
  ReadEnd readLog(ListLogReader& reader, int generation);
  ReadEnd readOnce(int& rememberedIndex);
  void emptyList();
  void endRead();
  void finishRead(const ListLogReader& reader, int rememberedIndex);
  void showContextMenu(const QPoint& position);
  void searchPhoto();
  void searchFlight();

  WebAccess& web_;
  Tables tables_;
  LogListModel* model_;
  QWidget* upper_;  // Frame6
  QWidget* topRow_;
  FilterFrame* filters_;
  xLView* list_;
  DetailPanel* panel_;  // Frame4
  QComboBox* logFile_;
  QPushButton* config_;
  QPushButton* otherBrowser_;
  QPushButton* tour_;
  QLabel* version_;
  bool loading_ = false;
  bool reading_ = false;
  int generation_ = 0;
};

}  // namespace vel
