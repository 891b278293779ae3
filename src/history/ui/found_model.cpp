#include "history/ui/found_model.h"

#include <algorithm>
#include <utility>

#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"

namespace vel {

FoundModel::FoundModel(const FoundMessages& found, QObject* parent)
    : DraggedRowsModel(parent), found_(found) {}

void FoundModel::beginClear() {
  beginResetModel();
  order_.clear();
  order_.shrink_to_fit();
  looked_ = 0;
}

void FoundModel::endClear() {
  filter_ = {};
  endResetModel();
}

void FoundModel::publish() {
  const FoundOrder order(found_, sort_);
  std::vector<FoundPlace> added;
  for (; looked_ < found_.size(); ++looked_) {
    if (filter_.isEmpty() || filter_.passes(found_, looked_)) {
      added.push_back(order.placeOf(looked_));
    }
  }
  if (added.empty()) return;
  const int shown = rowCount();
  beginInsertRows({}, shown, shown + static_cast<int>(added.size()) - 1);
  order_.insert(order_.end(), added.begin(), added.end());
  endInsertRows();
  if (!order.isSorted()) return;
  Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const QModelIndexList before = persistentIndexList();
  std::vector<FoundPlace> places;
  for (const QModelIndex& index : before) {
    places.push_back(order_[static_cast<std::size_t>(index.row())]);
  }
  const auto middle = order_.begin() + shown;
  std::sort(middle, order_.end(), order);
  std::inplace_merge(order_.begin(), middle, order_.end(), order);
  for (qsizetype i = 0; i < before.size(); ++i) {
    const auto at =
        std::lower_bound(order_.begin(), order_.end(), places[static_cast<std::size_t>(i)], order);
    changePersistentIndex(before[i],
                          index(static_cast<int>(at - order_.begin()), before[i].column()));
  }
  Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void FoundModel::setOrder(FoundFilter filter, FoundSort sort, std::vector<FoundPlace> order,
                          std::size_t looked) {
  beginResetModel();
  filter_ = std::move(filter);
  sort_ = sort;
  order_ = std::move(order);
  looked_ = looked;
  endResetModel();
}

std::size_t FoundModel::messageAt(int shownIndex) const {
  return order_[static_cast<std::size_t>(shownIndex)].index;
}

int FoundModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int FoundModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(kFoundColumns);
}

QVariant FoundModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
  const QString text = toQString(found_.cell(messageAt(index.row()), index.column()));
  // What is copied or filtered by is the text itself.
  return role == Qt::DisplayRole ? shownText(text) : text;
}

QVariant FoundModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  static constexpr const char* kTitles[kFoundColumns] = {
      "Date", "Time", "Source", "Flight", "Regist.", "From", "To", "Equipment", "Text"};
  if (role == Qt::DisplayRole && section >= 0 && section < kFoundColumns) {
    return tr(kTitles[section]);
  }
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignLeft | Qt::AlignVCenter};
  if (role == Qt::ToolTipRole) {
    return tr("Click to sort; click again for the other direction\nクリックで並べ替え");
  }
  return {};
}

}  // namespace vel
