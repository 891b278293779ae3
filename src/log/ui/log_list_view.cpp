#include "log/ui/log_list_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>
#include <cstdlib>

namespace vel {

LogListView::LogListView(LogListModel* model, const QList<int>& widths, QWidget* parent)
    : LineList(model, parent), model_(model) {
  setObjectName(QStringLiteral("xLView1"));
  setAccessibleName(tr("Messages"));
  QHeaderView* header = horizontalHeader();
  header->setSectionsClickable(true);
  header->setSectionResizeMode(QHeaderView::Interactive);
  header->setSortIndicatorShown(false);
  header->setMinimumSectionSize(20);
  for (int column = 0; column < widths.size(); ++column) setColumnWidth(column, widths[column]);
  connect(header, &QHeaderView::sectionClicked, this, &LogListView::sortByTitle);
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
