#include <algorithm>
#include <cmath>
#include <string>

#include "velweb/position_forms.h"

namespace vel {
namespace {

// "#DFB" and the like, which tell the sender of an H1 text.
std::string_view withoutSender(std::string_view text) {
  TextScan scan(text);
  if (scan.take("#") && scan.rest().size() >= 3 && scan.takeCapitals(1)) {
    return scan.rest().substr(2);
  }
  return text;
}

struct RecordPoint {
  Position position;
  std::size_t latitudeDigits = 0;
  std::size_t longitudeDigits = 0;
};

// 2341607,-1099962,349, behind "/C"
std::optional<RecordPoint> takeRecordPoint(TextScan& scan, char number) {
  constexpr double kPerDegree = 10'000;
  if (!scan.take({&number, 1})) return std::nullopt;
  RecordPoint point;
  const int north = scan.takeSign('+', '-').value_or(1);
  point.latitudeDigits = scan.countDigits();
  if (point.latitudeDigits == 0 || point.latitudeDigits > 6) return std::nullopt;
  const int latitude = *scan.takeNumber(point.latitudeDigits);
  if (!scan.take(",")) return std::nullopt;
  const int east = scan.takeSign('+', '-').value_or(1);
  point.longitudeDigits = scan.countDigits();
  if (point.longitudeDigits == 0 || point.longitudeDigits > 7) return std::nullopt;
  const int longitude = *scan.takeNumber(point.longitudeDigits);
  const auto level = levelField(scan);
  if (!scan.take(",")) return std::nullopt;
  const Found found = located(north, latitude / kPerDegree, east, longitude / kPerDegree);
  if (!found) return std::nullopt;
  point.position = *found;
  point.position.altitudeFeet = level;
  return point;
}

// True where the numbers are of two points of one flight, and neither is the
// other with a digit less. Below one degree that cannot be told.
bool isNear(double first, double second) {
  constexpr double kFarthest = 1.5;
  const double larger = std::max(std::abs(first), std::abs(second));
  return larger >= 1 && std::abs(first - second) <= std::min(kFarthest, larger / 2);
}

}  // namespace

// A38/A32138,1,1/C1TRP,001122,KPSP,KDFW,08,8,75738/C2341607,-1099962,349,...
Found trackRecord(std::string_view text) {
  TextScan scan(withoutSender(text));
  if (!scan.take("A") || !digitsAre(scan, 2)) return std::nullopt;
  const std::string_view report = scan.rest().substr(0, 2);
  scan.takeDigits(2);
  // The type of aircraft, then the report's number once more.
  if (!scan.take("/A") || !digitsAre(scan, 5) || scan.rest().substr(3, 2) != report) {
    return std::nullopt;
  }
  TextScan second = after(scan.rest(), "/C");
  if (!second.rest().starts_with('1')) return std::nullopt;
  second = after(second.rest(), "/C");
  const auto point = takeRecordPoint(second, '2');
  if (!point) return std::nullopt;
  if (point->latitudeDigits == 6 && point->longitudeDigits == 7) return point->position;
  // With fewer digits they stand for a smaller number or were cut short: the
  // next point, minutes later, tells which.
  TextScan third = after(second.rest(), "/C");
  const auto next = takeRecordPoint(third, '3');
  const bool whole = next && next->latitudeDigits == point->latitudeDigits &&
                     next->longitudeDigits == point->longitudeDigits &&
                     isNear(point->position.latitude, next->position.latitude) &&
                     isNear(point->position.longitude, next->position.longitude);
  return whole ? Found(point->position) : std::nullopt;
}

// A line 23.58.47,CR,1899,37026,255.0,.788,-57.5,-30.8,N3421.5,W10912.4,153920
Found timedLine(std::string_view text) {
  while (!text.empty()) {
    TextScan scan(takeLine(text));
    const std::string_view line = scan.rest();
    if (line.size() < 9 || line[2] != '.' || line[5] != '.' || line[8] != ',') continue;
    std::string time(line.substr(0, 2));
    time.append(line.substr(3, 2)).append(line.substr(6, 2));
    if (!isTimeOfDay(time)) continue;
    scan = TextScan(line.substr(9));
    if (!scan.takeCapitals(2) || !scan.take(",") || !scan.takeField()) continue;
    // A comma, so that the altitude reads as a field.
    const auto altitude = feetField(TextScan(line.substr(line.size() - scan.rest().size() - 1)), 2);
    for (int skipped = 0; skipped < 5; ++skipped) {
      if (!scan.takeField()) break;
    }
    Found found = takeMinutePointPair(scan, ",");
    if (!found || !scan.take(",")) continue;
    found->altitudeFeet = altitude;
    return found;
  }
  return std::nullopt;
}

// #DFB*WOBLAXATL5100F 3101000000M290M56837080107N35234W108415247032:
Found weatherRecord(std::string_view text) {
  constexpr std::size_t kDirectionAndSpeed = 6;
  TextScan scan = after(text, "*WOB");
  if (!scan.takeCapitals(6)) return std::nullopt;
  std::string_view line = scan.rest();
  line = takeLine(line);
  for (std::size_t at = 0; at < line.size(); ++at) {
    TextScan here(line.substr(at));
    const Found found = takeDigitPair(here, kMinuteTenths);
    if (found) return digitsAre(here, kDirectionAndSpeed) ? found : std::nullopt;
  }
  return std::nullopt;
}

// ABS001DA_N12345  KMDWKPHX287, then the line " 35321-1078950003037993-585..."
Found signedLine(std::string_view text) {
  text = withoutSender(text);
  TextScan first(takeLine(text));
  if (!first.take("ABS") || !digitsAre(first, 3)) return std::nullopt;
  TextScan scan(takeLine(text));
  constexpr double kPerDegree = 1000;
  const auto latitude = takeSignedField(scan, 6);
  const auto longitude = takeSignedField(scan, 7);
  // The time as hhmm and an altitude in six digits.
  if (!latitude || !longitude || !digitsAre(scan, 10)) return std::nullopt;
  if (!isTimeOfDay(scan.rest().substr(0, 4))) return std::nullopt;
  Found found = checkedPosition(*latitude / kPerDegree, *longitude / kPerDegree);
  scan.takeDigits(4);
  if (found) found->altitudeFeet = checkedAltitude(*scan.takeNumber(6));
  return found;
}

// 239N800NW738 020226002903806 3707-10683380-32-59... or
// .../239N300DN0659020226000653766N35497W105917339-27-53...
Found numberedRecord(std::string_view text) {
  constexpr std::size_t kDateTimeAndCount = 15;
  constexpr double kPerDegree = 100;
  std::string_view record;
  for (std::size_t at = text.find("239"); at != std::string_view::npos;
       at = text.find("239", at + 1)) {
    const bool begins = at == 0 || text[at - 1] == '\n' || text[at - 1] == '/';
    if (begins && at + 3 < text.size() && isCapitalChar(text[at + 3])) {
      record = text.substr(at + 3);
      record = takeLine(record);
      break;
    }
  }
  for (std::size_t at = 0; at < record.size(); ++at) {
    TextScan scan(record.substr(at));
    if (!scan.nextIsDigit()) continue;
    const std::size_t digits = scan.countDigits();
    at += digits;
    if (digits < kDateTimeAndCount) continue;
    scan.takeDigits(digits - kDateTimeAndCount);
    if (!isTimeOfDay(scan.rest().substr(6, 6))) return std::nullopt;
    scan.takeDigits(kDateTimeAndCount);
    Found found;
    if (TextScan(scan).takeSign('N', 'S')) {
      found = takeDigitPair(scan, kThousandths);
    } else {
      const auto latitude = takeSignedField(scan, 5);
      const auto longitude = takeSignedField(scan, 6);
      if (latitude && longitude) {
        found = checkedPosition(*latitude / kPerDegree, *longitude / kPerDegree);
      }
    }
    // The level and two signed numbers.
    if (!found) return std::nullopt;
    const auto level = scan.takeNumber(3);
    if (!level || !takeSignedField(scan, 3) || !takeSignedField(scan, 3)) return std::nullopt;
    found->altitudeFeet = flightLevel(level);
    return found;
  }
  return std::nullopt;
}

// A line 02E02KPHXKSTL, then the line N34741W10790400073702M057...
Found flightLegLine(std::string_view text) {
  while (!text.empty()) {
    TextScan leg(takeLine(text));
    if (!digitsAre(leg, 2) || !leg.takeDigits(2) || !leg.take("E") || !digitsAre(leg, 2) ||
        !leg.takeDigits(2) || !leg.takeCapitals(8) || !leg.atBoundary()) {
      continue;
    }
    std::string_view rest = text;
    TextScan scan(takeLine(rest));
    const Found found = takeDigitPair(scan, kThousandths);
    // The time and four digits more; then a letter for the temperature's sign.
    if (!found || !digitsAre(scan, 8) || !isTimeOfDay(scan.rest().substr(0, 4))) {
      return std::nullopt;
    }
    scan.takeDigits(8);
    return scan.take("M") || scan.take("P") ? found : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace vel
