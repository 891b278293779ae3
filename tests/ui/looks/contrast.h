#pragma once

#include <QImage>
#include <QWidget>
#include <string>
#include <vector>

namespace vel::test {

/// A text that a window shows, and how well it can be read there.
struct TextContrast {
  std::string what;
  double ratio = 0;  ///< of the letters to what is behind them, 1 to 21
};

/// The texts of a window's labels, buttons, boxes, choosers, frames, tabs, column
/// titles and list rows, of an empty list, of a text box and of a menu, measured
/// in a picture of it. What is disabled is left out: it says so by its weak
/// colours.
[[nodiscard]] std::vector<TextContrast> contrastsOf(const QWidget& window, const QImage& picture);

}  // namespace vel::test
