#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vel {

/// What the command line of velweb asks for.
struct VelwebOptions {
  std::string host = "127.0.0.1";
  int port = 0;
  std::optional<std::string> base = {};
  std::optional<std::string> programFolder = {};
  bool parentPipe = false;
  int timeoutSeconds = 60;
};

/// The options, or how the program ends at once.
struct VelwebCommand {
  std::optional<VelwebOptions> options = {};
  int exitStatus = 0;        ///< 0 after --help and --version, 2 for wrong options
  std::string output = {};   ///< for standard output
  std::string message = {};  ///< for standard error
};

/// Takes the arguments in UTF-8, without the program's own name.
[[nodiscard]] VelwebCommand velwebCommand(std::vector<std::string> arguments);

}  // namespace vel
