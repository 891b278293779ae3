#pragma once

#include <QAbstractItemView>
#include <QAbstractTableModel>
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

/// A table whose rows can be dragged to other programs.
class DraggedRowsModel : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override {
    const Qt::ItemFlags own = QAbstractTableModel::flags(index);
    return index.isValid() ? own | Qt::ItemIsDragEnabled : own;
  }
  [[nodiscard]] QStringList mimeTypes() const override { return {QStringLiteral("text/plain")}; }
  [[nodiscard]] QMimeData* mimeData(const QModelIndexList& cells) const override {
    return draggedRows(cells);
  }
};

/// Lets the list's selected rows be dragged to other programs, where its model
/// has the cells' flag for it.
void offerDragging(QAbstractItemView& list);

}  // namespace vel
