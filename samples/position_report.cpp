#include "samples/position_report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace vel::samples {
namespace {

[[gnu::format(printf, 1, 2)]] std::string format(const char* pattern, ...) {
  std::array<char, 256> text{};
  std::va_list arguments;
  va_start(arguments, pattern);
  std::vsnprintf(text.data(), text.size(), pattern, arguments);
  va_end(arguments);
  return text.data();
}

char northSouth(const PositionFix& fix) { return fix.place.latitude < 0 ? 'S' : 'N'; }
char eastWest(const PositionFix& fix) { return fix.place.longitude < 0 ? 'W' : 'E'; }
double absLatitude(const PositionFix& fix) { return std::abs(fix.place.latitude); }
double absLongitude(const PositionFix& fix) { return std::abs(fix.place.longitude); }
std::int64_t inUnits(double degrees, int unitsPerDegree) {
  return std::llround(degrees * unitsPerDegree);
}

/// N38160W077075: degrees, minutes and tenths of a minute.
std::string minuteTenths(const PositionFix& fix) {
  const auto lat = inUnits(absLatitude(fix), 600);
  const auto lon = inUnits(absLongitude(fix), 600);
  return format("%c%02d%03d%c%03d%03d", northSouth(fix), static_cast<int>(lat / 600),
                static_cast<int>(lat % 600), eastWest(fix), static_cast<int>(lon / 600),
                static_cast<int>(lon % 600));
}

/// N3539.2W07937.2: the same with a point.
std::string minutePoint(const PositionFix& fix) {
  const auto lat = inUnits(absLatitude(fix), 600);
  const auto lon = inUnits(absLongitude(fix), 600);
  return format("%c%02d%02d.%d%c%03d%02d.%d", northSouth(fix), static_cast<int>(lat / 600),
                static_cast<int>(lat % 600 / 10), static_cast<int>(lat % 10), eastWest(fix),
                static_cast<int>(lon / 600), static_cast<int>(lon % 600 / 10),
                static_cast<int>(lon % 10));
}

/// N 404630W 735400: degrees, minutes and seconds.
std::string secondsBlank(const PositionFix& fix) {
  const auto lat = inUnits(absLatitude(fix), 3600);
  const auto lon = inUnits(absLongitude(fix), 3600);
  return format("%c%3d%02d%02d%c%4d%02d%02d", northSouth(fix), static_cast<int>(lat / 3600),
                static_cast<int>(lat / 60 % 60), static_cast<int>(lat % 60), eastWest(fix),
                static_cast<int>(lon / 3600), static_cast<int>(lon / 60 % 60),
                static_cast<int>(lon % 60));
}

std::string waypoint(const PositionFix& fix, int offset) {
  static const std::array<const char*, 12> kNames = {"ADNAP", "EMRON", "LEPKI", "VACKY",
                                                     "AVBET", "SEALS", "NIKLL", "OMOTO",
                                                     "CUPID", "KALNA", "ONEMU", "OPAKE"};
  const auto minute = fix.time.time_since_epoch().count() / 1200 + offset;
  return kNames[static_cast<std::size_t>(minute) % kNames.size()];
}

std::string laterClock(const PositionFix& fix, int minutesLater) {
  return utcClock(fix.time + std::chrono::minutes(minutesLater));
}

std::string reportH1(const PositionFix& fix) {
  return "POS" + minuteTenths(fix) + ',' + waypoint(fix, 0) + ',' + utcClock(fix.time) +
         format(",%03d,", fix.flightLevel) + waypoint(fix, 1) + ',' + laterClock(fix, 20) + ',' +
         waypoint(fix, 2) + ",M48,02216,185";
}

std::string report20(const PositionFix& fix) {
  return "POS" + minuteTenths(fix) + ",," + utcClock(fix.time) + format(",%03d,", fix.flightLevel) +
         waypoint(fix, 1).substr(0, 3);
}

std::string report4J(const PositionFix& fix) {
  return "POS/ID" + fix.flight->aircraft->registration + ",RPOS/PSN" + minuteTenths(fix) + ',' +
         utcClock(fix.time) + format(",%03d,", fix.flightLevel) + waypoint(fix, 1);
}

std::string report44(const PositionFix& fix) { return eventReport("POS02", fix); }

std::string report10Slash(const PositionFix& fix) {
  return format("/%c%06.3f/%c%07.3f/10/0.42/200/%s/", northSouth(fix), absLatitude(fix),
                eastWest(fix), absLongitude(fix), fix.flight->to->icao.c_str()) +
         utcClock(fix.time);
}

std::string report10Hundredths(const PositionFix& fix) {
  return "POS" + utcClock(fix.time) +
         format(", %c%5d,%c%5d,---,%03d", northSouth(fix),
                static_cast<int>(inUnits(absLatitude(fix), 100)), eastWest(fix),
                static_cast<int>(inUnits(absLongitude(fix), 100)), fix.flightLevel);
}

std::string report16(const PositionFix& fix) {
  return format("%c%7.3f,%c%7.3f,%d,6, 290", northSouth(fix), absLatitude(fix), eastWest(fix),
                absLongitude(fix), fix.flightLevel * 100);
}

std::string report21(const PositionFix& fix) {
  return format("POS%c%7.3f%c%7.3f, 220,", northSouth(fix), absLatitude(fix), eastWest(fix),
                absLongitude(fix)) +
         utcClock(fix.time) + format(",%d", fix.flightLevel * 100);
}

std::string report22(const PositionFix& fix) {
  return secondsBlank(fix) + ",-------," + utcClock(fix.time) +
         format(",%d", fix.flightLevel * 100);
}

std::string report80(const PositionFix& fix) {
  return "3N01 POSRPT " + fix.flight->route->flight.substr(2) + '/' +
         utcClock(fix.time).substr(0, 4) + ' ' + fix.flight->from->icao + '/' +
         fix.flight->to->icao + " ." + fix.flight->aircraft->registration + "<CR><VF>/POS " +
         minutePoint(fix) + format("/FL %03d", fix.flightLevel);
}

std::string report83(const PositionFix& fix) {
  return fix.flight->from->icao + ',' + fix.flight->to->icao + ',' + utcClock(fix.time) +
         format(",%c%5.2f,%c%6.2f", fix.place.latitude < 0 ? '-' : ' ', absLatitude(fix),
                fix.place.longitude < 0 ? '-' : ' ', absLongitude(fix));
}

/// The check sum of ARINC 622 texts.
unsigned crc16(const std::string& bytes) {
  unsigned crc = 0xFFFF;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned>(static_cast<unsigned char>(c)) << 8;
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc & 0x8000) != 0 ? ((crc << 1) ^ 0x1021) & 0xFFFF : (crc << 1) & 0xFFFF;
    }
  }
  return crc ^ 0xFFFF;
}

/// An ADS-C basic report: tag 7, latitude and longitude in 180/2^20 degrees (21
/// bits each), altitude in 4 ft (16), eighths of a second past the hour (15) and
/// the figure of merit (7).
std::string reportAdsC(const PositionFix& fix) {
  std::string bits;
  const auto add = [&bits](std::int64_t value, int width) {
    for (int i = width - 1; i >= 0; --i) {
      bits += (static_cast<std::uint64_t>(value) >> i & 1) != 0 ? '1' : '0';
    }
  };
  constexpr double kUnitsPerDegree = 1048576.0 / 180;
  add(7, 8);
  add(std::llround(fix.place.latitude * kUnitsPerDegree), 21);
  add(std::llround(fix.place.longitude * kUnitsPerDegree), 21);
  add(fix.flightLevel * 25, 16);
  add(fix.time.time_since_epoch().count() % 3600 * 8, 15);
  add(0x1D, 7);
  std::string bytes;
  for (std::size_t i = 0; i < bits.size(); i += 8) {
    bytes += static_cast<char>(std::stoi(bits.substr(i, 8), nullptr, 2));
  }
  const std::string address = addressField(fix.flight->aircraft->registration);
  std::string hex;
  for (const char byte : bytes) {
    hex += format("%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
  }
  return "/FUKJJYA.ADS" + address + hex + format("%04X", crc16("ADS" + address + bytes));
}

}  // namespace

const std::vector<PositionForm>& positionForms() {
  static const std::vector<PositionForm> kForms = {
      {"H1", reportH1},      {"20", report20},           {"4J", report4J}, {"44", report44},
      {"10", report10Slash}, {"10", report10Hundredths}, {"16", report16}, {"21", report21},
      {"22", report22},      {"80", report80},           {"83", report83}, {"B6", reportAdsC}};
  return kForms;
}

std::string eventReport(const std::string& event, const PositionFix& fix) {
  return event + ',' + minuteTenths(fix) + format(",%03d,", fix.flightLevel) +
         fix.flight->from->icao + ',' + fix.flight->to->icao + ',' + utcClock(fix.time);
}

std::string utcClock(Moment time) {
  const std::string stamp = timeStamp(time - kStationOffset);
  return stamp.substr(11, 2) + stamp.substr(14, 2) + stamp.substr(17, 2);
}

std::string addressField(const std::string& registration) {
  constexpr std::size_t kLength = 7;
  const std::size_t missing = kLength - std::min(kLength, registration.size());
  return std::string(missing, '.') + registration;
}

}  // namespace vel::samples
