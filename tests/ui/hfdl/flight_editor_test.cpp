#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/hfdl_window.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNotSelected = "Log list not selected. データが選択されていません";

class HfdlFlightEditor : public test::HfdlWindowTest {
 protected:
  void SetUp() override {
    writeAircraftLog(kLog, {"84C27D JA8089 JL0123", "84C27D JA8089 123", "84C27D JA8089 JL0123",
                            "84C27D JA8089 123", "861234 JA731A NH0007"});
    start();
  }
  void edit(const char* departure, const char* destination, const char* remark) {
    test::typeOver(box("Text2(0)"), departure);
    test::typeOver(box("Text2(1)"), destination);
    test::typeOver(box("Text2(2)"), remark);
    click("Command2");
  }
};

TEST_F(HfdlFlightEditor, EveryLineOfTheFlightGetsTheNewRoute) {
  select(0);
  edit("KLAX", "PHNL", "臨時");
  EXPECT_EQ(base_.data("FLIGHT.csv"),
            "JL0012,RJTTKLAX,Daily\r\nJL0123,KLAXPHNL,臨時\r\nJL0012,X,-\r\n");
  EXPECT_THAT(column(kHfdlOrigin), ElementsAre("KLAX", "RJAA", "KLAX", "RJAA", ""));
  EXPECT_THAT(column(kHfdlDestination), ElementsAre("PHNL", "PHNL", "PHNL", "PHNL", ""));
  EXPECT_TRUE(isShown("Label6"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(HfdlFlightEditor, TheSelectedLineOfAShortFlightChangesWithTheLinesOfTheCompletedOne) {
  select(1);
  ASSERT_EQ(flight(), "JL0123");
  edit("KLAX", "RJTT", "");
  EXPECT_EQ(text("Text2(2)"), "-");
  EXPECT_EQ(base_.data("FLIGHT.csv"),
            "JL0012,RJTTKLAX,Daily\r\nJL0123,KLAXRJTT,-\r\nJL0012,X,-\r\n");
  EXPECT_THAT(column(kHfdlOrigin), ElementsAre("KLAX", "KLAX", "KLAX", "RJAA", ""));
}

TEST_F(HfdlFlightEditor, ANewFlightIsAppended) {
  select(4);
  edit("RJTT", "PHNL", "-");
  EXPECT_EQ(base_.data("FLIGHT.csv"),
            "JL0012,RJTTKLAX,Daily\r\nJL0123,RJAAPHNL,週末\r\nJL0012,X,-\r\nNH0007,RJTTPHNL,-\r\n");
  EXPECT_EQ(column(kHfdlOrigin)[4], "RJTT");
}

TEST_F(HfdlFlightEditor, WithoutASelectedLineNothingIsWritten) {
  select(0);
  list().setListIndex(-1);
  edit("KLAX", "PHNL", "-");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotSelected));
  EXPECT_EQ(column(kHfdlOrigin)[0], "RJAA");
}

TEST_F(HfdlFlightEditor, ThreeLettersAreNoAirport) {
  select(0);
  edit("LAX", "PHNL", "-");
  EXPECT_THAT(desktop_.messages,
              ElementsAre("Departure airport not filled. 出発空港が記入されていません"));
  desktop_.messages.clear();
  edit("KLAX", "HNL", "-");
  EXPECT_THAT(desktop_.messages,
              ElementsAre("Destination airport not filled. 到着空港が記入されていません"));
  EXPECT_EQ(column(kHfdlOrigin)[0], "RJAA");
}

TEST_F(HfdlFlightEditor, ALineSelectedBeforeTheLastLookUpEndedIsNotTouched) {
  select(0);
  // The list has moved on; the panel still shows the first line's flight.
  list().setListIndex(4);
  window().panel()->flight()->saveRoute();
  test::finishJobs();
  EXPECT_EQ(column(kHfdlOrigin)[4], "");
}

}  // namespace
}  // namespace vel
