#include "exchange/ui/difference_model.h"

#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"

namespace vel {

DifferenceModel::DifferenceModel(const Encoding& encoding, QObject* parent)
    : DraggedRowsModel(parent), encoding_(encoding) {}

void DifferenceModel::setPlan(ImportPlan* plan) {
  beginResetModel();
  plan_ = plan;
  endResetModel();
}

DifferenceModel::Place DifferenceModel::placeOf(int row) const {
  auto left = static_cast<std::size_t>(row);
  for (TablePlan& table : plan_->tables) {
    if (left < table.differences.size()) return {&table, &table.differences[left]};
    left -= table.differences.size();
  }
  return {nullptr, nullptr};
}

void DifferenceModel::tickAll(bool ticked) {
  if (rowCount() == 0) return;
  for (TablePlan& table : plan_->tables) {
    for (const ImportDifference& each : table.differences) {
      table.records->setIncluded(each.record, ticked);
    }
  }
  Q_EMIT dataChanged(index(0, kTick), index(rowCount() - 1, kTick), {Qt::CheckStateRole});
  Q_EMIT ticksChanged();
}

void DifferenceModel::toggle(const QModelIndexList& rows) {
  for (const QModelIndex& row : rows) {
    const QModelIndex tick = row.siblingAtColumn(kTick);
    const bool isTicked = tick.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    setData(tick, isTicked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
  }
}

int DifferenceModel::ticked() const {
  int count = 0;
  if (plan_ == nullptr) return count;
  for (const TablePlan& table : plan_->tables) {
    for (const ImportDifference& each : table.differences) {
      if (table.records->isIncluded(each.record)) ++count;
    }
  }
  return count;
}

int DifferenceModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() || plan_ == nullptr) return 0;
  std::size_t rows = 0;
  for (const TablePlan& table : plan_->tables) rows += table.differences.size();
  return static_cast<int>(rows);
}

int DifferenceModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int{kColumns};
}

QString DifferenceModel::lineText(Table table, std::string_view line) const {
  QStringList fields;
  for (const std::string& field : fieldsOfLine(encoding_, table, line)) fields << toQString(field);
  return fields.join(QStringLiteral(", "));
}

QVariant DifferenceModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const Place place = placeOf(index.row());
  const std::size_t record = place.difference->record;
  if (role == Qt::CheckStateRole && index.column() == kTick) {
    return place.table->records->isIncluded(record) ? Qt::Checked : Qt::Unchecked;
  }
  if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole) return {};
  const Table table = place.table->table();
  QString text;
  if (index.column() == kTable) text = toQString(tableName(table));
  if (index.column() == kBefore) text = lineText(table, place.difference->before);
  if (index.column() == kAfter) text = lineText(table, place.table->records->record(record));
  if (role == Qt::EditRole) return text;
  if (role == Qt::DisplayRole) return shownText(text);
  return text.isEmpty() ? QVariant() : plainToolTip(shownText(text));
}

bool DifferenceModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::CheckStateRole || index.column() != kTick) return false;
  const Place place = placeOf(index.row());
  place.table->records->setIncluded(place.difference->record, value.toInt() == Qt::Checked);
  Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
  Q_EMIT ticksChanged();
  return true;
}

QVariant DifferenceModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignLeft | Qt::AlignVCenter};
  if (role != Qt::DisplayRole) return {};
  switch (section) {
    case kTick:
      return tr("Take");
    case kTable:
      return tr("Table");
    case kBefore:
      return tr("In the table 現在");
    default:
      return tr("From the file 取込み");
  }
}

Qt::ItemFlags DifferenceModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = DraggedRowsModel::flags(index);
  const bool hasTick = index.isValid() && index.column() == kTick;
  return hasTick ? flags | Qt::ItemIsUserCheckable : flags;
}

}  // namespace vel
