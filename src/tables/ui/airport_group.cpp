#include "tables/ui/airport_group.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

#include "core/text.h"
#include "core/ui/capitals.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/shown_text_delegate.h"

namespace vel {
namespace {

constexpr const char* kNoCode = "Write 4-letter airport code. 4桁の空港コードを記入してください";

QPushButton* makeTransferButton(QWidget* parent, int index, const QString& toolTip) {
  auto* button = new QPushButton(QStringLiteral("<"), parent);
  button->setObjectName(QStringLiteral("Command3(%1)").arg(index));
  button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
  button->setToolTip(toolTip);
  button->setFixedWidth(26);
  return button;
}

}  // namespace

AirportGroup::AirportGroup(const TableEditing& editing, QWidget* parent)
    : QWidget(parent), editing_(editing) {
  auto* toDeparture = makeTransferButton(
      this, 0, tr("Takes the selected airport as departure\n選択した空港を出発空港に転送"));
  auto* toDestination = makeTransferButton(
      this, 1, tr("Takes the selected airport as destination\n選択した空港を到着空港に転送"));

  keyword_ = new QLineEdit(this);
  keyword_->setObjectName(QStringLiteral("Text3"));
  keyword_->setAccessibleName(tr("Airport keyword"));
  keyword_->setPlaceholderText(tr("Airport search / 空港検索"));
  keyword_->setToolTip(
      tr("Enter key words such as 3-letter airport code or a name of place here to see the "
         "candidates below.\n3レターや地名の一部を入力すると下に候補を表示"));
  keyword_->setClearButtonEnabled(true);
  names_ = new QStringListModel(this);
  candidates_ = new QListView(this);
  candidates_->setObjectName(QStringLiteral("List1"));
  candidates_->setAccessibleName(tr("Airport candidates"));
  candidates_->setModel(names_);
  candidates_->setItemDelegate(new ShownTextDelegate(candidates_));
  candidates_->setUniformItemSizes(true);
  candidates_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  candidates_->setTextElideMode(Qt::ElideMiddle);
  candidates_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  candidates_->setMinimumHeight(40);

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(4);
  grid->setVerticalSpacing(2);
  grid->addWidget(toDeparture, 0, 0);
  grid->addWidget(keyword_, 0, 1);
  grid->addWidget(toDestination, 1, 0);
  grid->addWidget(candidates_, 1, 1, 2, 1);
  grid->setRowStretch(2, 1);
  grid->setColumnStretch(1, 1);
  QWidget::setTabOrder(keyword_, candidates_);
  QWidget::setTabOrder(candidates_, toDeparture);
  QWidget::setTabOrder(toDeparture, toDestination);

  connect(keyword_, &QLineEdit::textChanged, this, &AirportGroup::search);
  connect(candidates_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &AirportGroup::showCodeOfSelected);
  connect(candidates_, &QListView::clicked, this, &AirportGroup::showCodeOfSelected);
  connect(toDeparture, &QPushButton::clicked, this,
          [this] { transferSelected(RouteEnd::departure); });
  connect(toDestination, &QPushButton::clicked, this,
          [this] { transferSelected(RouteEnd::destination); });
}

void AirportGroup::search() {
  const auto found =
      editing_.valueOrEnd(editing_.tables().airportNames(keyword_->text().toStdString()));
  QStringList shown;
  shown.reserve(static_cast<qsizetype>(found.size()));
  for (const std::string& name : found) shown.append(toQString(name));
  names_->setStringList(shown);
  candidates_->setToolTip(QString());
}

QModelIndex AirportGroup::selected() const {
  const QModelIndexList indexes = candidates_->selectionModel()->selectedIndexes();
  return indexes.isEmpty() ? QModelIndex() : indexes.front();
}

std::string AirportGroup::codeOf(const QModelIndex& candidate) const {
  const std::string name = candidate.data().toString().toStdString();
  return editing_.valueOrEnd(editing_.tables().airportCodeOfName(name));
}

void AirportGroup::showCodeOfSelected() {
  const QModelIndex candidate = selected();
  if (!candidate.isValid()) return;
  candidates_->setToolTip(plainToolTip(toQString(codeOf(candidate))));
}

void AirportGroup::transferSelected(RouteEnd end) {
  const QModelIndex candidate = selected();
  if (!candidate.isValid()) return;
  const std::string name = candidate.data().toString().toStdString();
  const std::string code = codeOf(candidate);
  if (!editing_.desktop().isEnding()) Q_EMIT transfer(end, code, name);
}

AirportEditor::AirportEditor(const TableEditing& editing, QWidget* parent)
    : QWidget(parent), editing_(editing) {
  enter_ = makeEnterButton(this, QStringLiteral("Command8"),
                           tr("Writes the airport to airport.csv\n空港をairport.csvに登録"));
  code_ = makeEditorBox(this, QStringLiteral("Text2(5)"), tr("Airport code to edit"),
                        tr("4-letter code\n4レター"), enter_);
  name_ = makeEditorBox(this, QStringLiteral("Text2(6)"), tr("Airport name to edit"),
                        tr("Airport name + 3Letter code. Please write 3letter code in this end.\n"
                           "空港名 + 3レター。末尾に3レターを記入"),
                        enter_);
  code_->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("WWWW")) + 16);

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(4);
  grid->setVerticalSpacing(0);
  auto* codeLabel = new QLabel(tr("4Letter"), this);
  codeLabel->setBuddy(code_);
  auto* nameLabel = new QLabel(tr("Name + 3Letter"), this);
  nameLabel->setBuddy(name_);
  grid->addWidget(codeLabel, 0, 0);
  grid->addWidget(nameLabel, 0, 1, 1, 2);
  grid->addWidget(code_, 1, 0);
  grid->addWidget(name_, 1, 1);
  grid->addWidget(enter_, 1, 2);
  grid->setColumnStretch(1, 1);
  QWidget::setTabOrder(code_, name_);
  QWidget::setTabOrder(name_, enter_);

  connect(code_, &QLineEdit::textChanged, this, &AirportEditor::showNameOfCode);
  connect(enter_, &QPushButton::clicked, this, &AirportEditor::saveAirport);
}

void AirportEditor::takeKeys(const std::string& code) {
  const bool isKey = length(code) == kAirportCodeLength;
  if (isKey) code_->setValue(toQString(code));
  EditorBox* box = isKey ? name_ : code_;
  box->setFocus();
  box->selectAll();
}

void AirportEditor::showNameOfCode() {
  if (length(code_->value().toStdString()) != kAirportCodeLength) {
    name_->clear();
    return;
  }
  makeCapitals(*code_);
  const auto name =
      editing_.valueOrEnd(editing_.tables().airportNameOfFirstLine(code_->value().toStdString()));
  name_->setValue(toQString(name.value_or("")));
}

bool acceptAirport(const TableEditing& editing, const QString& code, const QString& name,
                   TableEdit& edit) {
  if (length(code.toStdString()) != kAirportCodeLength) return editing.refuse(kNoCode);
  if (!editing.acceptTexts({code, name}) || !editing.acceptKey(code)) return false;
  edit = airportEdit(code.toStdString(), name.toStdString());
  return true;
}

void AirportEditor::saveAirport() {
  TableEdit edit;
  if (!acceptAirport(editing_, code_->value(), name_->value(), edit)) return;
  editing_.rewrite(*enter_, edit, [this] { Q_EMIT written(); });
}

}  // namespace vel
