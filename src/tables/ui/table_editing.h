#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <functional>
#include <initializer_list>

#include "core/desktop.h"
#include "core/ui/busy_labels.h"
#include "tables/rewrite.h"
#include "tables/tables.h"

namespace vel {

/// What the editors of one window share: the tables, the messages and the
/// window's busy labels.
class TableEditing {
 public:
  /// Everything outlives the editors.
  TableEditing(Desktop& desktop, const Tables& tables, BusyLabels& labels)
      : desktop_(desktop), tables_(tables), labels_(labels) {}

  [[nodiscard]] Desktop& desktop() const { return desktop_; }
  [[nodiscard]] const Tables& tables() const { return tables_; }

  /// Shows a refusal; always false, so that a check can end with it.
  bool refuse(const char* message) const;

  /// Refuses a comma, a double quote, and what the tables' encoding cannot
  /// hold, in any of the texts.
  bool acceptTexts(std::initializer_list<QString> texts) const;

  /// Refuses only what the tables' encoding cannot hold.
  bool canStore(const QString& text) const;

  /// Runs the rewrite with the button disabled and "Processing" shown; then
  /// `updateList`, "Complete", and the button again. False when nothing was
  /// written: the record was refused, or the program ends.
  bool rewrite(QPushButton& button, const TableEdit& edit,
               const std::function<void()>& updateList) const;

  /// The value of a look-up; where it failed, shows the error and ends the
  /// program, and gives `otherwise`.
  template <typename T>
  T valueOrEnd(Result<T> result, T otherwise = {}) const {
    if (result) return std::move(result).value();
    if (!desktop_.isEnding()) endWithError(desktop_, result.error());
    return otherwise;
  }

 private:
  Desktop& desktop_;
  const Tables& tables_;
  BusyLabels& labels_;
};

/// A box of an editor: Enter presses its button.
QLineEdit* makeEditorBox(QWidget* parent, const QString& name, const QString& accessibleName,
                         const QString& toolTip, QPushButton* enter);

/// An [Ent] button.
QPushButton* makeEnterButton(QWidget* parent, const QString& name, const QString& toolTip);

}  // namespace vel
