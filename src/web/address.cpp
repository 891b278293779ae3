#include "web/address.h"

#include <algorithm>

#include "core/file.h"
#include "core/line_reader.h"
#include "core/text.h"

namespace vel {
namespace {

constexpr std::string_view kAirlinerPath = "/search/photo.search?regsearch=";
constexpr std::string_view kJetPhotosPath = "/showphotos.php?regsearch=";
constexpr std::string_view kPlanepicturesPath = "/netsearch4.cgi?stype=reg&srng=2&srch=";
constexpr std::string_view kFeeyoPath = "/searchpic.jsp?action=search&pictype=1&airplane_regcode=";
constexpr std::string_view kFlightStatsPath =
    "/go/FlightStatus/flightStatusByFlight.do?airline=%28";
constexpr std::string_view kFlightStatsNumber = "%29&flightNumber=";
constexpr std::string_view kHomepagePath = "/?F=";
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

// The user's prefix with the host that a prefix of the own web site lacks.
std::string completed(std::string_view prefix, std::string_view homepage) {
  return isHomepagePrefix(prefix) ? join(homepage, prefix) : std::string(prefix);
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

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

std::vector<std::string> photoEngineLabels(SearchWindow window, const Settings& settings) {
  return {"Airliner", "JetPhotos", "Planepictures",
          window == SearchWindow::hfdl ? "Feeyo" : settings.env_regDefName0};
}

std::vector<std::string> flightEngineLabels(SearchWindow window, const Settings& settings) {
  std::vector<std::string> labels = {"FLIGHTSTATS", "HOMEPAGE", "FlightAware", "FlyteComm"};
  if (window == SearchWindow::acars) labels.push_back(settings.env_FltDefName0);
  return labels;
}

std::vector<std::string> icao24EngineLabels() { return {"Airframes", "libhomeradar", "KLOTH"}; }

std::optional<std::string> photoAddress(const Services& services, const Settings& settings,
                                        SearchWindow window, int position,
                                        std::string_view registration) {
  switch (position) {
    case 0:
      return join(services.airliner, kAirlinerPath, registration);
    case 1:
      return join(services.jetphotos, kJetPhotosPath, registration);
    case 2:
      return join(services.planepictures, kPlanepicturesPath, registration);
    case 3:
      if (window == SearchWindow::hfdl) return join(services.feeyo, kFeeyoPath, registration);
      return join(settings.env_regDefUrl0, registration);
    case 4:
      if (window == SearchWindow::hfdl) return join(settings.env_regDefUrl0, registration);
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

FlightValues FlightValues::fromAcars(std::string_view column1) {
  return {std::string(column1), std::string(column1), std::string(column1)};
}

Result<std::optional<std::string>> flightAddress(const Services& services, const Settings& settings,
                                                 std::string_view homepage, const Tables& tables,
                                                 int position, const FlightValues& values) {
  const std::string_view code = Left(values.identifier, 2);
  const std::string_view number = Mid(values.identifier, 3);
  switch (position) {
    case kFlightStats: {
      const Result<std::string> strict = strictNumber(number);
      if (!strict) return strict.error();
      return std::optional(
          join(services.flightstats, kFlightStatsPath, code, kFlightStatsNumber, *strict));
    }
    case kHomepage:
      return std::optional(join(homepage, kHomepagePath, values.listed));
    case kFlightAware:
    case kFlyteComm: {
      const Result<std::string> letters = threeLetterCode(tables, code);
      if (!letters) return letters.error();
      return std::optional(
          position == kFlightAware
              ? join(services.flightaware, kFlightAwarePath, *letters, leadingNumber(number))
              : join(services.flytecomm, kFlyteCommPath, *letters, leadingNumber(number)));
    }
    case kUserFlightEngine: {
      const std::string prefix = completed(settings.env_FltDefUrl0, homepage);
      if (settings.env_fltSchZsp != 1) return std::optional(join(prefix, values.column1));
      return std::optional(join(prefix, code, leadingNumber(number)));
    }
    default:
      return std::optional<std::string>();
  }
}

bool needsHomepage(const Settings& settings, int position) {
  return position == kHomepage ||
         (position == kUserFlightEngine && isHomepagePrefix(settings.env_FltDefUrl0));
}

std::optional<std::string> icao24Page(const Services& services, int position) {
  switch (position) {
    case 0:
      return join(services.airframes, "/");
    case 1:
      return join(services.libhomeradar, kLibhomeradarPath);
    case 2:
      return join(services.kloth, kKlothPath);
    default:
      return std::nullopt;
  }
}

std::string airportSearchAddress(const Services& services, std::string_view code) {
  return join(services.airportsearch, "/search?hl=ja&q=ICAO+", code, "+IATA+airport+wiki");
}

SearchSample registrationSample(std::string_view addressBox) {
  return {"The sample is opened by using 'G-CIVE'.", join(addressBox, "G-CIVE")};
}

SearchSample flightSample(std::string_view addressBox, bool zeroSuppress,
                          std::string_view homepage) {
  const std::string_view flight = zeroSuppress ? "BA7" : "BA0007";
  return {join("The sample is opened by using '", flight, "'."),
          join(completed(addressBox, homepage), flight)};
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

Result<std::string> threeLetterCode(const Tables& tables, std::string_view code) {
  Result<InputFile> file = InputFile::open(fileIn(tables.folders().data, "letter.csv"));
  if (!file) return file.error();
  // Lines are compared as bytes; a code that the encoding lacks equals none.
  const std::optional<std::string> wanted = tables.encoding().encode(code);
  LineReader lines(std::move(*file));
  while (true) {
    const auto line = lines.next();
    if (!line) return line.error();
    if (!*line) return std::string(code);
    const std::vector<std::string_view> fields = split(**line, ',');
    if (!wanted || fields[0] != *wanted) continue;
    if (fields.size() < 2) return ErrorNumber::incompleteRecord;
    return tables.encoding().decode(fields[1]);
  }
}

}  // namespace vel
