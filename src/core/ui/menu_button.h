#pragma once

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QPushButton>
#include <functional>

namespace vel {

/// A button that opens a menu of what a window offers beside its controls.
/// Object names: "menuButton", its menu "mainMenu".
class MenuButton : public QPushButton {
  Q_OBJECT

 public:
  /// The keys of entries work in the parent's window.
  explicit MenuButton(QWidget* parent);

  /// Adds an entry at the end, "&" before the letter that chooses it. Its keys,
  /// if any, are told beside it and work while the menu is closed too. A hidden
  /// or disabled entry's keys do nothing.
  QAction* addEntry(const QString& text, const QKeySequence& keys,
                    const std::function<void()>& chosen);

  /// Sets what was added before apart from what follows.
  void addSeparator() { menu_->addSeparator(); }

  [[nodiscard]] QMenu& entries() const { return *menu_; }

 private:
  QMenu* menu_;
};

}  // namespace vel
