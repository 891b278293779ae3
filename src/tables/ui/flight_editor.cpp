#include "tables/ui/flight_editor.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <utility>

#include "core/text.h"
#include "core/ui/elided_button.h"
#include "core/ui/narrow_letters.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/small_title.h"
#include "tables/route_paste.h"

namespace vel {
namespace {

constexpr const char* kNoDeparture = "Departure airport not filled. 出発空港が記入されていません";
constexpr const char* kNoDestination =
    "Destination airport not filled. 到着空港が記入されていません";

// In pixels: the guided tour stands right of the button that follows them.
constexpr int kRemarkLabelWidth = 47;
constexpr int kRemarkWidth = 110;

// As much of what was looked for is shown in a notice.
constexpr qsizetype kLongestLookedFor = 24;

constexpr std::array<RouteEnd, 2> kRouteEnds = {RouteEnd::departure, RouteEnd::destination};

QString label2(int index) { return QStringLiteral("Label2(%1)").arg(index); }

QLabel* makeNotice(QWidget* parent, int index) {
  auto* notice = new QLabel(parent);
  notice->setObjectName(QStringLiteral("Notice(%1)").arg(index));
  notice->setTextFormat(Qt::PlainText);
  notice->setStyleSheet(QStringLiteral("color:#8a1c1c"));
  // It shares the row with the name, and makes the frame no wider.
  notice->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  notice->hide();
  return notice;
}

}  // namespace

FlightEditor::FlightEditor(const TableEditing& editing, IsLineSelected isLineSelected,
                           RowUpdate rowUpdate, QWidget* parent)
    : QGroupBox(parent),
      editing_(editing),
      isLineSelected_(std::move(isLineSelected)),
      rowUpdate_(std::move(rowUpdate)) {
  setObjectName(QStringLiteral("Frame2"));
  setAccessibleName(tr("Flight"));

  enter_ = makeEnterButton(this, QStringLiteral("Command2"),
                           tr("Writes the route to FLIGHT.csv\n経路をFLIGHT.csvに登録"));
  departure_ =
      makeEditorBox(this, QStringLiteral("Text2(0)"), tr("Departure airport"),
                    tr("4-letter code of the departure airport\n出発空港の4レター"), enter_);
  destination_ =
      makeEditorBox(this, QStringLiteral("Text2(1)"), tr("Destination airport"),
                    tr("4-letter code of the destination airport\n到着空港の4レター"), enter_);
  remark_ = makeEditorBox(this, QStringLiteral("Text2(2)"), tr("Flight remark"),
                          tr("Remark on the flight\n便の備考"), enter_);
  const int codeWidth = fontMetrics().horizontalAdvance(QStringLiteral("WWWW")) + 16;
  departure_->setFixedWidth(codeWidth);
  destination_->setFixedWidth(codeWidth);
  const int remarkWidth = fontMetrics().horizontalAdvance(QStringLiteral("000000000000")) + 16;
  remark_->setFixedWidth(qMin(remarkWidth, kRemarkWidth));
  paste_ = new QPushButton(tr("Paste…"), this);
  paste_->setObjectName(QStringLiteral("Command13"));
  paste_->setAccessibleName(tr("Route from the clipboard"));
  paste_->setFixedWidth(paste_->fontMetrics().horizontalAdvance(paste_->text()) + 22);
  paste_->setToolTip(
      tr("Takes a route from a copied text with From (…) and to (…)\n"
         "コピーしたテキストから経路を取得"));

  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 0, 6, 3);
  rows->setSpacing(2);
  auto* codes = new QHBoxLayout;
  codes->setSpacing(4);
  codes->addWidget(new QLabel(tr("DEPT"), this));
  codes->addWidget(departure_);
  codes->addWidget(new QLabel(tr("DEST"), this));
  codes->addWidget(destination_);
  codes->addStretch();
  codes->addWidget(paste_);
  rows->addLayout(codes);
  for (std::size_t i = 0; i < names_.size(); ++i) {
    auto* name = new ElidedButton(this);
    name->setObjectName(label2(static_cast<int>(i) + 4));
    name->setAccessibleName(i == 0 ? tr("Departure airport name") : tr("Destination airport name"));
    name->setHint(tr("Click to edit this airport\nクリックで空港を編集"));
    connect(name, &QPushButton::clicked, this,
            [this, name] { Q_EMIT airportNameChosen(name->text()); });
    names_[i] = name;
    notices_[i] = makeNotice(this, static_cast<int>(i));
    auto* nameRow = new QHBoxLayout;
    nameRow->setSpacing(4);
    nameRow->addWidget(name, 1);
    nameRow->addWidget(notices_[i], 1);
    rows->addLayout(nameRow);
  }
  auto* remarkRow = new QHBoxLayout;
  remarkRow->setSpacing(4);
  auto* remarkLabel = new QLabel(tr("Remark"), this);
  remarkLabel->setBuddy(remark_);
  remarkRow->addWidget(remarkLabel);
  remarkRow->addWidget(remark_);
  remarkRow->addWidget(enter_);
  remarkRow->addStretch();
  rows->addLayout(remarkRow);
  QWidget::setTabOrder(departure_, destination_);
  QWidget::setTabOrder(destination_, remark_);
  QWidget::setTabOrder(remark_, enter_);

  useSmallTitle(*this);
  narrowLetters(*remarkLabel, remarkLabel->sizeHint().width(), kRemarkLabelWidth);

  connect(departure_, &QLineEdit::textChanged, this,
          [this] { showAirportName(RouteEnd::departure); });
  connect(destination_, &QLineEdit::textChanged, this,
          [this] { showAirportName(RouteEnd::destination); });
  connect(enter_, &QPushButton::clicked, this, &FlightEditor::saveRoute);
  connect(paste_, &QPushButton::clicked, this, &FlightEditor::offerCopiedRoutes);
}

void FlightEditor::setFlight(const std::string& flight) {
  flight_ = flight;
  setTitle(frameTitle(flight));
  // A screen reader reads a frame's name and not its title.
  setAccessibleName(flight.empty() ? tr("Flight")
                                   : tr("Flight: %1").arg(shownText(flight, kLongestEntry)));
}

void FlightEditor::setRoute(const std::optional<FlightRoute>& route) {
  const FlightRoute shown = route.value_or(FlightRoute());
  for (QLabel* notice : notices_) notice->hide();
  departure_->setValue(toQString(shown.departure));
  destination_->setValue(toQString(shown.destination));
  remark_->setValue(toQString(shown.remark));
}

FlightRoute FlightEditor::route() const {
  return {departure_->value().toStdString(), destination_->value().toStdString(),
          remark_->value().toStdString()};
}

EditorBox& FlightEditor::boxOf(RouteEnd end) const {
  return end == RouteEnd::departure ? *departure_ : *destination_;
}

QLabel& FlightEditor::noticeOf(RouteEnd end) const {
  return *notices_[static_cast<std::size_t>(end)];
}

void FlightEditor::setAirport(RouteEnd end, const std::string& code, const std::string& lookedFor) {
  QLabel& notice = noticeOf(end);
  notice.setVisible(code.empty());
  if (code.empty()) {
    notice.setText(tr("Not in airport.csv / 未登録: %1")
                       .arg(shownText(std::string_view(lookedFor), kLongestLookedFor)));
    notice.setToolTip(plainToolTip(notice.text()));
    return;
  }
  boxOf(end).setValue(toQString(code));
}

void FlightEditor::takeKeys() {
  departure_->setFocus();
  departure_->selectAll();
}

void FlightEditor::showAirportNames() {
  for (const RouteEnd end : kRouteEnds) {
    if (!editing_.desktop().isEnding()) showAirportName(end);
  }
}

void FlightEditor::showAirportName(RouteEnd end) {
  noticeOf(end).hide();
  const std::string code = boxOf(end).value().toStdString();
  const std::string name = editing_.valueOrEnd(editing_.tables().airportNameOfLastLine(code));
  names_[static_cast<std::size_t>(end)]->showText(toQString(name));
}

void FlightEditor::saveRoute() {
  if (!isLineSelected_()) {
    editing_.refuse(kNoLineSelected);
    return;
  }
  const FlightRoute edited = route();
  if (length(edited.departure) != kAirportCodeLength) {
    editing_.refuse(kNoDeparture);
    return;
  }
  if (length(edited.destination) != kAirportCodeLength) {
    editing_.refuse(kNoDestination);
    return;
  }
  if (!editing_.acceptTexts({departure_->value(), destination_->value(), remark_->value()})) return;
  if (!editing_.acceptKey(toQString(flight_))) return;
  if (edited.remark.empty()) remark_->setText(QString::fromLatin1(kNoRemark));
  editing_.rewrite(*enter_, flightEdit(flight_, edited), rowUpdate_());
}

void FlightEditor::offerCopiedRoutes() {
  const std::vector<std::string> routes = routePairs(editing_.desktop().clipboardText());
  QMenu menu(this);
  menu.setObjectName(QStringLiteral("RouteMenu"));
  if (routes.empty()) {
    menu.addAction(tr("No route in the clipboard / クリップボードに経路がありません"))
        ->setEnabled(false);
  }
  for (const std::string& route : routes) {
    menu.addAction(withoutShortcut(toQString(route)), this, [this, route] { takeRoute(route); });
  }
  menu.exec(paste_->mapToGlobal(QPoint(0, paste_->height())));
}

void FlightEditor::takeRoute(std::string_view pair) {
  const auto codes = split(pair, '>');
  for (const RouteEnd end : kRouteEnds) {
    const std::string shortCode(codes[static_cast<std::size_t>(end)]);
    const std::string code =
        editing_.valueOrEnd(editing_.tables().airportCodeOfThreeLetters(shortCode));
    if (editing_.desktop().isEnding()) return;
    setAirport(end, code, shortCode);
  }
}

}  // namespace vel
