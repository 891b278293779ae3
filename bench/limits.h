#pragma once

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace vel::bench {

/// What a benchmark may take at most, against the fastest of others of the same
/// run or against a fixed time.
struct Limit {
  /// The median of the real time, or, for work that waits for nothing and is
  /// the same every time, the least processor time: the one that a busy machine
  /// falsifies least.
  enum class Clock { real, processor };

  std::string benchmark;
  std::vector<std::string> baselines = {};  ///< empty for a fixed time
  double most = 0;                          ///< times the baseline, or milliseconds
  Clock clock = Clock::real;
};

/// Prints every measured run as usual and, at the end, each limit beside what
/// was measured in this run.
class LimitReporter : public benchmark::ConsoleReporter {
 public:
  using ConsoleReporter::ConsoleReporter;

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      const auto iterations = static_cast<double>(run.iterations);
      Times& times = times_[run.run_name.function_name];
      times.real.push_back(run.real_accumulated_time / iterations);
      times.processor.push_back(run.cpu_accumulated_time / iterations);
    }
  }

  /// False when a limit was not kept. Limits of benchmarks that a filter left
  /// out are not looked at.
  bool report(const std::vector<Limit>& limits) const {
    bool kept = true;
    std::printf("\n%-46s %12s %12s %8s\n", "limits", "measured", "against", "limit");
    for (const Limit& limit : limits) {
      const double measured = typical(limit.benchmark, limit.clock);
      double baseline = 0;
      for (const std::string& name : limit.baselines) {
        const double time = typical(name, limit.clock);
        if (time > 0) baseline = baseline > 0 ? std::min(baseline, time) : time;
      }
      if (measured <= 0 || (baseline <= 0 && !limit.baselines.empty())) continue;
      const bool fixed = limit.baselines.empty();
      const double value = fixed ? measured * 1000 : measured / baseline;
      const bool good = value <= limit.most;
      kept = kept && good;
      std::printf("%-46s %9.3f ms %9.3f ms  %s%5.2f of %4.1f%s %s\n", limit.benchmark.c_str(),
                  measured * 1000, fixed ? limit.most : baseline * 1000, fixed ? "" : "x", value,
                  limit.most, fixed ? " ms" : "", good ? "kept" : "EXCEEDED");
    }
    return kept;
  }

 private:
  struct Times {
    std::vector<double> real;
    std::vector<double> processor;
  };

  /// In seconds; 0 for a benchmark that did not run.
  [[nodiscard]] double typical(const std::string& name, Limit::Clock clock) const {
    const auto found = times_.find(name);
    if (found == times_.end()) return 0;
    std::vector<double> times =
        clock == Limit::Clock::real ? found->second.real : found->second.processor;
    std::sort(times.begin(), times.end());
    return clock == Limit::Clock::real ? times[times.size() / 2] : times.front();
  }

  std::map<std::string, Times> times_;
};

}  // namespace vel::bench
