#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "core/ui/twips.h"
#include "tests/ui/support/hfdl_window.h"
#include "web/ui/photo_view.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class HfdlDetails : public test::HfdlWindowTest {
 protected:
  [[nodiscard]] QSize photo() const { return find<PhotoView>("Image1").pictureSize(); }
};

TEST_F(HfdlDetails, ASelectedLineShowsItsPhotoAircraftAndRoute) {
  start();
  select(0);
  EXPECT_EQ(address(), "84C27D");
  EXPECT_EQ(aircraft(), "84C27D|JAL|JL|JA8089|B744");
  EXPECT_EQ(photo(), QSize(150, 100));
  EXPECT_EQ(text("Label1"), "150 x 100");
  EXPECT_EQ(flight(), "JL0012");
  EXPECT_EQ(route(), "RJTT|KLAX|Daily");
  EXPECT_EQ(text("Label2(4)"), "Tokyo Haneda HND");
  EXPECT_EQ(text("Label2(5)"), "Los Angeles LAX");
  EXPECT_TRUE(isShown("Frame1") && isShown("Frame2"));
  EXPECT_FALSE(isShown("Label7"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(HfdlDetails, BothFramesAreHiddenUntilALineIsSelected) {
  start();
  EXPECT_FALSE(isShown("Frame1") || isShown("Frame2"));
  EXPECT_TRUE(isShown("Label5"));
  select(0);
  EXPECT_FALSE(isShown("Label5"));
}

TEST_F(HfdlDetails, AShortFlightIsCompletedInTheCaption) {
  start();
  select(1);
  EXPECT_EQ(flight(), "JL0123");
  EXPECT_EQ(route(), "RJAA|PHNL|週末");
}

TEST_F(HfdlDetails, AnEmptyFlightHidesTheFlightPanel) {
  start();
  select(0);
  ASSERT_TRUE(isShown("Frame2"));
  select(2);
  EXPECT_FALSE(isShown("Frame2"));
  EXPECT_EQ(aircraft(), "861234|ANA|NH|JA731A|B773");
  EXPECT_FALSE(isShown("Label7"));
  select(0);
  EXPECT_TRUE(isShown("Frame2"));
}

TEST_F(HfdlDetails, ARegistrationWithoutAPhotoShowsThePlaceholderAndLeavesTheSizeCaption) {
  start();
  select(0);
  select(2);
  EXPECT_EQ(photo(), QSize(40, 30));
  EXPECT_EQ(text("Label1"), "150 x 100");
}

TEST_F(HfdlDetails, ThePhotoIsThatOfTheReceivedRegistration) {
  writeAircraftLog(kLog, {"861234 JA8089 -", "84C27D - -"});
  start();
  select(0);
  EXPECT_EQ(photo(), QSize(150, 100));
  select(1);
  EXPECT_EQ(photo(), QSize(40, 30));
}

TEST_F(HfdlDetails, AnUnknownAircraftAndFlightLeaveTheirBoxesEmpty) {
  start();
  select(0);
  select(3);
  EXPECT_EQ(aircraft(), "AAAAAA||||");
  EXPECT_EQ(flight(), "XX0001");
  EXPECT_EQ(route(), "||");
  EXPECT_EQ(text("Label2(4)"), "");
}

TEST_F(HfdlDetails, AShortFlightOfAnUnknownAircraftIsFilledWithZerosOnly) {
  writeAircraftLog(kLog, {"AAAAAA N123 7"});
  start();
  select(0);
  EXPECT_EQ(flight(), "0007");
}

TEST_F(HfdlDetails, MissingTablesLeaveTheBoxesEmptyAndTheProgramRunning) {
  start();
  fs::remove(base_.folders.data / "ICAO24.csv");
  fs::remove(base_.folders.data / "FLIGHT.csv");
  select(0);
  EXPECT_EQ(aircraft(), "84C27D||||");
  EXPECT_EQ(route(), "||");
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_FALSE(desktop_.ended);
}

TEST_F(HfdlDetails, TheFirstLineOfFiveFieldsIsTaken) {
  base_.writeData("ICAO24.csv",
                  {"84C27D,a,b,c", "84C27D,JAL,JL,JA8089,B744,six", "84C27D,XXX,XX,X,X"});
  start();
  select(0);
  EXPECT_EQ(aircraft(), "84C27D|JAL|JL|JA8089|B744");
}

TEST_F(HfdlDetails, WhatTheTableSaysIsShownWithoutTheReactionsToTyping) {
  // letter.csv knows another code, and aircraft.csv another type.
  base_.writeData("ICAO24.csv", {"84C27D,abc,xy,JA731A,A388"});
  start();
  select(0);
  EXPECT_EQ(aircraft(), "84C27D|abc|xy|JA731A|A388");
}

TEST_F(HfdlDetails, WhileALineIsLookedUpTheAircraftIsHiddenAndLoadingShown) {
  start();
  select(0);
  std::vector<bool> loading;
  std::vector<bool> aircraftShown;
  const test::BetweenSteps look([&] {
    if (program_->context().jobs.isIdle()) return;
    loading.push_back(isShown("Label7"));
    aircraftShown.push_back(isShown("Frame1"));
  });
  select(1);
  ASSERT_GE(loading.size(), 3U);
  EXPECT_THAT(loading, testing::Each(true));
  EXPECT_FALSE(aircraftShown[0]);
  EXPECT_FALSE(isShown("Label7"));
}

TEST_F(HfdlDetails, ALineSelectedDuringALookUpIsTheOneThatIsShown) {
  start();
  int turns = 0;
  const test::BetweenSteps look([&] {
    if (!program_->context().jobs.isIdle() && ++turns == 2) list().setListIndex(2);
  });
  select(0);
  settle();
  EXPECT_EQ(address(), "861234");
  EXPECT_EQ(aircraft(), "861234|ANA|NH|JA731A|B773");
  EXPECT_FALSE(isShown("Frame2"));
  EXPECT_FALSE(isShown("Label7"));
}

TEST_F(HfdlDetails, NothingMovesWhenAWordIsShownOrHidden) {
  start();
  // The window gives way to its frame, once that is known.
  const QSize outer(toPixels(window().designedSize().width()),
                    toPixels(window().designedSize().height()));
  ASSERT_TRUE(QTest::qWaitFor([&] {
    return window().size() != outer && window().frameGeometry().size() == outer;
  }));
  const QWidget& editor = find<QWidget>("Text2(5)");
  const auto place = [&] { return editor.mapTo(&window(), QPoint()); };
  const QPoint before = place();
  select(0);
  click("Command1");
  ASSERT_TRUE(isShown("Label6"));
  QCoreApplication::processEvents();
  EXPECT_EQ(place(), before);
  bool loading = false;
  const test::BetweenSteps look([&] {
    if (program_->context().jobs.isIdle()) return;
    loading = loading || isShown("Label7");
    EXPECT_EQ(place(), before);
  });
  select(1);
  EXPECT_TRUE(loading);
}

TEST_F(HfdlDetails, AScreenReaderIsToldTheShownAircraft) {
  start();
  select(0);
  EXPECT_EQ(find<QWidget>("Frame1").accessibleName(), QStringLiteral("Aircraft: 84C27D"));
}

TEST_F(HfdlDetails, TheSelectionFollowsTheArrowKeys) {
  start();
  select(0);
  QTest::keyClick(&list(), Qt::Key_Down);
  settle();
  EXPECT_EQ(flight(), "JL0123");
}

TEST_F(HfdlDetails, TypedAirportCodesShowTheirNames) {
  start();
  select(0);
  test::typeOver(box("Text2(0)"), "PHNL");
  EXPECT_EQ(text("Label2(4)"), "Honolulu HNL");
  test::typeOver(box("Text2(1)"), "");
  EXPECT_EQ(text("Label2(5)"), "");
}

TEST_F(HfdlDetails, AFoundAirportIsTakenOverIntoTheRoute) {
  start();
  select(0);
  test::typeKeys(box("Text3"), "honolulu");
  auto& candidates = find<QAbstractItemView>("List1");
  ASSERT_EQ(candidates.model()->rowCount(), 1);
  QTest::mouseClick(candidates.viewport(), Qt::LeftButton, {},
                    candidates.visualRect(candidates.model()->index(0, 0)).center());
  click("Command3(0)");
  EXPECT_EQ(route(), "PHNL|KLAX|Daily");
}

TEST_F(HfdlDetails, AnAirportNameOpensTheAirportDialogWithItsText) {
  start();
  select(0);
  std::string shown;
  test::inDialog(
      "AirportDialog", [this] { click("Label2(5)"); },
      [&](QWidget& dialog) {
        shown = test::control<QLineEdit>(dialog, "Text1(1)").text().toStdString();
      });
  EXPECT_EQ(shown, "Los Angeles LAX ");
}

TEST_F(HfdlDetails, AClickOnThePhotoOpensItAndLeavesNoMark) {
  start();
  select(0);
  QTest::mouseClick(&find<PhotoView>("Image1"), Qt::LeftButton);
  EXPECT_THAT(desktop_.opened, ElementsAre((base_.folders.pics / "JA8089.jpg").string()));
  EXPECT_EQ(column(kHfdlPhoto)[0], "o");
}

TEST_F(HfdlDetails, WithoutAPhotoTheClickOpensThePlaceholder) {
  start();
  select(2);
  desktop_.openResults = {2};
  QTest::mouseClick(&find<PhotoView>("Image1"), Qt::LeftButton);
  EXPECT_THAT(desktop_.opened, ElementsAre((base_.folders.pics / "JA731A.jpg").string(),
                                           (base_.folders.pics / "noimage.jpg").string()));
  EXPECT_EQ(column(kHfdlPhoto)[2], "x");
}

}  // namespace
}  // namespace vel
