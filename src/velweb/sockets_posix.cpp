#include <array>
#include <memory>

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include "velweb/sockets.h"

namespace vel::sockets {

Socket listenOn(const std::string& host, int port) {
  constexpr int kBacklog = 256;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) return kNone;
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, ::freeaddrinfo);
  for (const addrinfo* address = found; address != nullptr; address = address->ai_next) {
    const int socket = ::socket(address->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0) continue;
    const int on = 1;
    if (::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) == 0 &&
        ::bind(socket, address->ai_addr, address->ai_addrlen) == 0 &&
        ::listen(socket, kBacklog) == 0) {
      return socket;
    }
    close(socket);
  }
  return kNone;
}

int portOf(Socket socket) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  std::array<char, NI_MAXSERV> port{};
  if (::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
      ::getnameinfo(reinterpret_cast<const sockaddr*>(&address), size, nullptr, 0, port.data(),
                    port.size(), NI_NUMERICSERV) != 0) {
    return -1;
  }
  return std::stoi(port.data());
}

void close(Socket socket) { static_cast<void>(::close(socket)); }

void shutDown(Socket socket, bool writingToo) {
  static_cast<void>(::shutdown(socket, writingToo ? SHUT_RDWR : SHUT_RD));
}

bool hasEnded(Socket socket) {
  char next = 0;
  return ::recv(socket, &next, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

}  // namespace vel::sockets
