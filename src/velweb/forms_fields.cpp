#include <string>

#include "velweb/position_forms.h"

namespace vel {
namespace {

bool skipFields(TextScan& scan, int count) {
  for (int skipped = 0; skipped < count; ++skipped) {
    if (!scan.takeField()) return false;
  }
  return true;
}

// A pair at the start of the field, or behind a word and a blank in it. A sign
// or a single letter before the blank would belong to the number.
Found pairInField(const TextScan& scan, std::size_t fieldSize) {
  constexpr std::size_t kShortestWord = 3;
  const std::string_view rest = scan.rest();
  std::size_t word = 0;
  for (std::size_t at = 0; at <= fieldSize; ++at) {
    if (at == 0 || (rest[at - 1] == ' ' && word >= kShortestWord)) {
      TextScan here(rest.substr(at));
      if (const Found found = takeSignedPair(here)) return found;
    }
    if (at == fieldSize) break;
    const bool inWord = isDigitChar(rest[at]) || isCapitalChar(rest[at]);
    const bool stays = rest[at] == ' ' && word >= kShortestWord;
    if (inWord && at > 0 && rest[at - 1] == ' ') word = 0;
    word = inWord ? word + 1 : stays ? word : 0;
  }
  return std::nullopt;
}

// Behind fields of letters and digits the first two numbers with a point, if
// they are a signed pair.
Found firstDecimals(TextScan scan) {
  // Digits right behind the mark are a time: with a point among them, the mark's
  // own digit may be the first one of a number.
  if (scan.nextIsDigit() &&
      scan.rest().substr(0, scan.rest().find(',')).find('.') != std::string_view::npos) {
    return std::nullopt;
  }
  while (true) {
    TextScan next = scan;
    const auto field = next.takeField();
    if (!field) return std::nullopt;
    if (const Found found = pairInField(scan, field->size())) return found;
    // Another number with a point: whatever it is, what follows it may not be
    // a latitude.
    if (field->find('.') != std::string_view::npos) return std::nullopt;
    scan = next;
  }
}

}  // namespace

// /N39.182/W077.217/10/0.42/...
Found slashFields(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("/")) return std::nullopt;
  Found found = takeDecimalPair(scan, "/");
  if (!found || !scan.take("/")) return std::nullopt;
  // Two digits would not tell hundreds from thousands of feet.
  if (digitsAre(scan, 3)) {
    const auto level = scan.takeNumber(3);
    if (scan.take("/")) found->altitudeFeet = flightLevel(level);
  }
  return found;
}

// LDR01,189,...,N 38.151,W 76.623,36025,...
Found loadReport(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("LDR01,")) return std::nullopt;
  while (true) {
    TextScan here = scan;
    Found found = takeDecimalPair(here, ",");
    if (found) {
      found->altitudeFeet = feetField(here);
      return found;
    }
    if (!scan.takeField()) return std::nullopt;
  }
}

// POS082150, N 3885,W 7841,---,...
Found hundredthsReport(std::string_view text) {
  constexpr std::size_t kFewestDigits = 4;  // three may be a course
  TextScan scan(text);
  if (!scan.take("POS") || !scan.takeDigits(6) || !scan.take(",")) return std::nullopt;
  scan.skipBlanks();
  Found found = ifAtBoundary(takeDigitPair(scan, kHundredths, ","), scan);
  if (found) found->altitudeFeet = feetField(scan, kFewestDigits);
  return found;
}

// POSA1N38843W 78790,FIX,005159,390,...
Found thousandthsReport(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("POSA1")) return std::nullopt;
  Found found = ifAtBoundary(takeDigitPair(scan, kThousandths), scan);
  if (found && scan.take(",") && scan.takeField() && scan.takeDigits(6)) {
    found->altitudeFeet = levelField(scan);
  }
  return found;
}

// N 44.203,W 86.546,31965,6, 290
Found pointAndFeet(std::string_view text) {
  TextScan scan(text);
  Found found = takeDecimalPair(scan, ",");
  if (found) found->altitudeFeet = feetField(scan);
  return found;
}

// 005236,36787,0135,  97,N 38.364 W 75.226, or a comma between
Found pointInFifthField(std::string_view text) {
  TextScan scan(text);
  return scan.takeDigits(6) && scan.take(",") ? decimalInFifthField(text) : std::nullopt;
}

// The same, whatever the first field holds
Found decimalInFifthField(std::string_view text) {
  TextScan scan(text);
  if (!skipFields(scan, 4)) return std::nullopt;
  TextScan withComma = scan;
  if (const Found found = takeDecimalPair(scan, " ")) return found;
  return takeDecimalPair(withComma, ",");
}

// POSN 39.841W 75.790, 220,184218,17222,...
Found decimalReport(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("POS")) return std::nullopt;
  Found found = takeDecimalPair(scan, "");
  if (found && scan.take(",") && scan.takeField() && scan.takeDigits(6)) {
    found->altitudeFeet = feetField(scan);
  }
  return found;
}

// N 404630W 735400,-------,042530,5500,...
Found secondsAndFeet(std::string_view text) {
  // The latitude is as wide as the longitude here.
  constexpr DigitFormat kEqualSeconds{7, 7, DigitFormat::Kind::seconds, 100};
  TextScan scan(text);
  Found found = ifAtBoundary(takeDigitPair(scan, kEqualSeconds), scan);
  if (found && scan.take(",") && scan.takeField() && scan.takeDigits(6)) {
    found->altitudeFeet = feetField(scan);
  }
  return found;
}

// P,R,2026-02-02 00:55:09,7688,68300,N36.795 W107.615,20717,...
Found dateAndPoint(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("P,") || !skipFields(scan, 4)) return std::nullopt;
  return takeDecimalPair(scan, " ");
}

// .../4435.1N07143.4W/350/...
Found slashMinutes(std::string_view text) {
  for (std::size_t at = text.find('/'); at != std::string_view::npos; at = text.find('/', at + 1)) {
    TextScan scan(text.substr(at + 1));
    if (!digitsAre(scan, 4) || scan.rest().substr(4, 1) != ".") continue;
    Found found = takeMinutePointPairBehind(scan);
    if (!found || !scan.take("/")) return std::nullopt;
    if (digitsAre(scan, 3)) {
      const auto level = scan.takeNumber(3);
      if (scan.take("/")) found->altitudeFeet = flightLevel(level);
    }
    return found;
  }
  return std::nullopt;
}

// FM3 001122,KPSP, 35.123,-107.456,... also FM4 and FM5
Found flightPhasePoint(std::string_view text) {
  TextScan scan(text);
  if (!scan.take("FM3") && !scan.take("FM4") && !scan.take("FM5")) return std::nullopt;
  return firstDecimals(scan);
}

// 000000070KJFK,EGLL,... 35.123,-107.456 or 000000660...N35123W107456
Found airportsThenPoint(std::string_view text) {
  TextScan scan(text);
  if (scan.take("000000070")) return firstDecimals(scan);
  if (!scan.take("000000660")) return std::nullopt;
  for (std::string_view rest = scan.rest(); !rest.empty(); rest.remove_prefix(1)) {
    TextScan here(rest);
    if (const Found found = ifAtBoundary(takeDigitPair(here, kMinuteTenths), here)) return found;
  }
  return std::nullopt;
}

// Lines LON W 107.456 and LAT N 35.123, in either order
Found longitudeAndLatitudeLines(std::string_view text) {
  std::string latitude;
  std::string longitude;
  while (!text.empty()) {
    TextScan line(takeLine(text));
    line.skipBlanks();
    std::string* side = line.take("LAT ") ? &latitude : line.take("LON ") ? &longitude : nullptr;
    if (side == nullptr) continue;
    if (!side->empty()) return std::nullopt;
    line.skipBlanks();
    *side = line.rest();
    while (side->ends_with(' ')) side->pop_back();
  }
  const std::string pair = latitude + "," + longitude;
  TextScan scan(pair);
  const Found found = takeDecimalPair(scan, ",");
  return scan.atEnd() ? found : std::nullopt;
}

// N35123W107456 at the start, letters may follow
Found thousandthsAtStart(std::string_view text) {
  TextScan scan(text);
  const Found found = takeDigitPair(scan, kThousandths);
  return scan.nextIsDigit() || scan.rest().starts_with('.') ? std::nullopt : found;
}

}  // namespace vel
