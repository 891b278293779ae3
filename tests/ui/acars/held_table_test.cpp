#include <QLabel>
#include <filesystem>
#include <memory>

#include <gmock/gmock.h>

#include "tests/support/system_files.h"
#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/rewrite_watch.h"

namespace vel {
namespace {

using testing::ElementsAre;

constexpr const char* kHeld =
    "Can't write file. Using Excel to edit CSV? If not edited by Excel, close it to continue."
    "　ファイルの書込みができません。エクセルでCSVファイルを開いていませんか？。"
    "エクセル側で書き換えを行っていなければエクセルを閉じてから再試行を行うと継続できます。";

/// A table that another program holds open refuses its renames.
class HeldTable : public test::AcarsWindowTest {
 protected:
  void SetUp() override {
    start();
    select(0);
  }

  void hold(const char* table) {
    held_ = std::make_unique<test::RefusedFile>(base_.folders.data / table,
                                                test::RefusedFile::Refuses::renaming);
  }
  void letGo() { held_.reset(); }
  // The table is held from when the new one is written; the renames follow.
  void clickAndHold(const char* buttonName, const char* table) {
    test::watchRewrite(
        jobs(), [this, buttonName] { clickOnly(buttonName); },
        [this, table](int moment) {
          if (moment == 2) hold(table);
        });
  }
  [[nodiscard]] std::string bytes(const char* name) const {
    return test::readBytes(base_.folders.data / name);
  }

 private:
  std::unique_ptr<test::RefusedFile> held_;
};

TEST_F(HeldTable, RetryCompletesTheEditOnceTheTableIsLetGo) {
  const std::string before = bytes("aircraft.csv");
  int asked = 0;
  desktop_.onRetry = [&] {
    EXPECT_EQ(bytes("aircraft.csv"), before);
    EXPECT_TRUE(find<QLabel>("Label7").isVisible());
    EXPECT_EQ(column(kListEquipment)[0], "B744");
    if (++asked == 2) letGo();
    return true;
  };
  test::typeOver(box("Text1"), "B748");
  clickAndHold("Command1", "aircraft.csv");
  EXPECT_THAT(desktop_.messages, ElementsAre(kHeld, kHeld));
  EXPECT_FALSE(desktop_.ended);
  EXPECT_EQ(bytes("aircraft.csv"), "JA8089,B748\r\nJA731A,B773\r\nG-CIVE,B744\r\n");
  EXPECT_EQ(bytes("aircraft.bak"), before);
  EXPECT_EQ(column(kListEquipment)[0], "B748");
  EXPECT_TRUE(find<QLabel>("Label6").isVisible());
}

TEST_F(HeldTable, CancelEndsTheProgramWithEveryByteOfTheTableAsBefore) {
  const std::string before = bytes("aircraft.csv");
  test::typeOver(box("Text1"), "B748");
  clickAndHold("Command1", "aircraft.csv");
  EXPECT_THAT(desktop_.messages, ElementsAre(kHeld));
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(bytes("aircraft.csv"), before);
  EXPECT_EQ(bytes("aircraft.$$$"), "JA8089,B748\r\nJA731A,B773\r\nG-CIVE,B744\r\n");
  EXPECT_FALSE(fileExists(base_.folders.data / "aircraft.bak"));
  EXPECT_EQ(column(kListEquipment)[0], "B744");
  EXPECT_FALSE(find<QLabel>("Label6").isVisible());
  window().close();
  EXPECT_FALSE(fileExists(base_.folders.program / "vel.env"));
}

TEST_F(HeldTable, CancelOfAFlightLeavesTheListAndTheTableAsBefore) {
  const std::string before = bytes("FLIGHT.csv");
  test::typeOver(box("Text2(1)"), "KSFO");
  clickAndHold("Command2", "FLIGHT.csv");
  EXPECT_THAT(desktop_.messages, ElementsAre(kHeld));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(bytes("FLIGHT.csv"), before);
  EXPECT_EQ(line(0), "0001|JL0012|O|JA8089|RJTT|KLAX|B744|Log remark|09:05:00");
}

TEST_F(HeldTable, RetryCompletesAnAirline) {
  desktop_.onRetry = [&] {
    letGo();
    return true;
  };
  test::typeOver(box("Text2(4)"), "Japan");
  clickAndHold("Command6", "letter.csv");
  EXPECT_THAT(desktop_.messages, ElementsAre(kHeld));
  EXPECT_EQ(bytes("letter.csv"),
            "JL,JAL,Japan\r\nNH,ANA,All Nippon Airways\r\nBA,BAW,British Airways\r\n");
}

TEST_F(HeldTable, CancelOfAnAirportLeavesItsTableAsBefore) {
  const std::string before = bytes("airport.csv");
  test::typeKeys(box("Text2(5)"), "RJTT");
  test::typeOver(box("Text2(6)"), "Haneda HND");
  clickAndHold("Command8", "airport.csv");
  EXPECT_THAT(desktop_.messages, ElementsAre(kHeld));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(bytes("airport.csv"), before);
}

}  // namespace
}  // namespace vel
