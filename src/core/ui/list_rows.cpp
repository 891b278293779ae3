#include "core/ui/list_rows.h"

#include <QStringList>
#include <algorithm>

namespace vel {

QString wholeText(const QModelIndex& cell) {
  const QVariant whole = cell.data(Qt::EditRole);
  return whole.isValid() ? whole.toString() : cell.data().toString();
}

QMimeData* draggedRows(const QModelIndexList& cells) {
  QModelIndexList sorted = cells;
  std::sort(sorted.begin(), sorted.end());
  QStringList lines;
  int row = -1;
  for (const QModelIndex& cell : sorted) {
    QString text = wholeText(cell);
    for (const char16_t separator : {u'\t', u'\r', u'\n'}) text.replace(QChar(separator), u' ');
    if (cell.row() == row) {
      lines.last() += u'\t' + text;
    } else {
      lines << text;
      row = cell.row();
    }
  }
  if (lines.isEmpty()) return nullptr;
  auto* data = new QMimeData;
  data->setText(lines.join(u'\n'));
  return data;
}

void offerDragging(QAbstractItemView& list) {
  list.setDragEnabled(true);
  list.setDragDropMode(QAbstractItemView::DragOnly);
  list.setDefaultDropAction(Qt::CopyAction);
}

}  // namespace vel
