#include "core/ui/event_loop_jobs.h"

namespace vel {

EventLoopJobs::EventLoopJobs() {
  wake = [this] {
    if (!nextTurn_.isActive()) nextTurn_.start(0, this);
  };
}

void EventLoopJobs::timerEvent(QTimerEvent*) {
  // A timer does not fire while it is being handled: an event loop within the
  // turn has one of its own.
  nextTurn_.stop();
  nextTurn_.start(0, this);
  if (turn()) {
    wake();
  } else {
    nextTurn_.stop();
  }
}

}  // namespace vel
