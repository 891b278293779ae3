// Texts in every form with any coordinates, whole and damaged: what comes out is
// the place that the text says, or nothing. The texts are read a second time
// here, by patterns that know nothing of the forms.

#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "velweb/positions.h"

namespace vel {
namespace {

struct Place {
  double latitude = 0;
  double longitude = 0;
};
using Said = std::optional<Place>;

// Numbers that are as random in every run.
class Dice {
 public:
  int below(int limit) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<int>((state_ >> 33) % static_cast<unsigned>(limit));
  }

 private:
  unsigned long long state_ = 20260101;
};

template <typename... Values>
std::string printed(const char* format, Values... values) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

// How a pair of coordinates is written, and what a written pair says.
struct Notation {
  std::string name;
  std::string (*write)(Dice& dice);
  Said (*read)(const std::string& text);
  // True where a number keeps its meaning when one of its leading digits goes.
  bool hasPoint;
};

Said onEarth(double latitude, double longitude) {
  if (std::abs(latitude) > 90 || std::abs(longitude) > 180) return std::nullopt;
  if (latitude == 0 && longitude == 0) return std::nullopt;
  return Place{latitude, longitude};
}

double signOf(const std::string& sign) {
  return sign == "S" || sign == "W" || sign == "-" ? -1 : 1;
}

std::string northSouth(Dice& dice) { return dice.below(2) == 0 ? "N" : "S"; }
std::string eastWest(Dice& dice) { return dice.below(2) == 0 ? "E" : "W"; }
std::string plusMinus(Dice& dice, const char* plus) { return dice.below(2) == 0 ? plus : "-"; }

double number(const std::string& digits) {
  std::string zeros = digits;
  for (char& c : zeros) c = c == ' ' ? '0' : c;
  return std::stod(zeros);
}

// Degrees of whole degrees and minutes; more than 60.0 minutes say nothing.
double minutes(const std::string& degrees, const std::string& minutes) {
  const double value = number(minutes);
  return value <= 60 ? number(degrees) + value / 60 : 999;
}

Said hemispheres(const std::smatch& found, double latitude, double longitude) {
  return onEarth(signOf(found[1]) * latitude, signOf(found[4]) * longitude);
}

// N38160W077075
std::string writeTenths(Dice& dice) {
  return northSouth(dice) + printed("%02d%03d", dice.below(90), dice.below(601)) + eastWest(dice) +
         printed("%03d%03d", dice.below(180), dice.below(601));
}
Said readTenths(const std::string& text) {
  static const std::regex pattern("([NS])([ 0-9]\\d)(\\d{3})([EW])([ 0-9]{2}\\d)(\\d{3})");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  return hemispheres(found, minutes(found[2], std::to_string(number(found[3]) / 10)),
                     minutes(found[5], std::to_string(number(found[6]) / 10)));
}

// N3954W07759
std::string writeMinutes(Dice& dice) {
  return northSouth(dice) + printed("%02d%02d", dice.below(90), dice.below(60)) + eastWest(dice) +
         printed("%03d%02d", dice.below(180), dice.below(60));
}
Said readMinutes(const std::string& text) {
  static const std::regex pattern("([NS])(\\d{2})([0-5]\\d)([EW])(\\d{3})([0-5]\\d)");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  return hemispheres(found, minutes(found[2], found[3]), minutes(found[5], found[6]));
}

// N3539.2W07937.2 and with a comma between
template <const char* between>
std::string writePoint(Dice& dice) {
  return northSouth(dice) + printed("%02d%02d.%d", dice.below(90), dice.below(60), dice.below(10)) +
         between + eastWest(dice) +
         printed("%03d%02d.%d", dice.below(180), dice.below(60), dice.below(10));
}
template <const char* between>
Said readPoint(const std::string& text) {
  static const std::regex pattern(std::string("([NS])(\\d{2})(\\d{2}\\.\\d)") + between +
                                  "([EW])(\\d{3})(\\d{2}\\.\\d)");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  return hemispheres(found, minutes(found[2], found[3]), minutes(found[5], found[6]));
}
constexpr char kNothing[] = "";
constexpr char kComma[] = ",";
constexpr char kBlank[] = " ";

// 4435.1N07143.4W
std::string writeBehind(Dice& dice) {
  return printed("%02d%02d.%d", dice.below(90), dice.below(60), dice.below(10)) + northSouth(dice) +
         printed("%03d%02d.%d", dice.below(180), dice.below(60), dice.below(10)) + eastWest(dice);
}
Said readBehind(const std::string& text) {
  static const std::regex pattern("(\\d{2})(\\d{2}\\.\\d)([NS])(\\d{3})(\\d{2}\\.\\d)([EW])");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  return onEarth(signOf(found[3]) * minutes(found[1], found[2]),
                 signOf(found[6]) * minutes(found[4], found[5]));
}

// N373703,W1222251
std::string writeSeconds(Dice& dice) {
  return northSouth(dice) +
         printed("%02d%02d%02d", dice.below(90), dice.below(60), dice.below(60)) + "," +
         eastWest(dice) + printed("%03d%02d%02d", dice.below(180), dice.below(60), dice.below(60));
}
Said readSeconds(const std::string& text) {
  static const std::regex pattern(
      "([NS])(\\d{2}[0-5]\\d)([0-5]\\d),([EW])(\\d{3}[0-5]\\d)([0-5]\\d)");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  const auto degrees = [](double upTo, double seconds) {
    return std::floor(upTo / 100) + std::fmod(upTo, 100) / 60 + seconds / 3600;
  };
  return hemispheres(found, degrees(number(found[2]), number(found[3])),
                     degrees(number(found[5]), number(found[6])));
}

// N34741W107904
std::string writeThousandths(Dice& dice) {
  return northSouth(dice) + printed("%05d", dice.below(90000)) + eastWest(dice) +
         printed("%06d", dice.below(180000));
}
Said readThousandths(const std::string& text) {
  static const std::regex pattern("([NS])(\\d{5})()([EW])(\\d{6})");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  return hemispheres(found, number(found[2]) / 1000, number(found[5]) / 1000);
}

// N373488W0756927
std::string writeTenThousandths(Dice& dice) {
  return northSouth(dice) + printed("%06d", dice.below(900000)) + eastWest(dice) +
         printed("%07d", dice.below(1800000));
}
Said readTenThousandths(const std::string& text) {
  static const std::regex pattern("([NS])(\\d{6})()([EW])(\\d{7})");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  return hemispheres(found, number(found[2]) / 10000, number(found[5]) / 10000);
}

// N 44.203,W 86.546 and with other text between
template <const char* between>
std::string writeDecimal(Dice& dice) {
  return northSouth(dice) + printed("%6.3f", dice.below(90000) / 1000.0) + between +
         eastWest(dice) + printed("%7.3f", dice.below(180000) / 1000.0);
}
template <const char* between>
Said readDecimal(const std::string& text) {
  static const std::regex pattern(std::string("([NS])( *\\d{1,2})\\.(\\d{2,5})") + between +
                                  "([EW])( *\\d{1,3})\\.(\\d{2,5})");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  if (found[3].length() != found[6].length()) return std::nullopt;
  return hemispheres(found, number(found[2].str() + "." + found[3].str()),
                     number(found[5].str() + "." + found[6].str()));
}

// - 4.9985,-169.9820
std::string writeSigned(Dice& dice) {
  return plusMinus(dice, " ") + printed("%7.4f", dice.below(900000) / 10000.0) + "," +
         plusMinus(dice, " ") + printed("%8.4f", dice.below(1800000) / 10000.0);
}
Said readSigned(const std::string& text) {
  static const std::regex pattern(
      " *([-+]?)( *\\d{1,3}\\.(\\d{2,5})), *([-+]?)( *\\d{1,3}\\.(\\d{2,5}))");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  if (found[3].length() != found[6].length()) return std::nullopt;
  return hemispheres(found, number(found[2]), number(found[5]));
}

// " 35321-107895" and " 3707-10683"
template <int width, int unit>
std::string writeSignedDigits(Dice& dice) {
  return plusMinus(dice, " ") + printed("%0*d", width, dice.below(90 * unit)) +
         plusMinus(dice, " ") + printed("%0*d", width + 1, dice.below(180 * unit));
}
template <int width, int unit>
Said readSignedDigits(const std::string& text) {
  static const std::regex pattern(printed("([- +])(\\d{%d})()([- +])(\\d{%d})", width, width + 1));
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  return hemispheres(found, number(found[2]) / unit, number(found[5]) / unit);
}

// 341607,-1099962
std::string writeRecord(Dice& dice) {
  return (dice.below(2) == 0 ? "" : "-") + printed("%06d,", dice.below(900000)) +
         (dice.below(2) == 0 ? "" : "-") + printed("%07d", dice.below(1800000));
}
Said readRecord(const std::string& text) {
  static const std::regex pattern("(-?)(\\d{6})(),(-?)(\\d{7})");
  std::smatch found;
  if (!std::regex_match(text, found, pattern)) return std::nullopt;
  return hemispheres(found, number(found[2]) / 10000, number(found[5]) / 10000);
}

const Notation kTenths{"tenths of minutes", writeTenths, readTenths, false};
const Notation kWholeMinutes{"minutes", writeMinutes, readMinutes, false};
const Notation kPoint{"minutes with a point", writePoint<kNothing>, readPoint<kNothing>, false};
const Notation kPointComma{"minutes with a point, comma", writePoint<kComma>, readPoint<kComma>,
                           false};
const Notation kBehind{"hemisphere behind", writeBehind, readBehind, false};
const Notation kSeconds{"seconds", writeSeconds, readSeconds, false};
const Notation kThousandths{"thousandths", writeThousandths, readThousandths, false};
const Notation kTenThousandths{"ten-thousandths", writeTenThousandths, readTenThousandths, false};
const Notation kDecimal{"decimal, comma", writeDecimal<kComma>, readDecimal<kComma>, true};
const Notation kDecimalBlank{"decimal, blank", writeDecimal<kBlank>, readDecimal<kBlank>, true};
const Notation kDecimalJoined{"decimal", writeDecimal<kNothing>, readDecimal<kNothing>, true};
const Notation kSigned{"signed", writeSigned, readSigned, true};
const Notation kSignedThousandths{"signed thousandths", writeSignedDigits<5, 1000>,
                                  readSignedDigits<5, 1000>, false};
const Notation kSignedHundredths{"signed hundredths", writeSignedDigits<4, 100>,
                                 readSignedDigits<4, 100>, false};
const Notation kRecord{"record", writeRecord, readRecord, false};

struct Shape {
  const char* label;
  const char* before;
  const Notation& notation;
  const char* after;
};

void PrintTo(const Shape& shape, std::ostream* out) {
  *out << shape.label << " " << shape.before << "(" << shape.notation.name << ")" << shape.after;
}

const Shape kShapes[] = {
    {"H1", "#M1BPOS", kTenths, ",ROKNE,182357,350,EKR"},
    {"H1", "POS/ID91459S,BANKR31,/PS", kTenths, ",142800,240,"},
    {"H1", "*POS10300950", kWholeMinutes, "363"},
    {"H1", "#DFB*POS\n02020007", kWholeMinutes, "360251029790M55"},
    {"H1", "M85AQF0073YSSY,KSFO,101621,", kSigned, ",37001,"},
    {"H1", "#DFB\n", kPointComma, ",181118,1234\n"},
    {"H1", "A38/A32138,1,1/C1TRP,001122,KPSP,KDFW,08/C2", kRecord, ",349,01653,449,0230,1"},
    {"H1", "7T217\n23.58.47,CR,1899,37026,255.0,.788,-57.5,-30.8,", kPointComma, ",153920\n"},
    {"H1", "*WOBLAXATL5100F 3101000000M290M56837080107", kTenths, "247032:\n"},
    {"H1", "ABS001DA_N12345  KMDWKPHX287\n", kSignedThousandths, "0003037993-585"},
    {"H1", "R39/A33039,1,1\n239N800NW738 020226002903806", kSignedHundredths, "380-32-59"},
    {"H1", "/REP239,00,00,4/239N300DN0659020226000653766", kThousandths, "339-27-53"},
    {"H1", "76401\n02E02KPHXKSTL\n", kThousandths, "00073702M057"},
    {"2P", "FM4KJFK,EGLL,001122,", kSigned, ",37000"},
    {"1L", "000000070KJFK,EGLL,001122,", kSigned, ",37000"},
    {"1L", "000000660KJFK,EGLL,", kTenths, ",001122"},
    {"10", "LDR01,189,C,", kDecimal, ",36025,318"},
    {"12", "", kDecimal, ",31965,6, 290"},
    {"13", "/OFF 1234/LOC ", kSeconds, "/ALT +337/"},
    {"15", "(2", kTenths, "248 99380-53(Z"},
    {"15", "(1", kTenths, "(Z"},
    {"15", "FST01EGKKKMCO", kTenThousandths, "380 156"},
    {"16", "(2ABCD", kTenths, "(Z"},
    {"16", "005236,36787,0135,  97,", kDecimalBlank, ""},
    {"16", "000118,34986,0154, 184,", kDecimal, ""},
    {"16", "POSA1", kThousandths, ",RONZZ  ,005159,390,"},
    {"20", "POS", kTenths, ",,211733,360,OTT"},
    {"21", "POS", kDecimalJoined, ", 220,184218,17222,"},
    {"32", "P,R,2026-02-02 00:55:09,7688,68300,", kDecimalBlank, ",20717,"},
    {"44", "00ETA03,", kTenths, ",319,KJFK"},
    {"44", "/FB 0123/AD KJFK/", kDecimal, "/X"},
    {"4A", "", kThousandths, "MSP/07 ,204436123VECTORS"},
    {"4A", "124442,1320, 138,33467,", kDecimal, ""},
    {"4T", "AGFSR AC0620/08/08/YULMCO/1829Z/620/", kBehind, "/350/"},
    {"80", "3N01 POSRPT 0581/27 KIAD/POS ", kPoint, "/FL 360"},
    {"80", "3N01 POSRPT 0581/27 KIAD/POS", kTenths, "/FL 360"},
    {"83", "001PR19113523", kPoint, "1273750177"},
    {"83", "LGAV,KEWR,232011,", kSigned, ",37001,"},
};

class EveryShape : public testing::TestWithParam<Shape> {
 protected:
  static constexpr int kRounds = 150;

  Said found(const std::string& coordinates) const {
    return foundIn(GetParam().before + coordinates + GetParam().after);
  }
  Said foundIn(const std::string& text) const {
    const auto position = positionOf(GetParam().label, text);
    if (!position) return std::nullopt;
    return Place{position->latitude, position->longitude};
  }
  Said said(const std::string& coordinates) const { return GetParam().notation.read(coordinates); }

  static bool same(const Said& first, const Said& second) {
    if (!first || !second) return first.has_value() == second.has_value();
    return std::abs(first->latitude - second->latitude) < 1e-6 &&
           std::abs(first->longitude - second->longitude) < 1e-6;
  }
  static std::string shown(const Said& place) {
    return place ? std::to_string(place->latitude) + ", " + std::to_string(place->longitude)
                 : "nothing";
  }

  Dice dice_;
};

TEST_P(EveryShape, GivesThePlaceThatTheTextSays) {
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = GetParam().notation.write(dice_);
    ASSERT_TRUE(same(found(text), said(text)))
        << text << " says " << shown(said(text)) << ", found " << shown(found(text));
  }
}

TEST_P(EveryShape, AChangedDigitIsReadAsItStandsOrNotAtAll) {
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = GetParam().notation.write(dice_);
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (std::isalnum(text[at]) == 0) continue;
      std::string changed = text;
      changed[at] = "0123456789NSEWA"[dice_.below(15)];
      const Said place = found(changed);
      if (!place) {
        // A digit for a digit is a number like any other.
        const bool digits = std::isdigit(changed[at]) != 0 && std::isdigit(text[at]) != 0;
        ASSERT_FALSE(digits && said(changed)) << changed << " says " << shown(said(changed));
        continue;
      }
      ASSERT_TRUE(same(place, said(changed))) << text << " became " << changed << " that says "
                                              << shown(said(changed)) << ", found " << shown(place);
    }
  }
}

TEST_P(EveryShape, ALostDigitNeverMovesThePlace) {
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = GetParam().notation.write(dice_);
    for (std::size_t at = 0; at < text.size(); ++at) {
      // A number without its sign says something else, and says it well.
      if (text[at] == '-' || text[at] == ' ') continue;
      std::string shorter = text;
      shorter.erase(at, 1);
      const Said place = found(shorter);
      if (!place || same(place, said(text))) continue;
      ASSERT_TRUE(GetParam().notation.hasPoint && same(place, said(shorter)))
          << text << " became " << shorter << ", found " << shown(place);
    }
  }
}

TEST_P(EveryShape, ATextThatBreaksOffGivesItsPlaceOrNone) {
  for (int round = 0; round < 20; ++round) {
    const std::string coordinates = GetParam().notation.write(dice_);
    const std::string text = GetParam().before + coordinates + GetParam().after;
    for (std::size_t size = 0; size < text.size(); ++size) {
      const Said place = foundIn(text.substr(0, size));
      ASSERT_TRUE(!place || same(place, said(coordinates)))
          << text.substr(0, size) << ", found " << shown(place);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, EveryShape, testing::ValuesIn(kShapes));

}  // namespace
}  // namespace vel
