#include "log/ui/xlview.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>
#include <cstdlib>

#include "core/ui/qt_desktop.h"
#include "core/ui/shown_text_delegate.h"

namespace vel {

xLView::xLView(LogListModel* model, const QList<int>& widths, QWidget* parent)
    : QTableView(parent), model_(model) {
  setObjectName(QStringLiteral("xLView1"));
  setAccessibleName(tr("Messages"));
  setModel(model);
  setItemDelegate(new ShownTextDelegate(this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollMode(ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  verticalHeader()->setMinimumSectionSize(1);

  QHeaderView* header = horizontalHeader();
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setSectionResizeMode(QHeaderView::Interactive);
  header->setStretchLastSection(true);
  header->setSortIndicatorShown(false);
  header->setMinimumSectionSize(20);
  for (int column = 0; column < widths.size(); ++column) setColumnWidth(column, widths[column]);
  connect(header, &QHeaderView::sectionClicked, this, &xLView::sortByTitle);
}

void xLView::sortByTitle(int column) {
  const bool again = model_->sortColumn() == column;
  const Qt::SortOrder order =
      again && model_->sortOrder() == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
  model_->sort(column, order);
  horizontalHeader()->setSortIndicator(column, order);
  horizontalHeader()->setSortIndicatorShown(true);
  if (currentIndex().isValid()) scrollTo(currentIndex());
}

int xLView::listIndex() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid() || !selectionModel()->isRowSelected(current.row())) return -1;
  return current.row();
}

void xLView::setListIndex(int shownIndex) {
  if (shownIndex < 0 || shownIndex >= model_->rowCount()) {
    setCurrentIndex({});
    clearSelection();
    return;
  }
  const int column = currentIndex().isValid() ? currentIndex().column() : 0;
  setCurrentIndex(model_->index(shownIndex, column));
  scrollTo(currentIndex());
}

std::string xLView::selectedText(int column) const {
  const int row = listIndex();
  return row < 0 ? std::string() : model_->cell(row, column);
}

void xLView::copyLines() const {
  QModelIndexList selected = selectionModel()->selectedRows();
  if (selected.isEmpty()) return;
  std::sort(selected.begin(), selected.end());
  QStringList lines;
  for (const QModelIndex& row : selected) {
    QStringList cells;
    for (int column = 0; column < model_->columnCount(); ++column) {
      cells.append(toQString(model_->cell(row.row(), column)));
    }
    lines.append(cells.join(QLatin1Char('\t')));
  }
  Q_EMIT copied(lines.join(QLatin1Char('\n')));
}

void xLView::copyCell() const {
  if (listIndex() < 0) return;
  Q_EMIT copied(toQString(model_->cell(listIndex(), currentIndex().column())));
}

void xLView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    copyLines();
    event->accept();
    return;
  }
  QTableView::keyPressEvent(event);
}

QModelIndex xLView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  if (action != MoveHome && action != MoveEnd) return QTableView::moveCursor(action, modifiers);
  const int last = model_->rowCount() - 1;
  const int column = currentIndex().isValid() ? currentIndex().column() : 0;
  return model_->index(action == MoveHome ? std::min(0, last) : last, column);
}

QItemSelectionModel::SelectionFlags xLView::selectionCommand(const QModelIndex& index,
                                                             const QEvent* event) const {
  if (event == nullptr || event->type() != QEvent::KeyPress) {
    return QTableView::selectionCommand(index, event);
  }
  const auto* key = static_cast<const QKeyEvent*>(event);
  if (key->key() == Qt::Key_Space) return QTableView::selectionCommand(index, event);
  const QKeyEvent plain(QEvent::KeyPress, key->key(), key->modifiers() & ~Qt::ControlModifier);
  return QTableView::selectionCommand(index, &plain);
}

void xLView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  followLater();
}

void xLView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  followLater();
}

void xLView::followLater() {
  // A line is the selected one when it is both current and selected; the two
  // change one after the other, or only one of them does.
  QMetaObject::invokeMethod(this, &xLView::follow, Qt::QueuedConnection);
}

void xLView::keepCurrentSelected() {
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

void xLView::follow() {
  keepCurrentSelected();
  const int index = listIndex();
  if (index == (told_.isValid() ? told_.row() : -1)) return;
  told_ = index < 0 ? QModelIndex() : model_->index(index, 0);
  Q_EMIT listIndexChanged();
}

}  // namespace vel
