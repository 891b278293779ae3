#include "history/ui/found_list.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>

#include "core/ui/qt_desktop.h"

namespace vel {

FoundList::FoundList(FoundModel* model, QWidget* parent) : QTableView(parent), model_(model) {
  setObjectName(QStringLiteral("FoundList"));
  setAccessibleName(tr("Found messages"));
  setToolTip(tr("Double-click or Enter opens the day\nダブルクリックまたはEnterでその日を開く"));
  setModel(model);
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollMode(ScrollPerPixel);
  setContextMenuPolicy(Qt::CustomContextMenu);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  verticalHeader()->setMinimumSectionSize(1);
  QHeaderView* header = horizontalHeader();
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setStretchLastSection(true);
  header->setSortIndicatorShown(false);
  constexpr int kCharacters[kFoundColumns] = {11, 9, 8, 9, 10, 7, 7, 10, 20};
  const int character = fontMetrics().horizontalAdvance(QLatin1Char('0'));
  for (int column = 0; column < kFoundColumns; ++column) {
    setColumnWidth(column, kCharacters[column] * character + 12);
  }
  connect(header, &QHeaderView::sectionClicked, this, &FoundList::sortAsked);
  connect(this, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { Q_EMIT lineOpened(index.row()); });
}

int FoundList::listIndex() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid() || !selectionModel()->isRowSelected(current.row())) return -1;
  return current.row();
}

QString FoundList::selectedLines() const {
  QModelIndexList selected = selectionModel()->selectedRows();
  std::sort(selected.begin(), selected.end());
  QStringList lines;
  for (const QModelIndex& row : selected) {
    QStringList cells;
    for (int column = 0; column < kFoundColumns; ++column) {
      cells.append(row.siblingAtColumn(column).data(Qt::EditRole).toString());
    }
    lines.append(cells.join(QLatin1Char('\t')));
  }
  return lines.join(QLatin1Char('\n'));
}

QString FoundList::currentCell() const { return currentIndex().data(Qt::EditRole).toString(); }

void FoundList::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    if (listIndex() >= 0) Q_EMIT copied(selectedLines());
    event->accept();
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    // The keys may stand on a line that is not selected.
    if (currentIndex().isValid()) Q_EMIT lineOpened(currentIndex().row());
    event->accept();
    return;
  }
  QTableView::keyPressEvent(event);
}

}  // namespace vel
