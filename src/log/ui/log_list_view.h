#pragma once

#include "core/ui/line_list.h"
#include "log/column_places.h"
#include "log/ui/log_list_model.h"

namespace vel {

/// How wide the columns of a list are at first.
struct ColumnDesign {
  QList<int> widths;  ///< in logical pixels, for letters of the usual size
  /// So many columns keep their places where letters are a little larger, but for
  /// the pixels that they may take more, together.
  int kept = 0;
  int room = 0;
};

/// The list of messages of a browser: a click on a column title sorts, columns
/// can be dragged to other widths and places, odd rows have their own colour.
class LogListView : public LineList {
  Q_OBJECT

 public:
  /// The model is not owned.
  LogListView(LogListModel* model, const ColumnDesign& columns, QWidget* parent);

  /// How the columns stand now, and how they stand at first.
  [[nodiscard]] ColumnPlaces columnPlaces() const;
  [[nodiscard]] ColumnPlaces designedPlaces() const;
  /// Puts the columns there.
  void setColumnPlaces(const ColumnPlaces& places);

  /// Selects a line and scrolls it into view; -1 clears the selection.
  void setListIndex(int shownIndex);

  /// A cell of the selected line, empty without one.
  [[nodiscard]] std::string selectedText(int column) const;

 Q_SIGNALS:
  /// The selected line is another one now, or none.
  void listIndexChanged();

 protected:
  /// Home and End go to the first and the last line.
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  /// Every key that goes to a line selects it, also with Ctrl.
  [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(
      const QModelIndex& index, const QEvent* event) const override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  void sortByTitle(int column);
  void showTitleMenu(const QPoint& position);
  void followLater();
  void follow();
  void keepCurrentSelected();

  LogListModel* model_;
  QList<int> designedWidths_;
  QPersistentModelIndex told_;  // the line that listIndexChanged told last
};

}  // namespace vel
