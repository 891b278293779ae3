#include <QAccessible>
#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"
#include "web/ui/photo_view.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class AcarsDetails : public test::AcarsWindowTest {
 protected:
  [[nodiscard]] PhotoView& photo() const { return find<PhotoView>("Image1"); }
  [[nodiscard]] std::string title(const char* frame) const {
    return find<QGroupBox>(frame).title().toStdString();
  }
  [[nodiscard]] bool shown(const char* name) const { return find<QWidget>(name).isVisible(); }

  void expectEndWithError(const std::string& message) {
    EXPECT_THAT(desktop_.messages, ElementsAre(message));
    EXPECT_TRUE(desktop_.ended);
    EXPECT_EQ(desktop_.exitStatus, 1);
    window().close();
    EXPECT_FALSE(fileExists(base_.folders.program / "vel.env"));
  }
};

TEST_F(AcarsDetails, NothingIsShownUntilALineIsSelected) {
  start();
  EXPECT_FALSE(shown("Frame1") || shown("Frame2") || shown("Frame3"));
  EXPECT_TRUE(shown("Label5"));
}

TEST_F(AcarsDetails, ASelectedLineShowsWhatTheTablesSay) {
  start();
  select(0);
  EXPECT_EQ(title("Frame1"), "JA8089");
  EXPECT_EQ(text("Text1"), "B744");
  EXPECT_EQ(title("Frame2"), "JL0012");
  EXPECT_EQ(text("Text2(0)"), "RJTT");
  EXPECT_EQ(text("Text2(1)"), "KLAX");
  EXPECT_EQ(text("Text2(2)"), "Daily");
  EXPECT_EQ(text("Label2(4)"), "Tokyo Haneda HND");
  EXPECT_EQ(text("Label2(5)"), "Los Angeles LAX");
  EXPECT_EQ(text("Text2(3)"), "JAL");
  EXPECT_EQ(text("Text2(4)"), "Japan Airlines");
  EXPECT_EQ(text("Text2(7)"), "");
  EXPECT_TRUE(shown("Frame1") && shown("Frame2") && shown("Frame3"));
  EXPECT_FALSE(shown("Label5"));
  EXPECT_FALSE(shown("Label7"));
}

TEST_F(AcarsDetails, WhatNoTableKnowsStaysEmpty) {
  start();
  select(0);
  select(3);
  EXPECT_EQ(title("Frame1"), "N123");
  EXPECT_EQ(title("Frame2"), "ZZ0009");
  for (const char* name : {"Text1", "Text2(0)", "Text2(1)", "Text2(2)", "Text2(3)", "Text2(4)",
                           "Text2(7)", "Label2(4)", "Label2(5)"}) {
    EXPECT_EQ(text(name), "") << name;
  }
  EXPECT_TRUE(shown("Frame1") && shown("Frame2") && shown("Frame3"));
}

TEST_F(AcarsDetails, OfTwoLinesOfOneRegistrationTheSecondOnesEquipmentIsShown) {
  base_.writeData("aircraft.csv", {"JA8089,B744", "comment", "JA8089,B748,more", "ja8089,A388"});
  start();
  select(0);
  EXPECT_EQ(text("Text1"), "B748");
}

TEST_F(AcarsDetails, OfTwoLinesOfOneFlightTheFirstOnesRouteIsShown) {
  base_.writeData("FLIGHT.csv", {"JL0012,RJTTRJAA,first", "JL0012,RJAARJTT,second"});
  start();
  select(0);
  EXPECT_EQ(text("Text2(0)"), "RJTT");
  EXPECT_EQ(text("Text2(1)"), "RJAA");
  EXPECT_EQ(text("Text2(2)"), "first");
}

TEST_F(AcarsDetails, ARouteOfFourLettersHasNoDestination) {
  base_.writeData("FLIGHT.csv", {"JL0012,RJTT,-"});
  start();
  select(0);
  EXPECT_EQ(text("Text2(0)"), "RJTT");
  EXPECT_EQ(text("Text2(1)"), "");
  EXPECT_EQ(text("Label2(5)"), "");
}

TEST_F(AcarsDetails, ARouteOfMoreThanEightLettersHasALongDestination) {
  base_.writeData("FLIGHT.csv", {"JL0012,RJTTKLAXKSFO,-"});
  start();
  select(0);
  EXPECT_EQ(text("Text2(1)"), "KLAXKSFO");
}

TEST_F(AcarsDetails, AnAmpersandInAFlightOrRegistrationIsShown) {
  base_.writeLog(kLog, {"A&B01,O,R&G,D,E,Q,M,01:00:00"});
  start();
  select(0);
  EXPECT_EQ(title("Frame1"), "R&&G");
  EXPECT_EQ(title("Frame2"), "A&&B01");
}

TEST_F(AcarsDetails, TheFlightTableIsFoundInSmallLettersToo) {
  test::giveName(base_.folders.data / "FLIGHT.csv", "flight.csv");
  start();
  select(0);
  EXPECT_EQ(text("Text2(0)"), "RJTT");
}

TEST_F(AcarsDetails, TheAirportNameFollowsWhatIsTyped) {
  start();
  select(0);
  test::typeOver(box("Text2(0)"), "RJAA");
  EXPECT_EQ(text("Label2(4)"), "Tokyo Narita NRT");
  test::typeOver(box("Text2(0)"), "QQQQ");
  EXPECT_EQ(text("Label2(4)"), "");
  // A code is looked for anywhere in field 1, and the last line wins.
  test::typeOver(box("Text2(1)"), "RJ");
  EXPECT_EQ(text("Label2(5)"), "Tokyo Narita NRT");
  test::typeOver(box("Text2(1)"), "");
  EXPECT_EQ(text("Label2(5)"), "");
}

TEST_F(AcarsDetails, APhotoIsShownWithItsSize) {
  start();
  select(0);
  EXPECT_EQ(text("Label1"), "150 x 100");
  EXPECT_EQ(photo().pictureSize(), QSize(150, 100));
}

TEST_F(AcarsDetails, WithoutAPhotoNoimageIsShownAndTheSizeStaysAsItWas) {
  start();
  select(1);
  EXPECT_EQ(text("Label1"), "");
  select(0);
  ASSERT_EQ(text("Label1"), "150 x 100");
  select(1);
  EXPECT_EQ(photo().pictureSize(), QSize(40, 30));
  EXPECT_EQ(text("Label1"), "150 x 100");
}

TEST_F(AcarsDetails, APhotoIsFoundWhateverTheCaseOfItsName) {
  test::giveName(base_.folders.pics / "JA8089.jpg", "ja8089.JPG");
  start();
  select(0);
  EXPECT_EQ(text("Label1"), "150 x 100");
}

TEST_F(AcarsDetails, ADamagedPhotoCountsAsNone) {
  test::writeBytes(base_.folders.pics / "JA8089.jpg", "no picture at all");
  start();
  select(0);
  EXPECT_EQ(photo().pictureSize(), QSize(40, 30));
  EXPECT_EQ(text("Label1"), "");
}

TEST_F(AcarsDetails, APhotoThatWasCutOffCountsAsNone) {
  const std::string whole = test::readBytes(base_.folders.pics / "JA8089.jpg");
  start();
  for (const std::size_t bytes :
       {std::size_t{0}, std::size_t{30}, whole.size() / 2, whole.size() - 20}) {
    test::writeBytes(base_.folders.pics / "JA8089.jpg", whole.substr(0, bytes));
    select(0);
    EXPECT_EQ(photo().pictureSize(), QSize(40, 30)) << bytes;
    EXPECT_EQ(text("Label1"), "") << bytes;
    select(1);
  }
}

TEST_F(AcarsDetails, WithoutNoimageTheFrameIsEmpty) {
  fs::remove(base_.folders.pics / "noimage.jpg");
  start();
  select(0);
  select(1);
  EXPECT_FALSE(photo().pictureSize().isValid());
  EXPECT_FALSE(desktop_.ended);
}

TEST_F(AcarsDetails, ARegistrationThatLeavesTheFolderHasNoPhoto) {
  test::writePhoto(base_.folders.base / "x.jpg", 70, 50);
  base_.writeLog(kLog, {"A1,O,../x,D,E,Q,M,01:00:00", "A2,O,..\\x,D,E,Q,M,01:00:00",
                        "A3,O,a:b,D,E,Q,M,01:00:00", "A4,O,,D,E,Q,M,01:00:00"});
  start();
  for (int line = 0; line < 4; ++line) {
    select(line);
    EXPECT_EQ(photo().pictureSize(), QSize(40, 30)) << line;
  }
}

TEST_F(AcarsDetails, ProcessingIsShownWhileTheLookUpRuns) {
  start();
  std::vector<bool> seen;
  const test::BetweenSteps look([&] {
    if (!program_->context().jobs.isIdle()) seen.push_back(shown("Label7"));
  });
  select(0);
  EXPECT_EQ(text("Label7"), "Processing");
  EXPECT_GE(seen.size(), 3U);
  EXPECT_THAT(seen, testing::Each(true));
  EXPECT_FALSE(shown("Label7"));
}

TEST_F(AcarsDetails, ProcessingIsDrawnBeforeTheWorkBegins) {
  start();
  select(0);
  // Tells at its first paint which line is shown by then.
  class FirstPaint : public QObject {
   public:
    explicit FirstPaint(std::function<std::string()> shown) : shown_(std::move(shown)) {}
    std::optional<std::string> seen;

   protected:
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Paint && !seen) seen = shown_();
      return false;
    }

   private:
    std::function<std::string()> shown_;
  };
  FirstPaint paint([this] { return title("Frame1"); });
  find<QWidget>("Label7").installEventFilter(&paint);
  select(1);
  EXPECT_EQ(paint.seen, "JA8089");
  EXPECT_EQ(title("Frame1"), "JA731A");
}

TEST_F(AcarsDetails, AScreenReaderIsToldTheShownAircraftAndTheNumberOfLines) {
  start();
  select(0);
  EXPECT_EQ(find<QWidget>("Frame1").accessibleName(), QStringLiteral("Aircraft: JA8089"));
  EXPECT_EQ(find<QWidget>("Label3").accessibleName(), QStringLiteral("Number of shown lines: 4"));
}

TEST_F(AcarsDetails, AScreenReaderIsToldEveryValueThatIsShown) {
  test::writePhoto(base_.folders.pics / "JA8089.jpg", 150, 100);
  start();
  const auto read = [this](const char* name) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&find<QWidget>(name));
    if (accessible == nullptr) return std::string("nothing");
    return (accessible->text(QAccessible::Name) + QLatin1Char('|') +
            accessible->text(QAccessible::Description))
        .toStdString();
  };
  select(0);
  EXPECT_THAT(read("Frame1"), StartsWith("Aircraft: JA8089|"));
  EXPECT_THAT(read("Frame2"), StartsWith("Flight: JL0012|"));
  EXPECT_EQ(read("Label2(4)"), "Departure airport name|Tokyo Haneda HND");
  EXPECT_EQ(read("Label2(5)"), "Destination airport name|Los Angeles LAX");
  EXPECT_EQ(read("Label1"), "Photo size|150 x 100");
  EXPECT_THAT(read("Label3"), StartsWith("Number of shown lines: 4|"));
  select(1);
  EXPECT_THAT(read("Frame2"), StartsWith("Flight: NH0105|"));
  EXPECT_EQ(read("Label2(5)"), "Destination airport name|Honolulu HNL");
}

TEST_F(AcarsDetails, TabGoesFromTheEquipmentToItsButton) {
  start();
  select(0);
  box("Text1").setFocus();
  QTest::keyClick(&box("Text1"), Qt::Key_Tab);
  EXPECT_TRUE(button("Command1").hasFocus());
}

TEST_F(AcarsDetails, ALaterSelectionOvertakesTheRunningLookUp) {
  start();
  int turn = 0;
  const test::BetweenSteps look([&] {
    if (program_->context().jobs.isIdle() || ++turn != 2) return;
    list().setListIndex(1);
  });
  select(0);
  EXPECT_EQ(title("Frame1"), "JA731A");
  EXPECT_EQ(text("Text1"), "B773");
  EXPECT_EQ(title("Frame2"), "NH0105");
  EXPECT_EQ(text("Text2(1)"), "PHNL");
  EXPECT_EQ(text("Text2(4)"), "All Nippon Airways");
  EXPECT_FALSE(shown("Label7"));
}

TEST_F(AcarsDetails, ASelectionThatIsGivenUpAtOnceLeavesNoProcessing) {
  start();
  const test::BetweenSteps look([&] { list().clearSelection(); });
  select(0);
  EXPECT_FALSE(shown("Label7"));
}

TEST_F(AcarsDetails, AReadDuringALookUpHidesThePanel) {
  start();
  int turn = 0;
  const test::BetweenSteps look([&] {
    if (program_->context().jobs.isIdle() || ++turn != 2) return;
    QTest::mouseClick(&button("Command5"), Qt::LeftButton);
  });
  select(0);
  EXPECT_FALSE(shown("Frame1") || shown("Frame2") || shown("Frame3"));
  EXPECT_FALSE(shown("Label7"));
}

TEST_F(AcarsDetails, AMissingAircraftTableEndsTheProgram) {
  start();
  fs::remove(base_.folders.data / "aircraft.csv");
  select(0);
  expectEndWithError("ERROR #53");
}

TEST_F(AcarsDetails, AMissingFlightTableEndsTheProgram) {
  start();
  fs::remove(base_.folders.data / "FLIGHT.csv");
  select(0);
  expectEndWithError("ERROR #53");
}

TEST_F(AcarsDetails, AMissingLetterTableEndsTheProgram) {
  start();
  fs::remove(base_.folders.data / "letter.csv");
  select(0);
  expectEndWithError("ERROR #53");
}

TEST_F(AcarsDetails, AMissingAirportTableEndsTheProgramOnce) {
  start();
  fs::remove(base_.folders.data / "airport.csv");
  select(0);
  expectEndWithError("ERROR #53");
}

TEST_F(AcarsDetails, AMissingDataFolderEndsTheProgram) {
  start();
  fs::remove_all(base_.folders.data);
  select(0);
  expectEndWithError("ERROR #76");
}

TEST_F(AcarsDetails, AMatchingLineWithoutARemarkEndsTheProgram) {
  base_.writeData("FLIGHT.csv", {"JL0012,RJTTKLAX"});
  start();
  select(0);
  expectEndWithError("ERROR #9\n\nFLIGHT.csv, line 1");
}

TEST_F(AcarsDetails, AShortLineOfAnotherFlightDoesNoHarm) {
  base_.writeData("FLIGHT.csv", {"", "XX0001", "JL0012,RJTTKLAX,-"});
  base_.writeData("letter.csv", {"", "XX", "JL,JAL,Japan Airlines"});
  start();
  select(0);
  EXPECT_EQ(text("Text2(0)"), "RJTT");
  EXPECT_EQ(text("Text2(3)"), "JAL");
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

}  // namespace
}  // namespace vel
