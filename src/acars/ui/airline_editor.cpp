#include "acars/ui/airline_editor.h"

#include <QGridLayout>
#include <utility>

#include "core/ui/qt_desktop.h"
#include "core/ui/small_title.h"

namespace vel {
namespace {

// What stands in for a field that the table does not have.
constexpr QColor kLightGrey(0xC0, 0xC0, 0xC0);

// What a box takes beside its text.
constexpr int kCodeMargins = 14;

}  // namespace

AirlineEditor::AirlineEditor(const TableEditing& editing, IsLineSelected isLineSelected,
                             RowUpdate rowUpdate, QWidget* parent)
    : QGroupBox(tr("Airline"), parent),
      editing_(editing),
      isLineSelected_(std::move(isLineSelected)),
      rowUpdate_(std::move(rowUpdate)) {
  setObjectName(QStringLiteral("Frame3"));
  setAccessibleName(tr("Airline"));
  enter_ = makeEnterButton(this, QStringLiteral("Command6"),
                           tr("Writes the airline to letter.csv\n航空会社をletter.csvに登録"));
  threeLetter_ = makeEditorBox(this, QStringLiteral("Text2(3)"), tr("Airline 3-letter code"),
                               tr("3-letter code of the airline\n航空会社の3レター"), enter_);
  display_ = makeEditorBox(this, QStringLiteral("Text2(4)"), tr("Airline name"),
                           tr("Name to display\n表示名"), enter_);
  company_ = makeEditorBox(
      this, QStringLiteral("Text2(7)"), tr("Company name"),
      tr("Company name, where letter.csv has a fourth field\n会社名（letter.csvに4項目ある場合）"),
      enter_);

  // A code is seen whole, whatever the letters' size and font.
  const int codeWidth = fontMetrics().horizontalAdvance(QStringLiteral("ABC")) + kCodeMargins;
  threeLetter_->setMinimumWidth(qMax(codeWidth, threeLetter_->minimumSizeHint().width()));
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(6, 1, 6, 3);
  grid->setHorizontalSpacing(4);
  grid->setVerticalSpacing(2);
  auto* threeLetterLabel = new QLabel(QStringLiteral("3Letter"), this);
  threeLetterLabel->setBuddy(threeLetter_);
  auto* displayLabel = new QLabel(QStringLiteral("Display"), this);
  displayLabel->setBuddy(display_);
  companyLabel_ = new QLabel(QStringLiteral("Company"), this);
  companyLabel_->setObjectName(QStringLiteral("Label2(7)"));
  companyLabel_->setBuddy(company_);
  grid->addWidget(threeLetterLabel, 0, 0);
  grid->addWidget(threeLetter_, 0, 1);
  grid->addWidget(enter_, 0, 2);
  grid->addWidget(displayLabel, 1, 0);
  grid->addWidget(display_, 1, 1, 1, 2);
  grid->addWidget(companyLabel_, 2, 0);
  grid->addWidget(company_, 2, 1, 1, 2);
  grid->setColumnStretch(1, 1);
  QWidget::setTabOrder(threeLetter_, display_);
  QWidget::setTabOrder(display_, company_);
  QWidget::setTabOrder(company_, enter_);
  useSmallTitle(*this);
  setFourFields(false);
  connect(enter_, &QPushButton::clicked, this, &AirlineEditor::saveAirline);
}

bool AirlineEditor::AirLineLoad(const std::string& prefix) {
  threeLetter_->clear();
  display_->clear();
  company_->clear();
  prefix_ = prefix;
  const Airline airline = editing_.valueOrEnd(editing_.tables().airlineOf(prefix));
  if (editing_.desktop().isEnding()) return false;
  if (airline.found) {
    threeLetter_->setValue(toQString(airline.threeLetter));
    display_->setValue(toQString(airline.display));
    company_->setValue(toQString(airline.company));
  }
  setFourFields(airline.fourFields);
  return true;
}

void AirlineEditor::takeKeys() {
  threeLetter_->setFocus();
  threeLetter_->selectAll();
}

void AirlineEditor::setFourFields(bool fourFields) {
  fourFields_ = fourFields;
  company_->setEnabled(fourFields);
  QPalette box;
  QPalette label;
  if (!fourFields) {
    box.setColor(QPalette::Disabled, QPalette::Base, kLightGrey);
    label.setColor(QPalette::WindowText, kLightGrey);
  }
  company_->setPalette(box);
  companyLabel_->setPalette(label);
}

void AirlineEditor::saveAirline() {
  if (!isLineSelected_()) {
    editing_.refuse(kNoLineSelected);
    return;
  }
  if (!editing_.acceptTexts({threeLetter_->value(), display_->value()})) return;
  // A comma in the company name is let through: only what cannot be stored is not.
  if (!editing_.canStore(company_->value())) return;
  if (!editing_.acceptKey(toQString(prefix_))) return;
  Airline edited;
  edited.threeLetter = threeLetter_->value().toStdString();
  edited.display = display_->value().toStdString();
  edited.company = company_->value().toStdString();
  edited.fourFields = fourFields_;
  editing_.rewrite(*enter_, airlineEdit(prefix_, edited), rowUpdate_());
}

}  // namespace vel
