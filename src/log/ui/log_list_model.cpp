#include "log/ui/log_list_model.h"

#include <algorithm>
#include <utility>

#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"

namespace vel {

LogListModel::LogListModel(const Encoding& encoding, char separator, const QStringList& titles,
                           NumberText numberText, QObject* parent)
    : DraggedRowsModel(parent),
      encoding_(encoding),
      rows_(separator),
      titles_(titles),
      numberText_(std::move(numberText)) {}

LogListModel::Place LogListModel::placeOf(std::size_t row) const {
  Place place{0, static_cast<std::uint32_t>(row), false};
  if (sortColumn_ <= 0) return place;
  const std::string_view text = rows_.field(row, static_cast<std::size_t>(sortColumn_ - 1));
  constexpr std::size_t kKeyBytes = sizeof place.key;
  for (std::size_t i = 0; i < kKeyBytes; ++i) {
    const auto byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    place.key = place.key << 8 | byte;
  }
  place.longer = text.size() > kKeyBytes;
  return place;
}

bool LogListModel::before(const Place& left, const Place& right) const {
  const bool ascending = sortOrder_ == Qt::AscendingOrder;
  if (left.key != right.key) return (left.key < right.key) == ascending;
  if (left.longer || right.longer) {
    const auto field = static_cast<std::size_t>(sortColumn_ - 1);
    const int order = rows_.field(left.row, field).compare(rows_.field(right.row, field));
    if (order != 0) return (order < 0) == ascending;
  }
  if (sortColumn_ == 0) return (left.row < right.row) == ascending;
  return left.row < right.row;
}

void LogListModel::publish() {
  const std::size_t shown = order_.size();
  const std::size_t total = rows_.size();
  if (shown == total) return;
  beginInsertRows({}, static_cast<int>(shown), static_cast<int>(total) - 1);
  for (std::size_t row = shown; row < total; ++row) order_.push_back(placeOf(row));
  endInsertRows();
  if (sortColumn_ < 0) return;
  applyOrder([&] {
    const auto compare = [this](const Place& left, const Place& right) {
      return before(left, right);
    };
    const auto middle = order_.begin() + static_cast<std::ptrdiff_t>(shown);
    std::sort(middle, order_.end(), compare);
    std::inplace_merge(order_.begin(), middle, order_.end(), compare);
  });
}

void LogListModel::clear() {
  beginResetModel();
  rows_.clear();
  order_.clear();
  order_.shrink_to_fit();
  backgrounds_.clear();
  endResetModel();
}

int LogListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int LogListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(titles_.size());
}

QVariant LogListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  if (role == Qt::DisplayRole) return shownCell(index.row(), index.column());
  if (role == Qt::EditRole) return toQString(cell(index.row(), index.column()));
  if (role == Qt::ToolTipRole) return plainToolTip(shownCell(index.row(), index.column()));
  if (role == Qt::BackgroundRole && !backgrounds_.empty()) {
    const std::size_t row = rowAt(index.row());
    const auto found = std::find_if(backgrounds_.begin(), backgrounds_.end(),
                                    [&](const auto& entry) { return entry.first == row; });
    if (found != backgrounds_.end()) return found->second;
  }
  return {};
}

QVariant LogListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return titles_.value(section);
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignLeft | Qt::AlignVCenter};
  if (role == Qt::ToolTipRole) {
    return tr("Click to sort by %1; click again for the other direction").arg(titles_[section]);
  }
  return {};
}

void LogListModel::sort(int column, Qt::SortOrder order) {
  sortColumn_ = column;
  sortOrder_ = order;
  applyOrder([&] {
    for (Place& place : order_) place = placeOf(place.row);
    std::sort(order_.begin(), order_.end(),
              [this](const Place& left, const Place& right) { return before(left, right); });
  });
}

void LogListModel::applyOrder(const std::function<void()>& reorder) {
  Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const QModelIndexList before = persistentIndexList();
  std::vector<std::size_t> rows;
  rows.reserve(static_cast<std::size_t>(before.size()));
  for (const QModelIndex& persistent : before) rows.push_back(rowAt(persistent.row()));
  reorder();
  if (!before.isEmpty()) {
    std::vector<std::uint32_t> shownIndexOf(order_.size());
    for (std::size_t i = 0; i < order_.size(); ++i) {
      shownIndexOf[order_[i].row] = static_cast<std::uint32_t>(i);
    }
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
      const auto shownIndex = shownIndexOf[rows[static_cast<std::size_t>(i)]];
      after.append(index(static_cast<int>(shownIndex), before[i].column()));
    }
    changePersistentIndexList(before, after);
  }
  Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

std::size_t LogListModel::rowAt(int shownIndex) const {
  return order_[static_cast<std::size_t>(shownIndex)].row;
}

int LogListModel::shownIndexOf(std::size_t row) const {
  const auto found = std::find_if(order_.begin(), order_.end(),
                                  [row](const Place& place) { return place.row == row; });
  return found == order_.end() ? -1 : static_cast<int>(found - order_.begin());
}

std::string LogListModel::cell(int shownIndex, int column) const {
  const std::size_t row = rowAt(shownIndex);
  if (column == 0) return numberText_(row + 1).toStdString();
  return encoding_.decode(rows_.field(row, static_cast<std::size_t>(column - 1)));
}

QString LogListModel::shownCell(int shownIndex, int column) const {
  const std::size_t row = rowAt(shownIndex);
  if (column == 0) return numberText_(row + 1);
  // No character has more bytes; one that is torn apart stands behind the cut.
  constexpr std::size_t kMostBytes = 4;
  constexpr std::size_t kDecoded = (kLongestShown + 1) * kMostBytes;
  const std::string_view bytes = rows_.field(row, static_cast<std::size_t>(column - 1));
  return shownText(encoding_.decode(bytes.substr(0, kDecoded)));
}

void LogListModel::setCell(int shownIndex, int column, std::string_view text) {
  // What is put into a cell has been stored in a table in the same encoding.
  const std::string bytes = encoding_.encode(text).value_or(std::string());
  rows_.setField(rowAt(shownIndex), static_cast<std::size_t>(column - 1), bytes);
  const QModelIndex changed = index(shownIndex, column);
  Q_EMIT dataChanged(changed, changed);
}

void LogListModel::setRowBackground(int shownIndex, const QColor& color) {
  backgrounds_.emplace_back(rowAt(shownIndex), color);
  Q_EMIT dataChanged(index(shownIndex, 0), index(shownIndex, columnCount() - 1));
}

}  // namespace vel
