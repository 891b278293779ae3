#include <array>
#include <memory>

#include <winsock2.h>
#include <ws2tcpip.h>

#include "velweb/sockets.h"

namespace vel::sockets {
namespace {

// The sockets of a process have to be begun once before the first of them.
bool begun() {
  static const bool isBegun = [] {
    WSADATA data{};
    return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
  }();
  return isBegun;
}

bool listensOn(Socket socket, const addrinfo& address) {
  constexpr int kBacklog = 256;
  // By default another program may take a port away that this one listens on.
  const BOOL on = TRUE;
  u_long nonBlocking = 1;
  return ::setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&on),
                      sizeof on) == 0 &&
         ::ioctlsocket(socket, static_cast<long>(FIONBIO), &nonBlocking) == 0 &&
         ::bind(socket, address.ai_addr, static_cast<int>(address.ai_addrlen)) == 0 &&
         ::listen(socket, kBacklog) == 0;
}

}  // namespace

Socket listenOn(const std::string& host, int port) {
  if (!begun()) return kNone;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) return kNone;
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, ::freeaddrinfo);
  for (const addrinfo* address = found; address != nullptr; address = address->ai_next) {
    // Not to be inherited: a program that is started would hold the port.
    const Socket socket = ::WSASocketW(address->ai_family, SOCK_STREAM, 0, nullptr, 0,
                                       WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
    if (socket == kNone) continue;
    if (listensOn(socket, *address)) return socket;
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
                    static_cast<DWORD>(port.size()), NI_NUMERICSERV) != 0) {
    return -1;
  }
  return std::stoi(port.data());
}

void close(Socket socket) { static_cast<void>(::closesocket(socket)); }

void shutDown(Socket socket, bool writingToo) {
  static_cast<void>(::shutdown(socket, writingToo ? SD_BOTH : SD_RECEIVE));
}

bool hasEnded(Socket socket) {
  // The server's library has made the socket one that no call waits for.
  char next = 0;
  return ::recv(socket, &next, 1, MSG_PEEK) == 0;
}

}  // namespace vel::sockets
