#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>

namespace vel {

/// A read-only text in a fixed-pitch font with Japanese letters, and a bar at
/// its top that finds text in it: Ctrl+F opens the bar, F3 and Shift+F3 go on
/// to the next and the previous place, Esc closes it.
class FindableText : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit FindableText(QWidget* parent);

  /// Puts a text in place of the present one. Keeps the reader's place where
  /// the text is the old one or goes on from it; else shows the beginning.
  void showText(const QString& text);

  void openFindBar();
  void closeFindBar();
  void findNext();
  void findPrevious();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QWidget* makeFindBar();
  void placeFindBar();
  void findTyped();
  void findFrom(QTextCursor start, bool backward);

  QString shown_;
  QWidget* bar_;         // Frame2
  QLineEdit* searched_;  // Text2
  QLabel* outcome_;      // Label2
  QShortcut* escape_;
};

}  // namespace vel
