#pragma once

#include <QTimer>

#include "core/job.h"

namespace vel {

/// Drives a JobRunner between the events of the running event loop, a modal
/// dialog's included: every turn gives way to all events that are pending.
class EventLoopJobs : public JobRunner {
 public:
  EventLoopJobs();

 private:
  QTimer turns_;
};

}  // namespace vel
