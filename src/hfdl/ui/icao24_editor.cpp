#include "hfdl/ui/icao24_editor.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

#include "core/ui/capitals.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/small_title.h"
#include "hfdl/hfdl_row.h"

namespace vel {
namespace {

constexpr const char* kNoAddress = "ICAO24コードが記入されていません。";

}  // namespace

Icao24Editor::Icao24Editor(const TableEditing& editing, RowUpdate rowUpdate, QWidget* parent)
    : QGroupBox(parent), editing_(editing), rowUpdate_(std::move(rowUpdate)) {
  setObjectName(QStringLiteral("Frame1"));
  setAccessibleName(tr("Aircraft"));
  enter_ = makeEnterButton(this, QStringLiteral("Command1"),
                           tr("Writes the aircraft to ICAO24.csv\n機体をICAO24.csvに登録"));
  paste_ = new QPushButton(tr("From clipboard"), this);
  paste_->setObjectName(QStringLiteral("Command4"));
  paste_->setAccessibleName(tr("Aircraft from the clipboard"));
  paste_->setToolTip(
      tr("Fills 3Letter, 2Letter, Regist and Equip. from a result line copied on Airframes\n"
         "Airframesの検索結果をコピーして押すと3レター、2レター、レジ、機種を記入"));

  // Captions stand above their boxes: the frame is narrow.
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 3, 6, 1);
  rows->setSpacing(1);
  const auto addRow = [rows] {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(0);
    rows->addLayout(grid);
    return grid;
  };
  QGridLayout* codes = addRow();
  addBox(codes, kAddress, QStringLiteral("ICAO24"), tr("ICAO 24-bit address"),
         tr("ICAO 24-bit address\nICAO 24ビットアドレス"), QStringLiteral("000000"));
  addBox(codes, kThreeLetter, QStringLiteral("3Letter"), tr("Airline 3-letter code"),
         tr("3-letter code of the airline; the 2-letter code follows\n"
            "航空会社の3レター。2レターも記入されます"),
         QStringLiteral("WWW"));
  addBox(codes, kTwoLetter, QStringLiteral("2Letter"), tr("Airline 2-letter code"),
         tr("2-letter code of the airline; the 3-letter code follows\n"
            "航空会社の2レター。3レターも記入されます"),
         QStringLiteral("WW"));
  QGridLayout* aircraft = addRow();
  addBox(aircraft, kRegistration, QStringLiteral("Regist"), tr("Registration"),
         tr("Registration; its type is looked up in aircraft.csv\n"
            "機体番号。機種はaircraft.csvから記入"),
         QStringLiteral("WW-00000"));
  addBox(aircraft, kEquipment, QStringLiteral("Equip."), tr("Equipment"), tr("Aircraft type\n機種"),
         QStringLiteral("000000"));
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(paste_);
  buttons->addStretch();
  buttons->addWidget(enter_);
  rows->addLayout(buttons);
  useSmallTitle(*this);
  for (QLabel* label : findChildren<QLabel*>()) label->setFont(font());
  QWidget::setTabOrder(boxes_[kEquipment], enter_);
  QWidget::setTabOrder(enter_, paste_);

  connect(enter_, &QPushButton::clicked, this, &Icao24Editor::saveAircraft);
  connect(paste_, &QPushButton::clicked, this, &Icao24Editor::pasteAircraft);
}

void Icao24Editor::addBox(QGridLayout* grid, Box box, const QString& caption,
                          const QString& accessibleName, const QString& toolTip,
                          const QString& widestText) {
  constexpr int kBoxFrame = 12;
  EditorBox* edit = makeEditorBox(this, QStringLiteral("Text1(%1)").arg(static_cast<int>(box)),
                                  accessibleName, toolTip, enter_);
  edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(widestText) + kBoxFrame);
  auto* label = new QLabel(caption, this);
  label->setBuddy(edit);
  const int column = grid->columnCount();
  grid->addWidget(label, 0, column);
  grid->addWidget(edit, 1, column);
  grid->setColumnStretch(column, 1);
  boxes_[box] = edit;
  connect(edit, &QLineEdit::textChanged, this, [this, box] { boxChanged(box); });
}

std::string Icao24Editor::text(Box box) const { return boxes_[box]->value().toStdString(); }

void Icao24Editor::write(std::initializer_list<std::pair<Box, std::string>> texts) {
  const bool before = std::exchange(writing_, true);
  for (const auto& [box, text] : texts) boxes_[box]->setValue(toQString(text));
  writing_ = before;
}

void Icao24Editor::setAddress(const std::string& address) {
  setTitle(frameTitle(address));
  // A screen reader reads a frame's name and not its title.
  setAccessibleName(tr("Aircraft: %1").arg(shownText(address, kLongestEntry)));
  write({{kAddress, address},
         {kThreeLetter, {}},
         {kTwoLetter, {}},
         {kRegistration, {}},
         {kEquipment, {}}});
}

void Icao24Editor::setAircraft(const Icao24Record& record) {
  write({{kThreeLetter, record[kThreeLetter]},
         {kTwoLetter, record[kTwoLetter]},
         {kRegistration, record[kRegistration]},
         {kEquipment, record[kEquipment]}});
}

void Icao24Editor::takeKeys() {
  boxes_[kThreeLetter]->setFocus();
  boxes_[kThreeLetter]->selectAll();
}

void Icao24Editor::boxChanged(Box changed) {
  if (writing_) return;
  writing_ = true;
  const Tables& tables = editing_.tables();
  if (changed == kThreeLetter || changed == kTwoLetter) {
    makeCapitals(*boxes_[changed]);
    const bool fromTwo = changed == kTwoLetter;
    const std::string other =
        fromTwo ? editing_.valueOrEnd(tables.threeLetterCodeOf(text(changed))).value_or("")
                : editing_.valueOrEnd(tables.prefixOf(text(changed)));
    write({{fromTwo ? kThreeLetter : kTwoLetter, other}});
  } else if (changed == kRegistration) {
    write({{kEquipment, editing_.valueOrEnd(tables.equipmentOfFirstLine(text(kRegistration)))}});
  }
  writing_ = false;
}

void Icao24Editor::saveAircraft() {
  const bool accepted = editing_.acceptTexts(
      {boxes_[kAddress]->value(), boxes_[kThreeLetter]->value(), boxes_[kTwoLetter]->value(),
       boxes_[kRegistration]->value(), boxes_[kEquipment]->value()});
  if (!accepted) return;
  if (boxes_[kAddress]->value().isEmpty()) {
    editing_.refuse(kNoAddress);
    return;
  }
  if (!editing_.acceptKey(boxes_[kAddress]->value())) return;
  Icao24Record record;
  for (std::size_t i = 0; i < record.size(); ++i) record[i] = text(static_cast<Box>(i));
  editing_.rewrite(*enter_, aircraftEdit(record), [this, record] { rowUpdate_(record); });
}

void Icao24Editor::pasteAircraft() {
  const auto copied = copiedAircraft(editing_.desktop().clipboardText());
  if (!copied) {
    editing_.refuse(kNoCopiedAircraft);
    return;
  }
  write({{kRegistration, copied->registration},
         {kThreeLetter, copied->threeLetter},
         {kTwoLetter, copied->twoLetter},
         {kEquipment, copied->equipment}});
}

}  // namespace vel
