#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <limits>
#include <numeric>
#include <vector>

namespace vel::bench {

/// The processor time of this program so far, its own and the system's for it,
/// in seconds. What else the machine does hardly counts. Windows counts it in
/// steps longer than a look-up: there it is the clock's time, of which the least
/// is near enough.
inline double processorSeconds() {
#ifdef _WIN32
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#else
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
#endif
}

/// The least processor time that a piece of work took, over all its runs: what
/// a machine that does nothing else would need. Long work is measured in parts,
/// each short enough to run now and then without another program in between.
class LeastTime {
 public:
  explicit LeastTime(std::size_t parts = 1)
      : seconds_(parts, std::numeric_limits<double>::infinity()) {}

  template <typename Work>
  void measure(std::size_t part, Work work) {
    const double begin = processorSeconds();
    work();
    seconds_[part] = std::min(seconds_[part], processorSeconds() - begin);
  }

  /// Of all parts together.
  [[nodiscard]] double seconds() const {
    return std::accumulate(seconds_.begin(), seconds_.end(), 0.0);
  }

 private:
  std::vector<double> seconds_;
};

}  // namespace vel::bench
