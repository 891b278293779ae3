#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "velweb/velweb_service.h"

namespace vel {

/// How long a client may take, and how much it may send before its body.
struct ClientLimits {
  std::chrono::seconds header{10};   ///< from the connection to the header's end
  std::chrono::seconds request{60};  ///< from the connection to the answer's end
  std::chrono::seconds silence{10};  ///< between two bytes
  /// A body has to come with so many bytes a second on the average,
  std::size_t bodyBytesPerSecond = 1024;
  /// which is first looked at so long after its header.
  std::chrono::seconds bodyGrace{5};
  /// All that is kept of one request at a time: the header with its request
  /// line, or a piece of the body with its chunk's size line.
  std::size_t memory = std::size_t{32} << 10;
  std::size_t target = 8192;  ///< bytes of the request's path and query
  /// Connections at the same time; more wait to be taken.
  unsigned connections = 800;
};

/// The companion service on a socket. One thread waits for all clients, so that
/// a slow one holds nobody up; answers are made by a few others. One request is
/// answered on each connection, and what is over a limit is cut off.
class HttpServer {
 public:
  /// The service outlives the server.
  HttpServer(const VelwebService& service, const ClientLimits& limits);
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;
  ~HttpServer();

  /// Listens on the host's address and the port, any free one for 0, and
  /// begins to answer. The port, or -1.
  int listen(const std::string& host, int port);

 private:
  class Workers;
  class Daemon;

  std::unique_ptr<Daemon> daemon_;
};

}  // namespace vel
