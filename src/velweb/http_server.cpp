#include "velweb/http_server.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vel {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A client's connection with its limits. What is over a limit looks to the
// library like a connection that broke.
class BoundedStream : public httplib::Stream {
 public:
  BoundedStream(socket_t socket, const ClientLimits& limits)
      : socket_(socket), limits_(limits), start_(Clock::now()) {}

  [[nodiscard]] bool is_readable() const override {
    return begin_ < end_ || wait(POLLIN, milliseconds(0));
  }
  [[nodiscard]] bool is_writable() const override { return wait(POLLOUT, timeLeft()); }

  ssize_t read(char* data, std::size_t size) override {
    if (inHeader_ && headerBytes_ >= limits_.headerBytes) return -1;
    if (begin_ == end_) {
      if (!wait(POLLIN, timeLeft())) return -1;
      const ssize_t received = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
      if (received <= 0) return received;
      begin_ = 0;
      end_ = static_cast<std::size_t>(received);
    }
    // The library reads a header byte by byte, so that its end is seen here.
    const std::size_t count = inHeader_ ? 1 : std::min(size, end_ - begin_);
    std::memcpy(data, buffer_.data() + begin_, count);
    begin_ += count;
    if (inHeader_) watchHeader(*data);
    return static_cast<ssize_t>(count);
  }

  ssize_t write(const char* data, std::size_t size) override {
    if (!wait(POLLOUT, timeLeft())) return -1;
    return ::send(socket_, data, size, MSG_NOSIGNAL);
  }

  void get_remote_ip_and_port(std::string& ip, int& port) const override {
    ip.clear();
    port = 0;
  }
  void get_local_ip_and_port(std::string& ip, int& port) const override {
    ip.clear();
    port = 0;
  }
  [[nodiscard]] socket_t socket() const override { return socket_; }

  // Tells the client that the answer is complete and takes what it still
  // sends: a close with unread bytes would throw the answer away.
  void endGently() {
    constexpr std::size_t kMostDrained = std::size_t{256} << 20;
    constexpr milliseconds kLinger(1000);
    if (::shutdown(socket_, SHUT_WR) != 0) return;
    std::size_t drained = 0;
    while (drained < kMostDrained && wait(POLLIN, std::min(timeLeft(), kLinger))) {
      const ssize_t received = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
      if (received <= 0) return;
      drained += static_cast<std::size_t>(received);
    }
  }

 private:
  void watchHeader(char byte) {
    ++headerBytes_;
    if (byte == '\n') {
      inHeader_ = !lineIsEmpty_;
      lineIsEmpty_ = true;
    } else if (byte != '\r') {
      lineIsEmpty_ = false;
    }
  }

  [[nodiscard]] milliseconds timeLeft() const {
    const auto end =
        start_ + (inHeader_ ? std::min(limits_.header, limits_.request) : limits_.request);
    const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
    return std::clamp<milliseconds>(left, milliseconds(0), limits_.silence);
  }

  [[nodiscard]] bool wait(short event, milliseconds most) const {
    pollfd watched{socket_, event, 0};
    const auto end = Clock::now() + most;
    while (true) {
      const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
      const int ready =
          ::poll(&watched, 1, static_cast<int>(std::max<milliseconds::rep>(0, left.count())));
      if (ready >= 0 || errno != EINTR) return ready > 0;
    }
  }

  socket_t socket_;
  const ClientLimits& limits_;
  Clock::time_point start_;
  std::array<char, 16384> buffer_{};
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool inHeader_ = true;
  bool lineIsEmpty_ = false;
  std::size_t headerBytes_ = 0;
};

}  // namespace

BoundedServer::BoundedServer(const ClientLimits& limits) : limits_(limits) {
  new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  // The library would let two servers share one port.
  set_socket_options([](socket_t socket) {
    const int on = 1;
    static_cast<void>(::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on));
  });
}

int BoundedServer::bind(const std::string& host, int port) {
  constexpr int kBacklog = 256;
  if (port == 0) {
    port = bind_to_any_port(host);
  } else if (!bind_to_port(host, port)) {
    port = -1;
  }
  // The library's own backlog is too short for many clients at the same time.
  if (port > 0 && ::listen(svr_sock_, kBacklog) != 0) return -1;
  return port;
}

bool BoundedServer::process_and_close_socket(socket_t socket) {
  BoundedStream stream(socket, limits_);
  bool closed = false;
  // A page is small; parts of it are not worth their cost.
  const auto withoutRanges = [](httplib::Request& request) { request.ranges.clear(); };
  const bool answered = process_request(stream, true, closed, withoutRanges);
  stream.endGently();
  // Nothing can be done about a failing close of a connection that is over.
  static_cast<void>(::close(socket));
  return answered;
}

}  // namespace vel
