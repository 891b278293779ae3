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

#include "app/ui/browser_window.h"
#include "core/file.h"
#include "log/log_reader.h"
#include "log/ui/log_list_model.h"
#include "log/ui/xlview.h"

namespace vel {

/// What both browsers have: the chooser of a decoder's dated logs, the list of
/// the chosen log's messages with its menu, and the reading from one into the
/// other while window events run.
class LogBrowser : public BrowserWindow {
  Q_OBJECT

 public:
  /// In what the logs of the two decoders differ.
  struct LogKind {
    std::string_view suffix;   ///< how their names end
    const char* noLogMessage;  ///< shown where none can be selected
    bool newestWhenGone;       ///< a shown log that is gone gives way to the newest one
    int progressAbove;         ///< the splash counts rows while more readers are to finish
    QString otherBrowser;      ///< caption of the button to the other browser
    QString otherBrowserName;  ///< its object name
  };

  LogBrowser(Program& program, LogKind kind);

  [[nodiscard]] int shownRows() const override;

  /// Fills the log file chooser and selects a log, which reads it.
  void GetLogFileList();

  /// Reads the selected log into the list; nothing while `suppressLoading` is
  /// set. A call from inside a running read makes that read start afresh, so
  /// that the last one determines the list. Without a selected log the list is
  /// emptied.
  void GetLogData();

  void Combo1_Click();
  void Command5_Click();

  /// The name of the selected log, empty when none is.
  [[nodiscard]] std::string shownLog() const { return logFile_->currentText().toStdString(); }

  /// What shows the raw log of that name; set before Form_Load. Without it the
  /// raw log is not offered.
  std::function<void(const std::string& name)> showRawLog;

  /// Keeps GetLogData from reading.
  bool suppressLoading = false;

  [[nodiscard]] xLView* list() const { return list_; }
  [[nodiscard]] LogListModel* model() const { return model_; }

 protected:
  /// The row of controls above the list: chooser, Refresh, the other browser,
  /// then what addTopButton adds at the right. The chooser has its designed
  /// width (pixels), or more where the longest name needs it.
  QWidget* makeTopRow(QWidget* parent, const QString& chooserCaption, const QString& longestName,
                      int designedWidth);
  QPushButton* addTopButton(const QString& text, const QString& name, const QString& toolTip);

  /// The list over a new model.
  void makeList(QWidget* parent, LogListModel* model, const QList<int>& widths);

  /// The button to the other browser, after Refresh; Ctrl+Tab presses it.
  [[nodiscard]] QPushButton* otherBrowserButton() const { return otherBrowser_; }

  /// A reader at the beginning of the selected log.
  virtual std::unique_ptr<LogReader> makeReader(InputFile file) = 0;
  /// A read begins; the list still shows what it showed.
  virtual void readBegins() = 0;
  /// So many rows are shown, 0 when the list was just cleared.
  virtual void rowsShown(std::size_t count) = 0;
  /// A read has ended, and the selection is about to be restored.
  virtual void readEnds() = 0;

  /// Adds to the list's menu, between the copies and the look-ups.
  virtual void addFilterActions(QMenu& menu, const QModelIndex& clicked) = 0;
  /// The menu's actions for the selected line.
  virtual void searchPhoto() = 0;
  virtual void searchFlight() = 0;
  virtual void openPhoto() = 0;
  virtual void openRawLog() = 0;

 private:
  enum class ReadEnd { finished, overtaken, programEnds };

  void showNoLog();
  [[nodiscard]] std::filesystem::path selectedLog();
  ReadEnd readOnce(int& rememberedIndex);
  ReadEnd readRows(LogReader& reader, int generation);
  void finishRead(int rememberedIndex);
  void showContextMenu(const QPoint& position);

  LogKind kind_;
  QComboBox* logFile_ = nullptr;  // Combo1
  QPushButton* otherBrowser_ = nullptr;
  QHBoxLayout* topRow_ = nullptr;
  LogListModel* model_ = nullptr;
  xLView* list_ = nullptr;
  bool reading_ = false;
  int generation_ = 0;  // of reads
  int listing_ = 0;     // of file lists
};

}  // namespace vel
