#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/folders.h"
#include "core/result.h"
#include "core/text.h"
#include "tables/byte_pattern.h"
#include "tables/kept_file.h"
#include "tables/line_blocks.h"
#include "tables/table_files.h"

namespace vel {

/// What FLIGHT.csv says about one flight.
struct FlightRoute {
  std::string departure;    ///< first four characters of field 2
  std::string destination;  ///< field 2 from its fifth character on
  std::string remark;
};

/// What letter.csv says about the airline of a flight.
struct Airline {
  bool found = false;
  std::string threeLetter;
  std::string display;
  std::string company;      ///< empty unless the matching line has a fourth field
  bool fourFields = false;  ///< a line read up to the match has a fourth field
};

/// The five fields of an ICAO24.csv line: address, 3-letter code, 2-letter
/// code, registration, equipment; all empty when no line matches.
using Icao24Record = std::array<std::string, 5>;

/// Look-ups in the reference tables. Each one reads its table from the top, as
/// it is then: nothing that was read is kept between calls, so an edit is
/// visible to the very next look-up. Keys and results are UTF-8. A table that
/// cannot be opened gives the error that ends the program; a matching line
/// without a field that is read gives ErrorNumber::incompleteRecord, with the
/// table and the line in its message. One thread uses an object.
class Tables {
 public:
  Tables(const Folders& folders, const Encoding& encoding);

  /// Equipment of a registration: the last matching line wins. Lines without
  /// a comma never match. Empty when there is none.
  Result<std::string> equipmentOfLastLine(std::string_view registration) const;

  /// As equipmentOfLastLine, but the first matching line wins.
  Result<std::string> equipmentOfFirstLine(std::string_view registration) const;

  /// Route of a flight: the first matching line wins.
  Result<std::optional<FlightRoute>> flightRoute(std::string_view flight) const;

  /// As flightRoute, but the line need not have a remark; a missing table gives
  /// the message "Not found data\flight.csv".
  Result<std::optional<FlightRoute>> testedFlightRoute(std::string_view flight) const;

  /// True when a line's field 1 equals the two-character prefix.
  Result<bool> knowsAirline(std::string_view prefix) const;

  /// The airline whose field 1 contains the prefix: the first line wins.
  Result<Airline> airlineOf(std::string_view prefix) const;

  /// 3-letter code of the first airline whose prefix (2-letter code) equals
  /// this one.
  Result<std::optional<std::string>> threeLetterCodeOf(std::string_view prefix) const;

  /// Prefix of the first airline whose 3-letter code equals this one; empty
  /// when there is none.
  Result<std::string> prefixOf(std::string_view threeLetterCode) const;

  /// Name of the airport whose field 1 contains the code: the last line wins.
  /// Empty, without reading, for an empty code.
  Result<std::string> airportNameOfLastLine(std::string_view code) const;

  /// 4-letter code of the first line whose field 2 ends in the 3-letter code.
  Result<std::string> airportCodeOfThreeLetters(std::string_view code) const;

  /// Name of the first airport whose field 1 equals the code; nothing when
  /// there is none.
  Result<std::optional<std::string>> airportNameOfFirstLine(std::string_view code) const;

  /// 4-letter code of the first airport whose field 2 equals the name.
  Result<std::string> airportCodeOfName(std::string_view name) const;

  /// Field 2 of every line whose field 2 contains the keyword, both in lower
  /// case, in file order; an empty keyword gives all. A missing table gives
  /// the message "Not found data\airport.csv".
  Result<std::vector<std::string>> airportNames(std::string_view keyword) const;

  /// The first line of at least five fields whose field 1 equals the address.
  /// A missing table gives the message "Not found data\ICAO24.csv".
  Result<Icao24Record> aircraftOfAddress(std::string_view address) const;

  /// As aircraftOfAddress, but a missing table is no error: nothing is found.
  Result<Icao24Record> aircraftOfAddressIfPresent(std::string_view address) const;

  /// While one lives, the tables that look-ups open stay open from one to the
  /// next, and each look-up finds out whether its table is still the same file.
  /// For a short piece of work that asks for many lines: an open file can keep a
  /// volume busy. The tables outlive it.
  class [[nodiscard]] ManyLookUps {
   public:
    explicit ManyLookUps(const Tables& tables)
        : tables_(tables), isInner_(std::exchange(tables.keepsFiles_, true)) {}
    ManyLookUps(ManyLookUps&&) = delete;
    ~ManyLookUps() {
      if (isInner_) return;
      tables_.keepsFiles_ = false;
      for (KeptFile& file : tables_.files_) file.close();
    }

   private:
    const Tables& tables_;
    bool isInner_;
  };

  [[nodiscard]] const Folders& folders() const { return folders_; }
  [[nodiscard]] const Encoding& encoding() const { return encoding_; }

 private:
  class Reader;

  Folders folders_;
  Encoding encoding_;
  std::array<std::filesystem::path, kTables.size()> usualPaths_;
  std::string_view byteOrderMark_;
  mutable BlockMemory memory_;
  mutable std::array<ProbeHint, kTables.size()> hints_;
  mutable std::array<KeptFile, kTables.size()> files_;
  mutable bool keepsFiles_ = false;  // as long as a ManyLookUps lives
};

}  // namespace vel
