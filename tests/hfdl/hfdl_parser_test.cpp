#include "hfdl/hfdl_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr HfdlLines kAll{HfdlLine::header,    HfdlLine::subRecordEnd, HfdlLine::downLink,
                         HfdlLine::upLink,    HfdlLine::squitter,     HfdlLine::groundStation,
                         HfdlLine::address,   HfdlLine::registration, HfdlLine::flight,
                         HfdlLine::crcFailed, HfdlLine::frequencies};

constexpr std::string_view kHeader = "[3]------------------------[2026/11/17 00:01:24]";

// Writes down what it is told, a text for each call.
class Notes : public HfdlListener {
 public:
  std::vector<std::string> notes;

  void messageBegan(const HfdlMessage& message) override {
    notes.push_back("begins at " + chartTimeStamp(message.header));
  }
  void stationNamed(const HfdlMessage& message) override {
    notes.push_back("station" + message.groundStation);
  }
  void frequenciesAnnounced(const HfdlMessage&, std::string_view line) override {
    notes.push_back("announces" + std::string(line));
  }
  void aircraftEnded(const HfdlMessage&, const HfdlAircraft& aircraft) override {
    notes.push_back("aircraft " + aircraft.address + ' ' + aircraft.registration + ' ' +
                    aircraft.flightId);
  }
  void messageEnded(const HfdlMessage& message) override {
    constexpr const char* kKinds[] = {"none", "up", "down", "squitter"};
    notes.push_back(std::string("ends as ") + kKinds[static_cast<int>(message.kind)] +
                    (message.checkFailed ? " failed" : ""));
  }
};

std::vector<std::string> told(std::initializer_list<std::string_view> lines,
                              HfdlLines wanted = kAll) {
  HfdlParser parser(Encoding::codePage932(), wanted);
  Notes notes;
  parser.takeLines(cp932Lines(lines), notes);
  parser.end(notes);
  return notes.notes;
}

TEST(HfdlParser, TellsEverythingOfAMessageInItsOrder) {
  EXPECT_THAT(
      told({kHeader, " DOWN LINK", "  GS NAME         = Agana", "   ICAO24 ADDRESS = 706071",
            "   REGISTRATION   = 9K-APK", "   FLIGHT ID      = PK0370",
            "  ..............................", "   ICAO24 ADDRESS = 706072",
            "   FREQUENCIES    = [ 2998 ] (Oslo)", "   CRC FAILED"}),
      ElementsAre("ends as none", "begins at 2026/11/17 00:01:24", "station Agana",
                  "aircraft 706071 9K-APK PK0370", "announces   FREQUENCIES    = [ 2998 ] (Oslo)",
                  "aircraft 706072  ", "ends as down failed"));
}

TEST(HfdlParser, LineThatNobodyWantsSaysNothing) {
  EXPECT_THAT(told({kHeader, " SQUITTER", "  GS NAME         = Agana",
                    "   FREQUENCIES    = [ 2998 ] (Oslo)", "   CRC FAILED"},
                   {HfdlLine::header, HfdlLine::groundStation}),
              ElementsAre("ends as none", "begins at 2026/11/17 00:01:24", "station Agana",
                          "ends as none"));
}

TEST(HfdlParser, FirstWantedKindDecidesALineOfTwo) {
  const std::string_view both = "  GS NAME         =   FREQUENCIES    = [ 2998 ] (Oslo)";
  EXPECT_THAT(told({both}),
              ElementsAre("station   FREQUENCIES    = [ 2998 ] (Oslo)", "ends as none"));
  EXPECT_THAT(told({both}, {HfdlLine::header, HfdlLine::frequencies}),
              ElementsAre("announces" + std::string(both), "ends as none"));
}

TEST(HfdlParser, LinesOneByOneAndManyAtOnceSayTheSame) {
  const std::string text = cp932Lines(
      {"[", kHeader, " SQUITTER", "x [ y", "   FREQUENCIES    = [ 2998 ] (東京)", "", "  [[",
       "[1]------------------------[2026/11/17 00:05:00]", "FREQUENCIES    = ["});
  for (const HfdlLines wanted : {kAll, HfdlLines{HfdlLine::header, HfdlLine::frequencies}}) {
    Notes atOnce;
    HfdlParser parser(Encoding::codePage932(), wanted);
    parser.takeLines(text, atOnce);
    Notes oneByOne;
    HfdlParser other(Encoding::codePage932(), wanted);
    std::string_view rest = text;
    while (!rest.empty()) {
      other.takeLine(rest.substr(0, rest.find("\r\n")), oneByOne);
      rest.remove_prefix(rest.find("\r\n") + 2);
    }
    EXPECT_EQ(atOnce.notes, oneByOne.notes);
    EXPECT_EQ(atOnce.notes.size(), 6U);
  }
}

TEST(HfdlParser, LineBehindTheLimitIsNotLookedAt) {
  const std::string blanks(kLongestHfdlLine, ' ');
  EXPECT_THAT(told({blanks + "   CRC FAILED", blanks + std::string(kHeader)},
                   {HfdlLine::header, HfdlLine::crcFailed}),
              ElementsAre("ends as none"));
}

TEST(HfdlParser, SecondByteOfACharacterMakesNoLabel) {
  HfdlParser parser(Encoding::codePage932(), kAll);
  Notes notes;
  // 0x83 0x49 is one katakana character whose second byte is an "I".
  parser.takeLines("   \x83ICAO24 ADDRESS = 706071\n  ..............................\n", notes);
  EXPECT_THAT(notes.notes, IsEmpty());
}

}  // namespace
}  // namespace vel::test
