#pragma once

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace vel::bench {

/// What a benchmark may take at most, its median real time against the fastest
/// of others of the same run, or against a fixed time.
struct Limit {
  std::string benchmark;
  std::vector<std::string> baselines;  ///< empty for a fixed time
  double most = 0;                     ///< times the baseline, or milliseconds
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
      seconds_[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                     static_cast<double>(run.iterations));
    }
  }

  /// False when a limit was not kept. Limits of benchmarks that a filter left
  /// out are not looked at.
  bool report(const std::vector<Limit>& limits) const {
    bool kept = true;
    std::printf("\n%-46s %12s %12s %8s\n", "limits (medians)", "measured", "against", "limit");
    for (const Limit& limit : limits) {
      const double measured = median(limit.benchmark);
      double baseline = 0;
      for (const std::string& name : limit.baselines) {
        const double time = median(name);
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
  [[nodiscard]] double median(const std::string& name) const {
    const auto found = seconds_.find(name);
    if (found == seconds_.end()) return 0;
    std::vector<double> times = found->second;
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
  }

  std::map<std::string, std::vector<double>> seconds_;
};

}  // namespace vel::bench
