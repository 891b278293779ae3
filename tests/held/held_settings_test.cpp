// Settings that another program holds.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/settings.h"
#include "tests/held/file_holder.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::FileHolder;
using test::readBytes;
using test::RecordingDesktop;
using test::TemporaryFolder;
using test::writeBytes;
using testing::ElementsAre;

TEST(HeldSettings, StayAsTheyWereWhenTheyCannotBeReplaced) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "\"env_Config\",9\r\n");
  FileHolder editor(folder / "vel.env", FileHolder::Shares::reading);
  ASSERT_TRUE(editor.isHolding());
  const Status saved = SaveEnv(folder / "vel.env", Encoding::codePage932(), Settings());
  ASSERT_FALSE(saved.ok());
  EXPECT_EQ(saved.error().text(), "ERROR #75");
  ASSERT_TRUE(editor.release());
  EXPECT_EQ(readBytes(folder / "vel.env"), "\"env_Config\",9\r\n");
  EXPECT_THAT(listFolder(folder.path()).value(), ElementsAre("vel.env"));
}

TEST(HeldSettings, ThatCannotBeReadLeaveTheDefaultsAndAreNotOverwritten) {
  const TemporaryFolder folder;
  writeBytes(folder / "vel.env", "\"env_Config\",9\r\n");
  FileHolder editor(folder / "vel.env", FileHolder::Shares::nothing);
  ASSERT_TRUE(editor.isHolding());
  RecordingDesktop desktop;
  Settings settings;
  const Encoding encoding = Encoding::codePage932();
  EXPECT_FALSE(LoadEnv(desktop, folder / "vel.env", encoding, {}, settings).ok());
  EXPECT_EQ(settings.env_Config, 0);
  EXPECT_EQ(settings.env_Form3_Width, 9975);
  ASSERT_TRUE(editor.release());
  EXPECT_FALSE(SaveEnv(folder / "vel.env", encoding, settings).ok());
  EXPECT_EQ(readBytes(folder / "vel.env"), "\"env_Config\",9\r\n");
}

}  // namespace
}  // namespace vel
