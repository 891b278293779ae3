#include "velweb/process.h"

#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace vel {
namespace {

/// Ends this process, in whichever thread comes to it first.
class End {
 public:
  explicit End(std::function<void()> close) : close_(std::move(close)) {}

  [[noreturn]] void operator()() {
    const std::lock_guard lock(mutex_);
    std::thread([] {
      std::this_thread::sleep_for(kLongestClose);
      endAtOnce();
    }).detach();
    close_();
    endAtOnce();
  }

 private:
  std::mutex mutex_;
  std::function<void()> close_;
};

}  // namespace

void endWithParent(std::function<void()> close) {
  whenParentEnds([end = std::make_shared<End>(std::move(close))] { (*end)(); });
}

}  // namespace vel
