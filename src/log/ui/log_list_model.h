#pragma once

#include <QColor>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <vector>

#include "core/text.h"
#include "core/ui/list_rows.h"
#include "log/row_store.h"

namespace vel {

/// The rows of a browser's list. Column 0 is the running number of the row in
/// the order in which it was read; the other columns are the fields of a
/// RowStore. Sorting changes only the order in which rows are shown; "shown
/// index" counts in that order, "row" in the order of reading.
class LogListModel : public DraggedRowsModel {
  Q_OBJECT

 public:
  /// Turns the 1-based running number into the text of column 0.
  using NumberText = std::function<QString(std::size_t)>;

  /// The encoding is that of the fields' bytes.
  LogListModel(const Encoding& encoding, char separator, const QStringList& titles,
               NumberText numberText, QObject* parent);

  /// Where a reader adds rows; they show after publish().
  [[nodiscard]] RowStore& rows() { return rows_; }
  [[nodiscard]] const RowStore& rows() const { return rows_; }

  /// Shows the rows that were added since the last call, at the places that
  /// the sort in force gives them.
  void publish();

  /// Removes every row; a sort stays in force.
  void clear();

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;
  /// Sorts by text in the order of its bytes, column 0 by number. Rows with
  /// equal text keep their order of reading. Column -1 shows the order of reading.
  void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

  [[nodiscard]] int sortColumn() const { return sortColumn_; }
  [[nodiscard]] Qt::SortOrder sortOrder() const { return sortOrder_; }

  /// Where a row is shown, by its number in the order of reading; -1 where there
  /// is no such row.
  [[nodiscard]] int shownIndexOf(std::size_t row) const;

  /// The text of a cell by its shown index, whole and unchanged.
  [[nodiscard]] std::string cell(int shownIndex, int column) const;

  /// The same as the list shows it, see shownText(): the work does not grow with
  /// what is not shown. Also the model's display text.
  [[nodiscard]] QString shownCell(int shownIndex, int column) const;

  /// Changes a cell by its shown index. The row keeps its place until the next
  /// sort or read.
  void setCell(int shownIndex, int column, std::string_view text);

  /// Gives a row's background a colour until the list is cleared.
  void setRowBackground(int shownIndex, const QColor& color);

 private:
  // A row in the shown order, with as much of its sort text as fits a number.
  struct Place {
    std::uint64_t key;
    std::uint32_t row;
    bool longer;  // the sort text goes on after the key
  };

  [[nodiscard]] Place placeOf(std::size_t row) const;
  [[nodiscard]] bool before(const Place& left, const Place& right) const;
  [[nodiscard]] std::size_t rowAt(int shownIndex) const;
  void applyOrder(const std::function<void()>& reorder);

  Encoding encoding_;
  RowStore rows_;
  QStringList titles_;
  NumberText numberText_;
  std::vector<Place> order_;
  std::vector<std::pair<std::size_t, QColor>> backgrounds_;
  int sortColumn_ = -1;
  Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

}  // namespace vel
