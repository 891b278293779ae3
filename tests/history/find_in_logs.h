#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "history/found_messages.h"
#include "history/history_search.h"
#include "history/query.h"
#include "tests/support/test_files.h"

namespace vel::test {

/// A search to its end; lines with their cells joined by "|".
struct Finding {
  FoundMessages found;
  std::vector<LogProblem> problems;
  bool cutShort = false;

  [[nodiscard]] std::vector<std::string> lines() const {
    std::vector<std::string> all;
    for (std::size_t i = 0; i < found.size(); ++i) {
      std::string line;
      for (int column = 0; column < kFoundColumns; ++column) {
        if (column > 0) line += '|';
        line += found.cell(i, column);
      }
      all.push_back(line);
    }
    return all;
  }
  [[nodiscard]] std::vector<std::string> column(int column) const {
    std::vector<std::string> all;
    for (std::size_t i = 0; i < found.size(); ++i) all.push_back(found.cell(i, column));
    return all;
  }
};

inline Finding findIn(const Folders& folders, const HistoryQuery& query,
                      const Encoding& encoding = Encoding::codePage932()) {
  Finding finding;
  EXPECT_EQ(problemOf(query, encoding), QueryProblem::none);
  HistorySearch search(folders, encoding, query, finding.found);
  while (true) {
    // A deadline that has passed: as many steps as there can be.
    const auto step = search.step(Job::Clock::time_point::min());
    EXPECT_TRUE(step.ok());
    if (!step || *step == JobProgress::done) break;
  }
  finding.problems = search.problems();
  finding.cutShort = search.isCutShort();
  return finding;
}

}  // namespace vel::test
