#pragma once

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
/// case. A prefix without a scheme gets "https://" before it, and so does one of
/// local files ("file:"): no address leads to a local file, whatever the value
/// is. Nothing here is fetched or opened.
///
/// `homepage` is the host (scheme and host name, no slash at its end) of the
/// system's own web site: services.ini's, or the companion service's.

/// Whose choosers are meant; the two windows differ in their entries.
enum class SearchWindow { acars, hfdl };

/// The services of a photo search; `user` is the user's own.
enum class PhotoEngine { user, airliner, jetphotos, planepictures, feeyo };

/// The services of a flight search; `user` is the user's own.
enum class FlightEngine { user, flightStats, homepage, flightAware, flyteComm };

/// The services that an ICAO 24-bit address is pasted into.
enum class AddressEngine { airframes, libhomeradar, kloth };

/// An entry of a chooser: what it is called, and the engine behind it.
template <typename Engine>
struct EngineEntry {
  std::string label;
  Engine engine;
  bool operator==(const EngineEntry&) const = default;
};

/// The entries of a window's choosers in their order. The ACARS choosers begin
/// with the user's own engine; env_regSchCmb and env_fltSchCmb count from there.
[[nodiscard]] std::vector<EngineEntry<PhotoEngine>> photoEngines(SearchWindow window,
                                                                 const Settings& settings);
[[nodiscard]] std::vector<EngineEntry<FlightEngine>> flightEngines(SearchWindow window,
                                                                   const Settings& settings);
[[nodiscard]] std::vector<EngineEntry<AddressEngine>> addressEngines();

/// The address of a photo search.
[[nodiscard]] std::string photoAddress(const Services& services, const Settings& settings,
                                       PhotoEngine engine, std::string_view registration);

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

/// The address of a flight search. FLIGHTSTATS fails when the number part is no
/// number; FlightAware and FlyteComm read letter.csv and fail when it cannot be
/// read. The error's text is for the user.
Result<std::string> flightAddress(const Services& services, const Settings& settings,
                                  std::string_view homepage, const Tables& tables,
                                  FlightEngine engine, const FlightValues& values);

/// True when the address of that engine leads to the system's own web site,
/// whose companion service then has to run.
[[nodiscard]] bool needsHomepage(const Settings& settings, FlightEngine engine);

/// The page of an ICAO 24-bit address service. The address itself travels on
/// the clipboard.
[[nodiscard]] std::string addressPage(const Services& services, AddressEngine engine);

/// The web search for an airport's code, from the airport dialog.
[[nodiscard]] std::string airportSearchAddress(const Services& services, std::string_view code);

/// What a Test button of the Conffig dialog shows and then opens.
struct SearchSample {
  std::string message;
  std::string address;
};

/// How the number of a flight is written.
enum class LeadingZeros { kept, dropped };

/// The samples append to the address box's current text, not to the setting.
[[nodiscard]] SearchSample registrationSample(std::string_view addressBox);
[[nodiscard]] SearchSample flightSample(std::string_view addressBox, LeadingZeros zeros,
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

}  // namespace vel
