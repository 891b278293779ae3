#pragma once

#include <QFileSystemWatcher>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <string>

#include "core/context.h"
#include "history/day_report.h"
#include "history/ui/report_list.h"
#include "history/ui/strip_picture.h"
#include "tables/tables.h"

namespace vel {

/// The window with the report of one day: its counts beside those of the seven
/// days before, what the tables do not have, and what was heard for the first
/// time.
class ReportWindow : public QWidget {
  Q_OBJECT

 public:
  /// The context outlives the window.
  explicit ReportWindow(const Context& context);

  /// Reports on the day of this log, and shows the window in front. A log
  /// without a date in its name has no report, and that is said.
  void open(ReportKind kind, const std::string& log);

  /// Selects a line of the log with that text in the browser, where the kind of
  /// gap says which column it stands in; of several, that of the aircraft with
  /// the address, unless that is empty.
  std::function<void(ReportKind kind, const std::string& log, GapKind gap,
                     const std::string& heardAs, const std::string& address)>
      selectLine;

  /// Asks for the file to save to; an empty name saves nothing. A dialog,
  /// unless a test sets something else.
  std::function<QString(const QString& fileName)> chooseFile;

  /// Saves the list of the page that is shown (Ctrl+S); without it the window
  /// does not offer that. `title` is also the suggested name.
  std::function<void(QTableView& list, const QString& title)> saveList;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QWidget* makeCounts();
  QWidget* makeFirstHeard();
  QWidget* makeButtons();
  void count();
  void counted(const DayCounting& counting);
  void showCounts();
  void findGaps();
  void findFirstHeard();
  void showFirstHeard(const FirstHeard& first, const Status& result);
  void followTables();
  void save(const QString& suffix, std::string (*made)(const DayReport&));
  void saveShown();
  void say(const QString& text);

  const Context& context_;
  Tables tables_;
  DayReport report_;
  std::chrono::local_days day_{};
  QLabel* title_;
  QLabel* state_;
  QTabWidget* pages_;
  QTableWidget* counts_;
  StripPicture* hours_;
  ReportList* gaps_;
  QProgressBar* progress_;
  ReportList* first_;
  QPushButton* saveHtml_;
  QPushButton* saveCsv_;
  QFileSystemWatcher watcher_;  // of the tables and the photos
  QTimer settled_;              // they have not changed for a moment
  JobSlot counting_;
  JobSlot looking_;
  JobSlot firstHeard_;
};

}  // namespace vel
