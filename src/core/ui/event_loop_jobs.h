#pragma once

#include <QBasicTimer>
#include <QObject>

#include "core/job.h"

namespace vel {

/// Drives a JobRunner between the events of the running event loop, a modal
/// dialog's included, also one that a job's call-back runs: every turn gives way
/// to all events that are pending.
class EventLoopJobs : public QObject, public JobRunner {
 public:
  EventLoopJobs();

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  QBasicTimer nextTurn_;
};

}  // namespace vel
