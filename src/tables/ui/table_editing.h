#pragma once

#include <QPushButton>
#include <functional>
#include <initializer_list>
#include <list>
#include <memory>

#include "core/context.h"
#include "core/ui/busy_labels.h"
#include "core/ui/editor_box.h"
#include "tables/rewrite.h"
#include "tables/tables.h"

namespace vel {

/// What the editors of one window share: the tables, the messages and the
/// window's busy labels. Here the questions and messages about tables are shown
/// and the program is ended for their sake, and nowhere else.
class TableEditing {
 public:
  /// Everything outlives the editors.
  TableEditing(const Context& context, const Tables& tables, BusyLabels& labels);
  TableEditing(const TableEditing&) = delete;
  TableEditing& operator=(const TableEditing&) = delete;
  /// Finishes the rewrites that are under way.
  ~TableEditing();

  [[nodiscard]] Desktop& desktop() const { return context_.desktop; }
  [[nodiscard]] const Tables& tables() const { return tables_; }

  /// Shows a refusal; always false, so that a check can end with it.
  bool refuse(const char* message) const;

  /// Refuses a comma, a double quote, and what the tables' encoding cannot
  /// hold, in any of the texts.
  bool acceptTexts(std::initializer_list<QString> texts) const;

  /// Refuses only what the tables' encoding cannot hold.
  bool canStore(const QString& text) const;

  /// Refuses what cannot be the key of a record.
  bool acceptKey(const QString& key) const;

  /// Starts the rewrite, with the button disabled and "Processing" shown; both
  /// are drawn before it begins. Rewrites run one after another.
  /// Then `whenWritten`, "Complete", and the button again. `whenGivenUp` where
  /// nothing was written: the edit was refused, or the program ends.
  void rewrite(QPushButton& button, const TableEdit& edit, std::function<void()> whenWritten,
               std::function<void()> whenGivenUp = {}) const;

  /// The same for a rewrite of any kind.
  void rewrite(QPushButton& button, ReferenceTableRewrite rewrite,
               std::function<void()> whenWritten, std::function<void()> whenGivenUp = {}) const;

  /// The value of a look-up; where it failed, shows the error and ends the
  /// program, and gives `otherwise`.
  template <typename T>
  T valueOrEnd(Result<T> result, T otherwise = {}) const {
    if (result) return std::move(result).value();
    if (!desktop().isEnding()) endWithError(desktop(), result.error());
    return otherwise;
  }

 private:
  class Rewriting;
  void end(Rewriting& rewriting) const;

  const Context& context_;
  const Tables& tables_;
  BusyLabels& labels_;
  mutable std::list<std::unique_ptr<Rewriting>> rewritings_;
};

/// A box of an editor: Enter presses its button.
EditorBox* makeEditorBox(QWidget* parent, const QString& name, const QString& accessibleName,
                         const QString& toolTip, QPushButton* enter);

/// An [Ent] button.
QPushButton* makeEnterButton(QWidget* parent, const QString& name, const QString& toolTip);

}  // namespace vel
