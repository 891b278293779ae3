#include "core/ui/editor_box.h"

#include <QKeyEvent>
#include <QToolTip>
#include <utility>

#include "core/ui/plain_text.h"

namespace vel {

EditorBox::EditorBox(QWidget* parent) : QLineEdit(parent) {
  setMaxLength(kLongestEdited);
  refuseLongerTexts(*this);
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
    // Whoever else gives the box a text means that one.
    if (!longValue_.isEmpty() && text != shownText(longValue_, kLongestEdited)) forgetLongValue();
  });
}

void EditorBox::setValue(const QString& value) {
  forgetLongValue();
  if (value.size() <= kLongestEdited) {
    setText(value);
  } else {
    longValue_ = value;
    hint_ = toolTip();
    setToolTip(tr("Too long to be edited here (%1 characters); Delete empties the box.\n"
                  "長すぎるため編集できません（%1文字）。Deleteキーで消去できます。")
                   .arg(value.size()));
    setReadOnly(true);
    setText(shownText(value, kLongestEdited));
  }
  home(false);
}

QString EditorBox::value() const { return longValue_.isEmpty() ? text() : longValue_; }

void EditorBox::forgetLongValue() {
  if (std::exchange(longValue_, {}).isEmpty()) return;
  setReadOnly(false);
  setToolTip(std::exchange(hint_, {}));
}

void EditorBox::keyPressEvent(QKeyEvent* event) {
  const bool deletes = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
  if (longValue_.isEmpty() || !deletes) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  forgetLongValue();
  clear();
}

void refuseLongerTexts(QLineEdit& box) {
  const auto refuse = [&box] {
    if (box.text().size() < box.maxLength()) return;
    box.undo();
    QToolTip::showText(box.mapToGlobal(QPoint(0, box.height())),
                       QObject::tr("Too long: at most %1 characters\n長すぎます（最大%1文字）")
                           .arg(box.maxLength()),
                       &box);
  };
  // The box has its new text only after the signal.
  QObject::connect(&box, &QLineEdit::inputRejected, &box, refuse, Qt::QueuedConnection);
}

}  // namespace vel
