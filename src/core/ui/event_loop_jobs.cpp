#include "core/ui/event_loop_jobs.h"

namespace vel {

EventLoopJobs::EventLoopJobs() {
  turns_.setInterval(0);
  QObject::connect(&turns_, &QTimer::timeout, &turns_, [this] {
    if (!turn()) turns_.stop();
  });
  wake = [this] {
    if (!turns_.isActive()) turns_.start();
  };
}

}  // namespace vel
