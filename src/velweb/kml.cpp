#include "velweb/kml.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "velweb/markup.h"
#include "velweb/text_scan.h"

namespace vel {
namespace {

// Longer than any line of a decoder; the rest of a longer one is dropped.
constexpr std::size_t kLongestLine = std::size_t{64} << 10;
constexpr double kMetresPerFoot = 0.3048;
constexpr int kCoordinateDecimals = 6;
constexpr std::size_t kMostNames = 12;

std::optional<std::string> timeAt(std::string_view text) {
  TextScan scan(text);
  if (scan.countDigits() != 4) return std::nullopt;
  const auto year = scan.takeNumber(4);
  const std::string_view dash = scan.rest().starts_with('/') ? "/" : "-";
  const auto part = [&scan](std::string_view before) -> std::optional<int> {
    if (!scan.take(before) || scan.countDigits() != 2) return std::nullopt;
    return scan.takeNumber(2);
  };
  const auto month = part(dash);
  const auto day = part(dash);
  const auto hour = part(" ");
  const auto minute = part(":");
  const auto second = part(":");
  if (!month || !day || !hour || !minute || !second) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (*year == 0 || !date.ok() || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
  std::string time(text.substr(0, 19));
  time[4] = time[7] = '-';
  time[10] = 'T';
  return time;
}

std::string_view withoutPadding(std::string_view name) {
  while (!name.empty() && (name.front() == '.' || name.front() == ' ')) name.remove_prefix(1);
  while (!name.empty() && (name.back() == '.' || name.back() == ' ')) name.remove_suffix(1);
  return name;
}

// The different values of one member, in the order in which they come.
std::string namesOf(const Track& track, std::string TrackPoint::*member) {
  std::vector<std::string_view> names;
  for (const TrackPoint& point : track.points) {
    const std::string& name = point.*member;
    if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end()) {
      if (names.size() == kMostNames) return std::string(names[0]) + " ...";
      names.push_back(name);
    }
  }
  std::string joined;
  for (const std::string_view name : names) {
    if (!joined.empty()) joined += ", ";
    joined += name;
  }
  return joined;
}

std::string joinedWithBlank(std::string_view first, std::string_view second) {
  std::string joined(first);
  if (!first.empty() && !second.empty()) joined += ' ';
  return joined.append(second);
}

std::string element(std::string_view name, std::string_view text) {
  std::string made = "<";
  made.append(name).append(">").append(markupText(text));
  return made.append("</").append(name).append(">");
}

std::string coordinates(const Position& position) {
  std::string text = fixedNumber(position.longitude, kCoordinateDecimals) + "," +
                     fixedNumber(position.latitude, kCoordinateDecimals);
  if (position.altitudeFeet) {
    text += "," + fixedNumber(*position.altitudeFeet * kMetresPerFoot, 1);
  }
  return text;
}

// What was measured above sea level stands there; the rest lies on the ground.
std::string altitudeMode(bool hasAltitude) {
  return element("altitudeMode", hasAltitude ? "absolute" : "clampToGround");
}

std::string dataElement(std::string_view name, std::string_view value) {
  if (value.empty()) return {};
  return "<Data name=\"" + std::string(name) + "\">" + element("value", value) + "</Data>";
}

void appendPlacemark(std::string& kml, const TrackPoint& point) {
  const std::string altitude =
      point.position.altitudeFeet ? std::to_string(*point.position.altitudeFeet) : "";
  std::string time = point.time;
  std::replace(time.begin(), time.end(), 'T', ' ');
  kml += "<Placemark>" + element("name", joinedWithBlank(point.flight, time));
  if (!point.time.empty()) kml += "<TimeStamp>" + element("when", point.time) + "</TimeStamp>";
  kml += "<styleUrl>#report</styleUrl>";
  kml += "<ExtendedData>" + dataElement("time", time) + dataElement("flight", point.flight) +
         dataElement("registration", point.registration) + dataElement("label", point.label) +
         dataElement("altitude_ft", altitude) + "</ExtendedData>";
  kml += "<Point>" + altitudeMode(!altitude.empty()) +
         element("coordinates", coordinates(point.position)) + "</Point></Placemark>\n";
}

// A line needs two ends. It keeps altitudes only where every point has one:
// points on the ground between points in the air would draw towers.
void appendLine(std::string& kml, const Track& track) {
  if (track.points.size() < 2) return;
  const bool allHigh =
      std::all_of(track.points.begin(), track.points.end(),
                  [](const TrackPoint& point) { return point.position.altitudeFeet.has_value(); });
  kml += "<Placemark><name>Track</name><styleUrl>#track</styleUrl><LineString>";
  kml += "<tessellate>1</tessellate>" + altitudeMode(allHigh) + "<coordinates>\n";
  for (const TrackPoint& point : track.points) {
    Position position = point.position;
    if (!allHigh) position.altitudeFeet.reset();
    kml += coordinates(position) + "\n";
  }
  kml += "</coordinates></LineString></Placemark>\n";
}

std::string description(const Track& track) {
  const std::string reports = std::to_string(track.points.size());
  std::string text = reports + " position reports in " + std::to_string(track.messages) +
                     " messages. 位置通報 " + reports + "件 / メッセージ " +
                     std::to_string(track.messages) + "件";
  if (track.leftOut > 0) {
    const std::string more = std::to_string(track.leftOut);
    text += ". " + more + " more are not shown. ほか " + more + "件は表示していません";
  }
  return text;
}

}  // namespace

std::string timeOfHeader(std::string_view header) {
  constexpr std::size_t kTimeSize = 19;
  for (std::size_t at = 0; at + kTimeSize <= header.size(); ++at) {
    if (at > 0 && isDigitChar(header[at - 1])) continue;
    if (auto time = timeAt(header.substr(at))) return *time;
  }
  return {};
}

std::optional<TrackPoint> trackPointOf(const RawMessage& message) {
  const auto position = positionOf(message.label, bodyWithBreaks(message.body, "\n"));
  if (!position) return std::nullopt;
  return TrackPoint{*position, timeOfHeader(message.header),
                    std::string(withoutPadding(message.flight)),
                    std::string(withoutPadding(message.registration)), message.label};
}

std::string kmlDocument(const Track& track) {
  const std::string registrations = namesOf(track, &TrackPoint::registration);
  const std::string flights = namesOf(track, &TrackPoint::flight);
  std::string name =
      joinedWithBlank(registrations, flights.empty() ? std::string() : "(" + flights + ")");
  if (name.empty()) name = "No position reports. 位置通報はありません";
  std::string kml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n";
  kml.reserve(kml.size() + track.points.size() * 600);
  kml += element("name", name) + "\n<open>1</open>\n";
  kml += element("description", description(track)) + "\n";
  kml +=
      "<Style id=\"report\"><IconStyle><scale>0.7</scale></IconStyle>"
      "<LabelStyle><scale>0.7</scale></LabelStyle></Style>\n"
      "<Style id=\"track\"><LineStyle><color>ff00a5ff</color><width>2</width></LineStyle>"
      "</Style>\n";
  for (const TrackPoint& point : track.points) appendPlacemark(kml, point);
  appendLine(kml, track);
  return kml += "</Document>\n</kml>\n";
}

void TrackReader::add(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string_view piece = bytes.substr(0, end);
    line_ += piece.substr(0, kLongestLine - std::min(kLongestLine, line_.size()));
    if (end == std::string_view::npos) return;
    readLine(line_);
    line_.clear();
    bytes.remove_prefix(end + 1);
  }
}

Track TrackReader::finish() {
  if (!line_.empty()) readLine(line_);
  line_.clear();
  return std::exchange(track_, {});
}

void TrackReader::readLine(std::string_view line) {
  const auto message = parseRawLine(encoding_.decode(line));
  if (!message) return;
  ++track_.messages;
  auto point = trackPointOf(*message);
  if (!point) return;
  if (track_.points.size() == kMostTrackPoints) {
    ++track_.leftOut;
  } else {
    track_.points.push_back(std::move(*point));
  }
}

}  // namespace vel
