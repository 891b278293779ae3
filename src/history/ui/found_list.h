#pragma once

#include <QTableView>

#include "history/ui/found_model.h"

namespace vel {

/// The list of what was found. Sorting and filtering are asked for and done by
/// the window, which runs them as jobs.
class FoundList : public QTableView {
  Q_OBJECT

 public:
  /// The model is not owned.
  FoundList(FoundModel* model, QWidget* parent);

  /// The shown index of the selected line, -1 for none.
  [[nodiscard]] int listIndex() const;

  /// The selected lines, cells joined by tabs.
  [[nodiscard]] QString selectedLines() const;
  /// The text of the current cell.
  [[nodiscard]] QString currentCell() const;

 Q_SIGNALS:
  /// A column title was clicked.
  void sortAsked(int column);
  /// A line was double-clicked, or Enter was pressed.
  void lineOpened(int shownIndex);
  /// Text is to go to the clipboard.
  void copied(const QString& text);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  FoundModel* model_;
};

}  // namespace vel
