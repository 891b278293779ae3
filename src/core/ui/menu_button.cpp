#include "core/ui/menu_button.h"

namespace vel {

MenuButton::MenuButton(QWidget* parent) : QPushButton(tr("&Menu"), parent), menu_(new QMenu(this)) {
  setObjectName(QStringLiteral("menuButton"));
  setAccessibleName(tr("Menu"));
  setToolTip(tr("More that this window can do (Alt+M)\nメニュー"));
  menu_->setObjectName(QStringLiteral("mainMenu"));
  connect(this, &QPushButton::clicked, this,
          [this] { menu_->popup(mapToGlobal(QPoint(0, height()))); });
}

QAction* MenuButton::addEntry(const QString& text, const QKeySequence& keys,
                              const std::function<void()>& chosen) {
  QAction* entry = menu_->addAction(text);
  entry->setShortcut(keys);
  connect(entry, &QAction::triggered, this, [chosen] { chosen(); });
  // An entry of a closed menu has no window: its keys are the button's window's.
  window()->addAction(entry);
  return entry;
}

}  // namespace vel
