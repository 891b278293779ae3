#include "web/address.h"

#include <algorithm>

#include "core/file.h"
#include "core/line_reader.h"
#include "core/text.h"

namespace vel {
namespace {

constexpr std::string_view kJetPhotosPath = "/showphotos.php?regsearch=";
constexpr std::string_view kPlanepicturesPath = "/netsearch4.cgi?stype=reg&srng=2&srch=";
constexpr std::string_view kFeeyoPath = "/searchpic.jsp?action=search&pictype=1&airplane_regcode=";
constexpr std::string_view kFlightStatsPath =
    "/go/FlightStatus/flightStatusByFlight.do?airline=%28";
constexpr std::string_view kFlightStatsNumber = "%29&flightNumber=";
constexpr std::string_view kFlightAwarePath = "/live/flight/";
constexpr std::string_view kFlyteCommPath =
    "/cgi-bin/trackflight?action=select_advanced&flight_id=";
constexpr std::string_view kLibhomeradarPath = "/databasequery/icao24allocations.php";
constexpr std::string_view kKlothPath = "/radio/icao24lookup.php";

template <typename... Pieces>
std::string join(const Pieces&... pieces) {
  std::string joined;
  (joined.append(pieces), ...);
  return joined;
}

constexpr const char* kNoNumber =
    "The flight number is not numeric. 便名の番号部分が数値ではありません";

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The scheme that an address begins with, without its colon; empty for none.
// "host:8080" has none, nor has "C:" with a path.
std::string_view schemeOf(std::string_view address) {
  const auto isSchemePart = [](char c) {
    return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
  };
  const auto end = std::find_if_not(address.begin(), address.end(), isSchemePart);
  const auto size = static_cast<std::size_t>(end - address.begin());
  if (size < 2 || size == address.size() || address[size] != ':') return {};
  const std::string_view after = address.substr(size + 1);
  if (!isLetter(address[0]) || (!after.empty() && isDigit(after[0]))) return {};
  return address.substr(0, size);
}

// A prefix and what follows it, as an address that a web browser takes. Only
// the prefix says what it leads to: the rest may have come over the air.
template <typename... Pieces>
std::string composed(std::string_view prefix, const Pieces&... pieces) {
  const std::string_view scheme = schemeOf(prefix);
  const bool isUsable = !scheme.empty() && !equalIgnoringCase(scheme, "file");
  return join(isUsable ? "" : "https://", prefix, pieces...);
}

// The user's prefix with the host that a prefix of the own web site lacks.
std::string completed(std::string_view prefix, std::string_view homepage) {
  return isHomepagePrefix(prefix) ? join(homepage, prefix) : std::string(prefix);
}

std::size_t countDigits(std::string_view text) {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) -
                                  text.begin());
}

// The number that a text begins with: its pieces, and how long it is.
struct Number {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
  std::size_t size = 0;
};

std::optional<Number> numberAtStart(std::string_view text) {
  Number number;
  if (text.starts_with('-') || text.starts_with('+')) {
    number.negative = text.front() == '-';
    number.size = 1;
  }
  std::string_view rest = text.substr(number.size);
  number.whole = rest.substr(0, countDigits(rest));
  rest.remove_prefix(number.whole.size());
  number.size += number.whole.size();
  if (rest.starts_with('.')) {
    number.fraction = rest.substr(1, countDigits(rest.substr(1)));
    if (number.whole.empty() && number.fraction.empty()) return std::nullopt;
    number.size += 1 + number.fraction.size();
  }
  if (number.whole.empty() && number.fraction.empty()) return std::nullopt;
  return number;
}

std::string written(const Number& number) {
  std::string_view whole = number.whole;
  while (whole.starts_with('0')) whole.remove_prefix(1);
  std::string_view fraction = number.fraction;
  while (fraction.ends_with('0')) fraction.remove_suffix(1);
  if (whole.empty() && fraction.empty()) return "0";
  return join(number.negative ? "-" : "", whole.empty() ? std::string_view("0") : whole,
              fraction.empty() ? "" : ".", fraction);
}

std::string_view withoutLeadingBlanks(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  return text;
}

}  // namespace

std::vector<EngineEntry<PhotoEngine>> photoEngines(SearchWindow window, const Settings& settings) {
  std::vector<EngineEntry<PhotoEngine>> entries = {{"Airliner", PhotoEngine::airliner},
                                                   {"JetPhotos", PhotoEngine::jetphotos},
                                                   {"Planepictures", PhotoEngine::planepictures}};
  if (window == SearchWindow::acars) {
    entries.insert(entries.begin(), {settings.env_regDefName0, PhotoEngine::user});
  } else {
    entries.push_back({"Feeyo", PhotoEngine::feeyo});
  }
  return entries;
}

std::vector<EngineEntry<FlightEngine>> flightEngines(SearchWindow window,
                                                     const Settings& settings) {
  std::vector<EngineEntry<FlightEngine>> entries = {{"FLIGHTSTATS", FlightEngine::flightStats},
                                                    {"HOMEPAGE", FlightEngine::homepage},
                                                    {"FlightAware", FlightEngine::flightAware},
                                                    {"FlyteComm", FlightEngine::flyteComm}};
  if (window == SearchWindow::acars) {
    entries.insert(entries.begin(), {settings.env_FltDefName0, FlightEngine::user});
  }
  return entries;
}

std::vector<EngineEntry<AddressEngine>> addressEngines() {
  return {{"Airframes", AddressEngine::airframes},
          {"libhomeradar", AddressEngine::libhomeradar},
          {"KLOTH", AddressEngine::kloth}};
}

std::string photoAddress(const Services& services, const Settings& settings, PhotoEngine engine,
                         std::string_view registration) {
  switch (engine) {
    case PhotoEngine::airliner:
      return composed(services.airliner, kAirlinerPath, registration);
    case PhotoEngine::jetphotos:
      return composed(services.jetphotos, kJetPhotosPath, registration);
    case PhotoEngine::planepictures:
      return composed(services.planepictures, kPlanepicturesPath, registration);
    case PhotoEngine::feeyo:
      return composed(services.feeyo, kFeeyoPath, registration);
    case PhotoEngine::user:
      break;
  }
  return composed(settings.env_regDefUrl0, registration);
}

FlightValues FlightValues::fromAcars(std::string_view column1) {
  return {std::string(column1), std::string(column1), std::string(column1)};
}

Result<std::string> flightAddress(const Services& services, const Settings& settings,
                                  std::string_view homepage, const Tables& tables,
                                  FlightEngine engine, const FlightValues& values) {
  const std::string_view code = Left(values.identifier, 2);
  const std::string_view number = Mid(values.identifier, 3);
  switch (engine) {
    case FlightEngine::flightStats: {
      const Result<std::string> strict = strictNumber(number);
      if (!strict) return Error{strict.error().number, kNoNumber};
      return composed(services.flightstats, kFlightStatsPath, code, kFlightStatsNumber, *strict);
    }
    case FlightEngine::homepage:
      return composed(homepage, kHomepagePath, values.listed);
    case FlightEngine::flightAware:
    case FlightEngine::flyteComm: {
      const auto found = tables.threeLetterCodeOf(code);
      if (!found) return found.error();
      // An airline that the table does not know keeps its two letters.
      const std::string letters = found->value_or(std::string(code));
      return engine == FlightEngine::flightAware
                 ? composed(services.flightaware, kFlightAwarePath, letters, leadingNumber(number))
                 : composed(services.flytecomm, kFlyteCommPath, letters, leadingNumber(number));
    }
    case FlightEngine::user:
      break;
  }
  const std::string prefix = completed(settings.env_FltDefUrl0, homepage);
  if (settings.env_fltSchZsp != 1) return composed(prefix, values.column1);
  return composed(prefix, code, leadingNumber(number));
}

bool needsHomepage(const Settings& settings, FlightEngine engine) {
  return engine == FlightEngine::homepage ||
         (engine == FlightEngine::user && isHomepagePrefix(settings.env_FltDefUrl0));
}

std::string addressPage(const Services& services, AddressEngine engine) {
  switch (engine) {
    case AddressEngine::airframes:
      return composed(services.airframes, "/");
    case AddressEngine::libhomeradar:
      return composed(services.libhomeradar, kLibhomeradarPath);
    case AddressEngine::kloth:
      break;
  }
  return composed(services.kloth, kKlothPath);
}

std::string airportSearchAddress(const Services& services, std::string_view code) {
  return composed(services.airportsearch, "/search?hl=ja&q=ICAO+", code, "+IATA+airport+wiki");
}

SearchSample registrationSample(std::string_view addressBox) {
  return {"The sample is opened by using 'G-CIVE'.", composed(addressBox, "G-CIVE")};
}

SearchSample flightSample(std::string_view addressBox, LeadingZeros zeros,
                          std::string_view homepage) {
  const std::string_view flight = zeros == LeadingZeros::dropped ? "BA7" : "BA0007";
  return {join("The sample is opened by using '", flight, "'."),
          composed(completed(addressBox, homepage), flight)};
}

bool isHomepagePrefix(std::string_view prefix) {
  return prefix.starts_with('/') && !prefix.starts_with("//");
}

Result<std::string> strictNumber(std::string_view text) {
  const std::string_view trimmed = Trim(text);
  const std::optional<Number> number = numberAtStart(trimmed);
  if (!number || number->size != trimmed.size()) return ErrorNumber::typeMismatch;
  return written(*number);
}

std::string leadingNumber(std::string_view text) {
  const std::optional<Number> number = numberAtStart(withoutLeadingBlanks(text));
  return number ? written(*number) : "0";
}

}  // namespace vel
