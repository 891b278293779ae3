#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "core/file.h"
#include "core/folders.h"
#include "core/platform.h"
#include "core/program_files.h"
#include "core/services.h"
#include "velweb/http_server.h"
#include "velweb/process.h"
#include "velweb/velweb_options.h"
#include "velweb/velweb_service.h"

namespace vel {
namespace {

Folders foldersOf(const VelwebOptions& options) {
  // Only the names below the base folder matter where it is given alone.
  const auto inBase = [&] { return Folders::of(toPath(*options.base) / "vel"); };
  if (!options.programFolder) {
    return options.base ? inBase() : Folders::of(platform::executableFolder());
  }
  Folders folders = Folders::of(toPath(*options.programFolder));
  if (options.base) {
    std::filesystem::path program = std::move(folders.program);
    folders = inBase();
    folders.program = std::move(program);
  }
  return folders;
}

int fail(const std::string& message) {
  static_cast<void>(std::fprintf(stderr, "velweb: %s\n", message.c_str()));
  return EXIT_FAILURE;
}

int run(const VelwebOptions& options) {
  const Folders folders = foldersOf(options);
  std::error_code failure;
  if (!std::filesystem::is_directory(folders.base, failure)) {
    return fail("no base folder " + toUtf8(folders.base));
  }
  const Services services = Services::load(servicesFile(folders));
  const Result<Encoding> encoding = services.textEncoding();
  if (!encoding) return fail(encoding.error().text());
  const VelwebService service(folders, encoding->name(), options.host);
  ClientLimits limits;
  limits.request = std::chrono::seconds(options.timeoutSeconds);
  auto server = std::make_unique<HttpServer>(service, limits);
  const int port = server->listen(options.host, options.port);
  if (port < 0) {
    return fail("cannot listen on " + options.host + " port " + std::to_string(options.port));
  }
  const bool isVersion6 = options.host.find(':') != std::string::npos;
  if (std::printf(isVersion6 ? "http://[%s]:%d\n" : "http://%s:%d\n", options.host.c_str(), port) <
          0 ||
      std::fflush(stdout) != 0) {
    return EXIT_FAILURE;
  }
  // Wine's server goes on serving the sockets of a process that ended while it
  // waited for them, and takes a whole processor for it: they are closed first.
  if (options.parentPipe) endWithParent([&server] { server.reset(); });
  waitForever();
}

}  // namespace
}  // namespace vel

int main(int count, char** arguments) {
  const vel::VelwebCommand command = vel::velwebCommand(vel::processArguments(count, arguments));
  if (std::fputs(command.output.c_str(), stdout) < 0) return EXIT_FAILURE;
  static_cast<void>(std::fputs(command.message.c_str(), stderr));
  if (!command.options) return command.exitStatus;
  try {
    return vel::run(*command.options);
  } catch (const std::exception& error) {
    return vel::fail(error.what());
  }
}
