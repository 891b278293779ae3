#include "velweb/positions.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace vel {
namespace {

struct Report {
  const char* label;
  const char* text;
  double latitude;
  double longitude;
  int altitudeFeet;  // kNoAltitude where none is given
};
constexpr int kNoAltitude = -99999;

void PrintTo(const Report& report, std::ostream* out) {
  *out << report.label << " " << report.text;
}

class PositionReport : public testing::TestWithParam<Report> {};

TEST_P(PositionReport, GivesTheAircraftsPlace) {
  const auto position = positionOf(GetParam().label, GetParam().text);
  ASSERT_TRUE(position.has_value());
  EXPECT_NEAR(position->latitude, GetParam().latitude, 1e-4);
  EXPECT_NEAR(position->longitude, GetParam().longitude, 1e-4);
  EXPECT_EQ(position->altitudeFeet.value_or(kNoAltitude), GetParam().altitudeFeet);
}

const Report kReports[] = {
    {"H1", "POSN43312W123174,EASON,215754,370,EBINY", 43.52, -123.29, 37000},
    {"H1", "#M1BPOSN37533W096476,ROKNE,182357,350,EKR,184210,MLF,M50,25985,1084", 37.8883, -96.7933,
     35000},
    {"H1", "F37AMCLL93#M1BPOS/ID80540A,RCH883,ABZ02R70E037/PSN39277W077359,142800,240", 39.4617,
     -77.5983, 24000},
    {"H1", "/HDQDLUA.POSN38160W077075,,211733,360,OTT", 38.2667, -77.1250, 36000},
    {"H1", "POS/ID91459S,BANKR31,/DC03032024,142813/MR64,0/PSN39277W077359,142800,240,N39300",
     39.4617, -77.5983, 24000},
    {"4J", "POS/ID91459S,BANKR31,/DC03032024,142813/PSN39277W077359,142800,240", 39.4617, -77.5983,
     24000},
    {"2P", "M74AKL0685/PSN39277W077359,142800,240", 39.4617, -77.5983, 24000},
    {"H1", "*POS10300950N3954W07759363...", 39.9, -77.9833, 36300},
    {"H1", "(POS-KLM296  -3911N07600W/234212 F250", 39.1833, -76.0, 25000},
    {"H1", "M85AQF0073YSSY,KSFO,101621,- 4.9985,-169.9820,390", -4.9985, -169.9820, kNoAltitude},
    {"H1", "YSSY,KSFO,101621,- 4.9985,-169.9820,390", -4.9985, -169.9820, kNoAltitude},
    {"H1", "N2940.2,W09539.7,181118,1234\nN2950.2,W09549.7,181218,1334", 29.67, -95.6617,
     kNoAltitude},
    {"H1", "#DFB\nN2940.2,W09539.7,181118,1234\n", 29.67, -95.6617, kNoAltitude},
    {"H1", "#DFBN2940.25,W09539.75,181118,1234\n", 29.67083, -95.6625, kNoAltitude},
    {"10", "/N39.182/W077.217/10/0.42/180/052/", 39.182, -77.217, kNoAltitude},
    {"10", "LDR01,189,C,SWA-2600-016-0,0,N8578Q-173,WN0393,N 38.151,W 76.623,36025,318.5", 38.151,
     -76.623, 36025},
    {"10", "POS082150, N 3885,W 7841,---,", 38.85, -78.41, kNoAltitude},
    {"12", "N 44.203,W 86.546,31965,6, 290", 44.203, -86.546, 31965},
    {"16", "N 44.203,W 86.546,31965,6, 290", 44.203, -86.546, 31965},
    {"16", "005236,36787,0135,  97,N 38.364 W 75.226", 38.364, -75.226, kNoAltitude},
    {"16", "283806/AUTPOS/LLD N400547 W0774954", 40.0964, -77.8317, kNoAltitude},
    {"16", "POSA1N38843W 78790,RONZZ  ,005159,390,OTT  ,005825,", 38.843, -78.790, 39000},
    {"13", "/OFF 1234/LOC N373703,W1222251", 37.6175, -122.3808, kNoAltitude},
    {"14", "/LOC +38.9603,-077.4595", 38.9603, -77.4595, kNoAltitude},
    {"15", "X/LOC N373703,W1222251/AB", 37.6175, -122.3808, kNoAltitude},
    {"16", "X/LOC +38.9603,-077.4595", 38.9603, -77.4595, kNoAltitude},
    {"17", "ETA 0123/LOC -38.9603,+077.4595", -38.9603, 77.4595, kNoAltitude},
    {"18", "/LOC S373703,E1222251", -37.6175, 122.3808, kNoAltitude},
    {"15", "(2N40492W 77179248 99380-53(Z", 40.82, -77.2983, 24800},
    {"15", "FST01EGKKKMCON373488W0756927380 156 ...", 37.3488, -75.6927, 38000},
    {"20", "POSN38160W077075,,211733,360,OTT", 38.2667, -77.1250, 36000},
    {"21", "POSN 39.841W 75.790, 220,184218,17222", 39.841, -75.790, kNoAltitude},
    {"22", "N 404630W 735400,-------,042530,", 40.7750, -73.9, kNoAltitude},
    {"32", "P,R,2026-02-02 00:55:09,7688,68300,N36.795 W107.615,20717,", 36.795, -107.615,
     kNoAltitude},
    {"44", "POS02,N38171W077507,319,KJFK,KUZA", 38.285, -77.845, 31900},
    {"44", "POS02,N38171W077507,GRD,KJFK,KUZA", 38.285, -77.845, kNoAltitude},
    {"44", "ON01,N38171W077507,KJFK", 38.285, -77.845, kNoAltitude},
    {"44", "OFF01,N38171W077507,KJFK", 38.285, -77.845, kNoAltitude},
    {"44", "IN01,N38171W077507,KJFK", 38.285, -77.845, kNoAltitude},
    {"44", "ETA01,N38171W077507,319,KJFK", 38.285, -77.845, 31900},
    {"4T", "AGFSR AC0620/08/08/YULMCO/1829Z/620/4435.1N07143.4W/350/", 44.585, -71.7233, 35000},
    {"80", "3N01 POSRPT 0581/27 KIAD/MSLP .N962AV/POS N3539.2W07937.2/FL 360", 35.6533, -79.62,
     36000},
    {"83", "001PR19113523N2947.7W09536.51273750177", 29.7950, -95.6083, 12737},
    {"83", "001PR19113523N2947.75W09536.511273750177", 29.79583, -95.60850, 12737},
    {"83", "LGAV,KEWR,232011, 40.64,- 74.61,", 40.64, -74.61, kNoAltitude},
    {"B6", "/BOMASAI.ADS.VT-ALM07 2534B8607F884D36331D...", 52.32084, 16.96255, 34000},
    {"H1", "/BOMASAI.ADS.VT-ALM072534B8607F884D36331D2A5B", 52.32084, 16.96255, 34000},
    {"B6", "/BOMASAI.ADS.VT-ALM072534B8607F\n884D36331D", 52.32084, 16.96255, 34000},
    {"B6", "/BOMASAI.ADS.VT-ALM0301072534B8607F884D36331D", 52.32084, 16.96255, 34000},
    // Other reports of the same aircraft follow; the first one counts.
    {"H1",
     "A38/A32138,1,1/C1TRP,001122,KPSP,KDFW,08,8,75738/C2341607,-1099962,349,01653,449,0230,1/"
     "C3341920,-1095231,350,01640,450,0231,1",
     34.1607, -109.9962, 34900},
    {"H1",
     "#DFBA27/A33327,1,1/C1TRP,001122,FAOR,FACT,08,8,75738/C2-261607,0279962,120,01653,449,0230,1",
     -26.1607, 27.9962, 12000},
    {"H1",
     "A38/A32138,1,1/C1TRP,001122,LIRF,LICC,08,8,75738/C2391607,129962,349,01653,449,0230,1/"
     "C3382920,131231,350,01640,450,0231,1",
     39.1607, 12.9962, 34900},
    {"H1",
     "7T217,8560,B737-800,260201,WN4321,KPHX,KSTL,0994,SW2501\n23.58.47,CR,1899,37026,255.0,.788,"
     "-57.5,-30.8,N3421.5,W10912.4,153920\n23.59.47,CR,1890,37020,255.0,.788,-57.5,-30.8,N3428.5,"
     "W10902.4,153820\n",
     34.3583, -109.2067, 37026},
    {"H1", "#DFB*POS\n02020007N3524W10702360251029790M55120", 35.4, -107.0333, 36000},
    {"H1", "#DFB*POS\r\n02020007N3524W10702041251029790M05120", 35.4, -107.0333, 4100},
    {"H1", "#DFB*WOBLAXATL5100F 3101000000M290M56837080107N35234W108415247032:\n", 35.39, -108.6917,
     kNoAltitude},
    {"H1", "ABS001DA_N12345  KMDWKPHX287\n 35321-1078950003037993-585 12", 35.321, -107.895, 37993},
    {"H1", "#DFBABS001DA_N12345  KMDWKPHX287\r\n- 5321 0178950003007993-085 12", -5.321, 17.895,
     7993},
    {"H1",
     "239103201201010098135\nR39/A33039,1,1\n239N800NW738 020226002903806 3707-10683380-32-59",
     37.07, -106.83, 38000},
    {"H1", "R39/A33039,1,1\n239N800NW738 020226002903806- 307  9683380-32-59", -3.07, 96.83, 38000},
    {"H1",
     "A321,020496,1,1,TB000000/REP239,00,00,4/239N300DN0659020226000653766N35497W105917339-27-53",
     35.497, -105.917, 33900},
    {"H1", "76401\n02E02KPHXKSTL\nN34741W10790400073702M057240", 34.741, -107.904, kNoAltitude},
    {"H1", "#DFB76401\n02E02KPHXKSTL\nN 4741E00790400073702P007240\nN34741W10790400073702M057240",
     4.741, 7.904, kNoAltitude},
    {"16", "000118,34986,0154, 184,N 35.972,W109.381", 35.972, -109.381, kNoAltitude},
    {"16", "(2ABCDN35234W108415(Z", 35.39, -108.6917, kNoAltitude},
    {"16", "(2ASN 5234W  8415248 99380-53(Z", 5.39, -8.6917, kNoAltitude},
    {"15", "(1N35234W 98415(Z", 35.39, -98.6917, kNoAltitude},
    {"15", "(2N40492W 77179GRD 99380-53(Z", 40.82, -77.2983, kNoAltitude},
    {"2P", "FM3 001122,0059, 35.123,-107.456,37000", 35.123, -107.456, kNoAltitude},
    {"2P", "FM4KJFK,EGLL,001122, 35.12,- 7.45,37000", 35.12, -7.45, kNoAltitude},
    {"2P", "M74AKL0685FM5KJFK,EGLL,-35.123,107.456", -35.123, 107.456, kNoAltitude},
    {"1L", "000000070KJFK,EGLL,001122 35.123,-107.456,37000", 35.123, -107.456, kNoAltitude},
    {"1L", "000000660N35234W108415,001122,370", 35.39, -108.6917, kNoAltitude},
    {"1L", "000000660KJFK,EGLL,N35234W108415,001122,370", 35.39, -108.6917, kNoAltitude},
    {"1L", "000000660KJFKEGLL N35234W108415,001122,370", 35.39, -108.6917, kNoAltitude},
    {"H1", "R39/A33039,1,1\n239N800NW738 020226002903806- 307  9683 80- 2 12", -3.07, 96.83, 8000},
    {"1L", "PRG\nLON W 107.456\nLAT N 35.123", 35.123, -107.456, kNoAltitude},
    {"80", "3N01 POSRPT 0581/27 KIAD/POSN38160W077075/ALT +37070/MCH 802", 38.2667, -77.125, 37070},
    {"80", "3N01 POSRPT 0581/27 KIAD/POS N38160 W077075/FL 360", 38.2667, -77.125, 36000},
    {"80", "3N01 POS N38160W077075,211733", 38.2667, -77.125, kNoAltitude},
    {"44", "00ETA03,N38171W077507,319,KJFK", 38.285, -77.845, 31900},
    {"44", "/FB 0123/AD KJFK/N 35.123,W 107.456", 35.123, -107.456, kNoAltitude},
    {"4A", "N45129W093113MSP/07 ,204436123VECTORS", 45.129, -93.113, kNoAltitude},
    {"4A", "124442,1320, 138,33467,N 41.093,W 72.677", 41.093, -72.677, kNoAltitude},
    // A minute of 60.0 is one that was rounded.
    {"20", "POSN38600W077075,,211733,360,OTT", 39, -77.125, 36000},
    {"20", "POSN38160W107600,,211733,360,OTT", 38.2667, -108, 36000},
    {"4T", "/620/4435.1N07160.0W/350/", 44.585, -72, 35000},
    {"80", "/POS N3560.0W07937.2/FL 360", 36, -79.62, 36000},
    // Altitudes in their places.
    {"21", "POSN 39.841W 75.790, 220,184218,17222,22051", 39.841, -75.79, 17222},
    {"22", "N 404630W 735400,-------,042530,5500, ,", 40.775, -73.9, 5500},
    {"14", "/LOC +38.9603,-077.4595/ALT +00337/", 38.9603, -77.4595, 337},
    {"14", "/LOC +38.9603,-077.4595/ALT 337/", 38.9603, -77.4595, kNoAltitude},
    {"14", "/LOC +38.9603,-077.4595/ALT 5000", 38.9603, -77.4595, kNoAltitude},
    {"10", "/N39.182/W077.217/350/0.82/180/052/", 39.182, -77.217, 35000},
    {"10", "/N39.182/W077.217/10/0.42/FL350/", 39.182, -77.217, 35000},
    {"10", "/N39.182/W077.217/10/0.42/FL350/FL310/", 39.182, -77.217, kNoAltitude},
    {"83", "LGAV,KEWR,232011, 40.64,- 74.61,37001,", 40.64, -74.61, 37001},
    {"10", "POS082150, N 3885,W 7841,27616,", 38.85, -78.41, 27616},
    {"10", "POS082150, N 3885,W 7841,270,", 38.85, -78.41, kNoAltitude},
    {"44", "POS02,N38171W077507, 45,KJFK,KUZA", 38.285, -77.845, 4500},
    // The other sides of the world, small numbers and the very ends.
    {"20", "POSS00035E000006,,211733,360,OTT", -0.0583, 0.01, 36000},
    {"20", "POSN00000W000001,,211733,360,OTT", 0, -0.00167, 36000},
    {"20", "POSS90000E180000,,211733,360,OTT", -90, 180, 36000},
    {"12", "S  4.203,E  6.546,31965,6, 290", -4.203, 6.546, 31965},
    {"12", "S 44.203,E179.999,-----,6, 290", -44.203, 179.999, kNoAltitude},
    {"20", "POSN38599W077599,,211733,360,OTT", 38.99833, -77.99833, 36000},
    {"20", "\r\n POSN38160W077075", 38.2667, -77.125, kNoAltitude},
    {"20", "POSN38160W077075,,211733,999,OTT", 38.2667, -77.125, kNoAltitude},
};
INSTANTIATE_TEST_SUITE_P(Forms, PositionReport, testing::ValuesIn(kReports));

TEST(AdsC, SouthAndWestAreSigned) {
  // -33.9461, 151.1772 at 1,996 ft and its mirror image, encoded by hand.
  const auto encode = [](double latitude, double longitude, int altitude) {
    std::string bits;
    const auto add = [&bits](long value, int width) {
      for (int i = width - 1; i >= 0; --i) bits += (value >> i & 1) != 0 ? '1' : '0';
    };
    add(std::lround(latitude * (1 << 20) / 180), 21);
    add(std::lround(longitude * (1 << 20) / 180), 21);
    add(altitude / 4, 16);
    add(0, 22);
    std::string text;
    for (std::size_t i = 0; i < bits.size(); i += 4) {
      text += "0123456789ABCDEF"[std::stoul(bits.substr(i, 4), nullptr, 2)];
    }
    return text;
  };
  for (const char* tag : {"07", "09", "0A", "12", "13", "14"}) {
    const auto position = positionOf(
        "B6", std::string("/SYDCAYA.ADS.VH-OEJ") + tag + encode(-33.9461, -151.1772, 1996));
    ASSERT_TRUE(position) << tag;
    EXPECT_NEAR(position->latitude, -33.9461, 1e-4);
    EXPECT_NEAR(position->longitude, -151.1772, 1e-4);
    EXPECT_EQ(position->altitudeFeet, 1996);
  }
  EXPECT_EQ(positionOf("B6", "/SYDCAYA.ADS.VH-OEJ07" + encode(0, 0, 1996)), std::nullopt);
  EXPECT_EQ(positionOf("B6", "/SYDCAYA.ADS.VH-OEJ07" + encode(91, 10, 1996)), std::nullopt);
  EXPECT_EQ(positionOf("B6", "/SYDCAYA.ADS.VH-OEJ0D" + encode(10, 10, 1996)), std::nullopt);
  const auto far = positionOf("B6", "/SYDCAYA.ADS.VH-OEJ07" + encode(10, 10, 120'000));
  ASSERT_TRUE(far);
  EXPECT_EQ(far->altitudeFeet, std::nullopt) << "no aircraft flies there";
}

struct Text {
  const char* label;
  const char* text;
};
void PrintTo(const Text& text, std::ostream* out) { *out << text.label << " " << text.text; }

class NoPosition : public testing::TestWithParam<Text> {};

TEST_P(NoPosition, GivesNone) {
  const auto position = positionOf(GetParam().label, GetParam().text);
  EXPECT_FALSE(position.has_value())
      << position.value_or(Position{}).latitude << ", " << position.value_or(Position{}).longitude;
}

const Text kTexts[] = {
    // Minutes and seconds of 60 or more.
    {"20", "POSN38601W077075,,211733,360,OTT"},
    {"20", "POSN38160W077601,,211733,360,OTT"},
    {"20", "POSN38843W078790,,211733,360,OTT"},
    {"H1", "POSN43712W123174,EASON,215754,370,EBINY"},
    {"H1", "*POS10300950N3960W07759363"},
    {"H1", "(POS-KLM296  -3911N07660W/234212 F250"},
    {"16", "283806/AUTPOS/LLD N406047 W0774954"},
    {"16", "283806/AUTPOS/LLD N400560 W0774954"},
    {"22", "N 404660W 735400,-------,042530,"},
    {"80", "/POS N3560.2W07937.2/FL 360"},
    {"4T", "/620/4435.1N07160.1W/350/"},
    {"83", "001PR19113523N2967.7W09536.51273750177"},
    {"13", "/LOC N377703,W1222251"},
    {"15", "(2N40692W 77179248 99380-53(Z"},
    // Latitudes over 90, longitudes over 180.
    {"20", "POSN91160W077075,,211733,360,OTT"},
    {"20", "POSN90001W077075,,211733,360,OTT"},
    {"20", "POSN38160W181075,,211733,360,OTT"},
    {"20", "POSN38160W180001,,211733,360,OTT"},
    {"12", "N 90.203,W 86.546,31965,6, 290"},
    {"12", "N 44.203,W186.546,31965,6, 290"},
    {"83", "LGAV,KEWR,232011, 140.64,- 74.61,"},
    {"14", "/LOC +98.9603,-077.4595"},
    {"10", "POS082150, N 9885,W 7841,---,"},
    // Nowhere and unknown.
    {"20", "POSN00000E000000,,211733,360,OTT"},
    {"12", "N  0.000,W  0.000,00000,6, 290"},
    {"83", "LGAV,KEWR,232011, 0.00, 0.00,"},
    {"H1", "YSSY,KSFO,101621, 180.0000, 180.0000,390"},
    {"12", "N180.000,E180.000,00000,6, 290"},
    {"B6", "/BOMASAI.ADS.VT-ALM0700000000000000000000"},
    // Squitters: a ground station's place.
    {"SQ", "02XSYYZCYYZ14338N07936WV136975/ARINC"},
    {"SQ", "POSN38160W077075,,211733,360,OTT"},
    {"SQ", "00XS"},
    // Flight plans and predicted routes.
    {"H1", "#M1BFPN/RP:DA:KEWR:AA:KDFW:F:N38160W077075..N39277W077359"},
    {"H1", "FPN/RI:DA:EGLL:AA:KJFK:F:POSN38160W077075,,211733"},
    {"H1", "#M1BRES/RP:F:POSN38160W077075,EASON,215754,370"},
    {"H1", "FPN/TS140017,021724/PSN39277W077359,142800"},
    {"H1", "#M1BPWI/WD360,N38160W077075,245066.N39277W077359,240064"},
    {"H1", "POS,N38160W077075,211733,360,OTT"},
    {"H1", "#M1BREQPOS037B"},
    {"20", "EASON,N38160W077075,211733"},
    {"44", "POS02,,319,KJFK,N38171W077507"},
    // Airports and routes alone.
    {"Q0", ""},
    {"39", "010039 KJFK KLAX8\n/FN 0738\n0210"},
    {"B9", "/CYYC.TI2/040CYYCAA6A1"},
    {"83", "LGAV,KEWR,232011,"},
    {"83", "LGAV,KEWR,232011,------,-------,"},
    {"44", "IN01,KJFK,KLAX,1106,0042"},
    // ADS-C: cut short, other tags, no report.
    {"B6", "/BOMASAI.ADS.VT-ALM07 2534B8607F884D3633"},
    {"B6", "/BOMASAI.ADS.VT-ALM07 2534B8607F884D36331"},
    {"B6", "/BOMASAI.ADS.VT-ALM"},
    {"B6", "/BOMASAI.ADS.VT-A"},
    {"B6", "/BOMASAI.ADS"},
    {"B6", "/BOMASAI.ADS.VT-ALM0D2534B8607F884D36331D"},
    {"B6", "/BOMASAI.ADS.VT-ALM0301"},
    {"B6", "/BOMASAI.ADS.VT-ALM03010301072534B8607F884D36331D"},
    {"B6", "/BOMASAI.ADS.VT-ALMXX2534B8607F884D36331D"},
    {"B6", "BOMASAI.ADS.VT-ALM072534B8607F884D36331D"},
    {"B6", "/BOMASAI.AT1.VT-ALM072534B8607F884D36331D"},
    {"A6", "/BOMASAI.ADS.VT-ALM072534B8607F884D36331D"},
    {"B6", ".ADS.VT-ALM072534B8607F884D36331D"},
    // Cut short, or not fitting their form to the end.
    {"20", "POSN38160W07707"},
    {"20", "POSN38160W0770755,,211733,360,OTT"},
    {"20", "POSN38160,W077075,,211733,360,OTT"},
    {"20", "POSN3816AW077075,,211733"},
    {"20", "POSX38160W077075,,211733"},
    {"20", "POSN38160N077075,,211733"},
    {"20", "posn38160w077075,,211733,360,ott"},
    {"12", "N 44.203,W 86.5"},
    {"12", "N 44.203,W 86.546.2"},
    {"12", "N 44.2,W 86.5,31965"},
    {"12", "N 44,W 86,31965"},
    {"12", "AT N 44.203,W 86.546,31965,6, 290"},
    {"14", "/LOC +38.9603,-077.4"},
    {"14", "/LOC 38.9603,077.4595"},
    {"13", "/LOC N373703,W122225"},
    {"16", "POSA1N38843W 7879"},
    {"16", "283806/AUTPOS/LLD N400547 W077495"},
    {"16", "005236,36787,N 38.364 W 75.226"},
    {"10", "/N39.182/W077.217"},
    {"10", "LDR01,189,N 38.151,76.623,"},
    {"10", "LDR02,189,N 38.151,W 76.623,"},
    {"22", "N 404630W 73540,-------,042530,"},
    {"32", "P,R,2026-02-02 00:55:09,N36.795 W107.615,20717,"},
    {"4T", "/620/4435.1N07143.4W"},
    {"4T", "/620/4435.1N07143.45W/"},
    {"80", "POS N3539.2W07937.2/FL 360"},
    {"83", "001PR1911352N2947.7W09536.5"},
    {"H1", "N2940.2,W09539.7"},
    {"H1", "X N2940.2,W09539.7,181118"},
    {"H1", "(POS-KLM296  -3911N07600W"},
    {"H1", "(POS--3911N07600W/234212"},
    {"15", "FST01EGKKKMCON373488W07569"},
    // Reports of the monitoring system that lost a character, or of another kind.
    {"H1", "A38/A32138,1,1/C1TRP,001122,KPSP,KDFW,08,8,75738/C2341607,-109962,349,01653"},
    {"H1",
     "A38/A32138,1,1/C1TRP,001122,KPSP,KDFW,08,8,75738/C234167,-1099962,349,01653,449,0230,1/"
     "C3341920,-1095231,350"},
    {"H1",
     "A38/A32138,1,1/C1TRP,001122,KPSP,KDFW,08,8,75738/C201234,-1099962,349,01653,449,0230,1/"
     "C3123456,-1095231,350"},
    {"H1", "A38/A32137,1,1/C1TRP,001122,KPSP,KDFW,08,8,75738/C2341607,-1099962,349,01653"},
    {"H1", "A38/A32138,1,1/C2341607,-1099962,349,01653"},
    {"H1", "23.58.47,CR,1899,37026,255.0,.788,N3421.5,W10912.4,153920"},
    {"H1", "24.58.47,CR,1899,37026,255.0,.788,-57.5,-30.8,N3421.5,W10912.4,153920"},
    {"H1", "#DFB*POS\n02020007N3524W1070360251029790M55120"},
    {"H1", "#DFB*POS\n2020007N3524W10702360251029790M55120"},
    {"H1", "*WOBLAXATL5100F 3101000000M290M56837080107N35234W10841247032:"},
    {"H1", "*WOBLAXATL5100F 3101000000M290M56837080107N35634W108415247032:"},
    {"H1", "ABS001DA_N12345  KMDWKPHX287\n35321-1078950003037993-585"},
    {"H1", "ABS001DA_N12345  KMDWKPHX287\n 35321-107890003037993-585"},
    {"H1", "ABS001DA_N12345  KMDWKPHX287\n 35321-1078952403037993-585"},
    {"H1", "ABX001DA_N12345  KMDWKPHX287\n 35321-1078950003037993-585"},
    {"H1", "239N800NW738 020226002903806 377-10683380-32-59"},
    {"H1", "239N800NW738 020226002903806 3707-1063380-32-59"},
    {"H1", "239N800NW738 020226002903806 370710683380-32-59"},
    {"H1", "240N800NW738 020226002903806 3707-10683380-32-59"},
    {"H1", "/239N300DN0659020226000653766N35497W10597339-27-53"},
    {"H1", "02E02KPHXKSTL\nN34741W1079040073702M057"},
    {"H1", "02E02KPHXKST\nN34741W10790400073702M057"},
    {"H1", "02E02KPHXKSTL\nX\nN34741W10790400073702M057"},
    {"16", "(3ABCDN35234W108415(Z"},
    {"16", "(2ABCDN35634W108415(Z"},
    {"15", "(2N40492W 7179248 99380-53(Z"},
    {"15", "FST01EGKKKMCON373488W075692380 156 ..."},
    {"83", "001PR19113523N2947.7W09536.1273750177"},
    {"83", "001PR19113523N2947.75W09536.11273750177"},
    {"2P", "FM3 001122,12.5, 35.123,-107.456"},
    {"2P", "FM3 001122,CR S 35.123,107.456"},
    {"2P", "FM35.123,-107.456,37000"},
    {"1L", "0000000705.123,-107.456,37000"},
    {"2P", "FM3 001122,CRU- 35.123,107.456"},
    {"2P", "FM3 001122, 35.12,-107.456"},
    {"2P", "FM9 001122, 35.123,-107.456"},
    {"1L", "000000080KJFK,EGLL, 35.123,-107.456"},
    {"1L", "000000660KJFK,EGLL,N3523W108415,001122,370"},
    {"1L", "LON W 107.456\nLAT N 35.12"},
    {"1L", "LON W 107.456"},
    {"1L", "LON W 107.456\nLAT N 35.123\nLAT N 36.123"},
    {"1L", "LAT W 107.456\nLON N 35.123"},
    {"80", "/POS N38160 W07707/FL 360"},
    {"80", "/POS N3539.2 W0793.2/FL 360"},
    {"44", "00XTA03,N38171W077507,319,KJFK"},
    {"44", "/FB 0123/N 35.123,W 107.456"},
    {"4A", "N4512W093113MSP/07 ,204436123VECTORS"},
    {"4A", "N45129W0931133MSP/07 ,204436123VECTORS"},
    {"4A", "124442,1320, 138,N 41.093,W 72.677"},
    // Nothing at all.
    {"H1", ""},
    {"H1", "POS"},
    {"H1", "ENGINE REPORT\nN1 88.2 EGT 612"},
    {"H1", "POSITION UNKNOWN"},
    {"5Z", "POSN38160W077075,,211733,360,OTT"},
    {"", "POSN38160W077075,,211733,360,OTT"},
    {"h1", "POSN38160W077075,,211733,360,OTT"},
    {"20", "\xE7\xBE\xBD\xE7\x94\xB0 N38160W077075"},
    {"12", "N             ,W"},
    {"16", ",,,,,,,,,,,,,,"},
    {"4T", "////////////////"},
};
INSTANTIATE_TEST_SUITE_P(Texts, NoPosition, testing::ValuesIn(kTexts));

TEST(Positions, ThereAreAtLeastAsManyTextsWithoutAPositionAsWithOne) {
  EXPECT_GE(std::size(kTexts), std::size(kReports));
}

// Whatever arrives, an answer is a place on Earth.
TEST(Positions, RandomTextsNeverGiveAnImpossiblePlace) {
  const char* labels[] = {"H1", "4J", "10", "12", "13", "15", "16", "20",
                          "21", "22", "32", "44", "4T", "80", "83", "B6"};
  unsigned state = 12345;
  const auto random = [&state](unsigned limit) {
    state = state * 1664525u + 1013904223u;
    return (state >> 8) % limit;
  };
  int found = 0;
  for (int round = 0; round < 200'000; ++round) {
    const Report& seed = kReports[random(static_cast<unsigned>(std::size(kReports)))];
    std::string text = seed.text;
    for (unsigned change = random(3); change > 0 && !text.empty(); --change) {
      const std::size_t at = random(static_cast<unsigned>(text.size()));
      switch (random(3)) {
        case 0:
          text[at] = static_cast<char>(random(256));
          break;
        case 1:
          text.erase(at, 1 + random(4));
          break;
        default:
          text.insert(at, 1, "0123456789 ,./NSEW-"[random(19)]);
      }
    }
    const auto position = positionOf(labels[random(16)], text);
    if (!position) continue;
    ++found;
    ASSERT_LE(std::abs(position->latitude), 90) << text;
    ASSERT_LE(std::abs(position->longitude), 180) << text;
    ASSERT_FALSE(position->latitude == 0 && position->longitude == 0) << text;
  }
  EXPECT_GT(found, 1000) << "the texts no longer come near the forms";
}

}  // namespace
}  // namespace vel
