#include "acars/ui/acars_browser.h"

#include <QAction>
#include <QLayout>
#include <QMenu>
#include <QShortcut>
#include <algorithm>
#include <utility>

#include "core/helpers.h"
#include "core/ui/plain_text.h"
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

// Indexes of the look-up row.
constexpr int kPhotoSearch = 0;
constexpr int kFlightSearch = 1;
constexpr int kRawLog = 3;

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
// The guided tour stands beside the chooser.
constexpr int kChooserWidth = 150;

// The tour stands beside the titles: Flight ends left of 116 pixels, Pict left
// of 152, the route left of 364, and Equipment begins right of 346.
const QList<int> kColumnWidths = {42, 62, 36, 96, 58, 58, 130, 296, 80};

}  // namespace

AcarsBrowser::AcarsBrowser(Program& program, WebAccess& web)
    : LogBrowser(program, {kListLogSuffix, kNoListLog, true, 1, QStringLiteral("&HFDL"),
                           QStringLiteral("Command11")}),
      web_(web),
      tables_(program.folders(), program.encoding()) {
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
               program.encoding(), ListLogReader::kSeparator, columnTitles(),
               [](std::size_t number) { return toQString(listLineNumber(number)); }, this),
           kColumnWidths);
  panel_ = new DetailPanel(program.context(), tables_, list(), model(), canvas);

  connect(filters_, &FilterFrame::Combo4_Click, this, &AcarsBrowser::readFiltered);
  connect(filters_, &FilterFrame::Combo5_Click, this, &AcarsBrowser::readFiltered);
  connect(filters_, &FilterFrame::Check1_Click, this, &AcarsBrowser::readFiltered);
  connect(filters_, &FilterFrame::Text4_Change, this, &AcarsBrowser::readFiltered);
  connect(filters_, &FilterFrame::Command9_Click, this, &AcarsBrowser::Command9_Click);
  connect(list(), &xLView::listIndexChanged, panel_, &DetailPanel::showSelection);
  connect(list(), &xLView::clicked, panel_, &DetailPanel::showSelectionAgain);
  connect(panel_->photoSearch()->chooser(), &QComboBox::currentIndexChanged, this,
          &AcarsBrowser::Combo2_Click);
  connect(panel_->flightSearch()->chooser(), &QComboBox::currentIndexChanged, this,
          &AcarsBrowser::Combo3_Click);
  connect(panel_->photoSearch()->button(), &QPushButton::clicked, this,
          [this] { Command7_Click(kPhotoSearch); });
  connect(panel_->flightSearch()->button(), &QPushButton::clicked, this,
          [this] { Command7_Click(kFlightSearch); });
  connect(panel_->rawLogButton(), &QPushButton::clicked, this, [this] { Command7_Click(kRawLog); });
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
  connect(otherBrowserButton(), &QPushButton::clicked, this, &AcarsBrowser::Command11_Click);
  connect(config_, &QPushButton::clicked, this, &AcarsBrowser::Command10_Click);
  connect(tour_, &QPushButton::clicked, this, &AcarsBrowser::Command4_Click);
}

void AcarsBrowser::addShortcuts() {
  const auto add = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  add(QKeySequence(Qt::CTRL | Qt::Key_L), &AcarsBrowser::Command9_Click);
  add(QKeySequence(Qt::CTRL | Qt::Key_F), [this] {
    filters_->box(FilterFrame::kFlight)->setFocus(Qt::ShortcutFocusReason);
    filters_->box(FilterFrame::kFlight)->selectAll();
  });
}

void AcarsBrowser::load() {
  WriteRunLog(desktop(), "Start Form_Load");
  suppressLoading = true;
  filters_->selectFirstEntries();
  suppressLoading = false;
  version_->setText(QStringLiteral("Ver") + QString::fromLatin1(kVersion));
  config_->setVisible(settings().env_Config != 0);
  otherBrowserButton()->setVisible(program().hasOtherBrowser());
  tour_->setVisible(showTour != nullptr);
  fill([this] {
    panel_->airports()->Text3_Change();
    if (desktop().isEnding()) return;
    if (prepareTour) prepareTour(1);
    WriteRunLog(desktop(), "End Form_Load");
    Q_EMIT loaded();
  });
}

void AcarsBrowser::Form_Activate() {
  // The user's own engine comes first in both choosers; the fixed ones follow.
  const auto fill = [](QComboBox* chooser, const std::vector<std::string>& engines, int selected) {
    const QSignalBlocker blocker(chooser);
    chooser->clear();
    for (const std::string& engine : engines) chooser->addItem(shownText(engine, kLongestEntry));
    chooser->setCurrentIndex(qBound(0, selected, chooser->count() - 1));
  };
  const Settings& env = settings();
  fill(panel_->photoSearch()->chooser(),
       userEngineFirst(photoEngineLabels(SearchWindow::acars, env)), env.env_regSchCmb);
  fill(panel_->flightSearch()->chooser(),
       userEngineFirst(flightEngineLabels(SearchWindow::acars, env)), env.env_fltSchCmb);
  BrowserWindow::Form_Activate();
}

void AcarsBrowser::layOutFrames(int height, int width) {
  upper_->setGeometry(0, 0, toPixels(MaxOf(0, width)),
                      toPixels(MaxOf(0, height - kUpperFrameOffset)));
  list()->setGeometry(kMargin, kListTop, toPixels(width - kSideOffset),
                      toPixels(MaxOf(0, height - kListOffset)));
  panel_->setGeometry(0, toPixels(height - kPanelOffset), toPixels(MaxOf(0, width)),
                      toPixels(kPanelOffset));
  topRow_->setGeometry(kMargin, kTopRowTop, toPixels(width - kSideOffset),
                       kFilterTop - kTopRowTop - 2);
  filters_->setGeometry(kMargin, kFilterTop, toPixels(width - kSideOffset),
                        kListTop - kFilterTop - 2);
}

std::unique_ptr<LogReader> AcarsBrowser::makeReader(InputFile file) {
  return std::make_unique<ListLogReader>(std::move(file), program().encoding(), filters_->filter(),
                                         tables_);
}

void AcarsBrowser::rowsShown(std::size_t count) { filters_->setCount(count); }

void AcarsBrowser::readEnds() { panel_->hideFrames(); }

void AcarsBrowser::lineKept() { panel_->showSelectionAgain(); }

void AcarsBrowser::Command9_Click() {
  suppressLoading = true;
  filters_->clearAll();
  suppressLoading = false;
  readFiltered();
}

void AcarsBrowser::Command4_Click() {
  if (!showTour) return;
  // The tour explains the frames, which are hidden while no line is selected.
  const bool empty = list()->listIndex() < 0;
  if (empty) panel_->showFrames();
  showTour();
  if (empty && list()->listIndex() < 0) panel_->hideFrames();
}

void AcarsBrowser::Combo2_Click() {
  settings().env_regSchCmb = panel_->photoSearch()->chooser()->currentIndex();
}

void AcarsBrowser::Combo3_Click() {
  settings().env_fltSchCmb = panel_->flightSearch()->chooser()->currentIndex();
}

void AcarsBrowser::Command7_Click(int index) {
  if (index != kPhotoSearch && index != kFlightSearch && index != kRawLog) return;
  if (list()->listIndex() < 0) {
    desktop().showMessage(kNoLineSelected);
    return;
  }
  if (index == kPhotoSearch) searchPhoto();
  if (index == kFlightSearch) searchFlight();
  if (index == kRawLog && showRawLog) showRawLog(list()->selectedText(kListRegistration));
}

void AcarsBrowser::searchPhoto() {
  const auto address = photoAddress(program().services(), settings(), SearchWindow::acars,
                                    servicePosition(panel_->photoSearch()->chooser()),
                                    list()->selectedText(kListRegistration));
  if (address) ShellOpen(desktop(), *address);
}

void AcarsBrowser::searchFlight() {
  openFlightSearch(program().context(), web_.site(), tables_,
                   servicePosition(panel_->flightSearch()->chooser()),
                   FlightValues::fromAcars(list()->selectedText(kListFlight)), this);
}

void AcarsBrowser::Command10_Click() {
  ConffigDialog dialog(program().context(), web_.site(), this);
  dialog.exec();
}

void AcarsBrowser::Command11_Click() { program().switchBrowser(*this); }

void AcarsBrowser::openPhoto() { panel_->openSelectedPhoto(); }

void AcarsBrowser::openRawLog() { Command7_Click(kRawLog); }

void AcarsBrowser::addFilterActions(QMenu& menu, const QModelIndex& clicked) {
  const auto column = static_cast<ListColumn>(clicked.column());
  const QString text = clicked.data().toString();
  QAction* filter = menu.addAction(tr("Filter by this value"), this,
                                   [this, column, text] { filters_->filterBy(column, text); });
  filter->setEnabled(FilterFrame::canFilterBy(column, text));
  menu.addSeparator();
}

}  // namespace vel
