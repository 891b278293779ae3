#pragma once

#include <QAbstractItemView>
#include <QMimeData>
#include <QModelIndex>
#include <QString>

namespace vel {

/// The whole text of a cell. A model gives it under Qt::EditRole where what it
/// shows is cut or made visible.
[[nodiscard]] QString wholeText(const QModelIndex& cell);

/// Rows as other programs take them when they are dropped there: a line for each
/// row, its cells joined by tabs; a tab or line end within a cell is a blank.
/// For a model's mimeData(). Owned by the caller, null without a row.
[[nodiscard]] QMimeData* draggedRows(const QModelIndexList& cells);

/// Lets the list's selected rows be dragged to other programs, where its model
/// has the cells' flag for it.
void offerDragging(QAbstractItemView& list);

}  // namespace vel
