#include <QSocketNotifier>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "app/ui/end_by_system.h"

namespace vel {
namespace {

// A signal handler may do no more than write to a file: this end of a pipe.
volatile std::sig_atomic_t toEventLoop = -1;

void tellEventLoop(int) {
  const int before = errno;
  const char byte = 1;
  // A full pipe has told already.
  if (write(toEventLoop, &byte, 1) < 0) errno = before;
  errno = before;
}

}  // namespace

void onEndSignal(QObject& context, const std::function<void()>& end) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
  toEventLoop = ends[1];
  auto* notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, &context);
  QObject::connect(notifier, &QSocketNotifier::activated, &context, [notifier, end] {
    notifier->setEnabled(false);
    end();
  });
  struct sigaction action = {};
  action.sa_handler = tellEventLoop;
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaction(signal, &action, nullptr);
}

}  // namespace vel
