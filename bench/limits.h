#pragma once

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace vel::bench {

/// What a benchmark may take at most, against the fastest of others of the same
/// run or against a fixed time.
struct Limit {
  /// The median of the real time, or, for work that waits for nothing and is
  /// the same every time, the least processor time of a single run.
  enum class Clock { real, processor };

  std::string benchmark;
  /// Empty for a fixed time. With Clock::processor the benchmark measures both
  /// sides itself, in turns, and gives them in the counters kLeast and kPlain.
  std::vector<std::string> baselines = {};
  double most = 0;  ///< times the baseline, or milliseconds
  Clock clock = Clock::real;
};

/// Counters with the least processor time in seconds: of the program, and of
/// what it is held against.
constexpr const char* kLeast = "least";
constexpr const char* kPlain = "plain";

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
      const auto least = run.counters.find(kLeast);
      const auto plain = run.counters.find(kPlain);
      if (least == run.counters.end() || plain == run.counters.end()) continue;
      times.least = std::min<double>(times.least, least->second);
      times.plain = std::min<double>(times.plain, plain->second);
    }
  }

  /// False when a limit was not kept. Limits of benchmarks that a filter left
  /// out are not looked at.
  bool report(const std::vector<Limit>& limits) const {
    bool kept = true;
    std::printf("\n%-46s %12s %12s %8s\n", "limits", "measured", "against", "limit");
    for (const Limit& limit : limits) {
      const auto found = times_.find(limit.benchmark);
      if (found == times_.end()) continue;
      const bool inTurns = limit.clock == Limit::Clock::processor;
      const double measured = inTurns ? found->second.least : median(limit.benchmark);
      double baseline = inTurns ? found->second.plain : 0;
      for (const std::string& name : limit.baselines) {
        const double time = median(name);
        if (time > 0) baseline = baseline > 0 ? std::min(baseline, time) : time;
      }
      const bool fixed = !inTurns && limit.baselines.empty();
      if (measured <= 0 || (baseline <= 0 && !fixed)) {
        // Nothing to hold it against: a filter left it out, or the clock is too coarse.
        if (inTurns) kept = false;
        std::printf("%-46s not measured\n", limit.benchmark.c_str());
        continue;
      }
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
    double least = std::numeric_limits<double>::infinity();
    double plain = std::numeric_limits<double>::infinity();
  };

  /// Of the real time, in seconds; 0 for a benchmark that did not run.
  [[nodiscard]] double median(const std::string& name) const {
    const auto found = times_.find(name);
    if (found == times_.end()) return 0;
    std::vector<double> times = found->second.real;
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
  }

  std::map<std::string, Times> times_;
};

}  // namespace vel::bench
