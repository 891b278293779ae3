#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "core/file.h"
#include "core/folders.h"
#include "core/platform.h"
#include "core/services.h"
#include "velweb/http_server.h"
#include "velweb/velweb_service.h"

namespace vel {
namespace {

constexpr const char* kUsage =
    "Usage: velweb [--host H] [--port N] [--base DIR] [--program-folder DIR]\n"
    "              [--parent-pipe] [--timeout SECONDS]\n"
    "The companion service of VEL: flight pages and KML conversion.\n"
    "\n"
    "  --host H              address to listen on (127.0.0.1)\n"
    "  --port N              port to listen on (0: any free one)\n"
    "  --program-folder DIR  folder of vel and services.ini (that of velweb)\n"
    "  --base DIR            folder of data and logs (the program folder's parent)\n"
    "  --parent-pipe         end when standard input ends\n"
    "  --timeout SECONDS     longest time for one request, 1 to 3600 (60)\n"
    "  --help, --version     print this, or the version, and end\n"
    "\n"
    "The address is printed as one line on standard output.\n";

struct Options {
  std::string host = "127.0.0.1";
  int port = 0;
  std::optional<std::string> base;
  std::optional<std::string> programFolder;
  bool parentPipe = false;
  int timeoutSeconds = 60;
};

std::optional<int> numberWithin(std::string_view text, int least, int most) {
  int number = 0;
  const auto end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || number < least || number > most) {
    return std::nullopt;
  }
  return number;
}

// The options, or nothing for a command line of another form.
std::optional<Options> parseOptions(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string_view option = arguments[i];
    if (option == "--parent-pipe") {
      options.parentPipe = true;
      continue;
    }
    if (i + 1 == count) return std::nullopt;
    const std::string value = arguments[++i];
    if (option == "--host" && !value.empty()) {
      options.host = value;
    } else if (option == "--base") {
      options.base = value;
    } else if (option == "--program-folder") {
      options.programFolder = value;
    } else if (option == "--port") {
      const auto port = numberWithin(value, 0, 65535);
      if (!port) return std::nullopt;
      options.port = *port;
    } else if (option == "--timeout") {
      const auto seconds = numberWithin(value, 1, 3600);
      if (!seconds) return std::nullopt;
      options.timeoutSeconds = *seconds;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

Folders foldersOf(const Options& options) {
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

void send(httplib::Response& response, const WebResponse& answer) {
  response.status = answer.status;
  if (!answer.allow.empty()) response.set_header("Allow", answer.allow);
  response.set_content(answer.body, answer.contentType);
}

// More than one Host, as none, is no name that could be trusted.
std::string hostOf(const httplib::Request& request) {
  return request.get_header_value_count("Host") == 1 ? request.get_header_value("Host") : "";
}

void setUp(BoundedServer& server, const VelwebService& service) {
  server.set_payload_max_length(kLargestPost);
  server.set_default_headers({
      {"Content-Security-Policy",
       "default-src 'none'; style-src 'unsafe-inline'; form-action 'self'; "
       "base-uri 'none'; frame-ancestors 'none'"},
      {"X-Content-Type-Options", "nosniff"},
      {"Referrer-Policy", "no-referrer"},
      {"Cache-Control", "no-store"},
  });
  server.set_pre_routing_handler(
      [&service](const httplib::Request& request, httplib::Response& response) {
        auto answer = service.answer({request.method, request.target, hostOf(request)});
        if (!answer && request.is_multipart_form_data()) answer = plainResponse(400);
        if (!answer) return httplib::Server::HandlerResponse::Unhandled;
        send(response, *answer);
        return httplib::Server::HandlerResponse::Handled;
      });
  server.Post(std::string(kConversionPath),
              [&service](const httplib::Request&, httplib::Response& response,
                         const httplib::ContentReader& readContent) {
                Conversion conversion = service.startConversion();
                const bool whole = readContent([&](const char* data, std::size_t size) {
                  return conversion.add({data, size});
                });
                // 413 comes from the library for a length told beforehand.
                if (!whole && response.status == 413) {
                  send(response, plainResponse(413));
                  return;
                }
                WebResponse answer = conversion.finish();
                if (!whole && answer.status == 200) answer = plainResponse(400);
                send(response, answer);
              });
  server.set_exception_handler(
      [](const httplib::Request&, httplib::Response& response, const std::exception_ptr&) {
        send(response, plainResponse(500));
      });
}

// Ends the process with the program that started it: the system closes the
// other end of the pipe even when that program is killed.
void endWithParent() {
  std::thread([] {
    while (std::fgetc(stdin) != EOF) {
    }
    std::_Exit(0);
  }).detach();
}

int run(const Options& options) {
  const Folders folders = foldersOf(options);
  const Services services = Services::load(fileIn(folders.program, "services.ini"));
  const VelwebService service(folders, services.encoding, isLoopbackAddress(options.host));
  ClientLimits limits;
  limits.request = std::chrono::seconds(options.timeoutSeconds);
  BoundedServer server(limits);
  setUp(server, service);
  const int port = server.bind(options.host, options.port);
  if (port < 0) {
    static_cast<void>(std::fprintf(stderr, "velweb: cannot listen on %s port %d\n",
                                   options.host.c_str(), options.port));
    return EXIT_FAILURE;
  }
  const bool isVersion6 = options.host.find(':') != std::string::npos;
  if (std::printf(isVersion6 ? "http://[%s]:%d\n" : "http://%s:%d\n", options.host.c_str(), port) <
          0 ||
      std::fflush(stdout) != 0) {
    return EXIT_FAILURE;
  }
  if (options.parentPipe) endWithParent();
  return server.listen_after_bind() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace vel

int main(int count, char** arguments) {
  const std::string_view first = count > 1 ? arguments[1] : "";
  if (first == "--help") return std::fputs(vel::kUsage, stdout) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
  if (first == "--version") {
    return std::printf("velweb %d.%d.%d\n", VEL_VERSION_MAJOR, VEL_VERSION_MINOR,
                       VEL_VERSION_REVISION) < 0
               ? EXIT_FAILURE
               : EXIT_SUCCESS;
  }
  const auto options = vel::parseOptions(count, arguments);
  if (!options) {
    static_cast<void>(std::fputs("velweb: wrong options; see velweb --help\n", stderr));
    return 2;
  }
  return vel::run(*options);
}
