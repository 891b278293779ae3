#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>
#include <chrono>
#include <cstddef>
#include <string>

namespace vel {

/// A read-only text in a fixed-pitch font with Japanese letters, and a bar at
/// its top that finds text in it: Ctrl+F opens the bar, F3 and Shift+F3 go on
/// to the next and the previous place, Esc closes it.
class FindableText : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit FindableText(QWidget* parent);

  /// Takes a text (UTF-8) in place of the present one; fill() shows it. Keeps
  /// the reader's place where the text is the old one or goes on from it; else
  /// nothing is shown until fill() is called.
  void takeText(std::string text);

  /// Shows more of the text taken, until about the deadline. False when all of
  /// it is shown.
  bool fill(std::chrono::steady_clock::time_point deadline);

  /// Puts the cursor where a line of the text begins, so many bytes from its
  /// beginning, and shows it at the top where it can be. Nothing where that line
  /// is not shown.
  void goTo(std::size_t offset);

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
  void findFrom(QTextCursor start, QTextDocument::FindFlags direction = {});

  [[nodiscard]] std::string nextPiece();
  /// Bytes of the line as it is shown from there on, its end included. Not whole
  /// where the line goes on in the next one.
  struct ShownLine {
    std::size_t size;
    bool isWhole;
  };
  [[nodiscard]] ShownLine shownLineAt(std::size_t offset) const;
  void append(const QString& piece);

  std::string text_;
  std::size_t filled_ = 0;  // bytes of the text that are shown
  int lines_ = 0;
  bool full_ = false;
  QWidget* bar_;         // Frame2
  QLineEdit* searched_;  // Text2
  QLabel* outcome_;      // Label2
  QShortcut* escape_;
};

}  // namespace vel
