#include "velweb/velweb_options.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/version.h"

namespace vel {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

VelwebCommand commandOf(const std::vector<std::string>& words) { return velwebCommand(words); }

TEST(VelwebOptions, WithoutAnyTheDefaultsHold) {
  const VelwebCommand command = commandOf({});
  ASSERT_TRUE(command.options);
  EXPECT_EQ(command.options->host, "127.0.0.1");
  EXPECT_EQ(command.options->port, 0);
  EXPECT_EQ(command.options->base, std::nullopt);
  EXPECT_EQ(command.options->programFolder, std::nullopt);
  EXPECT_FALSE(command.options->parentPipe);
  EXPECT_EQ(command.options->timeoutSeconds, 60);
}

TEST(VelwebOptions, EachIsRead) {
  const VelwebCommand command =
      commandOf({"--host", "::1", "--port", "8080", "--base", "/a b", "--program-folder", "",
                 "--parent-pipe", "--timeout=3600"});
  ASSERT_TRUE(command.options) << command.message;
  EXPECT_EQ(command.options->host, "::1");
  EXPECT_EQ(command.options->port, 8080);
  EXPECT_EQ(command.options->base, "/a b");
  EXPECT_EQ(command.options->programFolder, "");
  EXPECT_TRUE(command.options->parentPipe);
  EXPECT_EQ(command.options->timeoutSeconds, 3600);
}

TEST(VelwebOptions, HelpAndVersionEndTheProgramWell) {
  const VelwebCommand help = commandOf({"--help"});
  EXPECT_FALSE(help.options);
  EXPECT_EQ(help.exitStatus, 0);
  EXPECT_EQ(help.message, "");
  for (const char* option :
       {"--host", "--port", "--base", "--program-folder", "--parent-pipe", "--timeout"}) {
    EXPECT_THAT(help.output, HasSubstr(option));
  }
  const VelwebCommand version = commandOf({"--version"});
  EXPECT_EQ(version.exitStatus, 0);
  EXPECT_EQ(version.output, std::string("velweb ") + kVersion + "\n");
}

TEST(VelwebOptions, WhatIsWrongIsSaid) {
  for (const auto& words : std::vector<std::vector<std::string>>{{"--port", "65536"},
                                                                 {"--port", "-1"},
                                                                 {"--port"},
                                                                 {"--timeout", "3601"},
                                                                 {"--host", ""},
                                                                 {"--port", "1", "--port", "2"},
                                                                 {"--parent-pipes"},
                                                                 {"stray"}}) {
    const VelwebCommand command = commandOf(words);
    EXPECT_FALSE(command.options) << words[0];
    EXPECT_EQ(command.exitStatus, 2) << words[0];
    EXPECT_EQ(command.output, "") << words[0];
    EXPECT_THAT(command.message, StartsWith("velweb: ")) << words[0];
  }
}

}  // namespace
}  // namespace vel
