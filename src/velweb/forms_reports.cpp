#include <algorithm>

#include "velweb/position_forms.h"

namespace vel {
namespace {

// ",FIX,hhmmss,360," after the point of a position report.
std::optional<int> reportLevel(TextScan scan) {
  if (!scan.take(",") || !scan.takeField() || !scan.takeDigits(6)) return std::nullopt;
  return levelField(scan);
}

// N38160W077075,FIX,211733,360,OTT behind POS
Found takeReport(TextScan scan) {
  Found found = ifAtBoundary(takeDigitPair(scan, kMinuteTenths), scan);
  if (found) found->altitudeFeet = reportLevel(scan);
  return found;
}

// A pair of label 80 in any of its encodings, perhaps with a blank between.
Found takeAnyMinutes(const TextScan& scan) {
  for (const std::string_view between : {"", " "}) {
    TextScan digits = scan;
    Found found = ifAtBoundary(takeDigitPair(digits, kMinuteTenths, between), digits);
    if (found) return found;
    TextScan points = scan;
    found = ifAtBoundary(takeMinutePointPair(points, between), points);
    if (found) return found;
  }
  return std::nullopt;
}

}  // namespace

// .../PSN39277W077359,142800,240,...
Found presentPosition(std::string_view text) {
  TextScan scan = beforeHemisphere(text, "/PS");
  Found found = ifAtBoundary(takeDigitPair(scan, kMinuteTenths), scan);
  if (found && scan.take(",") && scan.takeDigits(6)) found->altitudeFeet = levelField(scan);
  return found;
}

// The first POS that a coordinate follows, behind any prefix.
Found reportAnywhere(std::string_view text) { return takeReport(beforeHemisphere(text, "POS")); }

// POSN38160W077075,FIX,211733,360,...
Found reportAtStart(std::string_view text) {
  TextScan scan(text);
  return scan.take("POS") ? takeReport(scan) : std::nullopt;
}

// *POS10300950N3954W07759363... with or without a line break before the digits
Found starReport(std::string_view text) {
  TextScan scan = after(text, "*POS");
  scan.skipSpace();
  if (!scan.takeDigits(8)) return std::nullopt;
  Found found = takeDigitPair(scan, kMinutes);
  if (!found || !scan.nextIsDigit()) return ifAtBoundary(found, scan);
  // Level, wind and more, in groups of three digits.
  if (scan.countDigits() % 3 != 0) return std::nullopt;
  found->altitudeFeet = flightLevel(scan.takeNumber(3));
  return found;
}

// (POS-KLM296  -3911N07600W/234212 F250
Found bracketReport(std::string_view text) {
  constexpr std::size_t kLongestFlight = 8;
  using Kind = DigitFormat::Kind;
  TextScan scan = after(text, "(POS-");
  const std::size_t dash = scan.rest().find('-');
  if (dash == std::string_view::npos || dash == 0 || dash > kLongestFlight) return std::nullopt;
  scan = TextScan(scan.rest().substr(dash + 1));
  if (!digitsAre(scan, kMinutes.latitudeWidth)) return std::nullopt;
  const auto latitude = scan.takeNumber(kMinutes.latitudeWidth);
  const auto north = scan.takeSign('N', 'S');
  if (!latitude || !north || !digitsAre(scan, kMinutes.longitudeWidth)) return std::nullopt;
  const auto longitude = scan.takeNumber(kMinutes.longitudeWidth);
  const auto east = scan.takeSign('E', 'W');
  if (!longitude || !east || !scan.take("/")) return std::nullopt;
  Found found = located(*north, degreesOf(*latitude, Kind::minutes, 1), *east,
                        degreesOf(*longitude, Kind::minutes, 1));
  if (found && scan.takeDigits(6) && scan.take(" F")) {
    found->altitudeFeet = flightLevel(scan.takeNumber(3));
  }
  return found;
}

// YSSY,KSFO,101621,- 4.9985,-169.9820,...
Found airportsAndPoint(std::string_view text) {
  constexpr std::size_t kFewestDigits = 4;  // three may be a level or feet
  TextScan scan(text);
  if (!scan.takeCapitals(4) || !scan.take(",") || !scan.takeCapitals(4) || !scan.take(",") ||
      !scan.takeDigits(6) || !scan.take(",")) {
    return std::nullopt;
  }
  Found found = takeSignedPair(scan);
  if (found) found->altitudeFeet = feetField(scan, kFewestDigits);
  return found;
}

// One point a line: N2940.2,W09539.7,181118,...
Found pointLine(std::string_view text) {
  while (!text.empty()) {
    TextScan scan(takeLine(text));
    if (scan.take("#DF")) scan = TextScan(scan.rest().substr(scan.atEnd() ? 0 : 1));
    const Found found = takeMinutePointPair(scan, ",");
    if (found && scan.take(",") && scan.takeDigits(6) && scan.atBoundary()) return found;
  }
  return std::nullopt;
}

// /LOC N373703,W1222251 or /LOC +38.9603,-077.4595
Found locationField(std::string_view text) {
  TextScan scan = after(text, "/LOC ");
  if (TextScan(scan).takeSign('N', 'S')) {
    return ifAtBoundary(takeDigitPair(scan, kSeconds, ","), scan);
  }
  if (!TextScan(scan).takeSign('+', '-')) return std::nullopt;
  return takeSignedPair(scan);
}

// (2N40492W 77179248 99380-53(Z, (2ABCN40492W 77179..., (1N40492W 77179...
Found compactReport(std::string_view text) {
  TextScan scan(text);
  const bool second = scan.take("(2");
  if (!second && !scan.take("(1")) return std::nullopt;
  const bool plain = TextScan(scan).takeSign('N', 'S').has_value();
  while (true) {
    TextScan pair = scan;
    Found found = takeDigitPair(pair, kMinuteTenths);
    if (found) {
      // Groups of three characters: one digit less, and the groups show it.
      const auto end = pair.rest().find_first_not_of("0123456789 ");
      const std::size_t run = std::min(end, pair.rest().size());
      if (pair.nextIsDigit() && run % 3 != 0) return std::nullopt;
      if (second && plain && run >= 3) found->altitudeFeet = flightLevel(pair.takeNumber(3));
      return found;
    }
    if (!scan.takeCapitals(1)) return std::nullopt;
  }
}

// FST01EGKKKMCON373488W0756927380 156 ...
Found statusReport(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("FST01") || !scan.takeCapitals(8)) return std::nullopt;
  Found found = takeDigitPair(scan, kTenThousandths);
  if (!found || !scan.nextIsDigit()) return ifAtBoundary(found, scan);
  if (!digitsAre(scan, 3)) return std::nullopt;
  found->altitudeFeet = flightLevel(scan.takeNumber(3));
  return ifAtBoundary(found, scan);
}

// 001PR19113523N2947.7W09536.51273750177: five digits of feet, five more
Found progressReport(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("001PR") || !digitsAre(scan, 8) || !scan.takeDigits(8)) return std::nullopt;
  Found found = takeMinutePointPair(scan);
  if (!found || !scan.nextIsDigit()) return ifAtBoundary(found, scan);
  if (!digitsAre(scan, 10)) return std::nullopt;
  found->altitudeFeet = checkedAltitude(*scan.takeNumber(5));
  return found;
}

// POS02,N38171W077507,319,KJFK,...; ON01, OFF01, IN01, ETA01, 00ETA03 likewise
Found eventReport(std::string_view text) {
  TextScan scan(text);
  scan.take("00");
  if (!scan.take("POS") && !scan.take("ON") && !scan.take("OFF") && !scan.take("IN") &&
      !scan.take("ETA")) {
    return std::nullopt;
  }
  if (!scan.takeDigits(2) || !scan.take(",")) return std::nullopt;
  Found found = ifAtBoundary(takeDigitPair(scan, kMinuteTenths), scan);
  if (found) found->altitudeFeet = levelField(scan);
  return found;
}

// /FB .../AD .../N 35.123,W 107.456
Found feedbackReport(std::string_view text) {
  if (!text.starts_with("/FB ")) return std::nullopt;
  for (TextScan scan = after(text, "/AD "); !scan.atEnd(); scan = after(scan.rest(), "/")) {
    TextScan field = scan;
    if (const Found found = takeDecimalPair(field, ",")) return found;
  }
  return std::nullopt;
}

// /POS N3539.2W07937.2/FL 360, /POSN38160W077075, /POS N38160 W077075
Found slashPosition(std::string_view text) {
  TextScan scan = after(text, "/POS");
  scan.skipBlanks();
  return takeAnyMinutes(scan);
}

// A prefix, then POS and a pair as above
Found prefixedPosition(std::string_view text) {
  std::size_t at = text.find("POS", 1);
  for (; at != std::string_view::npos; at = text.find("POS", at + 1)) {
    TextScan scan(text.substr(at + 3));
    scan.skipBlanks();
    if (TextScan(scan).takeSign('N', 'S')) return takeAnyMinutes(scan);
  }
  return std::nullopt;
}

// 283806/AUTPOS/LLD N400547 W0774954
Found automaticPosition(std::string_view text) {
  TextScan scan = after(text, "/AUTPOS/LLD ");
  return ifAtBoundary(takeDigitPair(scan, kSeconds, " "), scan);
}

}  // namespace vel
