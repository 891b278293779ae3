#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vel::test {

/// A web server on a free port of 127.0.0.1, in the thread of the test. It
/// takes whole requests and leaves the answer to the test.
class HttpServer : public QTcpServer {
  Q_OBJECT

 public:
  HttpServer();

  /// "http://127.0.0.1:40123"
  [[nodiscard]] std::string address() const;

  /// Answers a whole request; says nothing without one.
  std::function<void(QTcpSocket&)> onRequest;

  std::vector<std::string> requests;  ///< every whole request, byte for byte
  int disconnected = 0;               ///< connections that have ended

 private:
  void accept();
  void read(QTcpSocket& socket);
};

/// Writes "HTTP/1.1 <status>", the header lines and the body, and closes.
void answer(QTcpSocket& socket, std::string_view status, std::string_view body,
            std::string_view headers = {});

/// The part of a request or an answer after its header lines.
[[nodiscard]] std::string bodyOf(const std::string& message);

/// The header lines, each without its line end; the start line comes first.
[[nodiscard]] std::vector<std::string> headersOf(const std::string& message);

}  // namespace vel::test
