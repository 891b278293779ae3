#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/result.h"
#include "core/services.h"
#include "core/settings.h"
#include "tables/tables.h"

namespace vel {

/// The addresses of the web look-ups. A value is appended to its service's
/// prefix exactly as it is: no percent-encoding, no trimming, no change of
/// case. Nothing here is fetched or opened.
///
/// `homepage` is the host (scheme and host name, no slash at its end) of the
/// system's own web site: services.ini's, or the companion service's.

/// Whose lists a position belongs to; the two windows differ in their entries.
enum class SearchWindow { acars, hfdl };

/// Positions in the flight lists.
enum FlightEngine : int {
  kFlightStats = 0,
  kHomepage = 1,
  kFlightAware = 2,
  kFlyteComm = 3,
  kUserFlightEngine = 4,
};

/// The entries of the lists, in their order.
[[nodiscard]] std::vector<std::string> photoEngineLabels(SearchWindow window,
                                                         const Settings& settings);
[[nodiscard]] std::vector<std::string> flightEngineLabels(SearchWindow window,
                                                          const Settings& settings);
[[nodiscard]] std::vector<std::string> icao24EngineLabels();

/// The address for a photo search; nothing for a position without an engine.
[[nodiscard]] std::optional<std::string> photoAddress(const Services& services,
                                                      const Settings& settings, SearchWindow window,
                                                      int position, std::string_view registration);

/// The texts that a flight search takes from its window.
struct FlightValues {
  /// ACARS: column 1 of the selected line; HFDL: the flight frame's caption.
  /// Its first two characters are the airline, the rest is the number.
  std::string identifier;
  /// What HOMEPAGE gets. ACARS: column 1; HFDL: column 7 of the selected line.
  std::string listed;
  /// Column 1 of the selected line in either window: what the user's own
  /// engine gets without zero suppression.
  std::string column1;

  /// The ACARS window takes all three from column 1.
  static FlightValues fromAcars(std::string_view column1);
};

/// The address for a flight search; nothing for a position without an engine.
/// FLIGHTSTATS fails with typeMismatch when the number part is no number.
/// FlightAware and FlyteComm read letter.csv and fail when it cannot be read.
/// After a failure nothing may be opened.
Result<std::optional<std::string>> flightAddress(const Services& services, const Settings& settings,
                                                 std::string_view homepage, const Tables& tables,
                                                 int position, const FlightValues& values);

/// True when the address at that position of a flight list leads to the
/// system's own web site, whose companion service then has to run.
[[nodiscard]] bool needsHomepage(const Settings& settings, int position);

/// The page of an ICAO 24-bit address service; nothing beyond the third. The
/// address itself travels on the clipboard.
[[nodiscard]] std::optional<std::string> icao24Page(const Services& services, int position);

/// The web search for an airport's code, from the airport dialog.
[[nodiscard]] std::string airportSearchAddress(const Services& services, std::string_view code);

/// What a Test button of the Conffig dialog shows and then opens.
struct SearchSample {
  std::string message;
  std::string address;
};

/// The samples append to the address box's current text, not to the setting.
[[nodiscard]] SearchSample registrationSample(std::string_view addressBox);
[[nodiscard]] SearchSample flightSample(std::string_view addressBox, bool zeroSuppress,
                                        std::string_view homepage);

/// True when a prefix belongs to the system's own web site: it begins with "/"
/// and has no host of its own.
[[nodiscard]] bool isHomepagePrefix(std::string_view prefix);

/// A text that is a decimal number as a whole (blanks around it, a sign and a
/// fraction are accepted), written without leading zeros: "0007" gives "7".
/// typeMismatch for any other text, the empty one included.
Result<std::string> strictNumber(std::string_view text);

/// The longest number that a text begins with (blanks before it, a sign and a
/// fraction are accepted), written without leading zeros; "0" when there is
/// none: "12A" gives "12".
[[nodiscard]] std::string leadingNumber(std::string_view text);

/// Field 2 of the first letter.csv line whose field 1 equals the code exactly;
/// the code itself when there is none.
Result<std::string> threeLetterCode(const Tables& tables, std::string_view code);

}  // namespace vel
