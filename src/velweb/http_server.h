#pragma once

#include <chrono>
#include <cstddef>

#include <httplib.h>

namespace vel {

/// How long a client may take, and how much it may send before its body.
struct ClientLimits {
  std::chrono::seconds header{10};   ///< from the connection to the header's end
  std::chrono::seconds request{60};  ///< from the connection to the answer's end
  std::chrono::seconds silence{10};  ///< between two bytes
  std::size_t headerBytes = std::size_t{32} << 10;
};

/// The library's server, made fit for clients that are slow, endless or gone:
/// one request for each connection, all of it within the limits. The library
/// alone limits neither the length of a header nor the time of a request.
class BoundedServer : public httplib::Server {
 public:
  /// So many connections are served at the same time; the others wait.
  static constexpr std::size_t kThreads = 80;

  explicit BoundedServer(const ClientLimits& limits);

  /// Binds to the host and the port, any free one for 0. The port, or -1.
  int bind(const std::string& host, int port);

 private:
  bool process_and_close_socket(socket_t socket) override;

  ClientLimits limits_;
};

}  // namespace vel
