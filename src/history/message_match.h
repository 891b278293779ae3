#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "core/text.h"
#include "hfdl/hfdl_log.h"
#include "history/found_messages.h"
#include "history/query.h"
#include "tables/tables.h"

namespace vel {

/// The eight fields of a list log's line as bytes; false for a line that is no
/// record (the header among them).
struct ListFields {
  std::string_view field[8];
};
[[nodiscard]] bool cutListLine(std::string_view line, ListFields& fields);

/// A record of a formatted log and the part of its message that it was read
/// from.
struct HfdlPart {
  HfdlRecord record;
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// Reads the records of whole messages as bytes; what stands before the first
/// header is left out.
class HfdlParts : private HfdlListener {
 public:
  explicit HfdlParts(const Encoding& encoding) : encoding_(encoding) {}

  /// Calls `take` for each record, in their order.
  void forEach(std::string_view messages, const std::function<void(const HfdlPart&)>& take);

 private:
  void aircraftEnded(const HfdlMessage& message, const HfdlAircraft& aircraft) override;

  Encoding encoding_;
  HfdlPart part_;
  bool complete_ = false;  // the last line ended the part
};

/// Tells whether a line, or a message, that holds the text's bytes is one that
/// is searched for, and hands it over.
class MessageMatch {
 public:
  /// The tables tell the airline of an aircraft whose flight is given by its
  /// number alone; without them such a flight is known as received only.
  MessageMatch(const HistoryQuery& query, const Tables& tables);

  [[nodiscard]] const SearchText& text() const { return text_; }

  /// A line of a list log.
  void takeListLine(std::string_view line, std::uint64_t offset,
                    std::optional<std::chrono::local_days> day, std::uint32_t log,
                    FoundMessages& found);

  /// A message of a formatted log with all its lines.
  void takeHfdlMessage(std::string_view message, std::uint64_t offset,
                       std::optional<std::chrono::local_days> day, std::uint32_t log,
                       FoundMessages& found);

  /// Whose messages a raw log holds, by its name.
  enum class RawLog { ofAny, ofTheAircraft };

  /// A line of a raw log; in one of the aircraft that is searched for, every
  /// message is its own.
  void takeRawLine(std::string_view line, std::uint64_t offset, RawLog kind, std::uint32_t log,
                   FoundMessages& found);

 private:
  [[nodiscard]] bool fits(const ListFields& fields, std::string_view line) const;
  [[nodiscard]] bool fits(const HfdlPart& part, std::string_view message);
  [[nodiscard]] bool isCompletedFlight(const HfdlRecord& record);
  std::string_view decoded(std::string_view bytes, std::string& keep) const;

  HistoryQuery query_;
  Encoding encoding_;
  SearchText text_;
  HfdlParts parts_;
  Tables tables_;
  std::map<std::string, Icao24Record> aircraft_;  // looked up during this search
  std::string kept_[6];
  std::string time_;
};

}  // namespace vel
