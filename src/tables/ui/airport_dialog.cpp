#include "tables/ui/airport_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <utility>

#include "core/helpers.h"
#include "core/text.h"
#include "core/ui/capitals.h"
#include "core/ui/qt_desktop.h"
#include "tables/ui/airport_group.h"
#include "tables/ui/flight_editor.h"

namespace vel {

AirportDialog::AirportDialog(const TableEditing& editing, const QString& callerText,
                             SearchAddress searchAddress, QWidget* parent)
    : QDialog(parent),
      editing_(editing),
      callerText_(callerText),
      searchAddress_(std::move(searchAddress)) {
  setObjectName(QStringLiteral("AirportDialog"));
  setWindowTitle(tr("Airport"));

  enter_ = new QPushButton(QStringLiteral("Enter"), this);
  enter_->setObjectName(QStringLiteral("OKButton"));
  enter_->setDefault(true);
  enter_->setToolTip(tr("Writes the airport to airport.csv\n空港をairport.csvに登録"));
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
  cancel->setObjectName(QStringLiteral("CancelButton"));
  auto* search = new QPushButton(tr("Web search"), this);
  search->setObjectName(QStringLiteral("Command6"));
  search->setAccessibleName(tr("Web search for the code"));
  search->setToolTip(tr("Searches the web for this code\n空港コードをWebで検索"));
  search->setAutoDefault(false);
  code_ = new EditorBox(this);
  code_->setObjectName(QStringLiteral("Text1(0)"));
  code_->setAccessibleName(tr("4-letter airport code"));
  name_ = new EditorBox(this);
  name_->setObjectName(QStringLiteral("Text1(1)"));
  name_->setAccessibleName(tr("Airport name and 3-letter code"));
  name_->setMinimumWidth(fontMetrics().averageCharWidth() * 50);

  auto* grid = new QGridLayout(this);
  auto* codeLabel = new QLabel(QStringLiteral("4Letter code"), this);
  codeLabel->setBuddy(code_);
  auto* nameLabel = new QLabel(QStringLiteral("Airport name + 3Letter code"), this);
  nameLabel->setBuddy(name_);
  auto* codeRow = new QHBoxLayout;
  code_->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("WWWWW")) + 20);
  codeRow->addWidget(code_);
  codeRow->addWidget(search);
  codeRow->addStretch();
  grid->addWidget(codeLabel, 0, 0);
  grid->addLayout(codeRow, 0, 1);
  grid->addWidget(nameLabel, 1, 0);
  grid->addWidget(name_, 1, 1);
  grid->addWidget(
      new QLabel(tr("Please write 3letter code in this end.\n末尾に3レターを記入してください。"),
                 this),
      2, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(enter_);
  buttons->addWidget(cancel);
  grid->addLayout(buttons, 3, 0, 1, 2);

  QWidget::setTabOrder(code_, search);
  QWidget::setTabOrder(search, name_);
  QWidget::setTabOrder(name_, enter_);
  QWidget::setTabOrder(enter_, cancel);

  connect(code_, &QLineEdit::textChanged, this, &AirportDialog::showNameOfCode);
  connect(enter_, &QPushButton::clicked, this, &AirportDialog::saveAirport);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(search, &QPushButton::clicked, this, &AirportDialog::searchWeb);
}

void AirportDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // The user types the 3-letter code behind the blank.
  name_->setValue(callerText_ + QLatin1Char(' '));
  code_->setFocus();
}

void AirportDialog::showNameOfCode() {
  makeCapitals(*code_);
  const auto name =
      editing_.valueOrEnd(editing_.tables().airportNameOfFirstLine(code_->value().toStdString()));
  if (editing_.desktop().isEnding()) {
    reject();
    return;
  }
  if (name) name_->setValue(toQString(*name));
}

void AirportDialog::saveAirport() {
  TableEdit edit;
  if (!acceptAirport(editing_, code_->value(), name_->value(), edit)) return;
  isWriting_ = true;
  editing_.rewrite(
      *enter_, edit,
      [dialog = QPointer(this)] {
        if (dialog == nullptr) return;
        dialog->code_->clear();
        dialog->accept();
      },
      [dialog = QPointer(this)] {
        if (dialog != nullptr) dialog->writingGivenUp();
      });
}

void AirportDialog::writingGivenUp() {
  isWriting_ = false;
  if (editing_.desktop().isEnding()) reject();
}

void AirportDialog::reject() {
  if (!isWriting_ || editing_.desktop().isEnding()) QDialog::reject();
}

void AirportDialog::searchWeb() {
  ShellOpen(editing_.desktop(), searchAddress_(code_->value().toStdString()));
}

void joinAirports(FlightEditor& flight, AirportGroup& candidates, AirportEditor& editor,
                  const TableEditing& editing, const AirportDialog::SearchAddress& searchAddress) {
  QObject::connect(&candidates, &AirportGroup::transfer, &flight, &FlightEditor::setAirport);
  QObject::connect(&editor, &AirportEditor::written, &flight, &FlightEditor::showAirportNames);
  QObject::connect(&flight, &FlightEditor::airportNameChosen, &flight,
                   [&flight, &editing, searchAddress](const QString& name) {
                     AirportDialog dialog(editing, name, searchAddress, flight.window());
                     if (dialog.exec() == QDialog::Accepted) flight.showAirportNames();
                   });
}

}  // namespace vel
