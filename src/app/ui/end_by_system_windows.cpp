#include <QCoreApplication>

#include <windows.h>

#include "app/ui/end_by_system.h"

namespace vel {
namespace {

// Events of this type reach the object that waits for the end.
const int kEndAsked = QEvent::registerEventType();
QObject* waiting = nullptr;

class EndWaiter : public QObject {
 public:
  EndWaiter(QObject& context, std::function<void()> end) : QObject(&context), end_(std::move(end)) {
    waiting = this;
  }
  ~EndWaiter() override { waiting = nullptr; }

  bool event(QEvent* event) override {
    if (event->type() != kEndAsked) return QObject::event(event);
    end_();
    return true;
  }

 private:
  std::function<void()> end_;
};

// Called on a thread of the system's.
BOOL WINAPI tellEventLoop(DWORD what) {
  if (waiting == nullptr) return FALSE;
  QCoreApplication::postEvent(waiting, new QEvent(static_cast<QEvent::Type>(kEndAsked)));
  // With the return from any of the others the system ends the program, which
  // has these seconds until then.
  constexpr DWORD kMostMilliseconds = 20'000;
  if (what != CTRL_C_EVENT && what != CTRL_BREAK_EVENT) Sleep(kMostMilliseconds);
  return TRUE;
}

}  // namespace

void onEndSignal(QObject& context, const std::function<void()>& end) {
  new EndWaiter(context, end);
  SetConsoleCtrlHandler(tellEventLoop, TRUE);
}

}  // namespace vel
