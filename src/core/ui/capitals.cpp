#include "core/ui/capitals.h"

#include <QKeyEvent>

#include "core/text.h"
#include "core/ui/qt_desktop.h"

namespace vel {

void CapitalBox::keyPressEvent(QKeyEvent* event) {
  const QString typed = event->text();
  const bool small = typed.size() == 1 && typed[0] >= QLatin1Char('a') &&
                     typed[0] <= QLatin1Char('z') &&
                     (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
  if (!small) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  QKeyEvent capital(event->type(), event->key(), event->modifiers(), typed.toUpper(),
                    event->isAutoRepeat(), static_cast<quint16>(event->count()));
  QLineEdit::keyPressEvent(&capital);
}

void makeCapitals(QLineEdit& box) {
  const QString capitals = toQString(toUpper(box.text().toStdString()));
  if (capitals == box.text()) return;
  const QSignalBlocker blocker(box);
  const int cursor = box.cursorPosition();
  box.setText(capitals);
  box.setCursorPosition(cursor);
}

}  // namespace vel
