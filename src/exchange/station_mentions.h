#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "core/folders.h"
#include "core/job.h"
#include "core/line_reader.h"
#include "core/text.h"
#include "hfdl/hfdl_log.h"
#include "tables/table_files.h"

namespace vel {

/// What the station's logs name and a table could have a record for.
class StationMentions {
 public:
  void addRegistration(std::string_view registration);
  void addFlight(std::string_view flight);
  void addAirport(std::string_view code);
  void addAddress(std::string_view address);

  /// The keys under which a record is wanted: its own, or for an aircraft each
  /// way in which its registration was received, hyphens or not. None for a
  /// record that no log asks for. `name` is the airport's, which ends in its
  /// 3-letter code.
  [[nodiscard]] std::vector<std::string> keysFor(Table table, std::string_view key,
                                                 std::string_view name) const;

  [[nodiscard]] bool namesFlight(std::string_view flight) const;

 private:
  using Names = std::unordered_set<std::string>;
  Names flights_;
  Names prefixes_;
  Names airports_;
  Names addresses_;
  std::unordered_map<std::string, std::vector<std::string>> registrations_;  // by its bare form
};

/// Reads all dated logs of both decoders, and of the tables what stands between
/// a log's name and a record's key: the airports of routes, and the airlines that
/// complete short flights. A log that cannot be read is passed over.
class MentionReading : public Job {
 public:
  /// The mentions outlive the job.
  MentionReading(const Folders& folders, const Encoding& encoding, StationMentions& mentions);
  ~MentionReading() override;

  Result<JobProgress> step(Clock::time_point deadline) override;

  /// Of the logs that are read, 0 to 1.
  [[nodiscard]] double progress() const;

 private:
  void open();
  bool readList(Clock::time_point deadline);
  bool readFormatted(Clock::time_point deadline);
  void takeListLine(std::string_view line);
  void readTables();

  Folders folders_;
  Encoding encoding_;
  StationMentions& mentions_;
  std::vector<std::string> lists_;
  std::vector<std::string> formatted_;
  std::size_t inAll_ = 0;
  std::unique_ptr<LineReader> list_;
  std::unique_ptr<HfdlReader> hfdl_;
  std::vector<std::pair<std::string, std::string>> shortFlights_;  // with their addresses
  std::unordered_set<std::string> shortFlightsSeen_;
};

}  // namespace vel
