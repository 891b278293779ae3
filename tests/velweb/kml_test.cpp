#include "velweb/kml.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"
#include "tests/velweb/documents.h"

namespace vel {
namespace {

using testing::HasSubstr;

std::string line(std::string_view header, std::string_view label, std::string_view text,
                 std::string_view registration = "JA212P", std::string_view flight = "QS2697") {
  return std::string(header) + ">+*<SYN><SYN><SOH>2." + std::string(registration) + "<NAK>" +
         std::string(label) + "4<STX>M01A" + std::string(flight) + std::string(text) +
         "<ETX><CRC><DEL>\r\n";
}

Track trackOf(std::string_view bytes, std::size_t pieceSize = std::string_view::npos) {
  TrackReader reader(Encoding::codePage932());
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, pieceSize);
    reader.add(piece);
    bytes.remove_prefix(piece.size());
  }
  return reader.finish();
}

const std::string kTwoReports =
    line("2026/11/20 01:00:11 131.450MHz <PRE", "20", "POSN23457W159037,,211733,360,OTT") +
    line("2026/11/20 01:01:11 131.450MHz <PRE", "39", "010039 KJFK KLAX8<CR><VF>/FN 0738") +
    "a line in another form\r\n" +
    line("2026/11/20 02:05:11 131.450MHz <PRE", "16", "N 23.941,W 158.204,-----,6, 290");

// The children that KML 2.2 allows each element, in the order of its schema.
// Only what the program writes is listed; anything else is a failure.
const std::map<std::string, std::vector<std::string>> kSequences = {
    {"kml", {"Document"}},
    {"Document", {"name", "open", "description", "Style*", "Placemark*"}},
    {"Placemark", {"name", "TimeStamp", "styleUrl", "ExtendedData", "Point", "LineString"}},
    {"TimeStamp", {"when"}},
    {"ExtendedData", {"Data*"}},
    {"Data", {"value"}},
    {"Point", {"altitudeMode", "coordinates"}},
    {"LineString", {"tessellate", "altitudeMode", "coordinates"}},
    {"Style", {"IconStyle", "LabelStyle", "LineStyle"}},
    {"IconStyle", {"scale"}},
    {"LabelStyle", {"scale"}},
    {"LineStyle", {"color", "width"}},
};

void expectOrder(const pugi::xml_node& element) {
  const auto allowed = kSequences.find(element.name());
  std::size_t at = 0;
  for (const pugi::xml_node& child : element.children()) {
    if (child.type() == pugi::node_pcdata) continue;
    const std::string name = child.name();
    ASSERT_NE(allowed, kSequences.end()) << element.name() << " must not have children";
    const auto& sequence = allowed->second;
    while (at < sequence.size() && sequence[at] != name && sequence[at] != name + "*") ++at;
    ASSERT_LT(at, sequence.size()) << name << " is out of its place in " << element.name();
    if (!sequence[at].ends_with('*')) ++at;
    expectOrder(child);
  }
}

void expectTuples(const std::string& text, std::size_t fewest) {
  std::size_t count = 0;
  std::istringstream tuples(text);
  for (std::string tuple; tuples >> tuple; ++count) {
    double longitude = 999;
    double latitude = 999;
    double altitude = 0;
    char extra = 0;
    const int read =
        std::sscanf(tuple.c_str(), "%lf,%lf,%lf%c", &longitude, &latitude, &altitude, &extra);
    EXPECT_TRUE(read == 2 || read == 3) << tuple;
    EXPECT_LE(std::abs(longitude), 180) << tuple;
    EXPECT_LE(std::abs(latitude), 90) << tuple;
  }
  EXPECT_GE(count, fewest);
}

// The element Document, after everything that KML 2.2 asks was checked.
pugi::xml_node checkedKml(const std::string& kml, pugi::xml_document& xml) {
  EXPECT_EQ(test::textProblem(kml), "");
  EXPECT_TRUE(kml.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"));
  EXPECT_EQ(test::readXml(kml, xml), "");
  const pugi::xml_node root = xml.document_element();
  EXPECT_STREQ(root.name(), "kml");
  EXPECT_STREQ(root.attribute("xmlns").value(), "http://www.opengis.net/kml/2.2");
  expectOrder(root);
  const pugi::xml_node document = root.child("Document");
  EXPECT_TRUE(document);
  std::vector<std::string> styles;
  for (const pugi::xml_node& style : document.children("Style"))
    styles.push_back("#" + std::string(style.attribute("id").value()));
  for (const pugi::xml_node& placemark : document.children("Placemark")) {
    EXPECT_THAT(styles, testing::Contains(placemark.child_value("styleUrl")));
    const pugi::xml_node point = placemark.child("Point");
    const pugi::xml_node path = placemark.child("LineString");
    EXPECT_TRUE(point.empty() != path.empty()) << "one geometry";
    for (const pugi::xml_node& geometry : {point, path}) {
      if (!geometry) continue;
      EXPECT_THAT(geometry.child_value("altitudeMode"),
                  testing::AnyOf(testing::StrEq("absolute"), testing::StrEq("clampToGround")));
      expectTuples(geometry.child_value("coordinates"), geometry == path ? 2 : 1);
    }
  }
  return document;
}

void checkKml(const std::string& kml) {
  pugi::xml_document xml;
  checkedKml(kml, xml);
}

std::vector<pugi::xml_node> allOf(const pugi::xml_node& parent, const char* name) {
  const auto found = parent.children(name);
  return {found.begin(), found.end()};
}

TEST(Kml, APlacemarkForEachReportAndALineThroughThem) {
  EXPECT_EQ(kmlDocument(trackOf(kTwoReports)),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n"
            "<Document>\n"
            "<name>JA212P (QS2697)</name>\n"
            "<open>1</open>\n"
            "<description>2 position reports in 3 messages. 位置通報 2件 / メッセージ 3件"
            "</description>\n"
            "<Style id=\"report\"><IconStyle><scale>0.7</scale></IconStyle>"
            "<LabelStyle><scale>0.7</scale></LabelStyle></Style>\n"
            "<Style id=\"track\"><LineStyle><color>ff00a5ff</color><width>2</width></LineStyle>"
            "</Style>\n"
            "<Placemark><name>QS2697 2026-11-20 01:00:11</name>"
            "<TimeStamp><when>2026-11-20T01:00:11</when></TimeStamp>"
            "<styleUrl>#report</styleUrl><ExtendedData>"
            "<Data name=\"time\"><value>2026-11-20 01:00:11</value></Data>"
            "<Data name=\"flight\"><value>QS2697</value></Data>"
            "<Data name=\"registration\"><value>JA212P</value></Data>"
            "<Data name=\"label\"><value>20</value></Data>"
            "<Data name=\"altitude_ft\"><value>36000</value></Data></ExtendedData>"
            "<Point><altitudeMode>absolute</altitudeMode>"
            "<coordinates>-159.061667,23.761667,10972.8</coordinates></Point></Placemark>\n"
            "<Placemark><name>QS2697 2026-11-20 02:05:11</name>"
            "<TimeStamp><when>2026-11-20T02:05:11</when></TimeStamp>"
            "<styleUrl>#report</styleUrl><ExtendedData>"
            "<Data name=\"time\"><value>2026-11-20 02:05:11</value></Data>"
            "<Data name=\"flight\"><value>QS2697</value></Data>"
            "<Data name=\"registration\"><value>JA212P</value></Data>"
            "<Data name=\"label\"><value>16</value></Data></ExtendedData>"
            "<Point><altitudeMode>clampToGround</altitudeMode>"
            "<coordinates>-158.204000,23.941000</coordinates></Point></Placemark>\n"
            "<Placemark><name>Track</name><styleUrl>#track</styleUrl><LineString>"
            "<tessellate>1</tessellate><altitudeMode>clampToGround</altitudeMode><coordinates>\n"
            "-159.061667,23.761667\n"
            "-158.204000,23.941000\n"
            "</coordinates></LineString></Placemark>\n"
            "</Document>\n"
            "</kml>\n");
  checkKml(kmlDocument(trackOf(kTwoReports)));
}

TEST(Kml, TheLineKeepsAltitudesWhereEveryReportHasOne) {
  const std::string kml =
      kmlDocument(trackOf(line("2026/11/20 01:00:11", "20", "POSN23457W159037,,211733,360,OTT") +
                          line("2026/11/20 01:10:11", "20", "POSN24457W158037,,212733,370,OTT")));
  checkKml(kml);
  EXPECT_THAT(kml, HasSubstr("<LineString><tessellate>1</tessellate>"
                             "<altitudeMode>absolute</altitudeMode><coordinates>\n"
                             "-159.061667,23.761667,10972.8\n"
                             "-158.061667,24.761667,11277.6\n</coordinates>"));
}

TEST(Kml, ALogWithoutPositionsGivesADocumentThatSaysSo) {
  for (const std::string& log : {std::string(), std::string("a line in another form\r\n"),
                                 line("2026/11/20 01:00:11", "Q0", "")}) {
    pugi::xml_document xml;
    const pugi::xml_node document = checkedKml(kmlDocument(trackOf(log)), xml);
    EXPECT_STREQ(document.child_value("name"), "No position reports. 位置通報はありません");
    EXPECT_TRUE(allOf(document, "Placemark").empty());
  }
}

TEST(Kml, OneReportGivesNoLine) {
  pugi::xml_document xml;
  const pugi::xml_node document = checkedKml(
      kmlDocument(trackOf(line("2026/11/20 01:00:11", "20", "POSN23457W159037,,211733,360,OTT"))),
      xml);
  const auto placemarks = allOf(document, "Placemark");
  ASSERT_EQ(placemarks.size(), 1u);
  EXPECT_FALSE(placemarks[0].child("LineString"));
}

TEST(Kml, TextsFromTheAirAreEscapedAndCleaned) {
  const std::string kml =
      kmlDocument(trackOf(line("2026/11/20 01:00:11 <PRE", "20", "POSN23457W159037,,211733,360,OTT",
                               "<&>\"']", "]]></n") +
                          line("2026/11/20 01:00:11 \x01\x1B", "20", "POSN23457W159037",
                               "\x01\xFF\x80\x1B.\x7F", "\x82\xA0\x83\x41\xB1\xB2\xB3\xB4")));
  pugi::xml_document xml;
  const auto placemarks = allOf(checkedKml(kml, xml), "Placemark");
  ASSERT_EQ(placemarks.size(), 3u);
  const auto data = allOf(placemarks[0].child("ExtendedData"), "Data");
  EXPECT_STREQ(data[1].child_value("value"), "]]></n");
  EXPECT_STREQ(data[2].child_value("value"), "<&>\"']");
  EXPECT_THAT(placemarks[1].child_value("name"), testing::StartsWith("あアｱ"));
}

TEST(Kml, PaddingOfNamesIsDropped) {
  const Track track =
      trackOf(line("2026/11/20 01:00:11", "20", "POSN23457W159037", ".2022.", "FX506 "));
  ASSERT_EQ(track.points.size(), 1u);
  EXPECT_EQ(track.points[0].registration, "2022");
  EXPECT_EQ(track.points[0].flight, "FX506");
}

TEST(Kml, TheTimeComesFromTheReceiveHeader) {
  EXPECT_EQ(timeOfHeader("2026/11/20 01:00:11 131.450MHz <PRE"), "2026-11-20T01:00:11");
  EXPECT_EQ(timeOfHeader("[2026-02-28 23:59:59] <PRE"), "2026-02-28T23:59:59");
  EXPECT_EQ(timeOfHeader("2024/02/29 00:00:00"), "2024-02-29T00:00:00");
  for (const char* header :
       {"", "<PRE", "2026/02/29 01:00:11", "2026/13/01 01:00:11", "2026/11/20 24:00:11",
        "2026/11/20 01:60:11", "2026/11/20 01:00:60", "2026/11-20 01:00:11", "12026/11/20 01:00:11",
        "2026/11/20 1:00:11", "2026/11/20", "0000/11/20 01:00:11", "    /  /     :  :  "}) {
    EXPECT_EQ(timeOfHeader(header), "") << header;
  }
}

TEST(Kml, AReportWithoutATimeHasNoTimeStamp) {
  pugi::xml_document xml;
  const pugi::xml_node placemark =
      checkedKml(kmlDocument(trackOf(line("HDR", "20", "POSN23457W159037,,211733,360,OTT"))), xml)
          .child("Placemark");
  EXPECT_FALSE(placemark.child("TimeStamp"));
  EXPECT_STREQ(placemark.child_value("name"), "QS2697");
}

TEST(Kml, PiecesOfAnySizeGiveTheSameTrack) {
  const std::string whole = kmlDocument(trackOf(kTwoReports));
  for (const std::size_t size : {1u, 2u, 7u, 64u, 1000u}) {
    EXPECT_EQ(kmlDocument(trackOf(kTwoReports, size)), whole) << size;
  }
}

TEST(Kml, TheLastLineCountsWithoutALineEnd) {
  std::string log = kTwoReports;
  log.resize(log.size() - 2);
  EXPECT_EQ(kmlDocument(trackOf(log)), kmlDocument(trackOf(kTwoReports)));
}

TEST(Kml, ALineBreakInsideATextIsNoPartOfIt) {
  const Track track = trackOf(line("H", "B6", "/BOMASAI.ADS.VT-ALM072534B8<CR><VF>607F884D36331D"));
  ASSERT_EQ(track.points.size(), 1u);
  EXPECT_NEAR(track.points[0].position.latitude, 52.32084, 1e-4);
}

TEST(Kml, AHugeLineDoesNoHarm) {
  const std::string log = std::string(std::size_t{8} << 20, 'x') + "\r\n" + kTwoReports;
  EXPECT_EQ(trackOf(log, 65536).points.size(), 2u);
}

TEST(Kml, ReportsBeyondTheLimitAreCounted) {
  std::string log;
  for (std::size_t i = 0; i < kMostTrackPoints + 5; ++i) {
    log += line("2026/11/20 01:00:11", "20", "POSN23457W159037,,211733,360,OTT");
  }
  const Track track = trackOf(log);
  EXPECT_EQ(track.points.size(), kMostTrackPoints);
  EXPECT_EQ(track.leftOut, 5u);
  EXPECT_EQ(track.messages, kMostTrackPoints + 5);
  const std::string kml = kmlDocument(track);
  EXPECT_THAT(kml,
              HasSubstr("<description>20000 position reports in 20005 messages. 位置通報 20000件 "
                        "/ メッセージ 20005件. 5 more are not shown. ほか 5件は表示していません"
                        "</description>"));
  EXPECT_LT(kml.size(), std::size_t{64} << 20);
}

TEST(Kml, RandomBytesGiveAValidDocument) {
  unsigned state = 99;
  for (int round = 0; round < 300; ++round) {
    std::string log = kTwoReports;
    for (int change = 0; change < 40; ++change) {
      state = state * 1664525u + 1013904223u;
      log[(state >> 8) % log.size()] = static_cast<char>(state >> 24);
    }
    checkKml(kmlDocument(trackOf(log)));
    if (testing::Test::HasFailure()) break;
  }
}

#ifdef VEL_XMLLINT
TEST(Kml, XmllintFindsTheDocumentWellFormed) {
  const test::TemporaryFolder folder;
  test::writeBytes(folder / "track.kml", kmlDocument(trackOf(kTwoReports)));
  const std::string command =
      std::string(VEL_XMLLINT) + " --noout --nonet '" + (folder / "track.kml").string() + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);
}
#endif

}  // namespace
}  // namespace vel
