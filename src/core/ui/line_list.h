#pragma once

#include <QTableView>

namespace vel {

/// A list of which whole lines are selected and copied. The model gives the
/// whole text of a cell as Qt::EditRole and what is shown of it as
/// Qt::DisplayRole.
class LineList : public QTableView {
  Q_OBJECT

 public:
  /// The model is not owned.
  LineList(QAbstractItemModel* model, QWidget* parent);

  /// What the list says while it holds no line: what to do about it. Plain text;
  /// empty for nothing.
  void setEmptyHint(const QString& hint);
  [[nodiscard]] const QString& emptyHint() const { return emptyHint_; }

  /// The shown index of the selected line, -1 for none.
  [[nodiscard]] int listIndex() const;

  /// Asks for the selected lines: cells joined by tabs.
  virtual void copyLines();
  /// Asks for the current cell of the selected line.
  void copyCell();

 Q_SIGNALS:
  /// A line was double-clicked, or Enter was pressed at it.
  void lineOpened(int shownIndex);
  /// This text is to go to the clipboard.
  void copied(const QString& text);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString emptyHint_;
};

}  // namespace vel
