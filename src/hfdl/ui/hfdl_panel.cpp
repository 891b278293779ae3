#include "hfdl/ui/hfdl_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/text.h"
#include "core/ui/qt_desktop.h"
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

// Keeps a hidden frame's place, so that nothing moves when it is shown.
void keepPlaceWhenHidden(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

QVBoxLayout* makeRows(QWidget* column) {
  auto* rows = new QVBoxLayout(column);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kSpacing);
  return rows;
}

}  // namespace

HfdlPanel::HfdlPanel(const Context& context, const Tables& tables, xLView* list,
                     LogListModel* model, QWidget* parent)
    : QWidget(parent),
      context_(context),
      list_(list),
      model_(model),
      busy_(new BusyLabels(QStringLiteral("Loading"), this)),
      editing_(context.desktop, tables, *busy_) {
  setObjectName(QStringLiteral("Frame4"));
  photo_ = new PhotoPane(context.folders, kPhotoSearchIndex,
                         photoEngineLabels(SearchWindow::hfdl, context.settings), this);
  // A larger font takes more.
  photo_->setFixedWidth(qMax(kPhotoColumnWidth, photo_->minimumSizeHint().width()));
  auto* columns = new QHBoxLayout(this);
  columns->setContentsMargins(6, 0, 17, 2);
  columns->setSpacing(5);
  columns->addWidget(photo_);
  columns->addWidget(makeAircraftColumn(), 2);
  columns->addWidget(makeFlightColumn(), 2);
  columns->addWidget(makeAirportColumn(), 2);

  connect(airports_, &AirportGroup::transfer, flight_, &FlightEditor::setAirport);
  connect(airportEditor_, &AirportEditor::written, flight_, &FlightEditor::showAirportNames);
  connect(flight_, &FlightEditor::airportNameChosen, this, &HfdlPanel::openAirportDialog);
  connect(photo_->photo(), &PhotoView::clicked, this, &HfdlPanel::openSelectedPhoto);
  aircraft_->hide();
  flight_->hide();
}

QWidget* HfdlPanel::makeAircraftColumn() {
  auto* column = new QWidget(this);
  aircraft_ = new Icao24Editor(
      editing_, [this](const Icao24Record& written) { updateAircraftRows(written); }, column);
  addressSearch_ = new EngineRow(
      {QStringLiteral("Combo4"), tr("ICAO24 address service"), 0, QStringLiteral("Copy && Jump"),
       tr("Copies the ICAO24 address and opens the service's page, where it can be pasted\n"
          "ICAO24アドレスをコピーして検索ページを開く")},
      icao24EngineLabels(), column);
  keepPlaceWhenHidden(aircraft_);
  QVBoxLayout* rows = makeRows(column);
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
  flightSearch_ = makeFlightSearchRow(
      kFlightSearchIndex, flightEngineLabels(SearchWindow::hfdl, context_.settings), column);
  rawLog_ = makeRawLogButton(column);
  keepPlaceWhenHidden(flight_);

  auto* frames = new QGridLayout;
  frames->addWidget(flight_, 0, 0);
  frames->addWidget(hint_, 0, 0);
  auto* searchRow = new QHBoxLayout;
  searchRow->setSpacing(4);
  searchRow->addWidget(flightSearch_, 1);
  searchRow->addWidget(rawLog_);
  QVBoxLayout* rows = makeRows(column);
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
  QVBoxLayout* rows = makeRows(column);
  rows->addWidget(airports_, 1);
  rows->addWidget(airportEditor_);
  rows->addWidget(busy_);
  return column;
}

void HfdlPanel::readBegins() {
  ++generation_;
  aircraft_->hide();
  flight_->hide();
  hint_->show();
  aircraft_->setAddress({});
  flight_->setFlight({});
  photo_->clear();
  reading_ = true;
  busy_->showProcessing();
}

void HfdlPanel::readEnds() {
  reading_ = false;
  hideLoading();
}

void HfdlPanel::hideLoading() {
  if (!reading_) busy_->hideProcessing();
}

bool HfdlPanel::overtaken(int generation) const {
  return generation != generation_ || context_.desktop.isEnding();
}

void HfdlPanel::showSelection() {
  if (list_->listIndex() < 0) return;
  const int generation = ++generation_;
  aircraft_->hide();
  hint_->hide();
  busy_->showProcessing();
  context_.desktop.processEvents();
  if (overtaken(generation)) return;
  if (list_->listIndex() < 0) {
    hideLoading();
    return;
  }
  shownLine_ = model_->index(list_->listIndex(), 0);

  const std::string address = list_->selectedText(kHfdlAddress);
  const std::string received = list_->selectedText(kHfdlFlight);
  photo_->showPhoto(list_->selectedText(kHfdlRegistration));

  aircraft_->setAddress(address);
  const Icao24Record record = editing_.valueOrEnd(editing_.tables().icao24IfPresent(address));
  if (context_.desktop.isEnding()) return;
  aircraft_->setAircraft(record);
  context_.desktop.processEvents();
  if (overtaken(generation)) return;
  aircraft_->show();

  const std::string flight = completedFlight(received, record);
  flight_->setFlight(flight);
  if (flight.empty()) {
    flight_->hide();
    hideLoading();
    context_.desktop.processEvents();
    return;
  }
  flight_->show();
  flight_->setRoute(std::nullopt);
  const auto route = editing_.valueOrEnd(routeIfPresent(editing_.tables(), flight));
  if (context_.desktop.isEnding()) return;
  flight_->setRoute(route);
  if (context_.desktop.isEnding()) return;
  context_.desktop.processEvents();
  if (overtaken(generation)) return;
  hideLoading();
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

void HfdlPanel::openAirportDialog(const QString& name) {
  const auto searchAddress = [this](std::string_view code) {
    return airportSearchAddress(context_.services, code);
  };
  AirportDialog dialog(editing_, name, searchAddress, window());
  if (dialog.exec() == QDialog::Accepted) flight_->showAirportNames();
}

}  // namespace vel
