#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "velweb/sockets.h"

namespace vel::test {

/// What a test waits for at most, on however slow a machine, where only coming
/// at all counts.
constexpr std::chrono::seconds kLong(60);

/// The built velweb, started on a free port of 127.0.0.1 and ended with the
/// object. One implementation for each platform.
class VelwebProcess {
 public:
  /// Starts it, or a program in its place, with --parent-pipe and these options
  /// besides.
  explicit VelwebProcess(const std::vector<std::string>& options,
                         const std::string& program = VEL_VELWEB);
  VelwebProcess(const VelwebProcess&) = delete;
  VelwebProcess& operator=(const VelwebProcess&) = delete;
  ~VelwebProcess();

  /// The line that it printed, without its line end.
  [[nodiscard]] const std::string& line() const { return line_; }
  /// The port in that line; 0 when there is none.
  [[nodiscard]] int port() const { return port_; }

  /// The most memory that it had at once, in bytes.
  [[nodiscard]] std::size_t mostMemory() const;

  /// The process as the system has it: its number, or its handle.
  [[nodiscard]] std::intptr_t process() const { return process_; }

  /// How many files and sockets it has open.
  [[nodiscard]] std::size_t openFiles() const;

  /// The end of the pipe that a parent holds.
  [[nodiscard]] std::intptr_t pipe() const { return pipe_; }

  /// Closes the pipe that a parent holds.
  void closePipe();
  /// True when it ended within the time; status() is then its exit status.
  bool endsWithin(std::chrono::milliseconds most);
  [[nodiscard]] int status() const { return status_; }

 private:
  // As the system has them, -1 for none.
  std::intptr_t process_ = -1;
  std::intptr_t pipe_ = -1;
  std::string line_;
  int port_ = 0;
  int status_ = -1;
  bool ended_ = false;
};

/// A connection to a port of 127.0.0.1, byte by byte.
class RawClient {
 public:
  explicit RawClient(int port);
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;
  ~RawClient();

  [[nodiscard]] bool connected() const { return connected_; }
  /// False when the other side no longer takes the bytes.
  bool send(std::string_view bytes);
  void endSending();
  /// True once the other side has closed, or sent something.
  bool isClosedWithin(std::chrono::milliseconds most);
  /// Everything until the other side closes, at most so long.
  std::string receiveAll(std::chrono::milliseconds most);

 private:
  sockets::Socket socket_ = sockets::kNone;
  bool connected_ = false;
};

}  // namespace vel::test
