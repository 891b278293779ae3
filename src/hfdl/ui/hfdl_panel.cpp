#include "hfdl/ui/hfdl_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <utility>

#include "core/text.h"
#include "core/ui/panel_layout.h"
#include "hfdl/hfdl_row.h"
#include "tables/ui/airport_dialog.h"
#include "web/address.h"

namespace vel {
namespace {

// The panel is low: its height is fixed by the window's layout. Widths in
// pixels.
constexpr int kPhotoColumnWidth = 158;
constexpr int kSpacing = 2;

// Among the look-up buttons Command7.
constexpr int kPhotoSearchIndex = 1;
constexpr int kFlightSearchIndex = 2;

}  // namespace

HfdlPanel::HfdlPanel(const Context& context, const Tables& tables, LogListView* list,
                     LogListModel* model, QWidget* parent)
    : QWidget(parent),
      context_(context),
      list_(list),
      model_(model),
      busy_(new BusyLabels(QStringLiteral("Loading"), this)),
      lookUp_(context, *busy_),
      editing_(context, tables, *busy_) {
  setObjectName(QStringLiteral("Frame4"));
  photo_ = new PhotoPane(context, kPhotoSearchIndex,
                         photoEngines(SearchWindow::hfdl, context.settings), this);
  // A larger font takes more.
  photo_->setFixedWidth(qMax(kPhotoColumnWidth, photo_->minimumSizeHint().width()));
  auto* columns = new QHBoxLayout(this);
  columns->setContentsMargins(6, 0, 17, 2);
  columns->setSpacing(5);
  columns->addWidget(photo_);
  columns->addWidget(makeAircraftColumn(), 2);
  columns->addWidget(makeFlightColumn(), 2);
  columns->addWidget(makeAirportColumn(), 2);

  joinAirports(*flight_, *airports_, *airportEditor_, editing_, [this](std::string_view code) {
    return airportSearchAddress(context_.services, code);
  });
  connect(photo_->photo(), &PhotoView::clicked, this, &HfdlPanel::openSelectedPhoto);
  aircraft_->hide();
  flight_->hide();
  editors_.add(LineEditor::aircraft, [this](const std::string&) { aircraft_->takeKeys(); });
  editors_.add(LineEditor::flight, [this](const std::string&) { flight_->takeKeys(); });
  editors_.add(LineEditor::airport,
               [this](const std::string& code) { airportEditor_->takeKeys(code); });
  editors_.add(LineEditor::photo,
               [this](const std::string&) { photo_->search()->button()->setFocus(); });
}

QWidget* HfdlPanel::makeAircraftColumn() {
  auto* column = new QWidget(this);
  aircraft_ = new Icao24Editor(
      editing_, [this](const Icao24Record& written) { updateAircraftRows(written); }, column);
  addressSearch_ = new EngineRow(
      {QStringLiteral("Combo4"), tr("ICAO24 address service"), 0, QStringLiteral("Copy && Jump"),
       tr("Copies the ICAO24 address and opens the service's page, where it can be pasted\n"
          "ICAO24アドレスをコピーして検索ページを開く")},
      column);
  addressSearch_->setEngines(addressEngines());
  keepPlaceWhenHidden(aircraft_);
  QVBoxLayout* rows = makeRows(column, kSpacing);
  rows->addWidget(aircraft_);
  rows->addStretch();
  rows->addWidget(addressSearch_);
  return column;
}

QWidget* HfdlPanel::makeFlightColumn() {
  auto* column = new QWidget(this);
  flight_ = new FlightEditor(
      editing_, [this] { return list_->listIndex() >= 0; }, [this] { return flightRowsUpdate(); },
      column);
  hint_ =
      new QLabel(tr("Select a line to see its details.\n行を選択すると詳細を表示します。"), column);
  hint_->setObjectName(QStringLiteral("Label5"));
  hint_->setAlignment(Qt::AlignCenter);
  hint_->setWordWrap(true);
  flightSearch_ = makeFlightSearchRow(kFlightSearchIndex,
                                      flightEngines(SearchWindow::hfdl, context_.settings), column);
  rawLog_ = makeRawLogButton(column);
  keepPlaceWhenHidden(flight_);

  auto* frames = new QGridLayout;
  frames->addWidget(flight_, 0, 0);
  frames->addWidget(hint_, 0, 0);
  auto* searchRow = new QHBoxLayout;
  searchRow->setSpacing(4);
  searchRow->addWidget(flightSearch_, 1);
  searchRow->addWidget(rawLog_);
  QVBoxLayout* rows = makeRows(column, kSpacing);
  rows->addLayout(frames);
  rows->addStretch();
  rows->addLayout(searchRow);
  return column;
}

QWidget* HfdlPanel::makeAirportColumn() {
  auto* column = new QWidget(this);
  airports_ = new AirportGroup(editing_, column);
  airportEditor_ = new AirportEditor(editing_, column);
  busy_->setParent(column);
  keepPlaceWhenHidden(busy_);
  QVBoxLayout* rows = makeRows(column, kSpacing);
  rows->addWidget(airports_, 1);
  rows->addWidget(airportEditor_);
  rows->addWidget(busy_);
  return column;
}

void HfdlPanel::readBegins() {
  lookUp_.stop();
  aircraft_->hide();
  flight_->hide();
  hint_->show();
  aircraft_->setAddress({});
  flight_->setFlight({});
  photo_->clear();
  busy_->setReading(true);
}

void HfdlPanel::readEnds() { busy_->setReading(false); }

void HfdlPanel::showSelectionAgain() {
  if (!aircraft_->isVisible() && !lookUp_.isRunning()) showSelection();
}

void HfdlPanel::showSelection() {
  editors_.wait(LineEditor::none, {});
  if (list_->listIndex() < 0) return;
  aircraft_->hide();
  hint_->hide();
  const auto photoAndAircraft = [this]() -> Result<JobProgress> {
    // The selection may have been given up again.
    if (list_->listIndex() < 0) return JobProgress::done;
    shownLine_ = model_->index(list_->listIndex(), 0);
    const std::string address = list_->selectedText(kHfdlAddress);
    receivedFlight_ = list_->selectedText(kHfdlFlight);
    photo_->showPhoto(list_->selectedText(kHfdlRegistration));
    aircraft_->setAddress(address);
    auto record = editing_.tables().aircraftOfAddressIfPresent(address);
    if (!record) return record.error();
    foundAircraft_ = *std::move(record);
    aircraft_->setAircraft(foundAircraft_);
    return JobProgress::more;
  };
  const auto route = [this]() -> Result<JobProgress> {
    aircraft_->show();
    const std::string flight = completedFlight(receivedFlight_, foundAircraft_);
    flight_->setFlight(flight);
    flight_->setVisible(!flight.empty());
    if (flight.empty()) {
      editors_.giveKeys();
      return JobProgress::done;
    }
    flight_->setRoute(std::nullopt);
    const auto found = routeIfPresent(editing_.tables(), flight);
    if (!found) return found.error();
    flight_->setRoute(*found);
    return JobProgress::more;
  };
  const auto drawn = [this]() -> Result<JobProgress> {
    editors_.giveKeys();
    return JobProgress::done;
  };
  lookUp_.start({photoAndAircraft, route, drawn});
}

void HfdlPanel::readyEditor(LineEditor editor, const std::string& key) {
  editors_.wait(editor, key);
  if (!lookUp_.isRunning()) editors_.giveKeys();
}

void HfdlPanel::updateAircraftRows(const Icao24Record& written) {
  const std::string text = aircraftText(written, "*");
  for (int line = 0; line < model_->rowCount(); ++line) {
    if (model_->cell(line, kHfdlAddress) == written[0]) model_->setCell(line, kHfdlAircraft, text);
  }
}

std::function<void()> HfdlPanel::flightRowsUpdate() {
  // A line that was selected a moment ago may not be the one shown yet.
  const QPersistentModelIndex shown = shownLine_;
  const std::string flight = flight_->flight();
  const FlightRoute route = flight_->route();
  return [this, shown, flight, route] {
    const auto update = [&](int line) {
      model_->setCell(line, kHfdlOrigin, route.departure);
      model_->setCell(line, kHfdlDestination, route.destination);
    };
    for (int line = 0; line < model_->rowCount(); ++line) {
      if (model_->cell(line, kHfdlFlight) == flight) update(line);
    }
    if (shown.isValid()) update(shown.row());
  };
}

void HfdlPanel::openSelectedPhoto() {
  if (list_->listIndex() < 0) return;
  openPhoto(context_.desktop, context_.folders, list_->selectedText(kHfdlRegistration));
}

}  // namespace vel
