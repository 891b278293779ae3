#include "log/ui/log_browser.h"

#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QShortcut>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "core/program_files.h"
#include "core/text.h"
#include "core/ui/narrow_letters.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "log/dated_logs.h"
#include "log/ui/log_reading.h"

namespace vel {
namespace {

// Outer sizes in twips; the same for both, since they share one place.
constexpr QSize kDesignedSize{15000, 10800};
constexpr QSize kSmallestSize{14520, 4770};

// In pixels: the guided tour stands right of the chooser.
constexpr int kCaptionWidth = 78;

// The one file that is dropped; empty for anything else.
QString droppedFile(const QMimeData& data) {
  const QList<QUrl> addresses = data.urls();
  return addresses.size() == 1 ? addresses.front().toLocalFile() : QString();
}

}  // namespace

LogBrowser::LogBrowser(BrowserFrame& frame, LogKind kind)
    : BrowserWindow(frame, kDesignedSize, kSmallestSize),
      kind_(std::move(kind)),
      listing_(frame.context().jobs),
      reading_(frame.context().jobs) {
  const auto addShortcut = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  addShortcut(QKeySequence(Qt::Key_F5), &LogBrowser::GetLogFileList);
  addShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), [this] { otherBrowser_->click(); });
}

QWidget* LogBrowser::makeTopRow(QWidget* parent, const QString& chooserCaption,
                                const QString& longestName, int designedWidth) {
  auto* row = new QWidget(parent);
  topRow_ = new QHBoxLayout(row);
  topRow_->setContentsMargins(0, 0, 0, 0);
  topRow_->setSpacing(5);

  logFile_ = new QComboBox(row);
  logFile_->setObjectName(QStringLiteral("Combo1"));
  logFile_->setAccessibleName(tr("Log file"));
  logFile_->setToolTip(tr("Log of a day\n日付別ログファイル"));
  // The designed width is for the usual font; what larger letters need beyond
  // their smallest size is added.
  constexpr int kArrowWidth = 36;
  const auto nameWidth = [&] { return logFile_->fontMetrics().horizontalAdvance(longestName); };
  narrowLetters(*logFile_, nameWidth(), designedWidth - kArrowWidth);
  logFile_->setFixedWidth(qMax(designedWidth, nameWidth() + kArrowWidth));
  auto* caption = new QLabel(chooserCaption, row);
  caption->setBuddy(logFile_);
  narrowLetters(*caption, caption->sizeHint().width(), kCaptionWidth);
  topRow_->addWidget(caption);
  topRow_->addWidget(logFile_);
  QPushButton* refresh =
      addTopButton(tr("&Refresh"), QStringLiteral("Command5"),
                   tr("Lists the log files again and reads the selected one (F5)\nログの再読込み"));
  otherBrowser_ =
      addTopButton(kind_.otherBrowser, kind_.otherBrowserName,
                   tr("Switches to the other browser (Ctrl+Tab)\nもう一方のブラウザへ切替え"));
  topRow_->addStretch();
  menu_ = new MenuButton(row);
  topRow_->addWidget(menu_);
  find_ = addTopButton(tr("F&ind"), QStringLiteral("FindInAllLogs"),
                       tr("Finds messages in the logs of all days (Ctrl+Shift+F)\n全日検索"));
  report_ = addTopButton(tr("Rep&ort"), QStringLiteral("DayReport"),
                         tr("Report of the shown day (Ctrl+R)\n日別レポート"));

  connect(logFile_, &QComboBox::currentIndexChanged, this, &LogBrowser::readChosenLog);
  connect(refresh, &QPushButton::clicked, this, &LogBrowser::GetLogFileList);
  connect(find_, &QPushButton::clicked, this, [this] { showFind(); });
  connect(report_, &QPushButton::clicked, this, [this] { showReport(); });
  fillMenu();
  return row;
}

void LogBrowser::fillMenu() {
  importEntry_ = menu_->addEntry(tr("&Import..."), {}, [this] { showImport(QString()); });
  saveEntry_ = menu_->addEntry(tr("&Save list as..."), QKeySequence(Qt::CTRL | Qt::Key_S),
                               [this] { saveList(); });
  menu_->addSeparator();
  findEntry_ = menu_->addEntry(tr("&Find..."), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F),
                               [this] { showFind(); });
  reportEntry_ = menu_->addEntry(tr("&Report..."), QKeySequence(Qt::CTRL | Qt::Key_R),
                                 [this] { showReport(); });
  menu_->addSeparator();
  menu_->addEntry(tr("Search &engines..."), {}, [this] { openConfig(); });
  helpEntry_ = menu_->addEntry(tr("&Help"), QKeySequence(Qt::Key_F1), [this] { showHelp(); });
}

QPushButton* LogBrowser::addTopButton(const QString& text, const QString& name,
                                      const QString& toolTip) {
  auto* button = new QPushButton(text, topRow_->parentWidget());
  button->setObjectName(name);
  button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
  button->setToolTip(toolTip);
  topRow_->addWidget(button);
  return button;
}

void LogBrowser::makeList(QWidget* parent, LogListModel* model, const ColumnDesign& columns) {
  model_ = model;
  list_ = new LogListView(model, columns, parent);
  const auto count = static_cast<std::size_t>(columns.widths.size());
  if (const auto places = loadColumns(columnsFile(context().folders), listName(), count)) {
    list_->setColumnPlaces(*places);
  }
  list_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(list_, &LogListView::customContextMenuRequested, this, &LogBrowser::showContextMenu);
  connect(list_, &LogListView::copied, this,
          [this](const QString& text) { desktop().setClipboardText(text.toStdString()); });
}

std::string LogBrowser::listName() const { return objectName().toStdString(); }

void LogBrowser::programEnds() {
  std::optional<ColumnPlaces> places = list_->columnPlaces();
  if (places == list_->designedPlaces()) places.reset();
  // As with the settings, nothing is shown for any trouble.
  static_cast<void>(saveColumns(columnsFile(context().folders), listName(), places));
}

int LogBrowser::shownRows() const { return static_cast<int>(model_->rows().size()); }

bool LogBrowser::hasLine() const {
  if (list_->listIndex() >= 0) return true;
  desktop().showMessage(kind_.noLineMessage);
  return false;
}

void LogBrowser::GetLogFileList() {
  WriteRunLog(desktop(), "Start GetLogFileList");
  const auto names = std::make_shared<std::vector<std::string>>();
  const auto list = [names, folder = context().folders.logs,
                     suffix = kind_.suffix](Job::Clock::time_point) -> Result<JobProgress> {
    *names = datedLogs(folder, suffix);
    return JobProgress::done;
  };
  listing_.start(makeJob(list), {.ended = [this, names](const Status&) { offerLogs(*names); }});
}

void LogBrowser::addLog(const std::string& name) {
  logFile_->addItem(shownText(name, kLongestEntry), toQString(name));
}

void LogBrowser::offerLogs(const std::vector<std::string>& names) {
  const std::string remembered = shownLog();
  int chosen = chooseLog(names, remembered);
  if (chosen < 0 && kind_.newestWhenGone) chosen = chooseLog(names, {});
  {
    const QSignalBlocker blocker(logFile_);
    logFile_->clear();
    for (const std::string& name : names) addLog(name);
    logFile_->setCurrentIndex(chosen);
  }
  if (chosen < 0) desktop().showMessage(kind_.noLogMessage);
  if (desktop().isEnding()) return;
  isListed_ = true;
  readChosenLog();
  // Nothing is read without a log.
  if (!reading_.isRunning()) finishListing();
}

void LogBrowser::finishListing() {
  if (!std::exchange(isListed_, false)) return;
  WriteRunLog(desktop(), "Coplete GetLogFileList");
  if (const auto filled = std::exchange(whenFilled_, nullptr)) filled();
}

void LogBrowser::fill(std::function<void()> filled) {
  whenFilled_ = std::move(filled);
  find_->setVisible(showFind != nullptr);
  report_->setVisible(showReport != nullptr);
  importEntry_->setVisible(showImport != nullptr);
  setAcceptDrops(showImport != nullptr);
  // A box takes text that is dropped on it, but no file.
  for (QLineEdit* box : findChildren<QLineEdit*>()) box->installEventFilter(this);
  saveEntry_->setVisible(saveList != nullptr);
  findEntry_->setVisible(showFind != nullptr);
  reportEntry_->setVisible(showReport != nullptr);
  helpEntry_->setVisible(showHelp != nullptr);
  GetLogFileList();
}

void LogBrowser::readChosenLog() { GetLogData(ReadReason::chosen); }

void LogBrowser::readFiltered() { GetLogData(ReadReason::filter); }

void LogBrowser::GetLogData(ReadReason reason) {
  if (readsNothing_) return;
  if (logFile_->currentIndex() < 0) {
    showNoLog();
    return;
  }
  // What an overtaken read had to do, this one does: it tells its report, and
  // selects the line that was selected before the list was emptied.
  if (!reading_.isRunning()) {
    rememberedIndex_ = -1;
    reportIsOwed_ = false;
  }
  if (reason == ReadReason::chosen) reportIsOwed_ = true;
  WriteRunLog(desktop(), "Start GetLogData");
  readBegins();
  const auto open = [this]() -> Result<std::unique_ptr<LogReader>> {
    if (list_->listIndex() >= 0) rememberedIndex_ = list_->listIndex();
    list_->setEmptyHint({});
    model_->clear();
    rowsShown(0);
    Result<InputFile> file = InputFile::open(selectedLog());
    if (!file) return file.error();
    return makeReader(std::move(*file));
  };
  const auto shown = [this] {
    rowsShown(model_->rows().size());
    frame().rowsRead(kind_.progressUntilReads);
  };
  auto job = std::make_unique<LogReading>(*model_, open, shown);
  LogReading& reading = *job;
  reading_.start(std::move(job), {.stepped = [this, &reading] { tell(reading.takeMessage()); },
                                  .ended =
                                      [this](const Status& result) {
                                        if (result) {
                                          finishRead();
                                        } else {
                                          endWithError(desktop(), result.error());
                                        }
                                      }});
}

void LogBrowser::tell(const LogReading::Message& message) {
  if (message.text.empty()) return;
  if (message.isError) {
    readEnds();
  } else {
    const std::pair<std::string, std::string> report(shownLog(), message.text);
    if (!reportIsOwed_ && report == lastReport_) return;
    lastReport_ = report;
    reportIsOwed_ = false;
  }
  desktop().showMessage(message.text);
}

void LogBrowser::withoutReading(const std::function<void()>& change) {
  const bool before = std::exchange(readsNothing_, true);
  change();
  readsNothing_ = before;
}

void LogBrowser::showNoLog() {
  reading_.stop();
  readBegins();
  model_->clear();
  rowsShown(0);
  readEnds();
  showEmptyHint();
}

void LogBrowser::showEmptyHint() {
  if (logFile_->currentIndex() >= 0) {
    list_->setEmptyHint(noLineHint());
    return;
  }
  std::error_code error;
  const std::filesystem::path& logs = context().folders.logs;
  const QString hint =
      std::filesystem::is_directory(logs, error)
          ? tr("No log of this decoder in %1.\nLet the decoder write its logs there, then press "
               "Refresh (F5).\n\nこのデコーダーの受信ログがまだありません。\n"
               "デコーダーの保存先を上のフォルダーに設定し、Refresh（F5）を押してください。")
          : tr("There is no folder %1.\nMake it and let the decoder write its logs there, then "
               "press "
               "Refresh (F5).\n\nログのフォルダーがありません。\nフォルダーを作ってデコーダーの"
               "保存先に設定し、Refresh（F5）を押してください。");
  list_->setEmptyHint(hint.arg(shownText(toUtf8(logs))));
}

QString LogBrowser::noLineHint() const {
  return tr(
      "This log holds no message yet.\nRefresh (F5) reads it again.\n\n"
      "この受信ログにはまだメッセージがありません。\nRefresh（F5）で読み直します。");
}

std::filesystem::path LogBrowser::selectedLog() {
  return context().folders.logs / toPath(shownLog());
}

void LogBrowser::finishRead() {
  readEnds();
  showEmptyHint();
  if (settings().env_keepCsrPos == 1) {
    list_->setListIndex(rememberedIndex_ < model_->rowCount() ? rememberedIndex_ : -1);
    lineKept();
  }
  if (const auto thenDo = std::exchange(whenRead_, nullptr)) thenDo();
  frame().readEnded();
  WriteRunLog(desktop(), "End GetLogData");
  finishListing();
}

void LogBrowser::readUnfiltered(const std::string& log, std::function<void()> thenDo) {
  {
    const QSignalBlocker blocker(logFile_);
    // A log that came since the logs were listed.
    if (logFile_->findData(toQString(log)) < 0) addLog(log);
    logFile_->setCurrentIndex(logFile_->findData(toQString(log)));
  }
  withoutReading([this] { takeFiltersBack(); });
  whenRead_ = [this, log, thenDo = std::move(thenDo)] {
    if (shownLog() == log) thenDo();
  };
  readChosenLog();
}

void LogBrowser::tablesChanged() {
  const int selected = list_->listIndex();
  const std::string log = shownLog();
  whenRead_ = [this, log, selected] {
    if (shownLog() != log || selected >= model_->rowCount()) return;
    list_->setListIndex(selected);
    if (selected >= 0) lineKept();
  };
  readFiltered();
}

void LogBrowser::dragEnterEvent(QDragEnterEvent* event) {
  if (!droppedFile(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void LogBrowser::dropEvent(QDropEvent* event) {
  const QString file = droppedFile(*event->mimeData());
  if (file.isEmpty() || !showImport) return;
  event->acceptProposedAction();
  // The program that the file comes from waits until this returns.
  QMetaObject::invokeMethod(
      this, [this, file] { showImport(file); }, Qt::QueuedConnection);
}

bool LogBrowser::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::DragEnter) {
    auto* drag = static_cast<QDragEnterEvent*>(event);
    if (!droppedFile(*drag->mimeData()).isEmpty()) {
      drag->ignore();
      return true;
    }
  }
  return BrowserWindow::eventFilter(watched, event);
}

void LogBrowser::showLine(const std::string& log, std::size_t row) {
  readUnfiltered(log, [this, row] { list_->setListIndex(model_->shownIndexOf(row)); });
}

bool LogBrowser::hasText(int row, const LineText& wanted) const {
  if (wanted.otherColumn >= 0 && model_->cell(row, wanted.otherColumn) != wanted.otherText) {
    return false;
  }
  return std::any_of(wanted.columns.begin(), wanted.columns.end(), [&](int column) {
    const std::string cell = model_->cell(row, column);
    const std::string_view text = Trim(cell);
    return wanted.begins ? text.starts_with(wanted.text) : text == wanted.text;
  });
}

bool LogBrowser::selectLineWith(const LineText& wanted) {
  int row = 0;
  while (row < model_->rowCount() && !hasText(row, wanted)) ++row;
  if (row == model_->rowCount()) return false;
  list_->setListIndex(row);
  // The list follows its selection a moment later.
  QMetaObject::invokeMethod(
      this, [this, wanted] { readyEditor(wanted.editor, wanted.key); }, Qt::QueuedConnection);
  return true;
}

void LogBrowser::showLineWith(const std::string& log, const LineText& wanted) {
  if (!reading_.isRunning() && shownLog() == log && selectLineWith(wanted)) return;
  readUnfiltered(log, [this, wanted] { selectLineWith(wanted); });
}

void LogBrowser::addHistoryActions(QMenu& menu) {
  const auto add = [&](const QString& text, std::string_view name,
                       const std::function<void(const std::string&)>& find) {
    if (!find) return;
    menu.addAction(text, this, [find, found = std::string(Trim(name))] { find(found); })
        ->setEnabled(!Trim(name).empty());
  };
  add(tr("All days of this aircraft"), list_->selectedText(registrationColumn()), findAircraft);
  if (findFlight) add(tr("All days of this flight"), flightToFind(), findFlight);
}

void LogBrowser::showContextMenu(const QPoint& position) {
  const QModelIndex clicked = list_->indexAt(position);
  if (!clicked.isValid()) return;
  QMenu menu(list_);
  menu.setObjectName(QStringLiteral("ListMenu"));
  menu.addAction(tr("Copy cell"), list_, &LogListView::copyCell);
  menu.addAction(tr("Copy line\tCtrl+C"), list_, &LogListView::copyLines);
  menu.addSeparator();
  addFilterActions(menu, clicked);
  menu.addAction(tr("Search photo"), this, &LogBrowser::searchPhoto);
  menu.addAction(tr("Search flight"), this, &LogBrowser::searchFlight);
  menu.addAction(tr("Open photo"), this, &LogBrowser::openPhoto);
  if (showRawLog) menu.addAction(tr("Open raw log"), this, &LogBrowser::openRawLog);
  addHistoryActions(menu);
  menu.exec(list_->viewport()->mapToGlobal(position));
}

}  // namespace vel
