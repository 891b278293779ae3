#include "tests/fuzz/plain_places.h"

#include <cmath>
#include <string>

namespace vel::fuzz {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isOneOf(char c, std::string_view characters) {
  return characters.find(c) != std::string_view::npos;
}

/// A number as it stands: blanks are zeros, at most one point.
struct Number {
  std::string whole;
  std::string decimals;
  bool hasPoint = false;

  [[nodiscard]] double value() const {
    return std::stod("0" + whole) + (decimals.empty() ? 0 : std::stod("0." + decimals));
  }
};

std::optional<Number> numberIn(std::string_view text) {
  Number number;
  bool digitSeen = false;
  // Any number of blanks may stand in front.
  std::size_t wholeDigits = 0;
  for (const char c : text) {
    if (c == '.') {
      if (number.hasPoint || !digitSeen) return std::nullopt;
      number.hasPoint = true;
    } else if (isDigit(c) || (c == ' ' && !digitSeen)) {
      digitSeen = digitSeen || isDigit(c);
      (number.hasPoint ? number.decimals : number.whole) += c == ' ' ? '0' : c;
      wholeDigits += digitSeen && !number.hasPoint ? 1 : 0;
    } else {
      return std::nullopt;
    }
  }
  if (!digitSeen || wholeDigits > 15 || number.decimals.size() > 15) return std::nullopt;
  return number;
}

std::string withoutBlanks(std::string_view text) {
  std::string kept;
  for (const char c : text) {
    if (c != ' ') kept += c;
  }
  return kept;
}

/// Collects places; those that are none on earth are left out.
class Collector {
 public:
  std::vector<Place> places;

  void add(double signs[2], std::optional<double> latitude, std::optional<double> longitude) {
    if (!latitude || !longitude) return;
    if (std::abs(*latitude) > 90 || std::abs(*longitude) > 180) return;
    if (*latitude == 0 && *longitude == 0) return;
    places.push_back({signs[0] * *latitude, signs[1] * *longitude});
  }
};

/// Degrees and minutes in digits, the last so many of them tenths and so on.
std::optional<double> ofMinutes(const std::string& digits, std::size_t decimals) {
  if (digits.size() < decimals + 3) return std::nullopt;
  const std::size_t at = digits.size() - decimals - 2;
  const double minutes = std::stod(digits.substr(at)) / std::pow(10, decimals);
  if (minutes > 60 || (decimals == 0 && minutes == 60)) return std::nullopt;
  return std::stod(digits.substr(0, at)) + minutes / 60;
}

std::optional<double> ofSeconds(const std::string& digits) {
  if (digits.size() < 5) return std::nullopt;
  const std::size_t at = digits.size() - 4;
  const double minutes = std::stod(digits.substr(at, 2));
  const double seconds = std::stod(digits.substr(at + 2));
  if (minutes >= 60 || seconds >= 60) return std::nullopt;
  return std::stod(digits.substr(0, at)) + minutes / 60 + seconds / 3600;
}

double ofFraction(const std::string& digits, int decimals) {
  return std::stod(digits) / std::pow(10, decimals);
}

/// Digits without a point, behind the letters N or S and E or W.
void addDigits(Collector& to, double signs[2], const std::string& north, const std::string& east) {
  const std::size_t width = north.size();
  const auto begins = [&](std::size_t size) { return east.size() >= size; };
  if (width == 4 && begins(5)) {
    to.add(signs, ofMinutes(north, 0), ofMinutes(east.substr(0, 5), 0));
  }
  if (width == 5 && begins(6)) {
    to.add(signs, ofMinutes(north, 1), ofMinutes(east.substr(0, 6), 1));
    to.add(signs, ofFraction(north, 3), ofFraction(east.substr(0, 6), 3));
  }
  if (width == 5 && begins(5)) {
    to.add(signs, ofFraction(north, 2), ofFraction(east.substr(0, 5), 2));
  }
  if (width == 6 && begins(7)) {
    to.add(signs, ofSeconds(north), ofSeconds(east.substr(0, 7)));
    to.add(signs, ofFraction(north, 4), ofFraction(east.substr(0, 7), 4));
  }
  if (width == 7 && begins(7)) to.add(signs, ofSeconds(north), ofSeconds(east.substr(0, 7)));
}

/// Numbers with a point: degrees, or degrees and minutes.
void addPoints(Collector& to, double signs[2], const Number& north, const Number& east,
               bool moreDigits) {
  const std::size_t decimals = north.decimals.size();
  if (east.decimals.size() == decimals && decimals >= 2 && decimals <= 5 && !moreDigits) {
    to.add(signs, north.value(), east.value());
  }
  if (decimals < 1 || decimals > 2 || east.decimals.size() < decimals) return;
  if (north.whole.size() != 4 || east.whole.size() != 5) return;
  to.add(signs, ofMinutes(north.whole + north.decimals, decimals),
         ofMinutes(east.whole + east.decimals.substr(0, decimals), decimals));
}

/// The characters of a number from `at` on.
std::string_view runFrom(std::string_view text, std::size_t at) {
  std::size_t end = at;
  while (end < text.size() && (isDigit(text[end]) || isOneOf(text[end], " ."))) ++end;
  return text.substr(at, end - at);
}

/// "N38160W077075" and all others with the letter in front.
void addLetterFirst(Collector& to, std::string_view text, std::size_t at) {
  std::string_view north = runFrom(text, at + 1);
  std::size_t next = at + 1 + north.size();
  if (next < text.size() && isOneOf(text[next], ",/")) ++next;
  if (next >= text.size() || !isOneOf(text[next], "EW")) return;
  while (north.ends_with(' ')) north.remove_suffix(1);
  std::string_view east = runFrom(text, next + 1);
  double signs[2] = {text[at] == 'N' ? 1.0 : -1.0, text[next] == 'E' ? 1.0 : -1.0};
  const auto latitude = numberIn(north);
  if (!latitude) return;
  // What stands behind the longitude may go on with other numbers.
  for (std::size_t size = 1; size <= east.size(); ++size) {
    const auto longitude = numberIn(east.substr(0, size));
    if (!longitude || longitude->hasPoint != latitude->hasPoint) continue;
    const bool moreDigits = size < east.size() && isDigit(east[size]);
    if (latitude->hasPoint) {
      addPoints(to, signs, *latitude, *longitude, moreDigits);
    } else if (longitude->whole.size() >= 5 && longitude->whole.size() <= 7) {
      addDigits(to, signs, latitude->whole, longitude->whole);
    }
  }
}

/// "3911N07600W" and "4435.1N07143.4W"
void addLetterBehind(Collector& to, std::string_view text, std::size_t at) {
  std::size_t begin = at;
  while (begin > 0 && (isDigit(text[begin - 1]) || text[begin - 1] == '.')) --begin;
  const std::string_view east = runFrom(text, at + 1);
  const std::size_t next = at + 1 + east.size();
  if (next >= text.size() || !isOneOf(text[next], "EW")) return;
  const auto latitude = numberIn(text.substr(begin, at - begin));
  const auto longitude = numberIn(east);
  if (!latitude || !longitude || east.find(' ') != std::string_view::npos) return;
  if (latitude->whole.size() != 4 || longitude->whole.size() != 5) return;
  if (latitude->decimals.size() != longitude->decimals.size()) return;
  double signs[2] = {text[at] == 'N' ? 1.0 : -1.0, text[next] == 'E' ? 1.0 : -1.0};
  const std::size_t decimals = latitude->decimals.size();
  to.add(signs, ofMinutes(latitude->whole + latitude->decimals, decimals),
         ofMinutes(longitude->whole + longitude->decimals, decimals));
}

/// "- 4.9985,-169.9820", at its comma
void addSigned(Collector& to, std::string_view text, std::size_t comma) {
  std::size_t begin = comma;
  while (begin > 0 && (isDigit(text[begin - 1]) || text[begin - 1] == '.')) --begin;
  const auto latitude = numberIn(text.substr(begin, comma - begin));
  while (begin > 0 && text[begin - 1] == ' ') --begin;
  const double north = begin > 0 && text[begin - 1] == '-' ? -1 : 1;
  std::size_t at = comma + 1;
  while (at < text.size() && text[at] == ' ') ++at;
  const double east = at < text.size() && text[at] == '-' ? -1 : 1;
  if (at < text.size() && isOneOf(text[at], "+-")) ++at;
  while (at < text.size() && text[at] == ' ') ++at;
  std::size_t end = at;
  while (end < text.size() && (isDigit(text[end]) || text[end] == '.')) ++end;
  const auto longitude = numberIn(text.substr(at, end - at));
  if (!latitude || !longitude || !latitude->hasPoint || !longitude->hasPoint) return;
  if (latitude->whole.size() > 3 || longitude->whole.size() > 3) return;
  double signs[2] = {north, east};
  addPoints(to, signs, *latitude, *longitude, false);
}

/// The digits with their sign in exactly so many characters.
std::optional<double> signedField(std::string_view text, std::size_t at, std::size_t width) {
  if (at + width > text.size() || isDigit(text[at])) return std::nullopt;
  const std::string field = withoutBlanks(text.substr(at, width));
  const bool hasSign = !field.empty() && isOneOf(field[0], "+-");
  const std::string digits = field.substr(hasSign ? 1 : 0);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  return (field[0] == '-' ? -1 : 1) * std::stod(digits);
}

/// " 35321-107895" and " 3707-10683"
void addSignedFields(Collector& to, std::string_view text, std::size_t at) {
  for (const auto& [width, unit] : {std::pair<std::size_t, double>(6, 1000), {5, 100}}) {
    const auto north = signedField(text, at, width);
    const auto east = signedField(text, at + width, width + 1);
    double signs[2] = {1, 1};
    if (north && east) to.add(signs, *north / unit, *east / unit);
  }
}

/// "341607,-1099962" behind "/C2"
void addRecord(Collector& to, std::string_view text, std::size_t at) {
  const auto integer = [&](char end) -> std::optional<double> {
    const double sign = at < text.size() && text[at] == '-' ? -1 : 1;
    if (at < text.size() && isOneOf(text[at], "+-")) ++at;
    const std::size_t begin = at;
    while (at < text.size() && isDigit(text[at])) ++at;
    if (begin == at || at - begin > 7 || at >= text.size() || text[at] != end) return std::nullopt;
    return sign * std::stod(std::string(text.substr(begin, at++ - begin))) / 10'000;
  };
  const auto north = integer(',');
  const auto east = north ? integer(',') : std::nullopt;
  double signs[2] = {1, 1};
  to.add(signs, north, east);
}

/// The rest of the first line that begins with a mark.
std::string lineBehind(std::string_view text, std::string_view mark) {
  const std::size_t at = text.find(mark);
  if (at == std::string_view::npos) return {};
  std::string line(text.substr(at + mark.size()));
  line = line.substr(0, line.find_first_of("\r\n"));
  return withoutBlanks(line);
}

}  // namespace

std::vector<Place> placesIn(std::string_view text) {
  Collector to;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isOneOf(text[at], "NS")) {
      addLetterFirst(to, text, at);
      addLetterBehind(to, text, at);
    }
    if (text[at] == ',') addSigned(to, text, at);
    if (isOneOf(text[at], " +-")) addSignedFields(to, text, at);
    if (text.substr(at).starts_with("/C2")) addRecord(to, text, at + 3);
  }
  const std::string lines = lineBehind(text, "LAT ") + "," + lineBehind(text, "LON ");
  for (std::size_t at = 0; at < lines.size(); ++at) {
    if (isOneOf(lines[at], "NS")) addLetterFirst(to, lines, at);
  }
  if (const auto place = plainAdscPlace(text)) to.places.push_back(*place);
  return to.places;
}

std::optional<Place> plainAdscPlace(std::string_view text) {
  const std::size_t mark = text.find(".ADS");
  if (mark == std::string_view::npos || mark < 8 || text[mark - 8] != '/') return std::nullopt;
  if (text.size() < mark + 11) return std::nullopt;
  std::string bits;
  for (const char c : text.substr(mark + 11)) {
    if (isOneOf(c, " \r\n")) continue;
    const std::size_t value = std::string_view("0123456789ABCDEF").find(c);
    if (value == std::string_view::npos) break;
    for (int bit = 3; bit >= 0; --bit) bits += (value >> bit & 1U) != 0 ? '1' : '0';
  }
  const auto unsignedAt = [&](std::size_t at, std::size_t count) {
    long long value = 0;
    for (std::size_t i = 0; i < count; ++i) value = 2 * value + (bits[at + i] - '0');
    return value;
  };
  bits.resize(bits.size() / 8 * 8);
  if (bits.size() > 16 && unsignedAt(0, 8) == 3) bits.erase(0, 16);
  if (bits.size() < 88) return std::nullopt;
  const long long tag = unsignedAt(0, 8);
  if (tag != 7 && tag != 9 && tag != 10 && tag != 18 && tag != 19 && tag != 20) {
    return std::nullopt;
  }
  const auto degrees = [&](std::size_t at) {
    const long long value = unsignedAt(at, 21);
    return static_cast<double>(value < (1 << 20) ? value : value - (1 << 21)) * 180 / (1 << 20);
  };
  const Place place{degrees(8), degrees(29)};
  if (std::abs(place.latitude) > 90 || (place.latitude == 0 && place.longitude == 0)) {
    return std::nullopt;
  }
  return place;
}

bool holds(const std::vector<Place>& places, const Place& place) {
  constexpr double kSame = 1e-6;
  for (const Place& each : places) {
    if (std::abs(each.latitude - place.latitude) < kSame &&
        std::abs(each.longitude - place.longitude) < kSame) {
      return true;
    }
  }
  return false;
}

}  // namespace vel::fuzz
