#include "tables/ui/table_editing.h"

#include "core/ui/qt_desktop.h"

namespace vel {

bool TableEditing::refuse(const char* message) const {
  desktop_.showMessage(message);
  return false;
}

bool TableEditing::acceptTexts(std::initializer_list<QString> texts) const {
  std::string joined;
  for (const QString& text : texts) joined += text.toStdString();
  if (hasIllegalCharacter(joined) || !canBeStored(tables_.encoding(), joined)) {
    return refuse(kIllegalCharacter);
  }
  return true;
}

bool TableEditing::canStore(const QString& text) const {
  return canBeStored(tables_.encoding(), text.toStdString()) || refuse(kIllegalCharacter);
}

bool TableEditing::rewrite(QPushButton& button, const TableEdit& edit,
                           const std::function<void()>& updateList) const {
  // A disabled button hands the keyboard to its neighbour: it gets it back.
  const bool hadFocus = button.hasFocus();
  button.setEnabled(false);
  labels_.showRewriting();
  const RewriteOutcome outcome =
      ReferenceTableRewrite(desktop_, tables_.folders(), tables_.encoding(), edit);
  if (outcome == RewriteOutcome::programEnds) return false;
  const bool written = outcome == RewriteOutcome::done;
  if (written) {
    updateList();
    labels_.showComplete();
  } else {
    labels_.hideProcessing();
  }
  button.setEnabled(true);
  if (hadFocus) button.setFocus();
  return written;
}

QLineEdit* makeEditorBox(QWidget* parent, const QString& name, const QString& accessibleName,
                         const QString& toolTip, QPushButton* enter) {
  auto* box = new QLineEdit(parent);
  box->setObjectName(name);
  box->setAccessibleName(accessibleName);
  box->setToolTip(toolTip);
  QObject::connect(box, &QLineEdit::returnPressed, enter, &QPushButton::click);
  return box;
}

QPushButton* makeEnterButton(QWidget* parent, const QString& name, const QString& toolTip) {
  auto* button = new QPushButton(QStringLiteral("Ent"), parent);
  button->setObjectName(name);
  button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
  button->setToolTip(toolTip);
  button->setFixedWidth(button->fontMetrics().horizontalAdvance(QStringLiteral("Ent")) + 22);
  return button;
}

}  // namespace vel
