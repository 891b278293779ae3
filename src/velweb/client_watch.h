#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <thread>

#include "velweb/http_server.h"
#include "velweb/sockets.h"

namespace vel {

/// Looks after the time that clients take and shuts the sockets of those that
/// are over a limit. Used by several threads.
class ClientWatch {
 public:
  /// Whatever stands for one connection.
  using Key = const void*;

  explicit ClientWatch(const ClientLimits& limits);
  ClientWatch(const ClientWatch&) = delete;
  ClientWatch& operator=(const ClientWatch&) = delete;
  ~ClientWatch();

  void began(Key client, sockets::Socket socket);
  void sentHeader(Key client);
  void sentBody(Key client, std::size_t bytes);
  void sentAll(Key client);
  /// To be called before the socket is closed: its number may be another one's
  /// afterwards.
  void ended(Key client);

 private:
  using Clock = std::chrono::steady_clock;
  enum class Stage { header, body, answer };
  struct Client {
    sockets::Socket socket;
    Clock::time_point start;
    Stage stage = Stage::header;
    Clock::time_point bodyStart = {};
    std::size_t bodyBytes = 0;
  };

  [[nodiscard]] bool isOverLimit(const Client& client, Clock::time_point now) const;
  void watch();

  ClientLimits limits_;
  std::mutex mutex_;
  // A flag and no stop token: to take a token's callback back is a wait from which
  // GCC's library for Windows may wake nobody.
  std::condition_variable woken_;
  bool closed_ = false;
  std::map<Key, Client> clients_;
  std::thread thread_;
};

}  // namespace vel
