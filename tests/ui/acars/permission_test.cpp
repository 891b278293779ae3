#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/support/unprivileged_user.h"
#include "tests/ui/support/acars_window.h"

namespace vel {
namespace {

using testing::ElementsAre;

class NoPermission : private test::UnprivilegedUser, public test::AcarsWindowTest {};

TEST_F(NoPermission, AFolderWithoutWritePermissionEndsTheProgramWithTheTableAsBefore) {
  start();
  select(0);
  const auto table = base_.folders.data / "aircraft.csv";
  const std::string before = test::readBytes(table);
  ASSERT_EQ(chmod(base_.folders.data.c_str(), 0555), 0);
  test::typeOver(box("Text1"), "B748");
  click("Command1");
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #70"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(test::readBytes(table), before);
  ASSERT_EQ(chmod(base_.folders.data.c_str(), 0755), 0);
}

}  // namespace
}  // namespace vel
