#pragma once

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

 Q_SIGNALS:
  /// A column title was clicked.
  void sortAsked(int column);
};

}  // namespace vel
