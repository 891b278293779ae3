#pragma once

#include <functional>
#include <vector>

#include "core/context.h"
#include "core/ui/busy_labels.h"

namespace vel {

/// Looks up what a panel shows of a list's selected line, in steps with window
/// events between them. The busy word is drawn before the first step and goes
/// with the last one. Of several look-ups, the last one started wins.
class LineLookUp {
 public:
  /// `done` ends the look-up before its last step. An Error is shown and ends
  /// the program.
  using Step = std::function<Result<JobProgress>()>;

  /// Both outlive the look-ups.
  LineLookUp(const Context& context, BusyLabels& busy);

  /// A look-up under way is given up, wherever it is.
  void start(std::vector<Step> steps);
  void stop();

  [[nodiscard]] bool isRunning() const { return steps_.isRunning(); }

 private:
  const Context& context_;
  BusyLabels& busy_;
  JobSlot steps_;
};

}  // namespace vel
