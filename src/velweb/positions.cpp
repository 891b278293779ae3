#include "velweb/positions.h"

#include <array>
#include <cmath>
#include <utility>

#include "velweb/text_scan.h"

namespace vel {
namespace {

using Found = std::optional<Position>;

// How the digits of a latitude and a longitude are to be read: their widths
// (the longitude has one digit more unless told otherwise) and their unit.
struct DigitFormat {
  std::size_t latitudeWidth;
  std::size_t longitudeWidth;
  double perDegree;  // for decimal fractions of a degree; 0 for minutes
  int perMinute;     // for minutes: units of the last digit in a minute
};
constexpr DigitFormat kMinuteTenths{5, 6, 0, 10};
constexpr DigitFormat kMinutes{4, 5, 0, 1};
constexpr DigitFormat kSeconds{6, 7, 0, 100};
constexpr DigitFormat kHundredths{5, 5, 100, 0};
constexpr DigitFormat kThousandths{5, 6, 1000, 0};
constexpr DigitFormat kTenThousandths{6, 7, 10000, 0};

std::optional<double> degrees(int digits, const DigitFormat& format) {
  if (format.perMinute == 0) return digits / format.perDegree;
  const int perDegree = 100 * format.perMinute;
  const int minutes = digits % perDegree / format.perMinute;
  const int rest = digits % format.perMinute;
  // The seconds of DDMMSS run to 59, the tenths of a minute to 9.
  const int restPerMinute = format.perMinute == kSeconds.perMinute ? 60 : format.perMinute;
  if (minutes >= 60 || rest >= restPerMinute) return std::nullopt;
  const int degrees = digits / perDegree;
  return degrees + (minutes + static_cast<double>(rest) / restPerMinute) / 60;
}

Found located(int north, std::optional<double> latitude, int east,
              std::optional<double> longitude) {
  if (!latitude || !longitude) return std::nullopt;
  return checkedPosition(north * *latitude, east * *longitude);
}

// N38160W077075, with something (a comma) or nothing between the two.
Found takeDigitPair(TextScan& scan, const DigitFormat& format, std::string_view between = "") {
  const auto north = scan.takeSign('N', 'S');
  if (!north) return std::nullopt;
  const auto latitude = scan.takeNumber(format.latitudeWidth);
  if (!latitude || !scan.take(between)) return std::nullopt;
  const auto east = scan.takeSign('E', 'W');
  if (!east) return std::nullopt;
  const auto longitude = scan.takeNumber(format.longitudeWidth);
  if (!longitude) return std::nullopt;
  return located(*north, degrees(*latitude, format), *east, degrees(*longitude, format));
}

// A number with a point, and how many digits stand after it.
struct PointNumber {
  double value = 0;
  std::size_t decimals = 0;
};

std::optional<PointNumber> takePointNumber(TextScan& scan, std::size_t mostWhole,
                                           std::size_t mostDecimals) {
  scan.skipBlanks();
  const std::size_t whole = scan.countDigits();
  if (whole == 0 || whole > mostWhole) return std::nullopt;
  PointNumber number;
  number.value = *scan.takeNumber(whole);
  if (!scan.take(".")) return std::nullopt;
  number.decimals = scan.countDigits() < mostDecimals ? scan.countDigits() : mostDecimals;
  if (number.decimals == 0) return std::nullopt;
  number.value += *scan.takeNumber(number.decimals) / std::pow(10, number.decimals);
  return number;
}

// Both numbers of a pair are written with as many decimals: a longitude with
// fewer has been cut short on its way.
constexpr std::size_t kFewestDecimals = 2;
constexpr std::size_t kMostDecimals = 5;

bool isPair(const std::optional<PointNumber>& first, const std::optional<PointNumber>& second) {
  return first && second && first->decimals == second->decimals &&
         first->decimals >= kFewestDecimals;
}

// N 44.203,W 86.546
Found takeDecimalPair(TextScan& scan, std::string_view between) {
  const auto north = scan.takeSign('N', 'S');
  if (!north) return std::nullopt;
  const auto latitude = takePointNumber(scan, 2, kMostDecimals);
  if (!latitude || !scan.take(between)) return std::nullopt;
  const auto east = scan.takeSign('E', 'W');
  if (!east) return std::nullopt;
  const auto longitude = takePointNumber(scan, 3, kMostDecimals);
  if (!isPair(latitude, longitude) || !scan.atBoundary()) return std::nullopt;
  return checkedPosition(*north * latitude->value, *east * longitude->value);
}

// - 4.9985,-169.9820 or +38.9603,-077.4595 or a blank for the plus
Found takeSignedPair(TextScan& scan) {
  const auto sign = [&scan] {
    scan.skipBlanks();
    return scan.takeSign('+', '-').value_or(1);
  };
  const int north = sign();
  const auto latitude = takePointNumber(scan, 3, kMostDecimals);
  if (!latitude || !scan.take(",")) return std::nullopt;
  const int east = sign();
  const auto longitude = takePointNumber(scan, 3, kMostDecimals);
  if (!isPair(latitude, longitude) || !scan.atBoundary()) return std::nullopt;
  return checkedPosition(north * latitude->value, east * longitude->value);
}

// 3539.2 or 2947.75: degrees and minutes with a point.
std::optional<PointNumber> takeMinutePoint(TextScan& scan, std::size_t wholeWidth,
                                           std::size_t mostDecimals) {
  if (scan.countDigits() != wholeWidth) return std::nullopt;
  const auto digits = takePointNumber(scan, wholeWidth, mostDecimals);
  if (!digits) return std::nullopt;
  const double whole = std::floor(digits->value / 100);
  const double minutes = digits->value - 100 * whole;
  if (minutes >= 60) return std::nullopt;
  return PointNumber{whole + minutes / 60, digits->decimals};
}

constexpr std::size_t kMostMinuteDecimals = 2;

// N3539.2W07937.2, with something or nothing between. The longitude has as
// many decimals as the latitude, so that digits may follow it.
Found takeMinutePointPair(TextScan& scan, std::string_view between = "") {
  const auto north = scan.takeSign('N', 'S');
  if (!north) return std::nullopt;
  const auto latitude = takeMinutePoint(scan, 4, kMostMinuteDecimals);
  if (!latitude || !scan.take(between)) return std::nullopt;
  const auto east = scan.takeSign('E', 'W');
  if (!east) return std::nullopt;
  const auto longitude = takeMinutePoint(scan, 5, latitude->decimals);
  if (!longitude || longitude->decimals != latitude->decimals) return std::nullopt;
  return checkedPosition(*north * latitude->value, *east * longitude->value);
}

Found ifAtBoundary(const Found& found, const TextScan& scan) {
  return scan.atBoundary() ? found : std::nullopt;
}

std::optional<int> flightLevel(std::optional<int> hundredsOfFeet) {
  if (!hundredsOfFeet) return std::nullopt;
  return checkedAltitude(*hundredsOfFeet * 100);
}

// ",360," where a flight level stands in three digits.
void readLevelField(TextScan scan, Position& position) {
  if (!scan.take(",")) return;
  const auto level = scan.takeNumber(3);
  if (scan.atBoundary()) position.altitudeFeet = flightLevel(level);
}

// ",31965," where an altitude stands in feet.
void readFeetField(TextScan scan, Position& position) {
  if (!scan.take(",")) return;
  scan.skipBlanks();
  const std::size_t width = scan.countDigits();
  if (width < 3 || width > 5) return;
  const auto feet = scan.takeNumber(width);
  if (scan.take(",")) position.altitudeFeet = checkedAltitude(*feet);
}

// ",FIX,hhmmss,360," after the point of a position report.
void readReportLevel(TextScan scan, Position& position) {
  if (!scan.take(",") || !scan.takeField() || !scan.takeDigits(6)) return;
  readLevelField(scan, position);
}

// What stands after the first such mark.
TextScan after(std::string_view text, std::string_view mark) {
  const std::size_t at = text.find(mark);
  return TextScan(at == std::string_view::npos ? "" : text.substr(at + mark.size()));
}

// What stands after the first such mark that a latitude follows.
TextScan beforeHemisphere(std::string_view text, std::string_view mark) {
  while (true) {
    const TextScan scan = after(text, mark);
    if (scan.atEnd() || TextScan(scan).takeSign('N', 'S')) return scan;
    text = scan.rest();
  }
}

// .../PSN39277W077359,142800,...
Found presentPosition(std::string_view text) {
  TextScan scan = beforeHemisphere(text, "/PS");
  return ifAtBoundary(takeDigitPair(scan, kMinuteTenths), scan);
}

// POSN38160W077075,FIX,211733,360,...
Found takeReport(TextScan scan) {
  Found found = ifAtBoundary(takeDigitPair(scan, kMinuteTenths), scan);
  if (found) readReportLevel(scan, *found);
  return found;
}

// A report behind any prefix: the first POS that a coordinate follows.
Found reportAnywhere(std::string_view text) { return takeReport(beforeHemisphere(text, "POS")); }

// *POS10300950N3954W07759363...
Found starReport(std::string_view text) {
  TextScan scan = after(text, "*POS");
  if (!scan.takeDigits(8)) return std::nullopt;
  Found found = takeDigitPair(scan, kMinutes);
  if (!found || !scan.nextIsDigit()) return ifAtBoundary(found, scan);
  if (scan.countDigits() < 3) return std::nullopt;
  found->altitudeFeet = flightLevel(scan.takeNumber(3));
  return found;
}

// (POS-KLM296  -3911N07600W/234212 F250
Found bracketReport(std::string_view text) {
  constexpr std::size_t kLongestFlight = 8;
  TextScan scan = after(text, "(POS-");
  const std::size_t dash = scan.rest().find('-');
  if (dash == std::string_view::npos || dash == 0 || dash > kLongestFlight) return std::nullopt;
  scan = TextScan(scan.rest().substr(dash + 1));
  if (scan.countDigits() != kMinutes.latitudeWidth) return std::nullopt;
  const auto latitude = scan.takeNumber(kMinutes.latitudeWidth);
  const auto north = scan.takeSign('N', 'S');
  if (!latitude || !north || scan.countDigits() != kMinutes.longitudeWidth) return std::nullopt;
  const auto longitude = scan.takeNumber(kMinutes.longitudeWidth);
  const auto east = scan.takeSign('E', 'W');
  if (!longitude || !east || !scan.take("/")) return std::nullopt;
  Found found = located(*north, degrees(*latitude, kMinutes), *east, degrees(*longitude, kMinutes));
  if (found && scan.takeDigits(6) && scan.take(" F")) {
    found->altitudeFeet = flightLevel(scan.takeNumber(3));
  }
  return found;
}

// YSSY,KSFO,101621,- 4.9985,-169.9820,... with or without the ten characters
// of message number and flight before it
Found airportsAndPoint(std::string_view text) {
  constexpr std::size_t kNumberAndFlight = 10;
  const std::size_t comma = text.find(',');
  if (comma == kNumberAndFlight + 4) text.remove_prefix(kNumberAndFlight);
  TextScan scan(text);
  if (!scan.takeCapitals(4) || !scan.take(",") || !scan.takeCapitals(4) || !scan.take(",") ||
      !scan.takeDigits(6) || !scan.take(",")) {
    return std::nullopt;
  }
  return takeSignedPair(scan);
}

// One point a line: N2940.2,W09539.7,181118,...
Found firstPointLine(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    TextScan scan(text.substr(0, end));
    if (scan.take("#DF")) scan = TextScan(scan.rest().substr(scan.atEnd() ? 0 : 1));
    const Found found = takeMinutePointPair(scan, ",");
    if (found && scan.take(",") && scan.takeDigits(6) && scan.atBoundary()) return found;
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return std::nullopt;
}

template <typename... Forms>
Found firstOf(std::string_view text, Forms... forms) {
  Found found;
  static_cast<void>(((found = forms(text)) || ...));
  return found;
}

Found labelH1(std::string_view text) {
  // A flight plan's points lie ahead of the aircraft.
  text = text.substr(0, text.find("FPN"));
  text = text.substr(0, text.find(":F:"));
  return firstOf(text, adscPosition, presentPosition, reportAnywhere, starReport, bracketReport,
                 airportsAndPoint, firstPointLine);
}

Found label10(std::string_view text) {
  TextScan scan(text);
  if (scan.take("LDR01,")) {
    while (true) {
      TextScan here = scan;
      Found found = takeDecimalPair(here, ",");
      if (found) {
        readFeetField(here, *found);
        return found;
      }
      if (!scan.takeField()) return std::nullopt;
    }
  }
  if (scan.take("POS")) {
    if (!scan.takeDigits(6) || !scan.take(",")) return std::nullopt;
    scan.skipBlanks();
    return ifAtBoundary(takeDigitPair(scan, kHundredths, ","), scan);
  }
  if (!scan.take("/")) return std::nullopt;
  const Found found = takeDecimalPair(scan, "/");
  return scan.take("/") ? found : std::nullopt;
}

// N 44.203,W 86.546,31965,6, 290
Found pointAndFeet(std::string_view text) {
  TextScan scan(text);
  Found found = takeDecimalPair(scan, ",");
  if (found) readFeetField(scan, *found);
  return found;
}

// 005236,36787,0135,  97,N 38.364 W 75.226
Found pointInFifthField(std::string_view text) {
  TextScan scan(text);
  if (!scan.takeDigits(6) || !scan.take(",")) return std::nullopt;
  for (int skipped = 0; skipped < 3; ++skipped) {
    if (!scan.takeField()) return std::nullopt;
  }
  return takeDecimalPair(scan, " ");
}

// 283806/AUTPOS/LLD N400547 W0774954
Found automaticPosition(std::string_view text) {
  TextScan scan = after(text, "/AUTPOS/LLD ");
  return ifAtBoundary(takeDigitPair(scan, kSeconds, " "), scan);
}

// POSA1N38843W 78790,RONZZ  ,005159,390,...
Found thousandthsReport(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("POSA1")) return std::nullopt;
  Found found = ifAtBoundary(takeDigitPair(scan, kThousandths), scan);
  if (found) readReportLevel(scan, *found);
  return found;
}

// /LOC N373703,W1222251 or /LOC +38.9603,-077.4595
Found locationField(std::string_view text) {
  TextScan scan = after(text, "/LOC ");
  if (scan.rest().starts_with('N') || scan.rest().starts_with('S')) {
    return ifAtBoundary(takeDigitPair(scan, kSeconds, ","), scan);
  }
  if (!scan.rest().starts_with('+') && !scan.rest().starts_with('-')) return std::nullopt;
  return takeSignedPair(scan);
}

// (2N40492W 77179248 99380-53(Z
Found compactReport(std::string_view text) {
  TextScan scan(text);
  return scan.take("(2") ? takeDigitPair(scan, kMinuteTenths) : std::nullopt;
}

// FST01EGKKKMCON373488W0756927380 156 ...
Found statusReport(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("FST01") || !scan.takeCapitals(8)) return std::nullopt;
  Found found = takeDigitPair(scan, kTenThousandths);
  if (!found) return std::nullopt;
  const auto level = scan.takeNumber(3);
  if (level && scan.atBoundary()) found->altitudeFeet = flightLevel(level);
  return found;
}

Found label20(std::string_view text) {
  TextScan scan(text);
  return scan.take("POS") ? takeReport(scan) : std::nullopt;
}

// POSN 39.841W 75.790, 220,184218,...
Found label21(std::string_view text) {
  TextScan scan(text);
  return scan.take("POS") ? takeDecimalPair(scan, "") : std::nullopt;
}

// N 404630W 735400,-------,042530,...
Found label22(std::string_view text) {
  // The latitude is as wide as the longitude here.
  constexpr DigitFormat kEqualSeconds{7, 7, 0, 100};
  TextScan scan(text);
  return ifAtBoundary(takeDigitPair(scan, kEqualSeconds), scan);
}

// P,R,2026-02-02 00:55:09,7688,68300,N36.795 W107.615,20717,...
Found label32(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("P,")) return std::nullopt;
  for (int skipped = 0; skipped < 4; ++skipped) {
    if (!scan.takeField()) return std::nullopt;
  }
  return takeDecimalPair(scan, " ");
}

// POS02,N38171W077507,319,KJFK,...
Found label44(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("POS") && !scan.take("ON") && !scan.take("OFF") && !scan.take("IN") &&
      !scan.take("ETA")) {
    return std::nullopt;
  }
  if (!scan.takeDigits(2) || !scan.take(",")) return std::nullopt;
  Found found = ifAtBoundary(takeDigitPair(scan, kMinuteTenths), scan);
  if (found) readLevelField(scan, *found);
  return found;
}

// .../4435.1N07143.4W/...
Found label4T(std::string_view text) {
  for (std::size_t at = text.find('/'); at != std::string_view::npos; at = text.find('/', at + 1)) {
    TextScan scan(text.substr(at + 1));
    const auto latitude = takeMinutePoint(scan, 4, kMostMinuteDecimals);
    if (!latitude) continue;
    const auto north = scan.takeSign('N', 'S');
    const auto longitude = takeMinutePoint(scan, 5, kMostMinuteDecimals);
    const auto east = scan.takeSign('E', 'W');
    if (!north || !longitude || !east || longitude->decimals != latitude->decimals ||
        !scan.take("/")) {
      return std::nullopt;
    }
    return located(*north, latitude->value, *east, longitude->value);
  }
  return std::nullopt;
}

// /POS N3539.2W07937.2/FL 360
Found label80(std::string_view text) {
  TextScan scan = after(text, "/POS ");
  Found found = ifAtBoundary(takeMinutePointPair(scan), scan);
  if (found && scan.take("/FL ")) {
    const auto level = scan.takeNumber(3);
    if (scan.atBoundary()) found->altitudeFeet = flightLevel(level);
  }
  return found;
}

// 001PR19113523N2947.7W09536.51273750177
Found progressReport(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("001PR") || !scan.takeDigits(8)) return std::nullopt;
  return takeMinutePointPair(scan);
}

Found label15(std::string_view text) {
  return firstOf(text, compactReport, statusReport, locationField);
}

Found label16(std::string_view text) {
  return firstOf(text, pointAndFeet, pointInFifthField, automaticPosition, thousandthsReport,
                 locationField);
}

Found label83(std::string_view text) { return firstOf(text, progressReport, airportsAndPoint); }

using Form = Found (*)(std::string_view);
constexpr std::array<std::pair<std::string_view, Form>, 20> kForms = {{
    {"H1", labelH1},      {"4J", presentPosition}, {"2P", presentPosition}, {"10", label10},
    {"12", pointAndFeet}, {"13", locationField},   {"14", locationField},   {"15", label15},
    {"16", label16},      {"17", locationField},   {"18", locationField},   {"20", label20},
    {"21", label21},      {"22", label22},         {"32", label32},         {"44", label44},
    {"4T", label4T},      {"80", label80},         {"83", label83},         {"B6", adscPosition},
}};

}  // namespace

std::optional<Position> checkedPosition(double latitude, double longitude) {
  if (std::abs(latitude) > 90 || std::abs(longitude) > 180) return std::nullopt;
  if (latitude == 0 && longitude == 0) return std::nullopt;
  return Position{latitude, longitude};
}

std::optional<int> checkedAltitude(int feet) {
  constexpr int kLowest = -1500;
  constexpr int kHighest = 60'000;
  if (feet < kLowest || feet > kHighest) return std::nullopt;
  return feet;
}

std::optional<Position> positionOf(std::string_view label, std::string_view text) {
  TextScan start(text);
  start.skipSpace();
  for (const auto& [name, form] : kForms) {
    if (name == label) return form(start.rest());
  }
  return std::nullopt;
}

}  // namespace vel
