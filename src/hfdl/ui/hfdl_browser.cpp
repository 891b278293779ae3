#include "hfdl/ui/hfdl_browser.h"

#include <memory>
#include <utility>

#include "core/helpers.h"
#include "core/text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/twips.h"
#include "hfdl/hfdl_list_reader.h"
#include "hfdl/hfdl_row.h"
#include "tables/rewrite.h"
#include "web/address.h"
#include "web/ui/flight_search.h"

namespace vel {
namespace {

// Offsets of the frames from the window's outer size, in twips.
constexpr int kListOffset = 4575 - 950;
constexpr int kPanelOffset = 3630 - 620;
constexpr int kSideOffset = 345;

// Places in pixels: the list ends just above the panel.
constexpr int kMargin = 6;
constexpr int kTopRowTop = 4;
constexpr int kListTop = 37;
constexpr int kChooserWidth = 224;

// Indexes of the look-up row.
constexpr int kAddressSearch = 0;
constexpr int kPhotoSearch = 1;
constexpr int kFlightSearch = 2;
constexpr int kRawLog = 3;

const QStringList& columnTitles() {
  static const QStringList titles = {
      QStringLiteral("Line"),    QStringLiteral("Time"),           QStringLiteral("Tag"),
      QStringLiteral("U/D"),     QStringLiteral("Ground station"), QStringLiteral("ICAO24"),
      QStringLiteral("Regist."), QStringLiteral("Flight"),         QStringLiteral("Aircraft"),
      QStringLiteral("Pict"),    QStringLiteral("Dept."),          QStringLiteral("Dest.")};
  return titles;
}

const QString kLongestLogName = QStringLiteral("202601310000_HFDL_FMT.log");

const QList<int> kColumnWidths = {44, 142, 38, 36, 170, 66, 76, 66, 160, 36, 58, 58};

// A row's texts come from a log and two tables: the list keeps them as UTF-8.
Encoding rowEncoding(const Encoding& otherwise) {
  const Result<Encoding> utf8 = Encoding::named("UTF-8");
  return utf8 ? *utf8 : otherwise;
}

}  // namespace

HfdlBrowser::HfdlBrowser(Program& program, WebAccess& web)
    : LogBrowser(program, {kHfdlLogSuffix, kNoHfdlLog, false, 0, QStringLiteral("&ACARS"),
                           QStringLiteral("Command12")}),
      web_(web),
      tables_(program.folders(), program.encoding()),
      photos_(program.folders().pics) {
  setObjectName(QStringLiteral("Form2"));
  showRawLog = [&web](const std::string& name) { web.rawLogs().open(name); };
  setWindowTitle(QStringLiteral("VEL FMT.log Browser"));

  canvas_ = new QWidget(this);
  setCentralWidget(canvas_);
  fillTopRow();
  makeList(canvas_,
           new LogListModel(
               rowEncoding(program.encoding()), kHfdlSeparator, columnTitles(),
               [](std::size_t number) { return toQString(hfdlLineNumber(number)); }, this),
           kColumnWidths);
  panel_ = new HfdlPanel(program.context(), tables_, list(), model(), canvas_);

  connect(list(), &xLView::listIndexChanged, panel_, &HfdlPanel::showSelection);
  connect(panel_->addressSearch()->button(), &QPushButton::clicked, this,
          [this] { Command7_Click(kAddressSearch); });
  connect(panel_->photoSearch()->button(), &QPushButton::clicked, this,
          [this] { Command7_Click(kPhotoSearch); });
  connect(panel_->flightSearch()->button(), &QPushButton::clicked, this,
          [this] { Command7_Click(kFlightSearch); });
  connect(panel_->rawLogButton(), &QPushButton::clicked, this, [this] { Command7_Click(kRawLog); });
}

void HfdlBrowser::fillTopRow() {
  topRow_ = makeTopRow(canvas_, tr("FMT Log &file"), kLongestLogName, kChooserWidth);
  activityChart_ = addTopButton(tr("Ground &stations"), QStringLiteral("Command8"),
                                tr("Chart of the ground stations' activity\n地上局の活動グラフ"));
  frequencyChart_ = addTopButton(tr("Fre&quencies"), QStringLiteral("Command10"),
                                 tr("Chart of the frequencies of a week\n1週間の周波数グラフ"));
  connect(otherBrowserButton(), &QPushButton::clicked, this, &HfdlBrowser::Command12_Click);
  connect(activityChart_, &QPushButton::clicked, this, &HfdlBrowser::Command8_Click);
  connect(frequencyChart_, &QPushButton::clicked, this, &HfdlBrowser::Command10_Click);
}

void HfdlBrowser::load() {
  activityChart_->setVisible(showActivityChart != nullptr);
  frequencyChart_->setVisible(showFrequencyChart != nullptr);
  fill([this] {
    for (const EngineRow* row :
         {panel_->photoSearch(), panel_->flightSearch(), panel_->addressSearch()}) {
      row->chooser()->setCurrentIndex(0);
    }
    panel_->airports()->Text3_Change();
    if (!desktop().isEnding()) Q_EMIT loaded();
  });
}

void HfdlBrowser::layOutFrames(int height, int width) {
  const int listWidth = toPixels(width - kSideOffset);
  const int panelTop = toPixels(height - kPanelOffset);
  topRow_->setGeometry(kMargin, kTopRowTop, listWidth, kListTop - kTopRowTop - 4);
  list()->setGeometry(kMargin, kListTop, listWidth, toPixels(MaxOf(0, height - kListOffset)));
  // The title bar is part of the outer height: the panel ends where the window
  // does, so that its columns fill what is seen of it.
  panel_->setGeometry(0, panelTop, toPixels(MaxOf(0, width)), canvas_->height() - panelTop);
}

std::unique_ptr<LogReader> HfdlBrowser::makeReader(InputFile file) {
  return std::make_unique<HfdlListReader>(std::move(file), program().encoding(), tables_, photos_);
}

void HfdlBrowser::readBegins() { panel_->readBegins(); }

void HfdlBrowser::readEnds() { panel_->readEnds(); }

void HfdlBrowser::Command7_Click(int index) {
  const bool needsLine = index == kFlightSearch || index == kRawLog;
  if (needsLine && list()->listIndex() < 0) {
    desktop().showMessage(kNoLineSelected);
    return;
  }
  if (index == kAddressSearch) jumpToAddressService();
  if (index == kPhotoSearch) searchPhoto();
  if (index == kFlightSearch) searchFlight();
  if (index == kRawLog && showRawLog) showRawLog(list()->selectedText(kHfdlDirection));
}

void HfdlBrowser::jumpToAddressService() {
  desktop().setClipboardText(panel_->aircraft()->text(Icao24Editor::kAddress));
  const auto page =
      icao24Page(program().services(), panel_->addressSearch()->chooser()->currentIndex());
  if (page) ShellOpen(desktop(), *page);
}

void HfdlBrowser::searchPhoto() {
  const auto address = photoAddress(program().services(), settings(), SearchWindow::hfdl,
                                    panel_->photoSearch()->chooser()->currentIndex(),
                                    panel_->aircraft()->text(Icao24Editor::kRegistration));
  if (address) ShellOpen(desktop(), *address);
}

void HfdlBrowser::searchFlight() {
  openFlightSearch(program().context(), web_.site(), tables_,
                   panel_->flightSearch()->chooser()->currentIndex(),
                   {panel_->flight()->flight(), list()->selectedText(kHfdlFlight),
                    list()->selectedText(kHfdlTime)},
                   this);
}

void HfdlBrowser::openPhoto() { panel_->openSelectedPhoto(); }

void HfdlBrowser::openRawLog() { showRawLog(list()->selectedText(kHfdlRegistration)); }

void HfdlBrowser::Command8_Click() {
  if (showActivityChart) showActivityChart();
}

void HfdlBrowser::Command10_Click() {
  if (showFrequencyChart) showFrequencyChart();
}

void HfdlBrowser::Command12_Click() { program().switchBrowser(*this); }

}  // namespace vel
