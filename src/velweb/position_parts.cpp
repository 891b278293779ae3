#include "velweb/position_parts.h"

#include <algorithm>
#include <cmath>

namespace vel {
namespace {

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
  number.decimals = std::min(scan.countDigits(), mostDecimals);
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

constexpr std::size_t kMostMinuteDecimals = 2;

// 3539.2 or 2947.75
std::optional<PointNumber> takeMinutePoint(TextScan& scan, std::size_t wholeWidth,
                                           std::size_t mostDecimals) {
  if (scan.countDigits() != wholeWidth) return std::nullopt;
  const int whole = *scan.takeNumber(wholeWidth);
  if (!scan.take(".")) return std::nullopt;
  const std::size_t decimals = std::min(scan.countDigits(), mostDecimals);
  if (decimals == 0) return std::nullopt;
  const int unit = decimals == 1 ? 10 : 100;
  const int fraction = *scan.takeNumber(decimals);
  const auto degrees = degreesOf(whole * unit + fraction, DigitFormat::Kind::minutes, unit);
  if (!degrees) return std::nullopt;
  return PointNumber{*degrees, decimals};
}

std::optional<double> valueOf(const std::optional<PointNumber>& number) {
  return number ? std::optional(number->value) : std::nullopt;
}

// N or S and a latitude, what stands between, E or W and a longitude. The two
// functions take their degrees from the scan.
template <typename Latitude, typename Longitude>
Found takeHemispheres(TextScan& scan, const Latitude& takeLatitude, std::string_view between,
                      const Longitude& takeLongitude) {
  const auto north = scan.takeSign('N', 'S');
  if (!north) return std::nullopt;
  const std::optional<double> latitude = takeLatitude();
  if (!latitude || !scan.take(between)) return std::nullopt;
  const auto east = scan.takeSign('E', 'W');
  if (!east) return std::nullopt;
  const std::optional<double> longitude = takeLongitude();
  if (!longitude) return std::nullopt;
  return checkedPosition(*north * *latitude, *east * *longitude);
}

}  // namespace

std::optional<double> degreesOf(int digits, DigitFormat::Kind kind, int perUnit) {
  using Kind = DigitFormat::Kind;
  if (kind == Kind::degrees) return static_cast<double>(digits) / perUnit;
  const int perDegree = 100 * perUnit;
  const int whole = digits / perDegree;
  const int minutes = digits % perDegree / perUnit;
  const int rest = digits % perUnit;
  if (kind == Kind::minutes && perUnit > 1 && minutes == 60 && rest == 0) return whole + 1;
  const int restPerMinute = kind == Kind::seconds ? 60 : perUnit;
  if (minutes >= 60 || rest >= restPerMinute) return std::nullopt;
  return whole + (minutes + static_cast<double>(rest) / restPerMinute) / 60;
}

Found located(int north, std::optional<double> latitude, int east,
              std::optional<double> longitude) {
  if (!latitude || !longitude) return std::nullopt;
  return checkedPosition(north * *latitude, east * *longitude);
}

Found takeDigitPair(TextScan& scan, const DigitFormat& format, std::string_view between) {
  const auto degrees = [&](std::size_t width) {
    return [&, width]() -> std::optional<double> {
      const auto digits = scan.takeNumber(width);
      return digits ? degreesOf(*digits, format.kind, format.perUnit) : std::nullopt;
    };
  };
  return takeHemispheres(scan, degrees(format.latitudeWidth), between,
                         degrees(format.longitudeWidth));
}

Found takeDecimalPair(TextScan& scan, std::string_view between) {
  std::optional<PointNumber> latitude;
  const auto first = [&] { return valueOf(latitude = takePointNumber(scan, 2, kMostDecimals)); };
  const auto second = [&]() -> std::optional<double> {
    const auto longitude = takePointNumber(scan, 3, kMostDecimals);
    if (!isPair(latitude, longitude) || !scan.atBoundary()) return std::nullopt;
    return longitude->value;
  };
  return takeHemispheres(scan, first, between, second);
}

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

Found takeMinutePointPair(TextScan& scan, std::string_view between) {
  std::optional<PointNumber> latitude;
  const auto first = [&] {
    return valueOf(latitude = takeMinutePoint(scan, 4, kMostMinuteDecimals));
  };
  const auto second = [&]() -> std::optional<double> {
    const auto longitude = takeMinutePoint(scan, 5, latitude->decimals);
    if (!longitude || longitude->decimals != latitude->decimals) return std::nullopt;
    return longitude->value;
  };
  return takeHemispheres(scan, first, between, second);
}

Found takeMinutePointPairBehind(TextScan& scan) {
  const auto latitude = takeMinutePoint(scan, 4, kMostMinuteDecimals);
  if (!latitude) return std::nullopt;
  const auto north = scan.takeSign('N', 'S');
  if (!north) return std::nullopt;
  const auto longitude = takeMinutePoint(scan, 5, kMostMinuteDecimals);
  if (!longitude || longitude->decimals != latitude->decimals) return std::nullopt;
  const auto east = scan.takeSign('E', 'W');
  if (!east) return std::nullopt;
  return checkedPosition(*north * latitude->value, *east * longitude->value);
}

std::optional<int> takeSignedField(TextScan& scan, std::size_t width) {
  if (scan.rest().size() < width) return std::nullopt;
  TextScan field(scan.rest().substr(0, width));
  if (field.nextIsDigit()) return std::nullopt;
  field.skipBlanks();
  const int sign = field.takeSign('+', '-').value_or(1);
  field.skipBlanks();
  const std::size_t digits = field.countDigits();
  if (digits == 0 || digits != field.rest().size()) return std::nullopt;
  const int number = sign * *field.takeNumber(digits);
  scan = TextScan(scan.rest().substr(width));
  return number;
}

Found ifAtBoundary(const Found& found, const TextScan& scan) {
  return scan.atBoundary() ? found : std::nullopt;
}

bool digitsAre(const TextScan& scan, std::size_t width) { return scan.countDigits() == width; }

std::optional<int> flightLevel(std::optional<int> hundredsOfFeet) {
  if (!hundredsOfFeet) return std::nullopt;
  return checkedAltitude(*hundredsOfFeet * 100);
}

std::optional<int> levelField(TextScan scan) {
  if (!scan.take(",")) return std::nullopt;
  const auto level = scan.takeNumber(3);
  return scan.atBoundary() ? flightLevel(level) : std::nullopt;
}

std::optional<int> feetField(TextScan scan, std::size_t fewestDigits) {
  if (!scan.take(",")) return std::nullopt;
  scan.skipBlanks();
  const std::size_t width = scan.countDigits();
  if (width < fewestDigits || width > 5) return std::nullopt;
  const int feet = *scan.takeNumber(width);
  return scan.take(",") ? checkedAltitude(feet) : std::nullopt;
}

std::optional<int> markedAltitude(std::string_view text) {
  const auto feet = [](TextScan scan) -> std::optional<int> {
    scan.skipBlanks();
    const auto sign = scan.takeSign('+', '-');
    const std::size_t width = scan.countDigits();
    // Three digits without a sign may be hundreds of feet as well.
    if (width < (sign ? 1U : 4U) || width > 6) return std::nullopt;
    const int number = *scan.takeNumber(width);
    // Fewer than five at the very end may be cut short.
    const bool whole = scan.atEnd() ? width >= 5 : scan.atBoundary();
    return whole ? checkedAltitude(sign.value_or(1) * number) : std::nullopt;
  };
  const auto level = [](TextScan scan) -> std::optional<int> {
    scan.skipBlanks();
    if (!digitsAre(scan, 3)) return std::nullopt;
    const auto number = scan.takeNumber(3);
    return scan.atBoundary() ? flightLevel(number) : std::nullopt;
  };
  const TextScan altitude = after(text, "/ALT");
  if (!altitude.atEnd() && after(altitude.rest(), "/ALT").atEnd()) return feet(altitude);
  const TextScan flying = after(text, "/FL");
  if (!flying.atEnd() && after(flying.rest(), "/FL").atEnd()) return level(flying);
  return std::nullopt;
}

TextScan after(std::string_view text, std::string_view mark) {
  const std::size_t at = text.find(mark);
  return TextScan(at == std::string_view::npos ? "" : text.substr(at + mark.size()));
}

TextScan beforeHemisphere(std::string_view text, std::string_view mark) {
  while (true) {
    const TextScan scan = after(text, mark);
    if (scan.atEnd() || TextScan(scan).takeSign('N', 'S')) return scan;
    text = scan.rest();
  }
}

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  while (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool isTimeOfDay(std::string_view digits) {
  TextScan scan(digits);
  if (scan.countDigits() != digits.size()) return false;
  if (digits.size() != 4 && digits.size() != 6) return false;
  if (*scan.takeNumber(2) > 23) return false;
  while (!scan.atEnd()) {
    if (*scan.takeNumber(2) > 59) return false;
  }
  return true;
}

}  // namespace vel
