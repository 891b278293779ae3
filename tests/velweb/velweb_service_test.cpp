#include "velweb/velweb_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"
#include "tests/velweb/documents.h"
#include "velweb/flight_page.h"
#include "velweb/markup.h"
#include "velweb/sightings.h"
#include "web/form_encoder.h"

namespace vel {
namespace {

using testing::HasSubstr;
using testing::Not;

class Velweb : public testing::Test {
 protected:
  Velweb() {
    base_.writeData("FLIGHT.csv",
                    {"JL0012,RJTTKLAX,臨時便", "NH0001,RJTT,-", "XX0001,<&>\"QQQQ,a<b>&\"c\""});
    base_.writeData("airport.csv",
                    {"RJTT,東京 羽田 Tokyo Haneda HND", "KLAX,Los Angeles <International> LAX"});
    base_.writeData("letter.csv", {"JL,JAL,Japan Airlines,日本航空", "NH,ANA,All Nippon"});
  }

  WebResponse get(std::string target, std::string host = "127.0.0.1:40123") {
    return service_.answer({"GET", std::move(target), std::move(host)}).value_or(WebResponse{});
  }
  WebResponse post(std::string_view form) {
    Conversion conversion = service_.startConversion();
    EXPECT_TRUE(conversion.add(form));
    return conversion.finish();
  }
  int status(std::string method, std::string target) {
    return service_.answer({std::move(method), std::move(target), "localhost"})
        .value_or(WebResponse{})
        .status;
  }

  test::TemporaryBase base_;
  Tables tables_{base_.folders, Encoding::codePage932()};
  VelwebService service_{base_.folders, "CP932", "127.0.0.1"};
};

TEST_F(Velweb, AFlightPageTellsRouteAirlineAndSightings) {
  base_.writeLog("20261119_list.csv", {"Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time",
                                       "JL0012,O,JA8089,RJTT,KLAX,B77W,-,9:05:00"});
  base_.writeLog("20261120_list.csv",
                 {" JL0012 ,×,JA733J,RJTT,KLAX,B77W,臨時便,0:01:02",
                  "JL0012,X,too,few,fields,0:02:00", "JL00123,X,JA1,,,,,0:03:00"});
  base_.writeLog("202611200000_HFDL_FMT.log",
                 {"[1]------------------------[2026/11/20 00:03:00]", " DOWN LINK",
                  "  GS NAME         = Barrow, Alaska", "   ICAO24 ADDRESS = 86D2A0",
                  "   REGISTRATION   = JA733J", "   FLIGHT ID      = JL0012",
                  "  .............................."});
  const WebResponse page = get("/?F=JL0012");
  EXPECT_EQ(page.status, 200);
  EXPECT_EQ(page.contentType, "text/html; charset=utf-8");
  EXPECT_EQ(test::textProblem(page.body), "");
  EXPECT_THAT(page.body, HasSubstr("<title>JL0012 - VEL</title>"));
  EXPECT_THAT(page.body, HasSubstr("<span class=\"code\">RJTT</span>東京 羽田 Tokyo Haneda HND"));
  EXPECT_THAT(page.body,
              HasSubstr("<span class=\"code\">KLAX</span>Los Angeles &lt;International&gt; LAX"));
  EXPECT_THAT(page.body, HasSubstr("<p>臨時便</p>"));
  EXPECT_THAT(page.body, HasSubstr("<p>Japan Airlines &#8212; 日本航空 <span class=\"soft\">JL / "
                                   "JAL</span></p>"));
  EXPECT_THAT(
      page.body,
      HasSubstr("<tr><td>2026-11-20 00:03:00</td><td>HFDL</td><td>JA733J</td><td></td><td></td>"
                "<td></td><td>D Barrow, Alaska</td></tr>\n"
                "<tr><td>2026-11-20 00:01:02</td><td>ACARS</td><td>JA733J</td><td>RJTT</td>"
                "<td>KLAX</td><td>B77W</td><td>臨時便</td></tr>\n"
                "<tr><td>2026-11-19 09:05:00</td><td>ACARS</td><td>JA8089</td><td>RJTT</td>"
                "<td>KLAX</td><td>B77W</td><td>-</td></tr>\n</table>"));
}

TEST_F(Velweb, AnUnknownFlightSaysSoInBothLanguages) {
  const WebResponse page = get("/?F=ZZ9999");
  EXPECT_EQ(page.status, 200);
  EXPECT_THAT(page.body, HasSubstr("This flight is not in FLIGHT.csv. "
                                   "FLIGHT.csv に登録されていません。"));
  EXPECT_THAT(page.body, HasSubstr("This airline is not in letter.csv. "
                                   "letter.csv に登録されていません。"));
  EXPECT_THAT(page.body, HasSubstr("None in the newest logs. 最近のログにはありません。"));
}

TEST_F(Velweb, AnEmptyFlightGivesTheSearchBoxAlone) {
  for (const char* target : {"/", "/?F=", "/?", "/?G=1", "/?F=+++"}) {
    const WebResponse page = get(target);
    EXPECT_EQ(page.status, 200) << target;
    EXPECT_THAT(page.body, HasSubstr("<input name=\"F\" value=\"\"")) << target;
    EXPECT_THAT(page.body, Not(HasSubstr("<section>"))) << target;
  }
}

TEST_F(Velweb, ARouteWithoutADestinationIsShownAsFarAsItGoes) {
  EXPECT_THAT(get("/?F=NH0001").body, HasSubstr("<span class=\"code\">?</span>"));
}

TEST_F(Velweb, MissingTablesAndLogsLeaveThePageStanding) {
  std::filesystem::remove_all(base_.folders.data);
  std::filesystem::remove_all(base_.folders.logs);
  const WebResponse page = get("/?F=JL0012");
  EXPECT_EQ(page.status, 200);
  EXPECT_THAT(page.body, HasSubstr("<h1>JL0012</h1>"));
}

TEST_F(Velweb, TextsAreEscapedInThePage) {
  base_.writeLog("20261120_list.csv", {"XX0001,O,<script>,\"&',</td>,<b>,<i>,0:01:02"});
  const std::string page = get("/?F=XX0001").body;
  EXPECT_THAT(page, HasSubstr("<p>a&lt;b&gt;&amp;&quot;c&quot;</p>"));
  EXPECT_THAT(page, HasSubstr("<td>&lt;script&gt;</td><td>&quot;&amp;&#39;</td>"
                              "<td>&lt;/td&gt;</td>"));
  EXPECT_THAT(page, Not(HasSubstr("<script>")));
  const std::string attack = get("/?F=%22%3E%3Cscript%3Ealert(1)%3C/script%3E").body;
  EXPECT_THAT(attack, HasSubstr("<h1>&quot;&gt;&lt;script&gt;alert(1)&lt;/script&gt;</h1>"));
  EXPECT_THAT(attack, Not(HasSubstr("<script>")));
}

TEST_F(Velweb, AFlightOfAnyBytesGivesAValidPage) {
  for (const char* target :
       {"/?F=%00%01%7F%FF%FE", "/?F=%E7%BE%BD%E7%94%B0", "/?F=%89%48", "/?F=%", "/?F=%4", "/?F=%zz",
        "/?F=\xFF\xFE", "/?F=a%0D%0Ab", "/?F=JL,0012", "/?F=%ED%A0%80", "/?F=%C2%80"}) {
    const WebResponse page = get(target);
    EXPECT_EQ(page.status, 200) << target;
    EXPECT_EQ(test::textProblem(page.body), "") << target;
  }
  EXPECT_THAT(get("/?F=%E7%BE%BD%E7%94%B0").body, HasSubstr("<h1>羽田</h1>"));
  EXPECT_THAT(get("/?F=" + std::string(8000, 'x')).body,
              HasSubstr("<h1>" + std::string(kLongestFlight, 'x') + "</h1>"));
}

TEST_F(Velweb, OnlyTheNewestSightingsAreShown) {
  for (int day = 10; day < 25; ++day) {
    base_.writeLog("202611" + std::to_string(day) + "_list.csv",
                   {"JL0012,O,JA" + std::to_string(day) + ",RJTT,KLAX,B77W,-,9:05:00"});
  }
  const auto sightings = latestSightings(tables_, "JL0012");
  ASSERT_EQ(sightings.size(), kSightingLogs);
  EXPECT_EQ(sightings.front().registration, "JA24");
  EXPECT_EQ(sightings.back().registration, "JA18");
}

TEST_F(Velweb, SightingsOfABusyFlightStayFew) {
  std::string log;
  for (int i = 0; i < 5000; ++i) log += "JL0012,O,JA" + std::to_string(i) + ",,,,-,9:05:00\r\n";
  test::writeBytes(base_.folders.logs / "20261120_list.csv", log);
  const auto sightings = latestSightings(tables_, "JL0012");
  EXPECT_EQ(sightings.size(), kMostSightings);
  EXPECT_THAT(sightings, testing::Contains(testing::Field(&Sighting::registration, "JA4999")));
  EXPECT_THAT(sightings, Not(testing::Contains(testing::Field(&Sighting::registration, "JA1"))));
}

TEST_F(Velweb, HfdlSightingsFollowTheMessagesOfTheLog) {
  base_.writeLog(
      "202611200000_HFDL_FMT.log",
      {"   ICAO24 ADDRESS = 000000", "   FLIGHT ID      = JL0012",
       "[1]------------------------[2026/11/20 00:03:00]", " UP LINK",
       "  GS NAME         = Agana, Guam", "   FLIGHT ID      = JL0012",
       "  ..............................", "   ICAO24 ADDRESS = 86D2A0",
       "   FLIGHT ID      = JL0012 ", "[3]------------------------[2026/11/20 00:04:00]",
       "   ICAO24 ADDRESS = 86D2A1", "   REGISTRATION   = JA1", "   FLIGHT ID      = JL0012"});
  const auto sightings = latestSightings(tables_, "JL0012");
  ASSERT_EQ(sightings.size(), 3u);
  EXPECT_EQ(sightings[0].time, "2026-11-20 00:04:00");
  EXPECT_EQ(sightings[0].registration, "JA1");
  EXPECT_EQ(sightings[0].remark, "");
  EXPECT_EQ(sightings[1].time, "2026-11-20 00:03:00");
  EXPECT_EQ(sightings[1].remark, "U Agana, Guam");
  EXPECT_EQ(sightings[2].time, "") << "before the first header";
}

TEST_F(Velweb, EveryLogThatABrowserListsIsRead) {
  base_.writeLog("2026-01-01_list.csv", {"JL0012,O,JA1,RJTT,KLAX,B77W,-,9:05:00"});
  base_.writeLog("20260102_LIST.CSV", {"JL0012,O,JA2,RJTT,KLAX,B77W,-,9:05:00"});
  base_.writeLog("20-test_list.csv", {"JL0012,O,JA3,RJTT,KLAX,B77W,-,9:05:00"});
  base_.writeLog("2026-01-03 night_HFDL_FMT.log",
                 {"[1]------------------------[2026/01/03 00:03:00]", "   ICAO24 ADDRESS = 86D2A0",
                  "   FLIGHT ID      = JL0012"});
  base_.writeLog("other_list.csv", {"JL0012,O,JA4,RJTT,KLAX,B77W,-,9:05:00"});
  const auto sightings = latestSightings(tables_, "JL0012");
  ASSERT_EQ(sightings.size(), 4u);
  EXPECT_EQ(sightings[0].time, "2026-01-03 00:03:00");
  EXPECT_EQ(sightings[1].time, "2026-01-02 09:05:00");
  EXPECT_EQ(sightings[2].time, "2026-01-01 09:05:00");
  EXPECT_EQ(sightings[3].time, "20-test 09:05:00") << "the name tells no day";
}

TEST_F(Velweb, AHeaderLineAndLinesOfAnotherLengthAreNoSightings) {
  base_.writeLog("20261120_list.csv",
                 {"Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time",
                  "JL0012,O,JA1,RJTT,KLAX,B77W,-,9:05:00,more", "xJL0012,O,JA2,,,,,9:05:00",
                  "JL0013,O,JL0012,JL0012,,,JL0012,9:05:00"});
  EXPECT_TRUE(latestSightings(tables_, "JL0012").empty());
  EXPECT_TRUE(latestSightings(tables_, "Flight No.").empty());
}

TEST_F(Velweb, AShortHfdlFlightIsFoundAsTheTableCompletesIt) {
  base_.writeData("ICAO24.csv", {"86D2A0,JAL,JL,JA733J,B77W", "86D2A1,ANA,NH,JA1,B77W"});
  base_.writeLog("202611200000_HFDL_FMT.log",
                 {"[1]------------------------[2026/11/20 00:01:00]", "   ICAO24 ADDRESS = 86D2A0",
                  "   REGISTRATION   = JA733J", "   FLIGHT ID      = 123",
                  "[1]------------------------[2026/11/20 00:02:00]", "   ICAO24 ADDRESS = 86D2A1",
                  "   FLIGHT ID      = 123", "[1]------------------------[2026/11/20 00:03:00]",
                  "   ICAO24 ADDRESS = 86D2A2", "   FLIGHT ID      = 123",
                  "[1]------------------------[2026/11/20 00:04:00]", "   ICAO24 ADDRESS = 86D2A0",
                  "   FLIGHT ID      = 0123 ", "[1]------------------------[2026/11/20 00:05:00]",
                  "   ICAO24 ADDRESS = 86D2A0", "   FLIGHT ID      = 00123"});
  const auto times = [this](std::string_view flight) {
    std::vector<std::string> found;
    for (const Sighting& sighting : latestSightings(tables_, flight))
      found.push_back(sighting.time);
    return found;
  };
  EXPECT_THAT(times("JL0123"), testing::ElementsAre("2026-11-20 00:04:00", "2026-11-20 00:01:00"));
  EXPECT_THAT(times("NH0123"), testing::ElementsAre("2026-11-20 00:02:00"));
  EXPECT_EQ(times("123").size(), 3u) << "as it was received";
  std::filesystem::remove(base_.folders.data / "ICAO24.csv");
  EXPECT_TRUE(times("JL0123").empty());
}

TEST_F(Velweb, LogsAreReadForALimitedTime) {
  base_.writeLog("20261120_list.csv", {"JL0012,O,JA1,RJTT,KLAX,B77W,-,9:05:00"});
  EXPECT_EQ(latestSightings(tables_, "JL0012").size(), 1u);
  EXPECT_TRUE(latestSightings(tables_, "JL0012", std::chrono::seconds(-1)).empty());
}

TEST_F(Velweb, WrongPathsAndMethodsAreRefused) {
  EXPECT_EQ(status("GET", "/index.html"), 404);
  EXPECT_EQ(status("GET", "/../data/FLIGHT.csv"), 404);
  EXPECT_EQ(status("GET", "/tools/"), 404);
  EXPECT_EQ(status("POST", "/tools/qz2ge"), 404);
  EXPECT_EQ(status("POST", "/tools/qz2ge/x"), 404);
  EXPECT_EQ(status("GET", ""), 404);
  EXPECT_EQ(status("GET", "http://127.0.0.1/"), 404);
  EXPECT_EQ(status("POST", "/"), 405);
  EXPECT_EQ(status("DELETE", "/?F=JL0012"), 405);
  EXPECT_EQ(status("GET", "/tools/qz2ge/"), 405);
  EXPECT_EQ(status("PUT", "/tools/qz2ge/"), 405);
  EXPECT_EQ(status("HEAD", "/"), 200);
  EXPECT_EQ(service_.answer({"PUT", "/", "localhost"})->allow, "GET, HEAD");
  EXPECT_EQ(service_.answer({"GET", "/tools/qz2ge/", "localhost"})->allow, "POST");
  EXPECT_FALSE(service_.answer({"POST", "/tools/qz2ge/", "localhost"}).has_value());
  EXPECT_FALSE(service_.answer({"POST", "/tools/qz2ge/?x=1", "localhost"}).has_value());
}

TEST_F(Velweb, OnLoopbackOnlyLoopbackHostsAreAnswered) {
  for (const char* host :
       {"127.0.0.1", "127.0.0.1:40123", "localhost", "LocalHost:1", "[::1]", "[::1]:40123"}) {
    EXPECT_EQ(get("/", host).status, 200) << host;
  }
  for (const char* host : {"", "evil.example", "evil.example:40123", "127.0.0.1.evil.example",
                           "localhost.evil.example", "localhostx", "127.0.0.1:", "127.0.0.1:x",
                           "127.0.0.1:123456", "127.0.0.1:80:80", "::1", "[::1", "[::1]x",
                           "127.0.0.2", "0.0.0.0", "user@127.0.0.1", "127.0.0.1 "}) {
    EXPECT_EQ(get("/", host).status, 403) << host;
  }
  EXPECT_EQ(service_.answer({"POST", "/tools/qz2ge/", "evil.example"})->status, 403);
}

TEST_F(Velweb, OnAnotherLoopbackAddressItAnswersUnderThatToo) {
  const auto statusFor = [this](std::string own, std::string header) {
    const VelwebService service(base_.folders, "CP932", std::move(own));
    return service.answer({"GET", "/", std::move(header)})->status;
  };
  EXPECT_EQ(statusFor("127.0.0.2", "127.0.0.2:40123"), 200);
  EXPECT_EQ(statusFor("127.0.0.2", "127.0.0.2"), 200);
  EXPECT_EQ(statusFor("127.0.0.2", "127.0.0.3:40123"), 403);
  EXPECT_EQ(statusFor("127.0.0.2", "127.0.0.22"), 403);
  EXPECT_EQ(statusFor("127.0.0.2", "evil.example"), 403);
  EXPECT_EQ(statusFor("127.0.0.1", "127.0.0.2"), 403);
  EXPECT_EQ(statusFor("::1", "[::1]:40123"), 200);
}

TEST_F(Velweb, WithoutItsBaseFolderNothingIsAnswered) {
  std::filesystem::remove_all(base_.folders.base);
  EXPECT_EQ(status("GET", "/?F=JL0012"), 503);
  EXPECT_EQ(status("POST", "/tools/qz2ge/"), 503);
  EXPECT_EQ(get("/", "evil.example").status, 403);
}

TEST_F(Velweb, AsARealHostItAnswersUnderAnyName) {
  const VelwebService service(base_.folders, "CP932", "0.0.0.0");
  EXPECT_EQ(service.answer({"GET", "/", "vel.example"})->status, 200);
  EXPECT_TRUE(isLoopbackAddress("127.0.0.1"));
  EXPECT_TRUE(isLoopbackAddress("::1"));
  EXPECT_TRUE(isLoopbackAddress("localhost"));
  EXPECT_FALSE(isLoopbackAddress("0.0.0.0"));
  EXPECT_FALSE(isLoopbackAddress("::"));
  EXPECT_FALSE(isLoopbackAddress("vel.example"));
}

TEST_F(Velweb, APostedRawLogComesBackAsKml) {
  const std::string log =
      "2026/11/20 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA212P<NAK>200<STX>M00AQS2697"
      "POSN23457W159037,,211733,360,OTT<ETX><CRC><DEL>\r\n";
  const WebResponse answer = post("dat=" + encodeForm(log));
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.contentType, "application/vnd.google-earth.kml+xml");
  EXPECT_THAT(answer.body, HasSubstr("<coordinates>-159.061667,23.761667,10972.8</coordinates>"));
}

TEST_F(Velweb, AnEmptyRawLogComesBackAsAnEmptyDocument) {
  const WebResponse answer = post("dat=");
  EXPECT_EQ(answer.status, 200);
  EXPECT_THAT(answer.body, HasSubstr("<name>No position reports. 位置通報はありません</name>"));
}

TEST_F(Velweb, AFormWithoutARawLogIsRefused) {
  for (const char* form : {"", "x=1", "dat", "%", "&&&&=", "{\"dat\":1}"}) {
    EXPECT_EQ(post(form).status, 400) << form;
  }
}

TEST_F(Velweb, BrokenCodesAndBrokenTextGiveAValidDocument) {
  const WebResponse answer = post(
      "dat=%82%D2%0A%+%4%zz%FF%00>+*<SYN><SYN><SOH>2.%82%82%82%82%3C%26<NAK>204<STX>M0%A"
      "\xFF\xFE%81"
      "POSN23457W159037,,211733,360,OTT<ETX>%");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(test::textProblem(answer.body), "");
  pugi::xml_document xml;
  EXPECT_EQ(test::readXml(answer.body, xml), "");
}

TEST_F(Velweb, SixtyFourMebibytesAreTakenAndOneByteMoreIsNot) {
  const std::string piece(std::size_t{1} << 20, '~');
  Conversion conversion = service_.startConversion();
  ASSERT_TRUE(conversion.add("dat="));
  for (int i = 0; i < 63; ++i) ASSERT_TRUE(conversion.add(piece));
  Conversion larger = conversion;
  ASSERT_TRUE(conversion.add(std::string_view(piece).substr(4)));
  EXPECT_EQ(conversion.finish().status, 200);
  EXPECT_FALSE(larger.add(piece));
  EXPECT_EQ(larger.finish().status, 413);
}

TEST(Markup, TextIsEscapedAndCleaned) {
  EXPECT_EQ(markupText("a & b < c > d \" e ' f"), "a &amp; b &lt; c &gt; d &quot; e &#39; f");
  EXPECT_EQ(markupText(std::string_view("\0\t\n\r\x1B\x7F", 6)), "      ");
  EXPECT_EQ(markupText("羽田 é 😀"), "羽田 é 😀");
  EXPECT_EQ(markupText("\xC2\x85"), " ");
  EXPECT_EQ(markupText("\xEF\xBF\xBE\xEF\xBF\xBF"), "  ");
  const std::string bad = "\xEF\xBF\xBD";
  EXPECT_EQ(markupText("\xFF"), bad);
  EXPECT_EQ(markupText("\xC0\xAF"), bad + bad) << "overlong";
  EXPECT_EQ(markupText("\xE0\x80\xAF"), bad + bad + bad) << "overlong";
  EXPECT_EQ(markupText("\xED\xA0\x80"), bad + bad + bad) << "surrogate";
  EXPECT_EQ(markupText("\xF4\x90\x80\x80"), bad + bad + bad + bad) << "beyond the last";
  EXPECT_EQ(markupText("\xE7\xBE"), bad + bad) << "cut short";
}

TEST(Markup, NumbersHaveAFullStopAndNoNegativeZero) {
  EXPECT_EQ(fixedNumber(-0.0, 6), "0.000000");
  EXPECT_EQ(fixedNumber(-0.0000001, 6), "0.000000");
  EXPECT_EQ(fixedNumber(-123.29, 6), "-123.290000");
  EXPECT_EQ(fixedNumber(10972.8, 1), "10972.8");
}

}  // namespace
}  // namespace vel
