#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace vel {

inline constexpr int kFirstTourStep = 1;
inline constexpr int kLastTourStep = 29;
/// The step after the last one: the tour is over.
inline constexpr int kTourOver = 30;

inline constexpr int kTourPointerCount = 4;

/// Which of the four pointer pictures a step shows.
using PointerSet = std::array<bool, kTourPointerCount>;

/// What a step explains, in the words of the ACARS window.
enum class TourTargetKind {
  control,      ///< The control of that object name.
  columnTitle,  ///< A column's title in the list `xLView1`.
  listRows,     ///< The rows of the list `xLView1`.
  window,       ///< The ACARS window as a whole.
};

struct TourTarget {
  TourTargetKind kind = TourTargetKind::control;
  std::string_view name = {};  ///< The Qt object name; empty for the window.
  int column = -1;             ///< 0-based list column of a columnTitle, else -1.

  bool operator==(const TourTarget&) const = default;
};

/// How a step's offsets are meant.
enum class TourPlace {
  offsets,        ///< From the main window's left and top.
  rightOfWindow,  ///< The left offset counts from the main window's right edge.
  centred,        ///< Over the middle of the main window; no offsets.
};

struct TourStep {
  TourPlace place = TourPlace::offsets;
  int left = 0;        ///< Twips.
  int top = 0;         ///< Twips.
  bool panel = false;  ///< The detail panel's top is added to `top`.
  PointerSet pointers = {};
  std::string_view english = {};
  /// Two or three lines, each with an ideographic space in front.
  std::vector<std::string_view> japanese = {};
  /// Empty where a step explains no single control.
  std::vector<TourTarget> targets = {};
};

/// The step of that number, 1 to 29; null for every other number.
[[nodiscard]] const TourStep* tourStep(int number);

/// What the text box shows: the English text, CR LF, CR LF, and the Japanese
/// lines joined by CR LF. Empty for a number that is no step.
[[nodiscard]] std::string shownText(int number);

}  // namespace vel
