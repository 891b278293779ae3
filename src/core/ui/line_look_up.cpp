#include "core/ui/line_look_up.h"

#include <memory>
#include <utility>

namespace vel {
namespace {

class Steps : public Job {
 public:
  explicit Steps(std::vector<LineLookUp::Step> steps) : steps_(std::move(steps)) {}

  Result<JobProgress> step(Clock::time_point) override {
    if (next_ == steps_.size()) return JobProgress::done;
    const Result<JobProgress> progress = steps_[next_++]();
    if (!progress) return progress.error();
    return next_ == steps_.size() ? JobProgress::done : *progress;
  }

 private:
  std::vector<LineLookUp::Step> steps_;
  std::size_t next_ = 0;
};

}  // namespace

LineLookUp::LineLookUp(const Context& context, BusyLabels& busy)
    : context_(context), busy_(busy), steps_(context.jobs) {}

void LineLookUp::start(std::vector<Step> steps) {
  busy_.showProcessing();
  const auto ended = [this](const Status& result) {
    busy_.hideProcessing();
    if (!result) endWithError(context_.desktop, result.error());
  };
  steps_.start(std::make_unique<Steps>(std::move(steps)), {.stepped = {}, .ended = ended});
}

void LineLookUp::stop() {
  steps_.stop();
  busy_.hideProcessing();
}

}  // namespace vel
