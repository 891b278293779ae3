#include "log/ui/log_browser.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QShortcut>
#include <chrono>
#include <utility>

#include "core/ui/qt_desktop.h"
#include "log/dated_logs.h"

namespace vel {
namespace {

// A read gives way to events this often, and shows its rows at most 30 times
// a second.
constexpr std::chrono::milliseconds kSlice{8};
// With a sort in force, rows are sorted in before they show: many at once would
// hold up events for too long.
constexpr std::chrono::milliseconds kSortedSlice{3};
constexpr std::size_t kSortedAtOnce = 40'000;
constexpr int kPublishInterval = 34;

// Outer sizes in twips; the same for both, since they share one place.
constexpr QSize kDesignedSize{15000, 10800};
constexpr QSize kSmallestSize{14400, 4710};

}  // namespace

LogBrowser::LogBrowser(Program& program, LogKind kind)
    : BrowserWindow(program, kDesignedSize, kSmallestSize), kind_(std::move(kind)) {
  const auto addShortcut = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  addShortcut(QKeySequence(Qt::Key_F5), &LogBrowser::Command5_Click);
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
  // The designed width is for the usual font; a larger font takes more.
  constexpr int kArrowWidth = 36;
  const int nameWidth = logFile_->fontMetrics().horizontalAdvance(longestName) + kArrowWidth;
  logFile_->setFixedWidth(qMax(designedWidth, nameWidth));
  auto* caption = new QLabel(chooserCaption, row);
  caption->setBuddy(logFile_);
  topRow_->addWidget(caption);
  topRow_->addWidget(logFile_);
  QPushButton* refresh =
      addTopButton(tr("&Refresh"), QStringLiteral("Command5"),
                   tr("Lists the log files again and reads the selected one (F5)\nログの再読込み"));
  otherBrowser_ =
      addTopButton(kind_.otherBrowser, kind_.otherBrowserName,
                   tr("Switches to the other browser (Ctrl+Tab)\nもう一方のブラウザへ切替え"));
  topRow_->addStretch();

  connect(logFile_, &QComboBox::currentIndexChanged, this, &LogBrowser::Combo1_Click);
  connect(refresh, &QPushButton::clicked, this, &LogBrowser::Command5_Click);
  return row;
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

void LogBrowser::makeList(QWidget* parent, LogListModel* model, const QList<int>& widths) {
  model_ = model;
  list_ = new xLView(model, widths, parent);
  list_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(list_, &xLView::customContextMenuRequested, this, &LogBrowser::showContextMenu);
  connect(list_, &xLView::copied, this,
          [this](const QString& text) { desktop().setClipboardText(text.toStdString()); });
}

int LogBrowser::shownRows() const { return static_cast<int>(model_->rows().size()); }

void LogBrowser::GetLogFileList() {
  WriteRunLog(desktop(), "Start GetLogFileList");
  const int listing = ++listing_;
  const std::vector<std::string> names = datedLogs(program().folders().logs, kind_.suffix);
  for (std::size_t i = 0; i < names.size(); ++i) {
    desktop().processEvents();
    if (desktop().isEnding() || listing != listing_) return;
  }
  const std::string remembered = logFile_->currentText().toStdString();
  int chosen = chooseLog(names, remembered);
  if (chosen < 0 && kind_.newestWhenGone) chosen = chooseLog(names, {});
  {
    const QSignalBlocker blocker(logFile_);
    logFile_->clear();
    for (const std::string& name : names) logFile_->addItem(toQString(name));
    logFile_->setCurrentIndex(chosen);
  }
  if (chosen < 0) desktop().showMessage(kind_.noLogMessage);
  Combo1_Click();
  WriteRunLog(desktop(), "Coplete GetLogFileList");
}

void LogBrowser::Combo1_Click() { GetLogData(); }

void LogBrowser::Command5_Click() { GetLogFileList(); }

void LogBrowser::GetLogData() {
  if (suppressLoading) return;
  ++generation_;
  if (logFile_->currentIndex() < 0) {
    showNoLog();
    return;
  }
  if (reading_) return;
  reading_ = true;
  // A read that is overtaken has emptied the list: the line that was selected
  // before it stays the one to select.
  int rememberedIndex = -1;
  while (readOnce(rememberedIndex) == ReadEnd::overtaken && logFile_->currentIndex() >= 0) {
  }
  reading_ = false;
}

void LogBrowser::showNoLog() {
  readBegins();
  model_->clear();
  rowsShown(0);
  readEnds();
}

std::filesystem::path LogBrowser::selectedLog() {
  return program().folders().logs / toPath(logFile_->currentText().toStdString());
}

LogBrowser::ReadEnd LogBrowser::readOnce(int& rememberedIndex) {
  const int generation = generation_;
  WriteRunLog(desktop(), "Start GetLogData");
  readBegins();
  desktop().processEvents();
  if (desktop().isEnding()) return ReadEnd::programEnds;
  if (generation != generation_) return ReadEnd::overtaken;
  if (list_->listIndex() >= 0) rememberedIndex = list_->listIndex();
  model_->clear();
  rowsShown(0);

  std::string report;
  Result<InputFile> file = InputFile::open(selectedLog());
  if (file) {
    const std::unique_ptr<LogReader> reader = makeReader(std::move(*file));
    const ReadEnd end = readRows(*reader, generation);
    if (end != ReadEnd::finished) return end;
    report = reader->report();
  } else {
    readEnds();
    report = file.error().text();
  }
  if (!report.empty()) desktop().showMessage(report);
  if (desktop().isEnding()) return ReadEnd::programEnds;
  if (generation != generation_) return ReadEnd::overtaken;
  finishRead(rememberedIndex);
  return ReadEnd::finished;
}

LogBrowser::ReadEnd LogBrowser::readRows(LogReader& reader, int generation) {
  QElapsedTimer sincePublish;
  sincePublish.start();
  bool more = true;
  while (more) {
    const bool sorted = model_->sortColumn() >= 0;
    const Result<bool> step = reader.step(
        std::chrono::steady_clock::now() + (sorted ? kSortedSlice : kSlice), model_->rows());
    more = step && *step;
    const std::size_t unseen = model_->rows().size() - static_cast<std::size_t>(model_->rowCount());
    const bool much = sorted && unseen >= kSortedAtOnce;
    if (!more || much || sincePublish.elapsed() >= kPublishInterval) {
      model_->publish();
      rowsShown(model_->rows().size());
      if (program().loadProgressCount > kind_.progressAbove) program().showProgress();
      sincePublish.restart();
    }
    if (!step && reader.failedLookUp()) {
      endWithError(desktop(), step.error());
      return ReadEnd::programEnds;
    }
    if (!step) desktop().showMessage(step.error().text());
    desktop().processEvents();
    if (desktop().isEnding()) return ReadEnd::programEnds;
    if (generation != generation_) return ReadEnd::overtaken;
  }
  return ReadEnd::finished;
}

void LogBrowser::finishRead(int rememberedIndex) {
  readEnds();
  if (settings().env_keepCsrPos == 1) {
    list_->setListIndex(rememberedIndex < model_->rowCount() ? rememberedIndex : -1);
  }
  if (program().loadProgressCount > 0) --program().loadProgressCount;
  WriteRunLog(desktop(), "End GetLogData");
}

void LogBrowser::showContextMenu(const QPoint& position) {
  const QModelIndex clicked = list_->indexAt(position);
  if (!clicked.isValid()) return;
  QMenu menu(list_);
  menu.setObjectName(QStringLiteral("ListMenu"));
  menu.addAction(tr("Copy cell"), list_, &xLView::copyCell);
  menu.addAction(tr("Copy line\tCtrl+C"), list_, &xLView::copyLines);
  menu.addSeparator();
  addFilterActions(menu, clicked);
  menu.addAction(tr("Search photo"), this, &LogBrowser::searchPhoto);
  menu.addAction(tr("Search flight"), this, &LogBrowser::searchFlight);
  menu.addAction(tr("Open photo"), this, &LogBrowser::openPhoto);
  if (showRawLog) menu.addAction(tr("Open raw log"), this, &LogBrowser::openRawLog);
  menu.exec(list_->viewport()->mapToGlobal(position));
}

}  // namespace vel
