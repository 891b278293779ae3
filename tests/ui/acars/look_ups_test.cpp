#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNotSelected = "Log list not selected. データが選択されていません";

class LookUps : public test::AcarsWindowTest {
 protected:
  LookUps() {
    base_.writeLog(
        kLog,
        {"BA0007,O,JA8089,RJTT,KLAX,B744,,9:05:00", "ZZ12A,O,JA-8089,RJTT,KLAX,B744,,9:06:00",
         "BA,O,,RJTT,KLAX,B744,,9:07:00", "N 1&;$(x)日本,O,B 1&;$(x)日本,RJTT,KLAX,B744,,9:08:00"});
  }
  [[nodiscard]] QComboBox& photos() const { return find<QComboBox>("Combo2"); }
  [[nodiscard]] QComboBox& flightEngines() const { return find<QComboBox>("Combo3"); }
  /// What the Search button opens for a line with the service of that label.
  std::vector<std::string> opens(const QComboBox& chooser, const char* label,
                                 const char* searchButton, int shownIndex) {
    desktop_.opened.clear();
    select(shownIndex);
    auto& found = const_cast<QComboBox&>(chooser);
    test::choose(found, found.findText(QString::fromUtf8(label)));
    click(searchButton);
    return desktop_.opened;
  }
  std::vector<std::string> photo(const char* label, int shownIndex) {
    return opens(photos(), label, "Command7(0)", shownIndex);
  }
  std::vector<std::string> flight(const char* label, int shownIndex) {
    return opens(flightEngines(), label, "Command7(1)", shownIndex);
  }
};

TEST_F(LookUps, TheUsersOwnEnginesComeFirstAndTheServicesFollow) {
  start();
  EXPECT_THAT(entries(photos()), ElementsAre("USER DEF", "Airliner", "JetPhotos", "Planepictures"));
  EXPECT_THAT(entries(flightEngines()),
              ElementsAre("USER DEF", "FLIGHTSTATS", "HOMEPAGE", "FlightAware", "FlyteComm"));
  EXPECT_EQ(photos().currentIndex(), 0);
  EXPECT_EQ(flightEngines().currentIndex(), 0);
  EXPECT_EQ(button("Command7(0)").text(), QStringLiteral("Search"));
  EXPECT_EQ(button("Command7(1)").text(), QStringLiteral("Search"));
}

TEST_F(LookUps, EachPhotoServiceGetsTheRegistrationExactlyAsListed) {
  start();
  EXPECT_THAT(photo("Airliner", 0),
              ElementsAre("https://www.airliners.net/search/photo.search?regsearch=JA8089"));
  EXPECT_THAT(photo("JetPhotos", 1),
              ElementsAre("https://www.jetphotos.com/showphotos.php?regsearch=JA-8089"));
  EXPECT_THAT(
      photo("Planepictures", 0),
      ElementsAre("https://www.planepictures.net/netsearch4.cgi?stype=reg&srng=2&srch=JA8089"));
  EXPECT_THAT(photo("USER DEF", 0),
              ElementsAre("https://www.airliners.net/search/photo.search?regsearch=JA8089"));
  EXPECT_THAT(photo("JetPhotos", 3),
              ElementsAre("https://www.jetphotos.com/showphotos.php?regsearch=B 1&;$(x)日本"));
}

TEST_F(LookUps, AnEmptyRegistrationIsSearchedAsItIs) {
  start();
  EXPECT_THAT(photo("JetPhotos", 2),
              ElementsAre("https://www.jetphotos.com/showphotos.php?regsearch="));
}

TEST_F(LookUps, EachFlightServiceGetsItsOwnForm) {
  start();
  EXPECT_THAT(flight("FLIGHTSTATS", 0),
              ElementsAre("https://www.flightstats.com/go/FlightStatus/flightStatusByFlight.do?"
                          "airline=%28BA%29&flightNumber=7"));
  EXPECT_THAT(flight("HOMEPAGE", 0), ElementsAre("http://home.example/?F=BA0007"));
  EXPECT_THAT(flight("FlightAware", 0),
              ElementsAre("https://www.flightaware.com/live/flight/BAW7"));
  EXPECT_THAT(flight("FlyteComm", 0),
              ElementsAre("https://www.flytecomm.com/cgi-bin/trackflight?action=select_advanced&"
                          "flight_id=BAW7"));
  EXPECT_THAT(flight("USER DEF", 0), ElementsAre("http://home.example/?F=BA0007"));
}

TEST_F(LookUps, ACodeWithoutARowKeepsItsTwoLetters) {
  start();
  EXPECT_THAT(flight("FlightAware", 1),
              ElementsAre("https://www.flightaware.com/live/flight/ZZ12"));
  EXPECT_THAT(flight("FlyteComm", 1),
              ElementsAre("https://www.flytecomm.com/cgi-bin/trackflight?action=select_advanced&"
                          "flight_id=ZZ12"));
}

TEST_F(LookUps, OfTwoRowsForOneCodeTheFirstIsUsed) {
  base_.writeData("letter.csv", {"ba,XXX,small", "BA,BAW,British", "BA,SHT,Shuttle"});
  start();
  EXPECT_THAT(flight("FlightAware", 0),
              ElementsAre("https://www.flightaware.com/live/flight/BAW7"));
}

TEST_F(LookUps, AnEmptyNumberCountsAsZeroWhereALeadingNumberIsTaken) {
  start();
  EXPECT_THAT(flight("FlightAware", 2),
              ElementsAre("https://www.flightaware.com/live/flight/BAW0"));
}

TEST_F(LookUps, FlightstatsWithoutANumberOpensNothingAndSaysWhy) {
  start();
  EXPECT_THAT(flight("FLIGHTSTATS", 1), IsEmpty());
  EXPECT_THAT(flight("FLIGHTSTATS", 2), IsEmpty());
  constexpr const char* kNoNumber =
      "The flight number is not numeric. 便名の番号部分が数値ではありません";
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoNumber, kNoNumber));
  EXPECT_FALSE(desktop_.ended);
}

TEST_F(LookUps, WithoutTheLetterTableTheLookUpOpensNothing) {
  start();
  select(0);
  std::filesystem::remove(base_.folders.data / "letter.csv");
  test::choose(flightEngines(), 3);
  click("Command7(1)");
  EXPECT_THAT(desktop_.opened, IsEmpty());
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  // The other services do not need it.
  test::choose(flightEngines(), 1);
  click("Command7(1)");
  EXPECT_EQ(desktop_.opened.size(), 1U);
}

TEST_F(LookUps, TheUsersFlightEngineDropsZerosWhenAskedTo) {
  start();
  settings().env_FltDefUrl0 = "http://my.example/f?n=";
  EXPECT_THAT(flight("USER DEF", 0), ElementsAre("http://my.example/f?n=BA0007"));
  settings().env_fltSchZsp = 1;
  EXPECT_THAT(flight("USER DEF", 0), ElementsAre("http://my.example/f?n=BA7"));
  EXPECT_THAT(flight("USER DEF", 3), ElementsAre("http://my.example/f?n=N 1"));
}

TEST_F(LookUps, TheUsersEnginesComeFromTheSettings) {
  test::writeBytes(
      base_.folders.program / "vel.env",
      test::cp932Lines(
          {"\"env_regDefName0\",\"私の写真\"", "\"env_regDefUrl0\",\"http://p.example/?a=1,2&r=\"",
           "\"env_FltDefName0\",\"My flights\"", "\"env_FltDefUrl0\",\"http://f.example/\""}));
  start();
  EXPECT_EQ(entries(photos()).front(), "私の写真");
  EXPECT_EQ(entries(flightEngines()).front(), "My flights");
  EXPECT_THAT(photo("私の写真", 0), ElementsAre("http://p.example/?a=1,2&r=JA8089"));
  EXPECT_THAT(flight("My flights", 0), ElementsAre("http://f.example/BA0007"));
}

TEST_F(LookUps, HostsComeFromServicesIni) {
  test::writeBytes(base_.folders.program / "services.ini",
                   "jetphotos=http://photos.example/\nflightaware=http://fa.example\n");
  start();
  EXPECT_THAT(photo("JetPhotos", 0),
              ElementsAre("http://photos.example/showphotos.php?regsearch=JA8089"));
  EXPECT_THAT(flight("FlightAware", 0), ElementsAre("http://fa.example/live/flight/BAW7"));
}

TEST_F(LookUps, AChosenEngineIsStoredAtOnceAndComesBackAtTheNextStart) {
  start();
  test::choose(photos(), 2);
  test::choose(flightEngines(), 3);
  EXPECT_EQ(settings().env_regSchCmb, 2);
  EXPECT_EQ(settings().env_fltSchCmb, 3);
  window().close();
  const std::string saved = test::readBytes(base_.folders.program / "vel.env");
  EXPECT_THAT(saved, testing::HasSubstr("\"env_regSchCmb\",2\r\n\"env_fltSchCmb\",3\r\n"));
  program_.reset();
  desktop_.ended = false;
  start();
  EXPECT_EQ(photos().currentText(), QStringLiteral("JetPhotos"));
  EXPECT_EQ(flightEngines().currentText(), QStringLiteral("FlightAware"));
}

TEST_F(LookUps, AStoredEngineThatDoesNotExistGivesTheNearestOne) {
  test::writeBytes(base_.folders.program / "vel.env",
                   "\"env_regSchCmb\",99\r\n\"env_fltSchCmb\",-4\r\n");
  start();
  EXPECT_EQ(photos().currentText(), QStringLiteral("Planepictures"));
  EXPECT_EQ(flightEngines().currentText(), QStringLiteral("USER DEF"));
}

TEST_F(LookUps, WithoutASelectedLineTheButtonsSaySo) {
  start();
  click("Command7(0)");
  click("Command7(1)");
  click("Command7(3)");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotSelected, kNotSelected, kNotSelected));
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(LookUps, TheThirdIndexOfTheRowDoesNothing) {
  start();
  EXPECT_EQ(window().findChild<QPushButton*>(QStringLiteral("Command7(2)")), nullptr);
  select(0);
  EXPECT_EQ(window().findChild<QPushButton*>(QStringLiteral("Command7(2)")), nullptr);
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(LookUps, TheShellsResultIsNotExamined) {
  start();
  desktop_.openResults = {31};
  EXPECT_THAT(photo("JetPhotos", 0),
              ElementsAre("https://www.jetphotos.com/showphotos.php?regsearch=JA8089"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

}  // namespace
}  // namespace vel
