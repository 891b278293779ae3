#include "acars/ui/acars_browser.h"

#include <QAction>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QMenu>
#include <QShortcut>
#include <algorithm>
#include <chrono>
#include <utility>

#include "core/dated_logs.h"
#include "core/helpers.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/twips.h"
#include "core/version.h"
#include "tables/rewrite.h"
#include "web/address.h"
#include "web/ui/conffig_dialog.h"

namespace vel {
namespace {

// Outer sizes in twips.
constexpr QSize kDesignedSize{15000, 10800};
constexpr QSize kSmallestSize{14400, 4710};

// Offsets of the frames from the window's outer size, in twips.
constexpr int kUpperFrameOffset = 3615;
constexpr int kListOffset = 4815;
constexpr int kPanelOffset = 3630;
constexpr int kSideOffset = 345;

// Places within the upper frame, in pixels.
constexpr int kMargin = 6;
constexpr int kTopRowTop = 2;
constexpr int kFilterTop = 30;
constexpr int kListTop = 78;

// A read gives way to events this often, and shows its rows at most 30 times
// a second.
constexpr std::chrono::milliseconds kSlice{8};
constexpr int kPublishInterval = 34;

// Indexes of the look-up row.
constexpr int kPhotoSearch = 0;
constexpr int kFlightSearch = 1;
constexpr int kRawLog = 3;

constexpr const char* kNoNumber =
    "The flight number is not numeric. 便名の番号部分が数値ではありません";

// The services list the user's engine last; the choosers show it first.
std::vector<std::string> userEngineFirst(std::vector<std::string> labels) {
  std::rotate(labels.begin(), labels.end() - 1, labels.end());
  return labels;
}

int servicePosition(const QComboBox* chooser) {
  const int entry = chooser->currentIndex();
  return entry == 0 ? chooser->count() - 1 : entry - 1;
}

const QStringList& columnTitles() {
  static const QStringList titles = {
      QStringLiteral("Line"),      QStringLiteral("Flight"),  QStringLiteral("Pict"),
      QStringLiteral("Regist."),   QStringLiteral("Dept."),   QStringLiteral("Dest."),
      QStringLiteral("Equipment"), QStringLiteral("Remarks"), QStringLiteral("Time")};
  return titles;
}

const QString kLongestLogName = QStringLiteral("20260131_list.csv");

// The tour stands beside the titles: Flight ends left of 116 pixels, Pict left
// of 152, the route left of 364, and Equipment begins right of 346.
const QList<int> kColumnWidths = {42, 62, 36, 96, 56, 56, 130, 300, 80};

}  // namespace

AcarsBrowser::AcarsBrowser(Program& program, WebAccess& web)
    : BrowserWindow(program, kDesignedSize, kSmallestSize),
      web_(web),
      tables_(program.folders(), program.encoding()) {
  setObjectName(QStringLiteral("Form1"));
  setWindowTitle(QStringLiteral("VEL LIST.csv Browser"));

  auto* canvas = new QWidget(this);
  setCentralWidget(canvas);
  upper_ = new QWidget(canvas);
  upper_->setObjectName(QStringLiteral("Frame6"));
  topRow_ = makeTopRow();
  filters_ = new FilterFrame(upper_);
  model_ = new LogListModel(
      program.encoding(), ListLogReader::kSeparator, columnTitles(),
      [](std::size_t number) { return toQString(listLineNumber(number)); }, this);
  list_ = new xLView(model_, kColumnWidths, upper_);
  list_->setContextMenuPolicy(Qt::CustomContextMenu);
  panel_ = new DetailPanel(program, tables_, list_, model_, canvas);

  connect(logFile_, &QComboBox::currentIndexChanged, this, &AcarsBrowser::Combo1_Click);
  connect(filters_, &FilterFrame::Combo4_Click, this, &AcarsBrowser::GetLogData);
  connect(filters_, &FilterFrame::Combo5_Click, this, &AcarsBrowser::GetLogData);
  connect(filters_, &FilterFrame::Check1_Click, this, &AcarsBrowser::GetLogData);
  connect(filters_, &FilterFrame::Text4_Change, this, &AcarsBrowser::GetLogData);
  connect(filters_, &FilterFrame::Command9_Click, this, &AcarsBrowser::Command9_Click);
  connect(list_, &xLView::customContextMenuRequested, this, &AcarsBrowser::showContextMenu);
  connect(list_, &xLView::listIndexChanged, panel_, &DetailPanel::showSelection);
  connect(panel_->photoSearch()->chooser(), &QComboBox::currentIndexChanged, this,
          &AcarsBrowser::Combo2_Click);
  connect(panel_->flightSearch()->chooser(), &QComboBox::currentIndexChanged, this,
          &AcarsBrowser::Combo3_Click);
  connect(panel_->photoSearch()->button(), &QPushButton::clicked, this,
          [this] { Command7_Click(kPhotoSearch); });
  connect(panel_->flightSearch()->button(), &QPushButton::clicked, this,
          [this] { Command7_Click(kFlightSearch); });
  connect(panel_->rawLogButton(), &QPushButton::clicked, this, [this] { Command7_Click(kRawLog); });
  connect(list_, &xLView::copied, this,
          [this](const QString& text) { desktop().setClipboardText(text.toStdString()); });
  addShortcuts();
}

QWidget* AcarsBrowser::makeTopRow() {
  auto* row = new QWidget(upper_);
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(5);

  logFile_ = new QComboBox(row);
  logFile_->setObjectName(QStringLiteral("Combo1"));
  logFile_->setAccessibleName(tr("Log file"));
  logFile_->setToolTip(tr("Log of a day\n日付別ログファイル"));
  // The designed width is for the usual font; a larger font takes more.
  const int nameWidth = logFile_->fontMetrics().horizontalAdvance(kLongestLogName);
  logFile_->setFixedWidth(qMax(150, nameWidth + 36));
  auto* caption = new QLabel(tr("LIST Log &file"), row);
  caption->setBuddy(logFile_);
  line->addWidget(caption);
  line->addWidget(logFile_);

  const auto addButton = [&](const QString& text, const QString& name, const QString& toolTip,
                             void (AcarsBrowser::*handler)()) {
    auto* button = new QPushButton(text, row);
    button->setObjectName(name);
    button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
    button->setToolTip(toolTip);
    connect(button, &QPushButton::clicked, this, handler);
    line->addWidget(button);
    return button;
  };
  addButton(tr("&Refresh"), QStringLiteral("Command5"),
            tr("Lists the log files again and reads the selected one (F5)\nログの再読込み"),
            &AcarsBrowser::Command5_Click);
  otherBrowser_ = addButton(tr("&HFDL"), QStringLiteral("Command11"),
                            tr("Switches to the HFDL browser (Ctrl+Tab)\nHFDLブラウザへ切替え"),
                            &AcarsBrowser::Command11_Click);
  line->addStretch();
  config_ = addButton(tr("Config"), QStringLiteral("Command10"),
                      tr("Search engines and other settings\n検索エンジンなどの設定"),
                      &AcarsBrowser::Command10_Click);
  tour_ =
      addButton(tr("&Tour"), QStringLiteral("Command4"),
                tr("Guided tour of this window\nこの画面の使い方"), &AcarsBrowser::Command4_Click);
  version_ = new QLabel(QStringLiteral("Ver x.xx"), row);
  version_->setObjectName(QStringLiteral("Label4"));
  line->addWidget(version_);
  return row;
}

void AcarsBrowser::addShortcuts() {
  const auto add = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  add(QKeySequence(Qt::Key_F5), &AcarsBrowser::Command5_Click);
  add(QKeySequence(Qt::CTRL | Qt::Key_L), &AcarsBrowser::Command9_Click);
  add(QKeySequence(Qt::CTRL | Qt::Key_Tab), &AcarsBrowser::Command11_Click);
  add(QKeySequence(Qt::CTRL | Qt::Key_F), [this] {
    filters_->box(FilterFrame::kFlight)->setFocus(Qt::ShortcutFocusReason);
    filters_->box(FilterFrame::kFlight)->selectAll();
  });
}

void AcarsBrowser::Form_Load() {
  WriteRunLog(desktop(), "Start Form_Load");
  loading_ = true;
  filters_->selectFirstEntries();
  loading_ = false;
  version_->setText(QStringLiteral("Ver") + QString::fromLatin1(kVersion));
  config_->setVisible(settings().env_Config != 0);
  otherBrowser_->setVisible(program().hasOtherBrowser());
  tour_->setVisible(showTour != nullptr);
  desktop().processEvents();
  GetLogFileList();
  if (!desktop().isEnding()) panel_->airports()->Text3_Change();
  if (desktop().isEnding()) return;
  if (prepareTour) prepareTour(1);
  WriteRunLog(desktop(), "End Form_Load");
  program().splashStage = 2;
}

void AcarsBrowser::Form_Activate() {
  // The user's own engine comes first in both choosers; the fixed ones follow.
  const auto fill = [](QComboBox* chooser, const std::vector<std::string>& engines, int selected) {
    const QSignalBlocker blocker(chooser);
    chooser->clear();
    for (const std::string& engine : engines) chooser->addItem(toQString(engine));
    chooser->setCurrentIndex(qBound(0, selected, chooser->count() - 1));
  };
  const Settings& env = settings();
  fill(panel_->photoSearch()->chooser(),
       userEngineFirst(photoEngineLabels(SearchWindow::acars, env)), env.env_regSchCmb);
  fill(panel_->flightSearch()->chooser(),
       userEngineFirst(flightEngineLabels(SearchWindow::acars, env)), env.env_fltSchCmb);
  BrowserWindow::Form_Activate();
}

int AcarsBrowser::shownRows() const { return static_cast<int>(model_->rows().size()); }

void AcarsBrowser::layOutFrames(int height, int width) {
  upper_->setGeometry(0, 0, toPixels(MaxOf(0, width)),
                      toPixels(MaxOf(0, height - kUpperFrameOffset)));
  list_->setGeometry(kMargin, kListTop, toPixels(width - kSideOffset),
                     toPixels(MaxOf(0, height - kListOffset)));
  panel_->setGeometry(0, toPixels(height - kPanelOffset), toPixels(MaxOf(0, width)),
                      toPixels(kPanelOffset));
  topRow_->setGeometry(kMargin, kTopRowTop, toPixels(width - kSideOffset),
                       kFilterTop - kTopRowTop - 2);
  filters_->setGeometry(kMargin, kFilterTop, toPixels(width - kSideOffset),
                        kListTop - kFilterTop - 2);
}

void AcarsBrowser::GetLogFileList() {
  WriteRunLog(desktop(), "Start GetLogFileList");
  const std::string remembered = logFile_->currentText().toStdString();
  const std::vector<std::string> names = datedLogs(program().folders().logs, kListLogSuffix);
  int chosen = chooseLog(names, remembered);
  // A log that is gone gives way to the newest one.
  if (chosen < 0) chosen = chooseLog(names, {});
  {
    const QSignalBlocker blocker(logFile_);
    logFile_->clear();
    for (const std::string& name : names) logFile_->addItem(toQString(name));
    logFile_->setCurrentIndex(chosen);
  }
  if (chosen < 0) desktop().showMessage(kNoListLog);
  Combo1_Click();
  WriteRunLog(desktop(), "Coplete GetLogFileList");
}

void AcarsBrowser::Combo1_Click() { GetLogData(); }

void AcarsBrowser::GetLogData() {
  if (loading_) return;
  ++generation_;
  if (logFile_->currentIndex() < 0) {
    emptyList();
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

void AcarsBrowser::emptyList() {
  model_->clear();
  filters_->setCount(0);
  panel_->hideFrames();
}

AcarsBrowser::ReadEnd AcarsBrowser::readOnce(int& rememberedIndex) {
  const int generation = generation_;
  WriteRunLog(desktop(), "Start GetLogData");
  desktop().processEvents();
  if (desktop().isEnding()) return ReadEnd::programEnds;
  if (generation != generation_) return ReadEnd::overtaken;
  if (list_->listIndex() >= 0) rememberedIndex = list_->listIndex();
  model_->clear();
  filters_->setCount(0);

  Result<InputFile> file =
      InputFile::open(program().folders().logs / toPath(logFile_->currentText().toStdString()));
  if (!file) {
    panel_->hideFrames();
    desktop().showMessage(file.error().text());
    endRead();
    return ReadEnd::finished;
  }
  ListLogReader reader(std::move(*file), program().encoding(), filters_->filter(), tables_);
  const ReadEnd end = readLog(reader, generation);
  if (end == ReadEnd::finished) finishRead(reader, rememberedIndex);
  return end;
}

AcarsBrowser::ReadEnd AcarsBrowser::readLog(ListLogReader& reader, int generation) {
  QElapsedTimer sincePublish;
  sincePublish.start();
  bool more = true;
  while (more) {
    const Result<bool> step =
        reader.step(std::chrono::steady_clock::now() + kSlice, model_->rows());
    more = step && *step;
    if (!more || sincePublish.elapsed() >= kPublishInterval) {
      model_->publish();
      filters_->setCount(model_->rows().size());
      if (program().loadProgressCount > 1) program().showProgress();
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

void AcarsBrowser::finishRead(const ListLogReader& reader, int rememberedIndex) {
  if (const std::string report = reader.malformed().report(); !report.empty()) {
    desktop().showMessage(report);
  }
  panel_->hideFrames();
  if (settings().env_keepCsrPos == 1 && rememberedIndex >= 0 &&
      rememberedIndex < model_->rowCount()) {
    list_->setListIndex(rememberedIndex);
  }
  endRead();
}

void AcarsBrowser::endRead() {
  if (program().loadProgressCount > 0) --program().loadProgressCount;
  WriteRunLog(desktop(), "End GetLogData");
}

void AcarsBrowser::Command5_Click() { GetLogFileList(); }

void AcarsBrowser::Command9_Click() {
  loading_ = true;
  filters_->clearAll();
  loading_ = false;
  GetLogData();
}

void AcarsBrowser::Command4_Click() {
  if (!showTour) return;
  // The tour explains the frames, which are hidden while no line is selected.
  const bool empty = list_->listIndex() < 0;
  if (empty) panel_->showFrames();
  showTour();
  if (empty && list_->listIndex() < 0) panel_->hideFrames();
}

void AcarsBrowser::Combo2_Click() {
  settings().env_regSchCmb = panel_->photoSearch()->chooser()->currentIndex();
}

void AcarsBrowser::Combo3_Click() {
  settings().env_fltSchCmb = panel_->flightSearch()->chooser()->currentIndex();
}

void AcarsBrowser::Command7_Click(int index) {
  if (index != kPhotoSearch && index != kFlightSearch && index != kRawLog) return;
  if (list_->listIndex() < 0) {
    desktop().showMessage(kNoLineSelected);
    return;
  }
  if (index == kPhotoSearch) searchPhoto();
  if (index == kFlightSearch) searchFlight();
  if (index == kRawLog) web_.rawLogs().open(list_->selectedText(kListRegistration));
}

void AcarsBrowser::searchPhoto() {
  const auto address = photoAddress(program().services(), settings(), SearchWindow::acars,
                                    servicePosition(panel_->photoSearch()->chooser()),
                                    list_->selectedText(kListRegistration));
  if (address) ShellOpen(desktop(), *address);
}

void AcarsBrowser::searchFlight() {
  const int position = servicePosition(panel_->flightSearch()->chooser());
  const std::string homepage =
      needsHomepage(settings(), position) ? web_.homepage() : std::string();
  const auto address = flightAddress(program().services(), settings(), homepage, tables_, position,
                                     FlightValues::fromAcars(list_->selectedText(kListFlight)));
  if (!address) {
    const bool noNumber = address.error().number == ErrorNumber::typeMismatch;
    desktop().showMessage(noNumber ? kNoNumber : address.error().text());
    return;
  }
  if (*address) ShellOpen(desktop(), **address);
}

void AcarsBrowser::Command10_Click() {
  ConffigDialog dialog(program(), web_, this);
  dialog.exec();
}

void AcarsBrowser::Command11_Click() {
  if (program().hasOtherBrowser()) program().switchBrowser(*this);
}

void AcarsBrowser::showContextMenu(const QPoint& position) {
  const QModelIndex clicked = list_->indexAt(position);
  if (!clicked.isValid()) return;
  const auto column = static_cast<ListColumn>(clicked.column());
  const QString text = clicked.data().toString();
  QMenu menu(list_);
  menu.setObjectName(QStringLiteral("ListMenu"));
  menu.addAction(tr("Copy cell"), list_, &xLView::copyCell);
  menu.addAction(tr("Copy line\tCtrl+C"), list_, &xLView::copyLines);
  menu.addSeparator();
  QAction* filter = menu.addAction(tr("Filter by this value"), this,
                                   [this, column, text] { filters_->filterBy(column, text); });
  filter->setEnabled(FilterFrame::canFilterBy(column, text));
  menu.addSeparator();
  menu.addAction(tr("Search photo"), this, [this] { Command7_Click(kPhotoSearch); });
  menu.addAction(tr("Search flight"), this, [this] { Command7_Click(kFlightSearch); });
  menu.addAction(tr("Open photo"), panel_, &DetailPanel::openSelectedPhoto);
  menu.addAction(tr("Open raw log"), this, [this] { Command7_Click(kRawLog); });
  menu.exec(list_->viewport()->mapToGlobal(position));
}

}  // namespace vel
