#include "velweb/kml.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <pugixml.hpp>

#include "velweb/markup.h"
#include "velweb/text_scan.h"

namespace vel {
namespace {

// Longer than any line of a decoder; the rest of a longer one is dropped.
constexpr std::size_t kLongestLine = std::size_t{64} << 10;
constexpr double kMetresPerFoot = 0.3048;
constexpr int kCoordinateDecimals = 6;
constexpr std::size_t kMostNames = 12;

class TextWriter : public pugi::xml_writer {
 public:
  void write(const void* data, std::size_t size) override {
    text_.append(static_cast<const char*>(data), size);
  }
  std::string text() && { return std::move(text_); }

 private:
  std::string text_;
};

// Without line breaks other than those in the document.
std::string written(const pugi::xml_document& xml) {
  TextWriter writer;
  xml.print(writer, "", pugi::format_raw, pugi::encoding_utf8);
  return std::move(writer).text();
}

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

pugi::xml_node addText(pugi::xml_node parent, const char* name, std::string_view text) {
  pugi::xml_node node = parent.append_child(name);
  node.text().set(plainText(text).c_str());
  return node;
}

void addLineBreak(pugi::xml_node parent) { parent.append_child(pugi::node_pcdata).set_value("\n"); }

std::string coordinates(const Position& position) {
  std::string text = fixedNumber(position.longitude, kCoordinateDecimals) + "," +
                     fixedNumber(position.latitude, kCoordinateDecimals);
  if (position.altitudeFeet) {
    text += "," + fixedNumber(*position.altitudeFeet * kMetresPerFoot, 1);
  }
  return text;
}

// What was measured above sea level stands there; the rest lies on the ground.
void addAltitudeMode(pugi::xml_node geometry, bool hasAltitude) {
  addText(geometry, "altitudeMode", hasAltitude ? "absolute" : "clampToGround");
}

void addData(pugi::xml_node extendedData, const char* name, std::string_view value) {
  if (value.empty()) return;
  pugi::xml_node data = extendedData.append_child("Data");
  data.append_attribute("name") = name;
  addText(data, "value", value);
}

void addPlacemark(pugi::xml_node document, const TrackPoint& point) {
  const std::string altitude =
      point.position.altitudeFeet ? std::to_string(*point.position.altitudeFeet) : "";
  std::string time = point.time;
  std::replace(time.begin(), time.end(), 'T', ' ');
  pugi::xml_node placemark = document.append_child("Placemark");
  addText(placemark, "name", joinedWithBlank(point.flight, time));
  if (!point.time.empty()) addText(placemark.append_child("TimeStamp"), "when", point.time);
  addText(placemark, "styleUrl", "#report");
  pugi::xml_node data = placemark.append_child("ExtendedData");
  addData(data, "time", time);
  addData(data, "flight", point.flight);
  addData(data, "registration", point.registration);
  addData(data, "label", point.label);
  addData(data, "altitude_ft", altitude);
  pugi::xml_node geometry = placemark.append_child("Point");
  addAltitudeMode(geometry, !altitude.empty());
  addText(geometry, "coordinates", coordinates(point.position));
}

// A line needs two ends. It keeps altitudes only where every point has one:
// points on the ground between points in the air would draw towers.
void addLine(pugi::xml_node document, const Track& track) {
  const bool allHigh =
      std::all_of(track.points.begin(), track.points.end(),
                  [](const TrackPoint& point) { return point.position.altitudeFeet.has_value(); });
  std::string tuples = "\n";
  for (const TrackPoint& point : track.points) {
    Position position = point.position;
    if (!allHigh) position.altitudeFeet.reset();
    tuples += coordinates(position) + "\n";
  }
  pugi::xml_node placemark = document.append_child("Placemark");
  addText(placemark, "name", "Track");
  addText(placemark, "styleUrl", "#track");
  pugi::xml_node line = placemark.append_child("LineString");
  addText(line, "tessellate", "1");
  addAltitudeMode(line, allHigh);
  line.append_child("coordinates").text().set(tuples.c_str());
}

void addStyles(pugi::xml_node document) {
  pugi::xml_node report = document.append_child("Style");
  report.append_attribute("id") = "report";
  addText(report.append_child("IconStyle"), "scale", "0.7");
  addText(report.append_child("LabelStyle"), "scale", "0.7");
  addLineBreak(document);
  pugi::xml_node track = document.append_child("Style");
  track.append_attribute("id") = "track";
  pugi::xml_node line = track.append_child("LineStyle");
  addText(line, "color", "ff00a5ff");
  addText(line, "width", "2");
  addLineBreak(document);
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
  pugi::xml_document xml;
  pugi::xml_node declaration = xml.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
  addLineBreak(xml);
  pugi::xml_node kml = xml.append_child("kml");
  kml.append_attribute("xmlns") = "http://www.opengis.net/kml/2.2";
  addLineBreak(kml);
  pugi::xml_node document = kml.append_child("Document");
  addLineBreak(document);
  addText(document, "name", name);
  addLineBreak(document);
  addText(document, "open", "1");
  addLineBreak(document);
  addText(document, "description", description(track));
  addLineBreak(document);
  addStyles(document);
  addLineBreak(kml);
  addLineBreak(xml);
  // The placemarks are put in one after another, so that no tree of all of them
  // stands beside the text.
  std::string text = written(xml);
  const std::size_t end = text.rfind("</Document>");
  const std::string tail = text.substr(end);
  text.resize(end);
  for (const TrackPoint& point : track.points) {
    xml.reset();
    addPlacemark(xml, point);
    text += written(xml) + "\n";
  }
  if (track.points.size() > 1) {
    xml.reset();
    addLine(xml, track);
    text += written(xml) + "\n";
  }
  return text + tail;
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
