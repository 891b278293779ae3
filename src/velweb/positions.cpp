#include "velweb/positions.h"

#include <cmath>

#include "velweb/position_forms.h"

namespace vel {
namespace {

struct LabelForm {
  std::string_view label;
  Found (*form)(std::string_view text);
};

// Which label reports in which forms; those of one label are tried in order.
constexpr LabelForm kForms[] = {
    {"H1", adscPosition},       {"H1", presentPosition},     {"H1", reportAnywhere},
    {"H1", starReport},         {"H1", bracketReport},       {"H1", airportsAndPoint},
    {"H1", pointLine},          {"H1", trackRecord},         {"H1", timedLine},
    {"H1", weatherRecord},      {"H1", signedLine},          {"H1", numberedRecord},
    {"H1", flightLegLine},      {"B6", adscPosition},        {"4J", presentPosition},
    {"2P", presentPosition},    {"2P", flightPhasePoint},    {"10", slashFields},
    {"10", loadReport},         {"10", hundredthsReport},    {"12", pointAndFeet},
    {"13", locationField},      {"14", locationField},       {"15", compactReport},
    {"15", statusReport},       {"15", locationField},       {"16", pointAndFeet},
    {"16", pointInFifthField},  {"16", automaticPosition},   {"16", thousandthsReport},
    {"16", compactReport},      {"16", locationField},       {"17", locationField},
    {"18", locationField},      {"1L", airportsThenPoint},   {"1L", longitudeAndLatitudeLines},
    {"20", reportAtStart},      {"21", decimalReport},       {"22", secondsAndFeet},
    {"32", dateAndPoint},       {"44", eventReport},         {"44", feedbackReport},
    {"4A", thousandthsAtStart}, {"4A", decimalInFifthField}, {"4T", slashMinutes},
    {"80", slashPosition},      {"80", prefixedPosition},    {"83", progressReport},
    {"83", airportsAndPoint},
};

// A flight plan's points lie ahead of the aircraft.
std::string_view beforeFlightPlan(std::string_view text) {
  text = text.substr(0, text.find("FPN"));
  return text.substr(0, text.find(":F:"));
}

// "M85AQF0073": the message's number and the flight, once more before a text.
std::string_view withoutNumberAndFlight(std::string_view text) {
  constexpr std::size_t kSize = 10;
  TextScan scan(text);
  if (text.size() < kSize || !scan.takeCapitals(1) || !scan.takeDigits(2) ||
      !scan.takeCapitals(1)) {
    return text;
  }
  for (const char c : scan.rest().substr(0, kSize - 4)) {
    if (!isDigitChar(c) && !isCapitalChar(c)) return text;
  }
  return text.substr(kSize);
}

Found firstFound(std::string_view label, std::string_view text) {
  for (const LabelForm& entry : kForms) {
    if (entry.label != label) continue;
    if (const Found found = entry.form(text)) return found;
  }
  return std::nullopt;
}

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
  text = start.rest();
  if (label == "H1") text = beforeFlightPlan(text);
  Found found = firstFound(label, text);
  const std::string_view shorter = withoutNumberAndFlight(text);
  if (!found && shorter.size() < text.size()) found = firstFound(label, shorter);
  if (found && !found->altitudeFeet) found->altitudeFeet = markedAltitude(text);
  return found;
}

}  // namespace vel
