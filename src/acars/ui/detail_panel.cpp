#include "acars/ui/detail_panel.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPersistentModelIndex>
#include <QVBoxLayout>
#include <utility>

#include "acars/list_log.h"
#include "core/text.h"
#include "core/ui/panel_layout.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/small_title.h"
#include "tables/ui/airport_dialog.h"
#include "web/address.h"

namespace vel {
namespace {

// The panel's height is fixed by the window's layout: its columns are sized
// for that, in pixels. The guided tour stands beside the controls that it
// explains, which is why the photo search lies above the equipment, and the
// airline and the airport editor lie at the right.
constexpr int kPhotoColumnWidth = 180;
constexpr int kPhotoHeight = 150;
constexpr int kFlightColumnWidth = 332;
constexpr int kAirportHeight = 132;
constexpr int kAirlineColumnWidth = 172;
constexpr int kAirportEditorIndent = 78;

// Takes a title's height before the first line is selected, so that nothing
// moves then.
const QString kNoTitleYet = QStringLiteral(" ");

// Among the look-up buttons Command7.
constexpr int kPhotoSearchIndex = 0;
constexpr int kFlightSearchIndex = 1;

}  // namespace

DetailPanel::DetailPanel(const Context& context, const Tables& tables, LogListView* list,
                         LogListModel* model, QWidget* parent)
    : QWidget(parent),
      context_(context),
      list_(list),
      model_(model),
      busy_(new BusyLabels(QStringLiteral("Processing"), this)),
      lookUp_(context, *busy_),
      editing_(context, tables, *busy_) {
  setObjectName(QStringLiteral("Frame4"));

  QWidget* photoColumn = makePhotoColumn();
  QWidget* flightColumn = makeFlightColumn();
  airports_ = new AirportGroup(editing_, this);
  airports_->setFixedHeight(kAirportHeight);
  const auto isLineSelected = [this] { return list_->listIndex() >= 0; };
  const auto markLine = [this]() -> std::function<void()> {
    const QPersistentModelIndex line = model_->index(list_->listIndex(), 0);
    return [this, line] {
      if (line.isValid()) {
        model_->setRowBackground(line.row(), QApplication::palette().color(QPalette::Button));
      }
    };
  };
  airline_ = new AirlineEditor(editing_, isLineSelected, markLine, this);
  airline_->setMinimumWidth(qMax(kAirlineColumnWidth, airline_->minimumSizeHint().width()));
  airportEditor_ = new AirportEditor(editing_, this);
  keepPlaceWhenHidden(airline_);

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(6, 0, 17, 2);
  grid->setHorizontalSpacing(6);
  grid->setVerticalSpacing(2);
  grid->addWidget(photoColumn, 0, 0, 2, 1);
  grid->addWidget(flightColumn, 0, 1, 2, 1);
  grid->addWidget(airports_, 0, 2, Qt::AlignTop);
  grid->addWidget(airline_, 0, 3, Qt::AlignTop);
  auto* editorRow = new QHBoxLayout;
  editorRow->addSpacing(kAirportEditorIndent);
  editorRow->addWidget(airportEditor_);
  grid->addLayout(editorRow, 1, 2, 1, 2, Qt::AlignTop);
  grid->setColumnStretch(1, 1);
  grid->setColumnStretch(2, 2);
  grid->setColumnStretch(3, 1);
  grid->setRowStretch(1, 1);

  joinAirports(*flight_, *airports_, *airportEditor_, editing_, [this](std::string_view code) {
    return airportSearchAddress(context_.services, code);
  });
  connect(photo_->photo(), &PhotoView::clicked, this, &DetailPanel::openSelectedPhoto);
  connect(enter_, &QPushButton::clicked, this, &DetailPanel::saveEquipment);
  editors_.add(LineEditor::aircraft, [this](const std::string&) {
    equipment_->setFocus();
    equipment_->selectAll();
  });
  editors_.add(LineEditor::flight, [this](const std::string&) { flight_->takeKeys(); });
  editors_.add(LineEditor::airline, [this](const std::string&) { airline_->takeKeys(); });
  editors_.add(LineEditor::airport,
               [this](const std::string& code) { airportEditor_->takeKeys(code); });
  editors_.add(LineEditor::photo,
               [this](const std::string&) { photo_->search()->button()->setFocus(); });
  hideFrames();
}

QWidget* DetailPanel::makePhotoColumn() {
  auto* column = new QWidget(this);
  photo_ = new PhotoPane(context_, kPhotoSearchIndex, {}, column);
  photo_->setFixedHeight(kPhotoHeight);

  aircraftFrame_ = new QGroupBox(column);
  aircraftFrame_->setObjectName(QStringLiteral("Frame1"));
  aircraftFrame_->setAccessibleName(tr("Aircraft"));
  aircraftFrame_->setTitle(kNoTitleYet);
  enter_ = makeEnterButton(aircraftFrame_, QStringLiteral("Command1"),
                           tr("Writes the equipment to aircraft.csv\n機種をaircraft.csvに登録"));
  equipment_ =
      makeEditorBox(aircraftFrame_, QStringLiteral("Text1"), tr("Equipment"),
                    tr("Type of this aircraft; empty deletes it\n機種。空欄で削除"), enter_);
  auto* line = new QHBoxLayout(aircraftFrame_);
  line->setContentsMargins(6, 1, 6, 3);
  line->setSpacing(4);
  line->addWidget(equipment_);
  line->addWidget(enter_);
  QWidget::setTabOrder(equipment_, enter_);
  useSmallTitle(*aircraftFrame_);
  keepPlaceWhenHidden(aircraftFrame_);

  QVBoxLayout* rows = makeRows(column, 4);
  rows->addWidget(photo_);
  rows->addWidget(aircraftFrame_);
  rows->addStretch();
  // A larger font takes more.
  column->setFixedWidth(qMax(kPhotoColumnWidth, column->minimumSizeHint().width()));
  return column;
}

QWidget* DetailPanel::makeFlightColumn() {
  auto* column = new QWidget(this);
  const auto isLineSelected = [this] { return list_->listIndex() >= 0; };
  const auto updateLine = [this]() -> std::function<void()> {
    const QPersistentModelIndex line = model_->index(list_->listIndex(), 0);
    const FlightRoute route = flight_->route();
    const std::string flight = flight_->flight();
    return [this, line, route, flight] {
      if (!line.isValid() || model_->cell(line.row(), kListFlight) != flight) return;
      model_->setCell(line.row(), kListDeparture, route.departure);
      model_->setCell(line.row(), kListDestination, route.destination);
      model_->setCell(line.row(), kListRemarks, route.remark);
    };
  };
  flight_ = new FlightEditor(editing_, isLineSelected, updateLine, column);
  flight_->setTitle(kNoTitleYet);
  title_ = new QLabel(QString::fromLatin1(kProgramTitle), column);
  title_->setObjectName(QStringLiteral("Label5"));
  title_->setWordWrap(true);
  title_->setAlignment(Qt::AlignCenter);
  QFont large = title_->font();
  large.setPointSizeF(large.pointSizeF() * 1.3);
  large.setBold(true);
  title_->setFont(large);

  auto* searchRow = new QHBoxLayout;
  searchRow->setSpacing(4);
  flightSearch_ = makeFlightSearchRow(kFlightSearchIndex, {}, column);
  rawLog_ = makeRawLogButton(column);
  searchRow->addWidget(flightSearch_, 1);
  searchRow->addWidget(rawLog_);

  auto* rows = new QGridLayout(column);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setVerticalSpacing(4);
  rows->addWidget(flight_, 0, 0);
  rows->addWidget(title_, 0, 0);
  rows->addLayout(searchRow, 1, 0);
  rows->addWidget(busy_, 2, 0);
  rows->setRowStretch(3, 1);
  keepPlaceWhenHidden(flight_);
  keepPlaceWhenHidden(busy_);
  // A larger font takes more.
  column->setMinimumWidth(qMax(kFlightColumnWidth, column->minimumSizeHint().width()));
  return column;
}

void DetailPanel::hideFrames() {
  lookUp_.stop();
  aircraftFrame_->hide();
  flight_->hide();
  airline_->hide();
  title_->show();
}

void DetailPanel::showSelectionAgain() {
  if (!aircraftFrame_->isVisible() && !lookUp_.isRunning()) showSelection();
}

void DetailPanel::showSelection() {
  editors_.wait(LineEditor::none, {});
  if (list_->listIndex() < 0) return;
  const auto photoAndAircraft = [this]() -> Result<JobProgress> {
    // The selection may have been given up again.
    if (list_->listIndex() < 0) return JobProgress::done;
    flightToShow_ = list_->selectedText(kListFlight);
    registration_ = list_->selectedText(kListRegistration);
    photo_->showPhoto(registration_);
    aircraftFrame_->setTitle(frameTitle(registration_));
    // A screen reader reads a frame's name and not its title.
    aircraftFrame_->setAccessibleName(
        tr("Aircraft: %1").arg(shownText(registration_, kLongestEntry)));
    equipment_->clear();
    const auto equipment = editing_.tables().equipmentOfLastLine(registration_);
    if (!equipment) return equipment.error();
    equipment_->setValue(toQString(*equipment));
    return JobProgress::more;
  };
  const auto route = [this]() -> Result<JobProgress> {
    flight_->setFlight(flightToShow_);
    flight_->setRoute(std::nullopt);
    const auto found = editing_.tables().flightRoute(flightToShow_);
    if (!found) return found.error();
    flight_->setRoute(*found);
    return JobProgress::more;
  };
  const auto airline = [this]() -> Result<JobProgress> {
    if (airline_->AirLineLoad(std::string(Left(flightToShow_, 2)))) showFrames();
    editors_.giveKeys();
    return JobProgress::done;
  };
  lookUp_.start({photoAndAircraft, route, airline});
}

void DetailPanel::readyEditor(LineEditor editor, const std::string& key) {
  editors_.wait(editor, key);
  if (!lookUp_.isRunning()) editors_.giveKeys();
}

void DetailPanel::showFrames() {
  aircraftFrame_->show();
  flight_->show();
  airline_->show();
  title_->hide();
}

void DetailPanel::openSelectedPhoto() {
  const int line = list_->listIndex();
  if (line < 0) return;
  openPhoto(context_.desktop, context_.folders, model_->cell(line, kListRegistration));
  model_->setCell(line, kListPict, "*");
}

void DetailPanel::saveEquipment() {
  if (list_->listIndex() < 0) {
    editing_.refuse(kNoLineSelected);
    return;
  }
  const QString typed = equipment_->value();
  if (!editing_.acceptTexts({typed})) return;
  // A line that was selected a moment ago may not be the one shown yet.
  const std::string registration = registration_;
  if (!editing_.acceptKey(toQString(registration))) return;
  const TableEdit edit = equipmentEdit(registration, typed.toStdString());
  const QPersistentModelIndex line = model_->index(list_->listIndex(), 0);
  editing_.rewrite(*enter_, edit, [this, line, registration, typed] {
    if (!line.isValid() || model_->cell(line.row(), kListRegistration) != registration) return;
    model_->setCell(line.row(), kListEquipment, typed.toStdString());
  });
}

}  // namespace vel
