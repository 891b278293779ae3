#include "hfdl/ui/hfdl_browser.h"

#include <algorithm>
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
#include "web/ui/conffig_dialog.h"
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

bool hasRawLog(const Folders& folders, const std::string& name) {
  return isSafeFileName(name) && fileExists(fileIn(folders.eachLogs, name + ".log"));
}

// A row's texts come from a log and two tables: the list keeps them as UTF-8.
Encoding rowEncoding(const Encoding& otherwise) {
  const Result<Encoding> utf8 = Encoding::named("UTF-8");
  return utf8 ? *utf8 : otherwise;
}

}  // namespace

HfdlBrowser::HfdlBrowser(BrowserFrame& frame, WebAccess& web)
    : LogBrowser(frame, {kHfdlLogSuffix, kNoHfdlLog, kNoLineSelected, false, 0,
                         QStringLiteral("&ACARS"), QStringLiteral("Command12")}),
      web_(web),
      tables_(frame.context().folders, frame.context().encoding),
      photos_(frame.context().folders.pics) {
  setObjectName(QStringLiteral("Form2"));
  showRawLog = [&web](const std::string& name) { web.rawLogs().open(name); };
  setWindowTitle(QStringLiteral("VEL FMT.log Browser"));

  canvas_ = new QWidget(this);
  setCentralWidget(canvas_);
  fillTopRow();
  makeList(canvas_,
           new LogListModel(
               rowEncoding(context().encoding), kHfdlSeparator, columnTitles(),
               [](std::size_t number) { return toQString(hfdlLineNumber(number)); }, this),
           {.widths = kColumnWidths});
  panel_ = new HfdlPanel(context(), tables_, list(), model(), canvas_);

  connect(list(), &LogListView::listIndexChanged, panel_, &HfdlPanel::showSelection);
  const auto onPress = [this](QPushButton* button, auto lookUp) {
    connect(button, &QPushButton::clicked, this, lookUp);
  };
  onPress(panel_->addressSearch()->button(), &HfdlBrowser::jumpToAddressService);
  onPress(panel_->photoSearch()->button(), &HfdlBrowser::searchPhoto);
  onPress(panel_->flightSearch()->button(), [this] {
    if (hasLine()) searchFlight();
  });
  onPress(panel_->rawLogButton(), [this] {
    if (hasLine()) openRawLogOfDirection();
  });
  connect(list(), &LogListView::clicked, panel_, &HfdlPanel::showSelectionAgain);
  for (EngineRow* row : {panel_->photoSearch(), panel_->flightSearch()}) {
    row->offerSettings([this] { openConfig(); });
  }
}

void HfdlBrowser::fillTopRow() {
  topRow_ = makeTopRow(canvas_, tr("FMT Log &file"), kLongestLogName, kChooserWidth);
  activityChart_ = addTopButton(tr("Ground &stations"), QStringLiteral("Command8"),
                                tr("Chart of the ground stations' activity\n地上局の活動グラフ"));
  frequencyChart_ = addTopButton(tr("Fre&quencies"), QStringLiteral("Command10"),
                                 tr("Chart of the frequencies of a week\n1週間の周波数グラフ"));
  connect(otherBrowserButton(), &QPushButton::clicked, this,
          [this] { frame().switchBrowser(*this); });
  connect(activityChart_, &QPushButton::clicked, this, [this] { showActivityChart(); });
  connect(frequencyChart_, &QPushButton::clicked, this, [this] { showFrequencyChart(); });
}

void HfdlBrowser::load() {
  activityChart_->setVisible(showActivityChart != nullptr);
  frequencyChart_->setVisible(showFrequencyChart != nullptr);
  keepSmallestSize();
  fill([this] {
    for (const EngineRow* row :
         {panel_->photoSearch(), panel_->flightSearch(), panel_->addressSearch()}) {
      row->chooser()->setCurrentIndex(0);
    }
    panel_->airports()->search();
    if (!desktop().isEnding()) Q_EMIT loaded();
  });
}

int HfdlBrowser::neededWidth() const {
  return qMax(panel_->minimumSizeHint().width(),
              toPixels(kSideOffset) + topRow_->minimumSizeHint().width());
}

void HfdlBrowser::tablesChanged() {
  panel_->airports()->search();
  LogBrowser::tablesChanged();
}

void HfdlBrowser::layOutFrames(int height, int width) {
  const int listWidth = toPixels(width - kSideOffset);
  const int panelTop = toPixels(height - kPanelOffset);
  topRow_->setGeometry(kMargin, kTopRowTop, listWidth, kListTop - kTopRowTop - 4);
  list()->setGeometry(kMargin, kListTop, listWidth, toPixels(std::max(0, height - kListOffset)));
  // The title bar is part of the outer height: the panel ends where the window
  // does, so that its columns fill what is seen of it.
  panel_->setGeometry(0, panelTop, toPixels(std::max(0, width)), canvas_->height() - panelTop);
}

std::unique_ptr<LogReader> HfdlBrowser::makeReader(InputFile file) {
  return std::make_unique<HfdlListReader>(std::move(file), context().encoding, tables_, photos_);
}

void HfdlBrowser::readBegins() { panel_->readBegins(); }

void HfdlBrowser::readEnds() { panel_->readEnds(); }

void HfdlBrowser::openRawLogOfDirection() {
  if (!showRawLog) return;
  const std::string direction = list()->selectedText(kHfdlDirection);
  const std::string registration = list()->selectedText(kHfdlRegistration);
  // The logs are those of aircraft: where the direction has none, the line's
  // aircraft may have one.
  const Folders& folders = context().folders;
  const bool other = !hasRawLog(folders, direction) && hasRawLog(folders, registration);
  showRawLog(other ? registration : direction);
}

void HfdlBrowser::jumpToAddressService() {
  desktop().setClipboardText(panel_->aircraft()->text(Icao24Editor::kAddress));
  ShellOpen(desktop(),
            addressPage(context().services, panel_->addressSearch()->engine<AddressEngine>()));
}

int HfdlBrowser::registrationColumn() const { return kHfdlRegistration; }

std::string HfdlBrowser::flightToFind() {
  // A short one is that of its airline.
  const std::string received = list()->selectedText(kHfdlFlight);
  const auto aircraft = tables_.aircraftOfAddressIfPresent(list()->selectedText(kHfdlAddress));
  return aircraft ? completedFlight(received, *aircraft) : received;
}

void HfdlBrowser::readyEditor(LineEditor editor, const std::string& key) {
  panel_->readyEditor(editor, key);
}

void HfdlBrowser::searchPhoto() {
  ShellOpen(desktop(), photoAddress(context().services, settings(),
                                    panel_->photoSearch()->engine<PhotoEngine>(),
                                    panel_->aircraft()->text(Icao24Editor::kRegistration)));
}

void HfdlBrowser::searchFlight() {
  openFlightSearch(context(), web_.site(), tables_, panel_->flightSearch()->engine<FlightEngine>(),
                   {panel_->flight()->flight(), list()->selectedText(kHfdlFlight),
                    list()->selectedText(kHfdlTime)},
                   this);
}

void HfdlBrowser::openPhoto() { panel_->openSelectedPhoto(); }

void HfdlBrowser::openConfig() { ConffigDialog(context(), web_.site(), this).exec(); }

void HfdlBrowser::openRawLog() { showRawLog(list()->selectedText(kHfdlRegistration)); }

}  // namespace vel
