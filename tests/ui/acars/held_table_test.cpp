#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/support/unprivileged_user.h"
#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/rewrite_watch.h"

namespace vel {
namespace {

using testing::ElementsAre;

constexpr const char* kHeld =
    "Can't write file. Using Excel to edit CSV? If not edited by Excel, close it to continue."
    "　ファイルの書込みができません。エクセルでCSVファイルを開いていませんか？。"
    "エクセル側で書き換えを行っていなければエクセルを閉じてから再試行を行うと継続できます。";

/// A folder that refuses its renames stands for a table that another program
/// holds open.
class HeldTable : private test::UnprivilegedUser, public test::AcarsWindowTest {
 protected:
  void SetUp() override {
    start();
    select(0);
  }
  void TearDown() override { hold(false); }

  void hold(bool held) const {
    ASSERT_EQ(chmod(base_.folders.data.c_str(), held ? 0555 : 0755), 0);
  }
  // The table is held from when the new one is written; the renames follow.
  void clickAndHold(const char* buttonName) {
    test::watchRewrite(
        jobs(), [this, buttonName] { clickOnly(buttonName); },
        [this](int moment) {
          if (moment == 2) hold(true);
        });
  }
  [[nodiscard]] std::string bytes(const char* name) const {
    return test::readBytes(base_.folders.data / name);
  }
};

TEST_F(HeldTable, RetryCompletesTheEditOnceTheTableIsLetGo) {
  const std::string before = bytes("aircraft.csv");
  int asked = 0;
  desktop_.onRetry = [&] {
    EXPECT_EQ(bytes("aircraft.csv"), before);
    EXPECT_TRUE(find<QLabel>("Label7").isVisible());
    EXPECT_EQ(column(kListEquipment)[0], "B744");
    if (++asked == 2) hold(false);
    return true;
  };
  test::typeOver(box("Text1"), "B748");
  clickAndHold("Command1");
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
  clickAndHold("Command1");
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
  clickAndHold("Command2");
  EXPECT_THAT(desktop_.messages, ElementsAre(kHeld));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(bytes("FLIGHT.csv"), before);
  EXPECT_EQ(line(0), "0001|JL0012|O|JA8089|RJTT|KLAX|B744|Log remark|09:05:00");
}

TEST_F(HeldTable, RetryCompletesAnAirline) {
  desktop_.onRetry = [&] {
    hold(false);
    return true;
  };
  test::typeOver(box("Text2(4)"), "Japan");
  clickAndHold("Command6");
  EXPECT_THAT(desktop_.messages, ElementsAre(kHeld));
  EXPECT_EQ(bytes("letter.csv"),
            "JL,JAL,Japan\r\nNH,ANA,All Nippon Airways\r\nBA,BAW,British Airways\r\n");
}

TEST_F(HeldTable, CancelOfAnAirportLeavesItsTableAsBefore) {
  const std::string before = bytes("airport.csv");
  test::typeKeys(box("Text2(5)"), "RJTT");
  test::typeOver(box("Text2(6)"), "Haneda HND");
  clickAndHold("Command8");
  EXPECT_THAT(desktop_.messages, ElementsAre(kHeld));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(bytes("airport.csv"), before);
}

TEST_F(HeldTable, AFolderWithoutWritePermissionEndsTheProgramWithTheTableAsBefore) {
  const std::string before = bytes("aircraft.csv");
  hold(true);
  test::typeOver(box("Text1"), "B748");
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #70"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(bytes("aircraft.csv"), before);
}

}  // namespace
}  // namespace vel
