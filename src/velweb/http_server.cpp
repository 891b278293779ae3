#include "velweb/http_server.h"

#include <array>
#include <charconv>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <microhttpd.h>

#include "core/file.h"
#include "velweb/client_watch.h"
#include "velweb/sockets.h"

namespace vel {
namespace {

// What a client may go on sending behind a refused or too large body, so that
// it comes to read the answer.
constexpr std::size_t kMostIgnored = std::size_t{256} << 20;
constexpr std::size_t kWorkers = 8;

constexpr std::array<std::pair<const char*, const char*>, 5> kHeaders = {{
    {MHD_HTTP_HEADER_CONTENT_SECURITY_POLICY,
     "default-src 'none'; style-src 'unsafe-inline'; form-action 'self'; "
     "base-uri 'none'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"Referrer-Policy", "no-referrer"},
    {MHD_HTTP_HEADER_CACHE_CONTROL, "no-store"},
    {MHD_HTTP_HEADER_CONNECTION, "close"},
}};

// One request and what became of it.
struct Exchange {
  std::string target;
  WebRequest request;
  std::optional<WebResponse> answer;
  std::optional<Conversion> conversion;
  std::size_t ignored = 0;
  bool began = false;
  bool isBeingAnswered = false;
};

// More than one Host, as none, is no name that could be trusted.
std::string hostOf(MHD_Connection* connection) {
  std::vector<std::string> hosts;
  const auto take = [](void* list, MHD_ValueKind, const char* key, const char* value) {
    if (equalIgnoringCase(key, MHD_HTTP_HEADER_HOST)) {
      static_cast<std::vector<std::string>*>(list)->emplace_back(value == nullptr ? "" : value);
    }
    return MHD_YES;
  };
  MHD_get_connection_values(connection, MHD_HEADER_KIND, take, &hosts);
  return hosts.size() == 1 ? hosts.front() : "";
}

std::string headerOf(MHD_Connection* connection, const char* name) {
  const char* value = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name);
  return value == nullptr ? "" : value;
}

MHD_Result send(MHD_Connection* connection, const WebResponse& answer) {
  // The library's buffer parameter is not const, but it only copies from it.
  MHD_Response* response = MHD_create_response_from_buffer(
      answer.body.size(), const_cast<char*>(answer.body.data()), MHD_RESPMEM_MUST_COPY);
  if (response == nullptr) return MHD_NO;
  bool complete = true;
  const auto add = [&](const char* name, const char* value) {
    complete = MHD_add_response_header(response, name, value) == MHD_YES && complete;
  };
  for (const auto& [name, value] : kHeaders) add(name, value);
  add(MHD_HTTP_HEADER_CONTENT_TYPE, answer.contentType.c_str());
  if (!answer.allow.empty()) add(MHD_HTTP_HEADER_ALLOW, answer.allow.c_str());
  const MHD_Result queued =
      complete ? MHD_queue_response(connection, static_cast<unsigned>(answer.status), response)
               : MHD_NO;
  MHD_destroy_response(response);
  return queued;
}

}  // namespace

// A few threads for what takes longer than the clients' thread may wait.
class HttpServer::Workers {
 public:
  Workers() {
    try {
      for (std::size_t i = 0; i < kWorkers; ++i) threads_.emplace_back([this] { work(); });
    } catch (...) {
      close();
      throw;
    }
  }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  ~Workers() { close(); }

  // False after close().
  bool add(std::function<void()> task) {
    {
      const std::lock_guard lock(mutex_);
      if (closed_) return false;
      tasks_.push_back(std::move(task));
    }
    woken_.notify_one();
    return true;
  }

  // Does what is waiting, for a client waits for it, and takes no more.
  void close() {
    {
      const std::lock_guard lock(mutex_);
      closed_ = true;
    }
    woken_.notify_all();
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
  }

 private:
  void work() {
    while (true) {
      std::function<void()> task;
      {
        std::unique_lock lock(mutex_);
        woken_.wait(lock, [this] { return closed_ || !tasks_.empty(); });
        if (tasks_.empty()) return;
        task = std::move(tasks_.front());
        tasks_.pop_front();
      }
      task();
    }
  }

  std::mutex mutex_;
  std::condition_variable woken_;
  std::deque<std::function<void()>> tasks_;
  bool closed_ = false;
  std::vector<std::thread> threads_;
};

class HttpServer::Daemon {
 public:
  Daemon(const VelwebService& service, const ClientLimits& limits)
      : service_(service), limits_(limits), watch_(limits) {}
  Daemon(const Daemon&) = delete;
  Daemon& operator=(const Daemon&) = delete;
  ~Daemon() {
    // Answers under way come first: they go back to the library.
    workers_.close();
    if (daemon_ != nullptr) MHD_stop_daemon(daemon_);
  }

  int start(const std::string& host, int port) {
    const sockets::Socket socket = sockets::listenOn(host, port);
    if (socket == sockets::kNone) return -1;
    // Read before the library owns the socket.
    const int bound = sockets::portOf(socket);
    daemon_ = MHD_start_daemon(
        MHD_USE_AUTO_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME, 0, nullptr, nullptr, onRequest,
        this, MHD_OPTION_LISTEN_SOCKET, socket, MHD_OPTION_CONNECTION_MEMORY_LIMIT, limits_.memory,
        MHD_OPTION_CONNECTION_LIMIT, limits_.connections, MHD_OPTION_CONNECTION_TIMEOUT,
        static_cast<unsigned>(limits_.silence.count()),
        // The service itself looks at Host, also where there is none.
        MHD_OPTION_STRICT_FOR_CLIENT, -1, MHD_OPTION_URI_LOG_CALLBACK, onTarget, this,
        MHD_OPTION_NOTIFY_COMPLETED, onCompleted, this, MHD_OPTION_NOTIFY_CONNECTION, onConnection,
        this, MHD_OPTION_END);
    if (daemon_ == nullptr) {
      sockets::close(socket);
      return -1;
    }
    return bound;
  }

 private:
  // The calls of the library: nothing may be thrown through it.

  static void* onTarget(void*, const char* target, MHD_Connection*) noexcept {
    try {
      auto exchange = std::make_unique<Exchange>();
      exchange->target = target;
      return exchange.release();
    } catch (...) {
      return nullptr;
    }
  }

  static MHD_Result onRequest(void* self, MHD_Connection* connection, const char*,
                              const char* method, const char*, const char* data, std::size_t* size,
                              void** context) noexcept {
    auto* exchange = static_cast<Exchange*>(*context);
    if (exchange == nullptr) return MHD_NO;
    try {
      return static_cast<Daemon*>(self)->takeStep(connection, *exchange, method, data, *size);
    } catch (...) {
      return MHD_NO;
    }
  }

  static void onCompleted(void*, MHD_Connection*, void** context,
                          MHD_RequestTerminationCode) noexcept {
    const std::unique_ptr<Exchange> ended(static_cast<Exchange*>(std::exchange(*context, nullptr)));
  }

  static void onConnection(void* self, MHD_Connection* connection, void**,
                           MHD_ConnectionNotificationCode code) noexcept {
    ClientWatch& watch = static_cast<Daemon*>(self)->watch_;
    if (code == MHD_CONNECTION_NOTIFY_CLOSED) {
      watch.ended(connection);
      return;
    }
    const MHD_ConnectionInfo* info =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
    if (info == nullptr) return;
    try {
      watch.began(connection, info->connect_fd);
    } catch (...) {
      sockets::shutDown(info->connect_fd, true);
    }
  }

  // Called with the header alone, then with each piece of the body, then
  // without one until there is an answer.
  MHD_Result takeStep(MHD_Connection* connection, Exchange& exchange, const char* method,
                      const char* data, std::size_t& size) {
    if (!exchange.began) {
      exchange.began = true;
      watch_.sentHeader(connection);
      begin(connection, exchange, method);
      return MHD_YES;
    }
    if (size > 0) {
      watch_.sentBody(connection, size);
      const bool kept = takeBody(exchange, {data, std::exchange(size, 0)});
      return kept ? MHD_YES : MHD_NO;
    }
    watch_.sentAll(connection);
    if (exchange.answer) return send(connection, *exchange.answer);
    if (!std::exchange(exchange.isBeingAnswered, true)) {
      MHD_suspend_connection(connection);
      const bool added = workers_.add([this, connection, &exchange] {
        exchange.answer = answerTo(exchange);
        MHD_resume_connection(connection);
      });
      if (!added) {
        exchange.answer = plainResponse(MHD_HTTP_SERVICE_UNAVAILABLE);
        MHD_resume_connection(connection);
      }
    }
    return MHD_YES;
  }

  void begin(MHD_Connection* connection, Exchange& exchange, const char* method) {
    exchange.request = {method, exchange.target, hostOf(connection)};
    if (exchange.target.size() > limits_.target) {
      exchange.answer = plainResponse(MHD_HTTP_URI_TOO_LONG);
      return;
    }
    exchange.answer = service_.refusal(exchange.request);
    if (exchange.answer || !service_.isConversion(exchange.request)) return;
    if (headerOf(connection, MHD_HTTP_HEADER_CONTENT_TYPE).starts_with("multipart/")) {
      exchange.answer = plainResponse(MHD_HTTP_BAD_REQUEST);
      return;
    }
    exchange.conversion.emplace(service_.startConversion());
  }

  static bool takeBody(Exchange& exchange, std::string_view piece) {
    if (exchange.conversion && exchange.conversion->add(piece)) return true;
    if (exchange.conversion) {
      exchange.answer = exchange.conversion->finish();
      exchange.conversion.reset();
    }
    exchange.ignored += piece.size();
    return exchange.ignored <= kMostIgnored;
  }

  WebResponse answerTo(Exchange& exchange) const noexcept {
    try {
      if (exchange.conversion) return exchange.conversion->finish();
      return service_.answer(exchange.request).value_or(plainResponse(MHD_HTTP_NOT_FOUND));
    } catch (...) {
      return plainResponse(MHD_HTTP_INTERNAL_SERVER_ERROR);
    }
  }

  const VelwebService& service_;
  ClientLimits limits_;
  ClientWatch watch_;
  Workers workers_;
  MHD_Daemon* daemon_ = nullptr;
};

HttpServer::HttpServer(const VelwebService& service, const ClientLimits& limits)
    : daemon_(std::make_unique<Daemon>(service, limits)) {}

HttpServer::~HttpServer() = default;

int HttpServer::listen(const std::string& host, int port) { return daemon_->start(host, port); }

}  // namespace vel
