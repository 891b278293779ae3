#pragma once

#include <cstddef>
#include <vector>

#include "core/ui/line_list.h"
#include "history/ui/found_model.h"

namespace vel {

/// The list of what was found. Sorting and filtering are asked for and done by
/// the window, which runs them as jobs.
class FoundList : public LineList {
  Q_OBJECT

 public:
  /// The model is not owned.
  FoundList(FoundModel* model, QWidget* parent);

  /// The shown indexes of the selected lines from top to bottom, no more than
  /// `most`.
  [[nodiscard]] std::vector<int> selectedLines(std::size_t most) const;

  /// A million lines take long to put together: the window is asked to.
  void copyLines() override;

 Q_SIGNALS:
  /// A column title was clicked.
  void sortAsked(int column);
  /// The selected lines are to go to the clipboard.
  void copyAsked();
};

}  // namespace vel
