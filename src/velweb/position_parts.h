#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "velweb/positions.h"
#include "velweb/text_scan.h"

/// The parts of which the forms of a position report are made: coordinates in
/// their encodings, altitudes, and marks in a text. Each `take` moves the scan
/// past what it took; where it gives nothing the scan may stand anywhere.
namespace vel {

using Found = std::optional<Position>;

/// How the digits of a latitude and a longitude are to be read.
struct DigitFormat {
  enum class Kind {
    degrees,  ///< decimal fractions of a degree
    minutes,  ///< degrees, two digits of minutes, decimal fractions of a minute
    seconds,  ///< degrees, two digits of minutes, two of seconds
  };
  std::size_t latitudeWidth;
  std::size_t longitudeWidth;
  Kind kind;
  int perUnit;  ///< units of the last digit in a degree or a minute
};
inline constexpr DigitFormat kMinuteTenths{5, 6, DigitFormat::Kind::minutes, 10};
inline constexpr DigitFormat kMinutes{4, 5, DigitFormat::Kind::minutes, 1};
inline constexpr DigitFormat kSeconds{6, 7, DigitFormat::Kind::seconds, 100};
inline constexpr DigitFormat kHundredths{5, 5, DigitFormat::Kind::degrees, 100};
inline constexpr DigitFormat kThousandths{5, 6, DigitFormat::Kind::degrees, 1000};
inline constexpr DigitFormat kTenThousandths{6, 7, DigitFormat::Kind::degrees, 10000};

/// The degrees that digits stand for. Nothing for minutes or seconds of 60 or
/// more; but tenths of a minute are rounded, and 60.0 is the next degree.
[[nodiscard]] std::optional<double> degreesOf(int digits, DigitFormat::Kind kind, int perUnit);

/// The position of two numbers with their signs, if they are one.
[[nodiscard]] Found located(int north, std::optional<double> latitude, int east,
                            std::optional<double> longitude);

/// N38160W077075, with something (a comma, a blank) or nothing between the two.
Found takeDigitPair(TextScan& scan, const DigitFormat& format, std::string_view between = "");

/// N 44.203,W 86.546: as many decimals in both, two at least.
Found takeDecimalPair(TextScan& scan, std::string_view between);

/// "- 4.9985,-169.9820", "+38.9603,-077.4595", or a blank for the plus: as many
/// decimals in both, two at least.
Found takeSignedPair(TextScan& scan);

/// N3539.2W07937.2: degrees and minutes with a point, as many decimals (one or
/// two) in both. Digits may follow the longitude.
Found takeMinutePointPair(TextScan& scan, std::string_view between = "");

/// 3539.2N07937.2W
Found takeMinutePointPairBehind(TextScan& scan);

/// A right-aligned number with its sign in exactly `width` characters:
/// " 35321", "-10683", "- 8732", " -8732". A sign or a blank has to be there.
std::optional<int> takeSignedField(TextScan& scan, std::size_t width);

/// The position, unless a number or word goes on behind it.
[[nodiscard]] Found ifAtBoundary(const Found& found, const TextScan& scan);

/// True when exactly `width` digits follow, and no more.
[[nodiscard]] bool digitsAre(const TextScan& scan, std::size_t width);

/// A flight level as an altitude.
[[nodiscard]] std::optional<int> flightLevel(std::optional<int> hundredsOfFeet);

/// The altitude of ",360," and the like: a flight level in three digits.
[[nodiscard]] std::optional<int> levelField(TextScan scan);

/// The altitude of ",31965,": feet, in at least so many digits and at most 5.
/// Nothing where the text ends with the digits: they may be cut short.
[[nodiscard]] std::optional<int> feetField(TextScan scan, std::size_t fewestDigits = 3);

/// The altitude behind the one mark "/ALT" (feet in four digits or more, or
/// with a sign) or "/FL" (three digits), wherever it stands in the text.
[[nodiscard]] std::optional<int> markedAltitude(std::string_view text);

/// What stands after the first such mark; an empty text where there is none.
[[nodiscard]] TextScan after(std::string_view text, std::string_view mark);

/// What stands after the first such mark that a latitude's letter follows.
[[nodiscard]] TextScan beforeHemisphere(std::string_view text, std::string_view mark);

/// Takes the first line off a text and gives it without its line end.
std::string_view takeLine(std::string_view& text);

/// True for hhmmss, or hhmm of a day, in digits.
[[nodiscard]] bool isTimeOfDay(std::string_view digits);

}  // namespace vel
