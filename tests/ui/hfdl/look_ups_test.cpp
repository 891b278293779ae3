#include <QComboBox>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/hfdl_window.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNotSelected = "Log list not selected. データが選択されていません";

class HfdlLookUps : public test::HfdlWindowTest {
 protected:
  void SetUp() override {
    writeAircraftLog(kLog, {"84C27D JA-8089 JL0012", "84C27D JA-8089 123", "861234 JA731A -",
                            "AAAAAA N123 ZZ12A"});
    start();
    window().showRawLog = [this](const std::string& name) { rawLogs_.push_back(name); };
  }
  std::vector<std::string> opens(const char* chooser, int entry, const char* button) {
    desktop_.opened.clear();
    test::choose(find<QComboBox>(chooser), entry);
    click(button);
    return desktop_.opened;
  }
  std::vector<std::string> flightOpens(int engine) {
    return opens("Combo3", engine, "Command7(2)");
  }

  std::vector<std::string> rawLogs_;
};

TEST_F(HfdlLookUps, TheChoosersHoldTheirFixedServicesAndBeginWithTheFirst) {
  EXPECT_THAT(entries(find<QComboBox>("Combo4")),
              ElementsAre("Airframes", "libhomeradar", "KLOTH"));
  EXPECT_THAT(entries(find<QComboBox>("Combo2")),
              ElementsAre("Airliner", "JetPhotos", "Planepictures", "Feeyo"));
  EXPECT_THAT(entries(find<QComboBox>("Combo3")),
              ElementsAre("FLIGHTSTATS", "HOMEPAGE", "FlightAware", "FlyteComm"));
  for (const char* chooser : {"Combo2", "Combo3", "Combo4"}) {
    EXPECT_EQ(find<QComboBox>(chooser).currentIndex(), 0) << chooser;
  }
  EXPECT_EQ(text("Command7(0)"), "Copy && Jump");
  EXPECT_EQ(text("Command7(1)"), "Search");
  EXPECT_EQ(text("Command7(2)"), "Search");
  EXPECT_EQ(text("Command7(3)"), "Raw log");
}

TEST_F(HfdlLookUps, AChosenServiceIsNotSaved) {
  test::choose(find<QComboBox>("Combo2"), 3);
  test::choose(find<QComboBox>("Combo3"), 2);
  EXPECT_EQ(settings().env_regSchCmb, 0);
  EXPECT_EQ(settings().env_fltSchCmb, 0);
}

TEST_F(HfdlLookUps, CopyAndJumpPutsTheAddressOnTheClipboardAndOpensThePage) {
  select(0);
  EXPECT_THAT(opens("Combo4", 0, "Command7(0)"), ElementsAre("https://www.airframes.org/"));
  EXPECT_EQ(desktop_.clipboard, "84C27D");
  test::typeOver(box("Text1(0)"), "ABCDEF");
  EXPECT_THAT(opens("Combo4", 1, "Command7(0)"),
              ElementsAre(program_->context().services.libhomeradar +
                          "/databasequery/icao24allocations.php"));
  EXPECT_EQ(desktop_.clipboard, "ABCDEF");
  EXPECT_THAT(opens("Combo4", 2, "Command7(0)"),
              ElementsAre(program_->context().services.kloth + "/radio/icao24lookup.php"));
}

TEST_F(HfdlLookUps, ThePhotoSearchTakesTheRegistrationBox) {
  select(0);
  EXPECT_THAT(
      opens("Combo2", 0, "Command7(1)"),
      ElementsAre(program_->context().services.airliner + "/search/photo.search?regsearch=JA8089"));
  test::typeOver(box("Text1(3)"), "b-1234 x");
  EXPECT_THAT(opens("Combo2", 3, "Command7(1)"),
              ElementsAre(program_->context().services.feeyo +
                          "/searchpic.jsp?action=search&pictype=1&airplane_regcode=b-1234 x"));
  select(3);
  EXPECT_THAT(opens("Combo2", 1, "Command7(1)"),
              ElementsAre(program_->context().services.jetphotos + "/showphotos.php?regsearch="));
}

TEST_F(HfdlLookUps, TheFlightSearchTakesTheCompletedFlightAndHomepageTheReceivedOne) {
  select(1);
  EXPECT_THAT(
      flightOpens(0),
      ElementsAre(program_->context().services.flightstats +
                  "/go/FlightStatus/flightStatusByFlight.do?airline=%28JL%29&flightNumber=123"));
  EXPECT_THAT(flightOpens(1), ElementsAre("http://home.example/?F=123"));
  EXPECT_THAT(flightOpens(2),
              ElementsAre(program_->context().services.flightaware + "/live/flight/JAL123"));
  EXPECT_THAT(flightOpens(3),
              ElementsAre(program_->context().services.flytecomm +
                          "/cgi-bin/trackflight?action=select_advanced&flight_id=JAL123"));
}

TEST_F(HfdlLookUps, AFlightWithoutANumberIsToldToTheUser) {
  select(3);
  EXPECT_THAT(flightOpens(0), IsEmpty());
  EXPECT_THAT(desktop_.messages,
              ElementsAre("The flight number is not numeric. 便名の番号部分が数値ではありません"));
  EXPECT_THAT(flightOpens(2),
              ElementsAre(program_->context().services.flightaware + "/live/flight/ZZ12"));
}

TEST_F(HfdlLookUps, AnEmptyFlightIsSearchedAsItIs) {
  select(2);
  EXPECT_THAT(flightOpens(1), ElementsAre("http://home.example/?F="));
  EXPECT_THAT(flightOpens(2),
              ElementsAre(program_->context().services.flightaware + "/live/flight/0"));
}

TEST_F(HfdlLookUps, WithoutTheLetterTableNoAddressIsOpened) {
  select(0);
  fs::remove(base_.folders.data / "letter.csv");
  EXPECT_THAT(flightOpens(2), IsEmpty());
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
}

TEST_F(HfdlLookUps, FlightSearchAndRawLogNeedALine) {
  click("Command7(2)");
  click("Command7(3)");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotSelected, kNotSelected));
  EXPECT_THAT(desktop_.opened, IsEmpty());
  EXPECT_THAT(rawLogs_, IsEmpty());
}

TEST_F(HfdlLookUps, TheRawLogButtonGoesByTheThirdColumnAndTheMenuByTheRegistration) {
  select(0);
  click("Command7(3)");
  EXPECT_THAT(rawLogs_, ElementsAre("D"));
  chooseFromMenu(2, kHfdlTime, "Open raw log");
  EXPECT_THAT(rawLogs_, ElementsAre("D", "JA731A"));
}

TEST_F(HfdlLookUps, TheRawLogButtonShowsTheAircraftsLogWhereTheColumnHasNone) {
  test::writeBytes(base_.folders.eachLogs / "JA-8089.log", "");
  select(0);
  click("Command7(3)");
  EXPECT_THAT(rawLogs_, ElementsAre("JA-8089"));
  test::writeBytes(base_.folders.eachLogs / "d.log", "");
  click("Command7(3)");
  EXPECT_THAT(rawLogs_, ElementsAre("JA-8089", "D"));
}

TEST_F(HfdlLookUps, TheMenuHasCopiesSearchesPhotoAndRawLog) {
  std::vector<std::string> captions;
  openMenu(0, kHfdlFlight, [&](QMenu& menu) {
    for (const QAction* action : menu.actions()) captions.push_back(captionOf(*action));
  });
  EXPECT_THAT(captions, ElementsAre("Copy cell", "Copy line", "", "Search photo", "Search flight",
                                    "Open photo", "Open raw log"));
}

TEST_F(HfdlLookUps, TheMenusActionsAreThoseOfTheClickedLine) {
  chooseFromMenu(0, kHfdlFlight, "Copy cell");
  EXPECT_EQ(desktop_.clipboard, "JL0012");
  chooseFromMenu(1, kHfdlFlight, "Copy line");
  EXPECT_EQ(desktop_.clipboard,
            "0002\t2026/01/02 09:02:00\t[1]\tD\t Agana, Guam\t84C27D\tJA-8089\t123\t"
            " JA8089 JAL JL B744\tx\tRJAA\tPHNL");
  chooseFromMenu(0, kHfdlFlight, "Search photo");
  chooseFromMenu(1, kHfdlFlight, "Search flight");
  chooseFromMenu(2, kHfdlFlight, "Open photo");
  EXPECT_THAT(
      desktop_.opened,
      ElementsAre(program_->context().services.airliner + "/search/photo.search?regsearch=JA8089",
                  program_->context().services.flightstats +
                      "/go/FlightStatus/flightStatusByFlight.do?airline=%28JL%29&flightNumber=123",
                  (base_.folders.pics / "JA731A.jpg").string()));
}

}  // namespace
}  // namespace vel
