#pragma once

#include <QLineEdit>

namespace vel {

/// The longest text (characters) that can be edited in one line: what is longer
/// takes too long to lay out.
constexpr int kLongestEdited = 2000;

/// A box for a value of a table or a setting, which never hands out a part of
/// one. A value that is too long to be edited is shown as far as it goes: it
/// can be deleted (Backspace or Delete), after which another one can be typed,
/// and is handed out whole until then.
class EditorBox : public QLineEdit {
  Q_OBJECT

 public:
  explicit EditorBox(QWidget* parent);

  /// Shows a value from its beginning.
  void setValue(const QString& value);
  [[nodiscard]] QString value() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void forgetLongValue();

  QString longValue_;  ///< empty where the box holds its value
  QString hint_;       ///< the tool tip while it does not
};

/// Takes back what a box had no room for, a pasted text that is too long, and
/// says so, instead of keeping a part of it.
void refuseLongerTexts(QLineEdit& box);

}  // namespace vel
