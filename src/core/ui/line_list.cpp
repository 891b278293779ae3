#include "core/ui/line_list.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "core/ui/list_rows.h"
#include "core/ui/shown_text_delegate.h"

namespace vel {
namespace {

constexpr int kHintMargin = 12;

}  // namespace

LineList::LineList(QAbstractItemModel* model, QWidget* parent) : QTableView(parent) {
  setModel(model);
  offerDragging(*this);
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
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setStretchLastSection(true);
  connect(this, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { Q_EMIT lineOpened(index.row()); });
}

void LineList::setEmptyHint(const QString& hint) {
  if (emptyHint_ == hint) return;
  emptyHint_ = hint;
  // A screen reader has no other way to an empty list's words.
  setAccessibleDescription(hint);
  viewport()->update();
}

void LineList::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (emptyHint_.isEmpty() || model()->rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(
      viewport()->rect().adjusted(kHintMargin, kHintMargin, -kHintMargin, -kHintMargin),
      Qt::AlignCenter | Qt::TextWordWrap, emptyHint_);
}

int LineList::listIndex() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid() || !selectionModel()->isRowSelected(current.row())) return -1;
  return current.row();
}

void LineList::copyLines() {
  QModelIndexList selected = selectionModel()->selectedRows();
  if (selected.isEmpty()) return;
  std::sort(selected.begin(), selected.end());
  QStringList lines;
  for (const QModelIndex& row : selected) {
    QStringList cells;
    for (int column = 0; column < model()->columnCount(); ++column) {
      cells.append(row.siblingAtColumn(column).data(Qt::EditRole).toString());
    }
    lines.append(cells.join(QLatin1Char('\t')));
  }
  Q_EMIT copied(lines.join(QLatin1Char('\n')));
}

void LineList::copyCell() {
  if (listIndex() >= 0) Q_EMIT copied(currentIndex().data(Qt::EditRole).toString());
}

void LineList::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    copyLines();
    event->accept();
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    // The keys may stand on a line that is not selected yet.
    if (currentIndex().isValid() && listIndex() < 0) selectRow(currentIndex().row());
    if (currentIndex().isValid()) Q_EMIT lineOpened(currentIndex().row());
    event->accept();
    return;
  }
  QTableView::keyPressEvent(event);
}

}  // namespace vel
