#pragma once

#include <string>

/// The calls of sockets that differ between the platforms: one implementation
/// file each (sockets_posix.cpp, sockets_windows.cpp). A socket is a number as
/// the server's library has it.
namespace vel::sockets {

#ifdef _WIN64
using Socket = unsigned long long;
#else
using Socket = int;
#endif

/// What the system makes of no socket.
constexpr Socket kNone = static_cast<Socket>(-1);

/// A socket that listens on the host's address and the port, and that no call
/// waits for; kNone where it cannot be had, also when another one listens there.
[[nodiscard]] Socket listenOn(const std::string& host, int port);

/// The port on which a socket listens, or -1.
[[nodiscard]] int portOf(Socket socket);

void close(Socket socket);

/// Ends the reading and, with `writingToo`, the writing; the socket stays open.
void shutDown(Socket socket, bool writingToo);

/// True when the other side sends nothing more and all that it sent was read.
/// Never waits.
[[nodiscard]] bool hasEnded(Socket socket);

}  // namespace vel::sockets
