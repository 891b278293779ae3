#include "velweb/velweb_options.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include <CLI/CLI.hpp>

namespace vel {
namespace {

constexpr int kWrongOptions = 2;
constexpr int kLongestTimeout = 3600;

std::string versionText() {
  return "velweb " + std::to_string(VEL_VERSION_MAJOR) + "." + std::to_string(VEL_VERSION_MINOR) +
         "." + std::to_string(VEL_VERSION_REVISION);
}

}  // namespace

VelwebCommand velwebCommand(std::vector<std::string> arguments) {
  VelwebOptions options;
  CLI::App app("The companion service of VEL: flight pages and KML conversion.", "velweb");
  app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::Throw);
  app.set_help_flag("--help", "print this and end");
  app.set_version_flag("--version", versionText(), "print the version and end");
  app.add_option("--host", options.host, "address to listen on")
      ->capture_default_str()
      ->check([](const std::string& host) {
        return host.empty() ? std::string("an address is needed") : std::string();
      });
  app.add_option("--port", options.port, "port to listen on; 0 takes any free one")
      ->capture_default_str()
      ->check(CLI::Range(0, 65535));
  app.add_option("--program-folder", options.programFolder,
                 "folder of vel and services.ini (that of velweb)");
  app.add_option("--base", options.base, "folder of data and logs (the program folder's parent)");
  app.add_flag("--parent-pipe", options.parentPipe, "end when standard input ends");
  app.add_option("--timeout", options.timeoutSeconds, "longest time for one request, in seconds")
      ->capture_default_str()
      ->check(CLI::Range(1, kLongestTimeout));
  app.footer("The address is printed as one line on standard output.");
  VelwebCommand command;
  try {
    // The library takes them from the end.
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
    command.options = options;
  } catch (const CLI::Success& ending) {
    std::ostringstream output;
    std::ostringstream message;
    command.exitStatus = app.exit(ending, output, message);
    command.output = output.str();
  } catch (const CLI::ParseError& error) {
    command.exitStatus = kWrongOptions;
    command.message = std::string("velweb: ") + error.what() + "; see velweb --help\n";
  }
  return command;
}

}  // namespace vel
