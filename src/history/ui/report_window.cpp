#include "history/ui/report_window.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSaveFile>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <utility>

#include "core/ui/bring_to_front.h"
#include "core/ui/list_rows.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/screen_room.h"
#include "hfdl/hfdl_lines.h"

namespace vel {
namespace {

/// The counts, whose rows can be dragged to other programs.
class CountTable : public QTableWidget {
 public:
  using QTableWidget::QTableWidget;

 protected:
  [[nodiscard]] QStringList mimeTypes() const override { return {QStringLiteral("text/plain")}; }
  [[nodiscard]] QMimeData* mimeData(const QList<QTableWidgetItem*>& items) const override {
    QModelIndexList cells;
    for (const QTableWidgetItem* item : items) cells << indexFromItem(item);
    return draggedRows(cells);
  }
};

constexpr QSize kFirstSize{900, 620};
// A rewrite replaces a table in several steps.
constexpr int kSettled = 150;
// No line of a log holds it.
constexpr char kAddressMark = '\n';
constexpr const char* kNotSaved = "The report could not be saved. レポートを保存できませんでした。";

QString bothNames(TwoNames names) {
  return QString::fromUtf8(names.english) + QLatin1Char(' ') + QString::fromUtf8(names.japanese);
}

QStringList gapCaptions() {
  QStringList captions;
  for (std::size_t kind = 0; kind < kGapKinds; ++kind) {
    captions << bothNames(nameOf(static_cast<GapKind>(kind)));
  }
  return captions;
}

std::vector<std::string> namesOf(const NameCounts& counts) {
  std::vector<std::string> names;
  for (auto& [name, count] : counts.mostFirst()) names.push_back(name);
  return names;
}

ReportList::Lines linesOf(const std::vector<TableGap>& gaps) {
  ReportList::Lines lines;
  lines.reserve(gaps.size());
  for (const TableGap& gap : gaps) {
    const std::string address = gap.address.empty() ? "" : kAddressMark + gap.address;
    lines.push_back({gap.name, gap.heardAs + address, gap.count});
  }
  return lines;
}

ReportList::Lines linesOf(const std::vector<std::string>& names, const NameCounts& counts) {
  ReportList::Lines lines;
  lines.reserve(names.size());
  for (const std::string& name : names) lines.push_back({name, name, counts.of(name)});
  return lines;
}

}  // namespace

ReportWindow::ReportWindow(const Context& context)
    : context_(context),
      tables_(context.folders, context.encoding),
      title_(new QLabel(this)),
      state_(new QLabel(this)),
      pages_(new QTabWidget(this)),
      counts_(nullptr),
      hours_(nullptr),
      gaps_(new ReportList(gapCaptions(), QStringLiteral("Gap"), this)),
      progress_(nullptr),
      first_(nullptr),
      saveHtml_(nullptr),
      saveCsv_(nullptr),
      counting_(context.jobs),
      looking_(context.jobs),
      firstHeard_(context.jobs) {
  setObjectName(QStringLiteral("ReportWindow"));
  setWindowTitle(tr("Report 日別レポート"));
  title_->setObjectName(QStringLiteral("Title"));
  state_->setObjectName(QStringLiteral("State"));
  state_->setTextFormat(Qt::PlainText);
  pages_->setObjectName(QStringLiteral("Pages"));
  pages_->addTab(makeCounts(), tr("&Counts 集計"));
  pages_->addTab(gaps_, tr("What is &missing 未登録"));
  pages_->addTab(makeFirstHeard(), tr("&First heard 初受信"));
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(title_);
  rows->addWidget(pages_, 1);
  rows->addWidget(state_);
  rows->addWidget(makeButtons());
  const auto select = [this](GapKind gap, const QString& heardAs) {
    if (!selectLine) return;
    selectLine(report_.kind, report_.log, gap,
               heardAs.section(QLatin1Char(kAddressMark), 0, 0).toStdString(),
               heardAs.section(QLatin1Char(kAddressMark), 1).toStdString());
  };
  connect(gaps_, &ReportList::lineOpened, this, [select](int list, const QString& heardAs) {
    select(static_cast<GapKind>(list), heardAs);
  });
  // By registration, as photos are.
  connect(first_, &ReportList::lineOpened, this, [select](int list, const QString& heardAs) {
    select(list == 0 ? GapKind::photo : GapKind::flight, heardAs);
  });
  for (ReportList* list : {gaps_, first_}) {
    connect(list, &ReportList::copied, this,
            [this](const QString& text) { context_.desktop.setClipboardText(text.toStdString()); });
  }
  settled_.setSingleShot(true);
  settled_.setInterval(kSettled);
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, &settled_, qOverload<>(&QTimer::start));
  connect(&settled_, &QTimer::timeout, this, &ReportWindow::followTables);
  chooseFile = [this](const QString& suggested) {
    return QFileDialog::getSaveFileName(
        this, tr("Save the report"),
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QLatin1Char('/') +
            suggested);
  };
  resize(kFirstSize);
}

QWidget* ReportWindow::makeCounts() {
  auto* page = new QWidget(this);
  auto* rows = new QVBoxLayout(page);
  counts_ = new CountTable(page);
  offerDragging(*counts_);
  counts_->setObjectName(QStringLiteral("Counts"));
  counts_->setAccessibleName(tr("Counts of the day and the seven days before"));
  counts_->setToolTip(tr("The day and the seven days before\n当日と前7日間"));
  counts_->setEditTriggers(QTableWidget::NoEditTriggers);
  counts_->setTabKeyNavigation(false);
  counts_->verticalHeader()->hide();
  counts_->horizontalHeader()->setHighlightSections(false);
  hours_ = new StripPicture(context_.desktop, QStringLiteral("hours.png"),
                            QStringLiteral("HourStrip"), hourBarText, page);
  hours_->setAccessibleName(tr("Messages of each hour"));
  rows->addWidget(counts_, 2);
  auto* caption = new QLabel(tr("Messages of each hour 時間帯別の受信数"), page);
  rows->addWidget(caption);
  rows->addWidget(hours_, 1);
  return page;
}

QWidget* ReportWindow::makeFirstHeard() {
  auto* page = new QWidget(this);
  auto* rows = new QVBoxLayout(page);
  progress_ = new QProgressBar(page);
  progress_->setObjectName(QStringLiteral("Progress"));
  progress_->setAccessibleName(tr("Earlier logs read"));
  progress_->setTextVisible(false);
  progress_->hide();
  first_ = new ReportList({tr("Aircraft heard for the first time 初めて受信した機体"),
                           tr("Flights heard for the first time 初めて受信した便")},
                          QStringLiteral("First"), page);
  // The page has margins of its own.
  first_->layout()->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(progress_);
  rows->addWidget(first_, 1);
  return page;
}

QWidget* ReportWindow::makeButtons() {
  auto* buttons = new QWidget(this);
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](const QString& text, const char* name, const QString& toolTip) {
    auto* button = new QPushButton(text, buttons);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
    button->setToolTip(toolTip);
    row->addWidget(button);
    return button;
  };
  saveHtml_ = add(tr("Save &HTML..."), "SaveHtml", tr("Saves the report as a page\nHTMLで保存"));
  saveCsv_ = add(tr("Save C&SV..."), "SaveCsv",
                 tr("Saves the report as a table; Ctrl+S saves the shown "
                    "list\nCSVで保存。Ctrl+Sで表示中の一覧を保存"));
  row->addStretch();
  QPushButton* close = add(tr("Cl&ose"), "Close", tr("Closes the report (Esc)\n閉じる"));
  connect(saveHtml_, &QPushButton::clicked, this,
          [this] { save(QStringLiteral(".html"), reportHtml); });
  connect(saveCsv_, &QPushButton::clicked, this,
          [this] { save(QStringLiteral(".csv"), reportCsv); });
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  return buttons;
}

void ReportWindow::say(const QString& text) { state_->setText(text); }

void ReportWindow::open(ReportKind kind, const std::string& log) {
  const auto day = dayOfName(log);
  report_ = {};
  report_.kind = kind;
  report_.log = log;
  showPlainText(*title_, shownText(log));
  if (!isVisible()) fitToScreen(*this);
  bringToFront(*this);
  looking_.stop();
  firstHeard_.stop();
  counting_.stop();
  showCounts();
  gaps_->clear();
  first_->clear();
  progress_->setValue(0);
  progress_->hide();
  for (QPushButton* button : {saveHtml_, saveCsv_}) button->setEnabled(false);
  if (!day) {
    say(tr("This log has no date. 日付のないログです。"));
    return;
  }
  day_ = *day;
  if (watcher_.directories().isEmpty()) {
    for (const auto& folder : {context_.folders.data, context_.folders.pics}) {
      watcher_.addPath(QString::fromStdString(toUtf8(folder)));
    }
  }
  count();
}

void ReportWindow::count() {
  say(tr("Counting... 集計中..."));
  auto job = std::make_unique<DayCounting>(tables_, report_.kind, day_);
  const DayCounting* const counting = job.get();
  counting_.start(std::move(job), {.ended = [this, counting](const Status& result) {
                    counted(*counting);
                    if (!result) say(toQString(result.error().text()));
                  }});
}

void ReportWindow::counted(const DayCounting& counting) {
  report_.days = counting.days();
  showCounts();
  const std::string problems = reportOf(counting.problems());
  say(toQString(problems).remove(QLatin1Char('\r')));
  findGaps();
  findFirstHeard();
}

void ReportWindow::showCounts() {
  const auto table = countTable(report_.days);
  counts_->setRowCount(static_cast<int>(table.size()) - 1);
  counts_->setColumnCount(static_cast<int>(table.front().size()));
  QStringList dates;
  for (const std::string& cell : table.front()) dates << toQString(cell);
  counts_->setHorizontalHeaderLabels(dates);
  for (std::size_t row = 1; row < table.size(); ++row) {
    for (std::size_t column = 0; column < table[row].size(); ++column) {
      counts_->setItem(static_cast<int>(row) - 1, static_cast<int>(column),
                       new QTableWidgetItem(toQString(table[row][column])));
    }
  }
  counts_->resizeColumnsToContents();
  hours_->setStrip([this](double width, double height, double ratio) {
    const auto hours =
        report_.days.empty() ? std::array<std::size_t, 24>{} : report_.days.front().hours;
    return hourStrip(hours, {}, width, height, ratio);
  });
}

void ReportWindow::findGaps() {
  if (report_.days.empty()) return;
  auto job = std::make_unique<TableGaps>(tables_, report_.kind, report_.days.front());
  const TableGaps* const gaps = job.get();
  looking_.start(std::move(job), {.ended = [this, gaps](const Status& result) {
                   if (!result) {
                     say(toQString(result.error().text()));
                     return;
                   }
                   std::vector<ReportList::Lines> lists;
                   for (std::size_t kind = 0; kind < kGapKinds; ++kind) {
                     report_.gaps[kind] = gaps->gaps(static_cast<GapKind>(kind));
                     lists.push_back(linesOf(report_.gaps[kind]));
                   }
                   gaps_->setLists(std::move(lists));
                 }});
}

void ReportWindow::findFirstHeard() {
  if (report_.days.empty()) return;
  const DayCounts& day = report_.days.front();
  auto job = std::make_unique<FirstHeard>(
      context_.folders, context_.encoding,
      FirstHeard::Names{namesOf(day.aircraft), namesOf(day.flights)}, day_);
  const FirstHeard* const first = job.get();
  progress_->show();
  firstHeard_.start(
      std::move(job),
      {.stepped =
           [this, first] {
             progress_->setMaximum(std::max(1, static_cast<int>(first->logsInAll())));
             progress_->setValue(static_cast<int>(first->logsRead()));
           },
       .ended = [this, first](const Status& result) { showFirstHeard(*first, result); }});
}

void ReportWindow::showFirstHeard(const FirstHeard& first, const Status& result) {
  progress_->setMaximum(1);
  progress_->setValue(1);
  progress_->hide();
  if (!result) say(toQString(result.error().text()));
  const std::string problems = reportOf(first.problems());
  if (!problems.empty()) say(toQString(problems).remove(QLatin1Char('\r')));
  report_.firstHeard = first.heardFirst();
  const DayCounts& day = report_.days.front();
  first_->setLists({linesOf(report_.firstHeard.aircraft, day.aircraft),
                    linesOf(report_.firstHeard.flights, day.flights)});
  for (QPushButton* button : {saveHtml_, saveCsv_}) button->setEnabled(true);
}

// A record was written, or a photo came: the lists shrink.
void ReportWindow::followTables() {
  if (isVisible() && !counting_.isRunning()) findGaps();
}

void ReportWindow::save(const QString& suffix, std::string (*made)(const DayReport&)) {
  QString name =
      toQString(report_.log).section(QLatin1Char('.'), 0, 0) + QStringLiteral("_report") + suffix;
  QString file = chooseFile(name);
  if (file.isEmpty()) return;
  if (!file.endsWith(suffix, Qt::CaseInsensitive)) file += suffix;
  const std::string text = made(report_);
  QSaveFile saved(file);
  const bool isSaved = saved.open(QIODevice::WriteOnly) &&
                       saved.write(text.data(), static_cast<qint64>(text.size())) ==
                           static_cast<qint64>(text.size()) &&
                       saved.commit();
  if (!isSaved) context_.desktop.showMessage(kNotSaved);
}

void ReportWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
    return;
  }
  if (event->matches(QKeySequence::Save)) {
    saveShown();
    return;
  }
  QWidget::keyPressEvent(event);
}

void ReportWindow::saveShown() {
  if (!saveList) return;
  const QString log = toQString(report_.log).section(QLatin1Char('.'), 0, 0);
  if (gaps_->isVisible()) {
    saveList(gaps_->shownList(), log + QStringLiteral("_missing"));
  } else if (first_->isVisible()) {
    saveList(first_->shownList(), log + QStringLiteral("_first_heard"));
  } else {
    saveList(*counts_, log + QStringLiteral("_counts"));
  }
}

void ReportWindow::closeEvent(QCloseEvent* event) {
  counting_.stop();
  looking_.stop();
  firstHeard_.stop();
  QWidget::closeEvent(event);
}

}  // namespace vel
