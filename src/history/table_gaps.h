#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/job.h"
#include "history/day_counts.h"
#include "tables/tables.h"
#include "web/photo.h"

namespace vel {

/// What a record, or a photo, is missing for.
enum class GapKind { aircraft, flight, prefix, airport, photo };
constexpr std::size_t kGapKinds = 5;

/// One thing that is missing.
struct TableGap {
  GapKind kind;
  std::string name;     ///< the key of the record to write
  std::string heardAs;  ///< what stands in the log's lines instead, mostly the same
  std::size_t count;    ///< how often it was heard
  /// The aircraft whose airline completes a flight; empty for everything else.
  std::string address = {};
  friend bool operator==(const TableGap&, const TableGap&) = default;
};

/// Looks everything up that a day's log names, and gives what the tables and
/// the photo folder do not have: aircraft without a record in aircraft.csv
/// (ACARS, by registration) or ICAO24.csv (HFDL, by address), flights without a
/// route, prefixes that letter.csv does not have, airports that airport.csv
/// does not have, aircraft without a photo. In a day of HFDL the airports are
/// those of the routes.
class TableGaps : public Job {
 public:
  TableGaps(const Tables& tables, ReportKind kind, const DayCounts& day);

  /// An Error when a table cannot be read.
  Result<JobProgress> step(Clock::time_point deadline) override;

  /// The most often heard first, equal ones by name; complete once done.
  [[nodiscard]] std::vector<TableGap> gaps(GapKind kind) const;

 private:
  struct Name {
    GapKind kind;
    std::string text;
    std::size_t count;
  };

  Status look(const Name& name);
  Status lookFlight(const Name& name);
  Result<bool> hasAirport(const std::string& code) const;
  void miss(GapKind kind, std::string name, std::string heardAs, std::size_t count);

  Tables tables_;
  ReportKind kind_;
  PhotoFolder photos_;
  std::vector<Name> names_;
  std::size_t next_ = 0;
  NameCounts routeAirports_;
  bool routesDone_ = false;
  std::vector<TableGap> gaps_;
};

}  // namespace vel
