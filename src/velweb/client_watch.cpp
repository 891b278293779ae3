#include "velweb/client_watch.h"

namespace vel {
namespace {

constexpr std::chrono::milliseconds kLook(100);

}  // namespace

ClientWatch::ClientWatch(const ClientLimits& limits)
    : limits_(limits), thread_([this] { watch(); }) {}

ClientWatch::~ClientWatch() {
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }
  woken_.notify_one();
  thread_.join();
}

void ClientWatch::began(Key client, sockets::Socket socket) {
  const std::lock_guard lock(mutex_);
  clients_.insert_or_assign(client, Client{socket, Clock::now()});
}

void ClientWatch::sentHeader(Key client) {
  const std::lock_guard lock(mutex_);
  const auto found = clients_.find(client);
  if (found == clients_.end()) return;
  found->second.stage = Stage::body;
  found->second.bodyStart = Clock::now();
}

void ClientWatch::sentBody(Key client, std::size_t bytes) {
  const std::lock_guard lock(mutex_);
  const auto found = clients_.find(client);
  if (found != clients_.end()) found->second.bodyBytes += bytes;
}

void ClientWatch::sentAll(Key client) {
  const std::lock_guard lock(mutex_);
  const auto found = clients_.find(client);
  if (found != clients_.end()) found->second.stage = Stage::answer;
}

void ClientWatch::ended(Key client) {
  const std::lock_guard lock(mutex_);
  clients_.erase(client);
}

bool ClientWatch::isOverLimit(const Client& client, Clock::time_point now) const {
  if (now - client.start > limits_.request) return true;
  if (client.stage == Stage::header) return now - client.start > limits_.header;
  if (client.stage != Stage::body || now - client.bodyStart < limits_.bodyGrace) return false;
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(now - client.bodyStart).count();
  return client.bodyBytes < static_cast<std::size_t>(seconds) * limits_.bodyBytesPerSecond;
}

void ClientWatch::watch() {
  std::unique_lock lock(mutex_);
  while (!closed_) {
    const Clock::time_point now = Clock::now();
    for (const auto& [key, client] : clients_) {
      // The connection's own thread sees the end and closes the socket; where
      // it is shut already, there is nothing to do.
      if (isOverLimit(client, now)) {
        sockets::shutDown(client.socket, true);
      } else if (client.stage != Stage::answer && sockets::hasEnded(client.socket)) {
        // The library misses an end that came with the last bytes before it
        // first looked; shutting what has ended makes it look again.
        sockets::shutDown(client.socket, false);
      }
    }
    woken_.wait_for(lock, kLook, [this] { return closed_; });
  }
}

}  // namespace vel
