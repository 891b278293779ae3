#pragma once

#include <QComboBox>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/ui/browser_window.h"
#include "core/file.h"
#include "core/job.h"
#include "core/ui/menu_button.h"
#include "log/log_reader.h"
#include "log/ui/line_editor.h"
#include "log/ui/log_list_model.h"
#include "log/ui/log_list_view.h"
#include "log/ui/log_reading.h"

namespace vel {

/// What both browsers have: the chooser of a decoder's dated logs, the list of
/// the chosen log's messages with its menu, and the reading from one into the
/// other while window events run.
class LogBrowser : public BrowserWindow {
  Q_OBJECT

 public:
  /// In what the logs of the two decoders differ.
  struct LogKind {
    std::string_view suffix;    ///< how their names end
    const char* noLogMessage;   ///< shown where none can be selected
    const char* noLineMessage;  ///< shown where a line has to be selected first
    bool newestWhenGone;        ///< a shown log that is gone gives way to the newest one
    int progressUntilReads;     ///< the splash counts rows while more first reads are to end
    QString otherBrowser;       ///< caption of the button to the other browser
    QString otherBrowserName;   ///< its object name
  };

  LogBrowser(BrowserFrame& frame, LogKind kind);

  [[nodiscard]] int shownRows() const override;
  /// Saves how the list's columns stand.
  void programEnds() override;

  /// Fills the log file chooser and selects a log, which reads it.
  void GetLogFileList();

  /// Why a log is read.
  enum class ReadReason {
    chosen,  ///< it was chosen, or is to be read again
    filter,  ///< other lines of it are asked for
  };

  /// Reads the selected log into the list, step by step; nothing inside
  /// `withoutReading`. A read that is still under way is given up: the
  /// last one determines the list. Without a selected log the list is emptied.
  void GetLogData(ReadReason reason = ReadReason::chosen);

  /// The selected log is another one: reads it.
  void readChosenLog();
  /// A filter asks for other lines: reads the selected log again.
  void readFiltered();

  /// The name of the selected log, empty when none is.
  [[nodiscard]] std::string shownLog() const {
    return logFile_->currentData().toString().toStdString();
  }

  /// What shows the raw log of that name; set before load(). Without it the
  /// raw log is not offered.
  std::function<void(const std::string& name)> showRawLog;

  /// The windows over all days, set before load(); without one of them it is not
  /// offered. The report is that of the shown log.
  std::function<void()> showFind;
  std::function<void()> showReport;
  std::function<void(const std::string& registration)> findAircraft;
  std::function<void(const std::string& flight)> findFlight;

  /// What else the menu offers, set before load(); an entry without one is not
  /// offered.
  std::function<void(const QString& file)> showImport;  ///< empty without a file
  std::function<void()> saveList;

  /// Opens the guide's page about this window; as above.
  std::function<void()> showHelp;

  /// Reads the shown log again and selects the line that was selected.
  void tablesChanged() override;

  /// The menu in the row above the list. Other parts may add entries to it.
  [[nodiscard]] MenuButton& menu() const { return *menu_; }

  /// Reads a log without any filter and selects one of its lines, by its number
  /// in the order of reading (from 0).
  void showLine(const std::string& log, std::size_t row);

  /// A text in one of some columns, without the blanks around it.
  struct LineText {
    std::vector<int> columns;
    std::string text;
    bool begins = false;  ///< the column begins with the text
    /// What another column holds, where that matters.
    int otherColumn = -1;
    std::string otherText = {};
    /// What is to be edited then, and its key where the line is not that.
    LineEditor editor = LineEditor::none;
    std::string key = {};
  };
  /// Selects the first shown line of a log with that text, and makes the editor
  /// ready once its details are shown; reads the log without any filter where
  /// it does not show such a line.
  void showLineWith(const std::string& log, const LineText& wanted);

  /// Makes a change of the controls that asks for no read: GetLogData does
  /// nothing in the meantime.
  void withoutReading(const std::function<void()>& change);

  [[nodiscard]] LogListView* list() const { return list_; }
  [[nodiscard]] LogListModel* model() const { return model_; }

 protected:
  /// The row of controls above the list: chooser, Refresh, the other browser,
  /// then what addTopButton adds at the right. The chooser has its designed
  /// width (pixels), or more where the longest name needs it.
  QWidget* makeTopRow(QWidget* parent, const QString& chooserCaption, const QString& longestName,
                      int designedWidth);
  QPushButton* addTopButton(const QString& text, const QString& name, const QString& toolTip);

  /// A file that is dropped on the window is to be imported.
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

  /// The list over a new model; see LogListView.
  void makeList(QWidget* parent, LogListModel* model, const ColumnDesign& columns);

  /// Lists the logs and reads one, as GetLogFileList. `filled` is called when
  /// that read has ended, or at once where there is no log; never where the
  /// program ends.
  void fill(std::function<void()> filled);

  /// The button to the other browser, after Refresh; Ctrl+Tab presses it.
  [[nodiscard]] QPushButton* otherBrowserButton() const { return otherBrowser_; }

  /// Whether a line is selected; tells the user where none is.
  [[nodiscard]] bool hasLine() const;

  /// A reader at the beginning of the selected log.
  virtual std::unique_ptr<LogReader> makeReader(InputFile file) = 0;
  /// A read begins; the list still shows what it showed.
  virtual void readBegins() = 0;
  /// So many rows are shown, 0 when the list was just cleared.
  virtual void rowsShown(std::size_t count) = 0;
  /// A read has ended, and the selection is about to be restored.
  virtual void readEnds() = 0;
  /// After a read, the line that was selected before it is selected again, if
  /// there still is one.
  virtual void lineKept() {}

  /// What the list says when a log gave no line.
  [[nodiscard]] virtual QString noLineHint() const;

  /// Takes every filter back, without reading.
  virtual void takeFiltersBack() {}
  /// The columns by which all days are searched.
  [[nodiscard]] virtual int registrationColumn() const = 0;
  /// The flight of the selected line by which all days are searched.
  [[nodiscard]] virtual std::string flightToFind() = 0;

  /// Gives an editor the keys once the selected line's details are shown.
  virtual void readyEditor(LineEditor editor, const std::string& key) = 0;

  /// Opens the dialog of the user's own search engines.
  virtual void openConfig() = 0;

  /// Adds to the list's menu, between the copies and the look-ups.
  virtual void addFilterActions(QMenu& menu, const QModelIndex& clicked) = 0;
  /// The menu's actions for the selected line.
  virtual void searchPhoto() = 0;
  virtual void searchFlight() = 0;
  virtual void openPhoto() = 0;
  virtual void openRawLog() = 0;

 private:
  void readUnfiltered(const std::string& log, std::function<void()> thenDo);
  [[nodiscard]] bool hasText(int row, const LineText& wanted) const;
  bool selectLineWith(const LineText& wanted);
  void addHistoryActions(QMenu& menu);
  void fillMenu();
  void addLog(const std::string& name);
  [[nodiscard]] std::string listName() const;
  void offerLogs(const std::vector<std::string>& names);
  void finishListing();
  void tell(const LogReading::Message& message);
  void showNoLog();
  void showEmptyHint();
  [[nodiscard]] std::filesystem::path selectedLog();
  void finishRead();
  void showContextMenu(const QPoint& position);

  LogKind kind_;
  QComboBox* logFile_ = nullptr;  // Combo1
  QPushButton* otherBrowser_ = nullptr;
  QHBoxLayout* topRow_ = nullptr;
  LogListModel* model_ = nullptr;
  LogListView* list_ = nullptr;
  JobSlot listing_;  // of the folder
  JobSlot reading_;
  std::function<void()> whenFilled_;
  std::function<void()> whenRead_;  // once, after the read of the log that it is for
  MenuButton* menu_ = nullptr;
  QPushButton* find_ = nullptr;
  QPushButton* report_ = nullptr;
  QAction* importEntry_ = nullptr;
  QAction* saveEntry_ = nullptr;
  QAction* findEntry_ = nullptr;
  QAction* reportEntry_ = nullptr;
  bool readsNothing_ = false;  // a change is made that asks for no read
  QAction* helpEntry_ = nullptr;
  bool isListed_ = false;      // a list was made that is complete with its read
  int rememberedIndex_ = -1;   // selected before the running read, and those it overtook
  bool reportIsOwed_ = false;  // also when it was shown already
  std::pair<std::string, std::string> lastReport_;  // of which log, and its text
};

}  // namespace vel
