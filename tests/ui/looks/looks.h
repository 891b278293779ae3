#pragma once

#include <QMenu>
#include <QString>
#include <QWidget>

namespace vel::test {

/// The colours and letters that the environment asks for:
///   VEL_LOOKS_DARK=1    dark colours
///   VEL_LOOKS_FONT=150  letters in percent of the usual ones
void useLooksOfEnvironment();

/// Looks at windows: what cannot be read, is cut, lies off the screen, cannot be
/// reached by Tab or has no name for a screen reader fails the test. Leaves a
/// picture of each in the folder that VEL_LOOKS_PICTURES names.
class Looks {
 public:
  Looks();

  void at(const char* name, QWidget& window) const;
  /// The same for a window of the toolkit's own, whose controls have the names
  /// and keys that it gives them.
  void atToolkitWindow(const char* name, QWidget& window) const;
  /// The same for a menu.
  void atMenu(const char* name, QMenu& menu) const;
  /// A picture of a window with what stands over it, another window of its own.
  void keepPictureOf(const char* name, QWidget& window, QWidget& over) const;

 private:
  [[nodiscard]] QImage pictureOf(const char* name, QWidget& window) const;
  void keep(const char* name, const QImage& picture) const;

  QString pictures_;
};

}  // namespace vel::test
