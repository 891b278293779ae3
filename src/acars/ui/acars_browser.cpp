#include "acars/ui/acars_browser.h"

#include <QAction>
#include <QLayout>
#include <QMenu>
#include <QShortcut>
#include <algorithm>
#include <utility>

#include "core/helpers.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/twips.h"
#include "core/version.h"
#include "tables/rewrite.h"
#include "web/address.h"
#include "web/ui/conffig_dialog.h"
#include "web/ui/flight_search.h"

namespace vel {
namespace {

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

const QStringList& columnTitles() {
  static const QStringList titles = {
      QStringLiteral("Line"),      QStringLiteral("Flight"),  QStringLiteral("Pict"),
      QStringLiteral("Regist."),   QStringLiteral("Dept."),   QStringLiteral("Dest."),
      QStringLiteral("Equipment"), QStringLiteral("Remarks"), QStringLiteral("Time")};
  return titles;
}

const QString kLongestLogName = QStringLiteral("20260131_list.csv");
// The guided tour stands beside the chooser.
constexpr int kChooserWidth = 150;

// The tour stands beside the titles: Flight ends left of 116 pixels, Pict left
// of 152, the route left of 364, and Equipment begins right of 346.
const ColumnDesign kColumns = {
    .widths = {42, 62, 36, 96, 58, 58, 130, 296, 80}, .kept = kListEquipment, .room = 5};

}  // namespace

AcarsBrowser::AcarsBrowser(BrowserFrame& frame, WebAccess& web)
    : LogBrowser(frame, {kListLogSuffix, kNoListLog, kNoLineSelected, true, 1,
                         QStringLiteral("&HFDL"), QStringLiteral("Command11")}),
      web_(web),
      tables_(frame.context().folders, frame.context().encoding) {
  setObjectName(QStringLiteral("Form1"));
  showRawLog = [&web](const std::string& name) { web.rawLogs().open(name); };
  setWindowTitle(QStringLiteral("VEL LIST.csv Browser"));

  auto* canvas = new QWidget(this);
  setCentralWidget(canvas);
  upper_ = new QWidget(canvas);
  upper_->setObjectName(QStringLiteral("Frame6"));
  fillTopRow();
  filters_ = new FilterFrame(upper_);
  makeList(upper_,
           new LogListModel(
               context().encoding, ListLogReader::kSeparator, columnTitles(),
               [](std::size_t number) { return toQString(listLineNumber(number)); }, this),
           kColumns);
  panel_ = new DetailPanel(context(), tables_, list(), model(), canvas);

  connect(filters_, &FilterFrame::changed, this, &AcarsBrowser::readFiltered);
  connect(filters_, &FilterFrame::clearPressed, this, &AcarsBrowser::clearFilters);
  connect(list(), &LogListView::listIndexChanged, panel_, &DetailPanel::showSelection);
  connect(list(), &LogListView::clicked, panel_, &DetailPanel::showSelectionAgain);
  connect(panel_->photoSearch()->chooser(), &QComboBox::currentIndexChanged, this,
          &AcarsBrowser::keepPhotoEngine);
  connect(panel_->flightSearch()->chooser(), &QComboBox::currentIndexChanged, this,
          &AcarsBrowser::keepFlightEngine);
  const auto onPress = [this](QPushButton* button, void (AcarsBrowser::*lookUp)()) {
    connect(button, &QPushButton::clicked, this, [this, lookUp] {
      if (hasLine()) (this->*lookUp)();
    });
  };
  onPress(panel_->photoSearch()->button(), &AcarsBrowser::searchPhoto);
  onPress(panel_->flightSearch()->button(), &AcarsBrowser::searchFlight);
  onPress(panel_->rawLogButton(), &AcarsBrowser::openRawLog);
  for (EngineRow* row : {panel_->photoSearch(), panel_->flightSearch()}) {
    row->offerSettings([this] { openConfig(); });
  }
  addShortcuts();
}

void AcarsBrowser::fillTopRow() {
  topRow_ = makeTopRow(upper_, tr("LIST Log &file"), kLongestLogName, kChooserWidth);
  config_ = addTopButton(tr("Config"), QStringLiteral("Command10"),
                         tr("Search engines and other settings\n検索エンジンなどの設定"));
  tour_ = addTopButton(tr("&Tour"), QStringLiteral("Command4"),
                       tr("Guided tour of this window\nこの画面の使い方"));
  version_ = new QLabel(QStringLiteral("Ver x.xx"), topRow_);
  version_->setObjectName(QStringLiteral("Label4"));
  topRow_->layout()->addWidget(version_);
  connect(otherBrowserButton(), &QPushButton::clicked, this,
          [this] { frame().switchBrowser(*this); });
  connect(config_, &QPushButton::clicked, this, &AcarsBrowser::openConfig);
  connect(tour_, &QPushButton::clicked, this, &AcarsBrowser::takeTour);
}

void AcarsBrowser::addShortcuts() {
  const auto add = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  add(QKeySequence(Qt::CTRL | Qt::Key_L), &AcarsBrowser::clearFilters);
  add(QKeySequence(Qt::CTRL | Qt::Key_F), [this] {
    filters_->box(FilterFrame::kFlight)->setFocus(Qt::ShortcutFocusReason);
    filters_->box(FilterFrame::kFlight)->selectAll();
  });
}

void AcarsBrowser::load() {
  WriteRunLog(desktop(), "Start Form_Load");
  withoutReading([this] { filters_->selectFirstEntries(); });
  version_->setText(QStringLiteral("Ver") + QString::fromLatin1(kVersion));
  config_->setVisible(settings().env_Config != 0);
  otherBrowserButton()->setVisible(frame().hasOtherBrowser());
  tour_->setVisible(showTour != nullptr);
  keepSmallestSize();
  fill([this] {
    panel_->airports()->search();
    if (desktop().isEnding()) return;
    if (prepareTour) prepareTour(1);
    WriteRunLog(desktop(), "End Form_Load");
    Q_EMIT loaded();
  });
}

void AcarsBrowser::tablesChanged() {
  panel_->airports()->search();
  LogBrowser::tablesChanged();
}

void AcarsBrowser::takeOver() {
  // The names of the user's own engines may have changed.
  const Settings& env = settings();
  panel_->photoSearch()->setEngines(photoEngines(SearchWindow::acars, env), env.env_regSchCmb);
  panel_->flightSearch()->setEngines(flightEngines(SearchWindow::acars, env), env.env_fltSchCmb);
  BrowserWindow::takeOver();
}

int AcarsBrowser::neededWidth() const {
  return toPixels(kSideOffset) +
         qMax(topRow_->minimumSizeHint().width(), filters_->minimumSizeHint().width());
}

void AcarsBrowser::layOutFrames(int height, int width) {
  upper_->setGeometry(0, 0, toPixels(std::max(0, width)),
                      toPixels(std::max(0, height - kUpperFrameOffset)));
  list()->setGeometry(kMargin, kListTop, toPixels(width - kSideOffset),
                      toPixels(std::max(0, height - kListOffset)));
  panel_->setGeometry(0, toPixels(height - kPanelOffset), toPixels(std::max(0, width)),
                      toPixels(kPanelOffset));
  topRow_->setGeometry(kMargin, kTopRowTop, toPixels(width - kSideOffset),
                       kFilterTop - kTopRowTop - 2);
  filters_->setGeometry(kMargin, kFilterTop, toPixels(width - kSideOffset),
                        kListTop - kFilterTop - 2);
}

std::unique_ptr<LogReader> AcarsBrowser::makeReader(InputFile file) {
  return std::make_unique<ListLogReader>(std::move(file), context().encoding, filters_->filter(),
                                         tables_);
}

void AcarsBrowser::rowsShown(std::size_t count) { filters_->setCount(count); }

void AcarsBrowser::readEnds() { panel_->hideFrames(); }

void AcarsBrowser::lineKept() { panel_->showSelectionAgain(); }

void AcarsBrowser::clearFilters() {
  withoutReading([this] { filters_->clearAll(); });
  readFiltered();
}

void AcarsBrowser::takeTour() {
  if (!showTour) return;
  // The tour explains the frames, which are hidden while no line is selected.
  const bool empty = list()->listIndex() < 0;
  if (empty) panel_->showFrames();
  showTour();
  if (empty && list()->listIndex() < 0) panel_->hideFrames();
}

void AcarsBrowser::keepPhotoEngine() {
  settings().env_regSchCmb = panel_->photoSearch()->chooser()->currentIndex();
}

void AcarsBrowser::keepFlightEngine() {
  settings().env_fltSchCmb = panel_->flightSearch()->chooser()->currentIndex();
}

QString AcarsBrowser::noLineHint() const {
  return tr(
      "No line to show: the log holds no message yet, or none passes the filters.\n"
      "Clear (Ctrl+L) takes the filters back, Refresh (F5) reads the log again.\n\n"
      "表示する行がありません。\n"
      "Clear（Ctrl+L）で絞り込みを消し、Refresh（F5）で受信ログを読み直します。");
}

void AcarsBrowser::takeFiltersBack() { filters_->clearAll(); }

int AcarsBrowser::registrationColumn() const { return kListRegistration; }

std::string AcarsBrowser::flightToFind() { return list()->selectedText(kListFlight); }

void AcarsBrowser::readyEditor(LineEditor editor, const std::string& key) {
  panel_->readyEditor(editor, key);
}

void AcarsBrowser::searchPhoto() {
  ShellOpen(desktop(), photoAddress(context().services, settings(),
                                    panel_->photoSearch()->engine<PhotoEngine>(),
                                    list()->selectedText(kListRegistration)));
}

void AcarsBrowser::searchFlight() {
  openFlightSearch(context(), web_.site(), tables_, panel_->flightSearch()->engine<FlightEngine>(),
                   FlightValues::fromAcars(list()->selectedText(kListFlight)), this);
}

void AcarsBrowser::openConfig() {
  ConffigDialog dialog(context(), web_.site(), this);
  dialog.exec();
}

void AcarsBrowser::openPhoto() { panel_->openSelectedPhoto(); }

void AcarsBrowser::openRawLog() {
  if (showRawLog) showRawLog(list()->selectedText(kListRegistration));
}

void AcarsBrowser::addFilterActions(QMenu& menu, const QModelIndex& clicked) {
  const auto column = static_cast<ListColumn>(clicked.column());
  const QString text = clicked.data().toString();
  QAction* filter = menu.addAction(tr("Filter by this value"), this,
                                   [this, column, text] { filters_->filterBy(column, text); });
  filter->setEnabled(FilterFrame::canFilterBy(column, text));
  menu.addSeparator();
}

}  // namespace vel
