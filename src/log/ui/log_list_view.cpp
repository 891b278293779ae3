#include "log/ui/log_list_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <cstdlib>

namespace vel {
namespace {

// The designed widths are for letters of this height, in pixels; the widest
// column gives way to what larger ones take, down to this and to its title.
constexpr double kUsualLetters = 15;
constexpr int kNarrowestGiving = 60;
constexpr int kTitleMargin = 12;
// Letters so much larger than the usual ones would be cut in every column.
constexpr double kMuchLarger = 1.4;

// A column's margins do not grow with the letters: of what it would take in all,
// this much helps already.
constexpr double kHelping = 0.5;

QList<int> fittedWidths(const ColumnDesign& columns, const QAbstractItemModel& model,
                        const QFontMetrics& letters) {
  const QList<int>& designed = columns.widths;
  const double scale = letters.height() / kUsualLetters;
  if (scale <= 1) return designed;
  QList<int> widths = designed;
  int more = 0;
  const int kept = scale < kMuchLarger ? columns.kept : 0;
  for (int column = 0; column < kept; ++column) {
    const int helping = static_cast<int>(designed[column] * (scale - 1) * kHelping);
    const int grown = std::min(columns.room - more, helping);
    widths[column] += grown;
    more += grown;
  }
  for (int column = kept; column < widths.size(); ++column) {
    widths[column] = static_cast<int>(designed[column] * scale);
    more += widths[column] - designed[column];
  }
  const auto widest = std::max_element(widths.begin(), widths.end());
  const auto title = model.headerData(static_cast<int>(widest - widths.begin()), Qt::Horizontal);
  *widest = std::max({*widest - more, static_cast<int>(kNarrowestGiving * scale),
                      letters.horizontalAdvance(title.toString()) + kTitleMargin});
  return widths;
}

}  // namespace

LogListView::LogListView(LogListModel* model, const ColumnDesign& columns, QWidget* parent)
    : LineList(model, parent),
      model_(model),
      designedWidths_(fittedWidths(columns, *model, fontMetrics())) {
  setObjectName(QStringLiteral("xLView1"));
  setAccessibleName(tr("Messages"));
  QHeaderView* header = horizontalHeader();
  header->setSectionsClickable(true);
  header->setSectionsMovable(true);
  header->setSectionResizeMode(QHeaderView::Interactive);
  header->setSortIndicatorShown(false);
  header->setMinimumSectionSize(20);
  setColumnPlaces(designedPlaces());
  connect(header, &QHeaderView::sectionClicked, this, &LogListView::sortByTitle);
  header->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(header, &QWidget::customContextMenuRequested, this, &LogListView::showTitleMenu);
}

ColumnPlaces LogListView::designedPlaces() const {
  ColumnPlaces places;
  for (int column = 0; column < designedWidths_.size(); ++column) {
    places.order.push_back(column);
    places.widths.push_back(designedWidths_[column]);
  }
  return places;
}

ColumnPlaces LogListView::columnPlaces() const {
  const QHeaderView* header = horizontalHeader();
  ColumnPlaces places;
  for (int column = 0; column < header->count(); ++column) {
    places.order.push_back(header->logicalIndex(column));
    // The last one takes the room that is left: its own width is that of before.
    const bool stretched = header->visualIndex(column) == header->count() - 1;
    places.widths.push_back(stretched ? designedWidths_[column] : columnWidth(column));
  }
  return places;
}

void LogListView::setColumnPlaces(const ColumnPlaces& places) {
  QHeaderView* header = horizontalHeader();
  for (int place = 0; place < static_cast<int>(places.order.size()); ++place) {
    header->moveSection(header->visualIndex(places.order[static_cast<std::size_t>(place)]), place);
  }
  for (int column = 0; column < static_cast<int>(places.widths.size()); ++column) {
    setColumnWidth(column, places.widths[static_cast<std::size_t>(column)]);
  }
}

void LogListView::showTitleMenu(const QPoint& position) {
  QMenu menu(this);
  menu.setObjectName(QStringLiteral("ColumnsMenu"));
  menu.addAction(tr("Columns as at first"), this, [this] { setColumnPlaces(designedPlaces()); });
  menu.exec(horizontalHeader()->mapToGlobal(position));
}

void LogListView::sortByTitle(int column) {
  const bool again = model_->sortColumn() == column;
  const Qt::SortOrder order =
      again && model_->sortOrder() == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
  model_->sort(column, order);
  horizontalHeader()->setSortIndicator(column, order);
  horizontalHeader()->setSortIndicatorShown(true);
  if (currentIndex().isValid()) scrollTo(currentIndex());
}

void LogListView::setListIndex(int shownIndex) {
  if (shownIndex < 0 || shownIndex >= model_->rowCount()) {
    setCurrentIndex({});
    clearSelection();
    return;
  }
  const int column = currentIndex().isValid() ? currentIndex().column() : 0;
  setCurrentIndex(model_->index(shownIndex, column));
  scrollTo(currentIndex());
}

std::string LogListView::selectedText(int column) const {
  const int row = listIndex();
  return row < 0 ? std::string() : model_->cell(row, column);
}

QModelIndex LogListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  if (action != MoveHome && action != MoveEnd) return LineList::moveCursor(action, modifiers);
  const int last = model_->rowCount() - 1;
  const int column = currentIndex().isValid() ? currentIndex().column() : 0;
  return model_->index(action == MoveHome ? std::min(0, last) : last, column);
}

QItemSelectionModel::SelectionFlags LogListView::selectionCommand(const QModelIndex& index,
                                                                  const QEvent* event) const {
  if (event == nullptr || event->type() != QEvent::KeyPress) {
    return LineList::selectionCommand(index, event);
  }
  const auto* key = static_cast<const QKeyEvent*>(event);
  if (key->key() == Qt::Key_Space) return LineList::selectionCommand(index, event);
  const QKeyEvent plain(QEvent::KeyPress, key->key(), key->modifiers() & ~Qt::ControlModifier);
  return LineList::selectionCommand(index, &plain);
}

void LogListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  LineList::currentChanged(current, previous);
  followLater();
}

void LogListView::selectionChanged(const QItemSelection& selected,
                                   const QItemSelection& deselected) {
  LineList::selectionChanged(selected, deselected);
  followLater();
}

void LogListView::followLater() {
  // A line is the selected one when it is both current and selected; the two
  // change one after the other, or only one of them does.
  QMetaObject::invokeMethod(this, &LogListView::follow, Qt::QueuedConnection);
}

void LogListView::keepCurrentSelected() {
  // Of several selected lines the current one was deselected: another one is
  // the selected line then, not none.
  if (listIndex() >= 0 || !selectionModel()->hasSelection()) return;
  const QModelIndex near = currentIndex();
  QModelIndex best;
  for (const QModelIndex& each : selectionModel()->selectedRows(qMax(near.column(), 0))) {
    const bool nearer =
        !best.isValid() || std::abs(each.row() - near.row()) < std::abs(best.row() - near.row());
    if (nearer) best = each;
  }
  if (best.isValid()) {
    selectionModel()->setCurrentIndex(best, QItemSelectionModel::NoUpdate);
  }
}

void LogListView::follow() {
  keepCurrentSelected();
  const int index = listIndex();
  if (index == (told_.isValid() ? told_.row() : -1)) return;
  told_ = index < 0 ? QModelIndex() : model_->index(index, 0);
  Q_EMIT listIndexChanged();
}

}  // namespace vel
