#include "tests/ui/web/http_server.h"

#include <gtest/gtest.h>

namespace vel::test {
namespace {

constexpr const char* kPending = "pending";

void put(QTcpSocket& socket, std::string_view bytes) {
  EXPECT_EQ(socket.write(bytes.data(), static_cast<qint64>(bytes.size())),
            static_cast<qint64>(bytes.size()));
}

// The length of the whole request at the beginning of the bytes; 0 while some
// of it is missing.
qsizetype wholeRequest(const QByteArray& bytes) {
  const qsizetype end = bytes.indexOf("\r\n\r\n");
  if (end < 0) return 0;
  const QByteArray head = bytes.left(end).toLower();
  const qsizetype length = head.indexOf("content-length: ");
  EXPECT_GE(length, 0);
  const qsizetype lineEnd = head.indexOf("\r\n", length);
  const qsizetype body =
      head.mid(length + 16, lineEnd < 0 ? -1 : lineEnd - length - 16).toLongLong();
  return bytes.size() >= end + 4 + body ? end + 4 + body : 0;
}

}  // namespace

HttpServer::HttpServer() {
  EXPECT_TRUE(listen(QHostAddress::LocalHost));
  connect(this, &QTcpServer::newConnection, this, &HttpServer::accept);
}

std::string HttpServer::address() const {
  return "http://127.0.0.1:" + std::to_string(serverPort());
}

void HttpServer::accept() {
  while (QTcpSocket* socket = nextPendingConnection()) {
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(*socket); });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
      ++disconnected;
      socket->deleteLater();
    });
  }
}

void HttpServer::read(QTcpSocket& socket) {
  QByteArray bytes = socket.property(kPending).toByteArray() + socket.readAll();
  const qsizetype whole = wholeRequest(bytes);
  if (whole == 0) {
    socket.setProperty(kPending, bytes);
    return;
  }
  socket.setProperty(kPending, bytes.mid(whole));
  requests.push_back(bytes.left(whole).toStdString());
  if (onRequest) onRequest(socket);
}

void answer(QTcpSocket& socket, std::string_view status, std::string_view body,
            std::string_view headers) {
  put(socket, "HTTP/1.1 " + std::string(status) + "\r\n" + std::string(headers) +
                  "Content-Length: " + std::to_string(body.size()) +
                  "\r\nConnection: close\r\n\r\n");
  put(socket, body);
  socket.disconnectFromHost();
}

std::string bodyOf(const std::string& message) {
  const std::size_t end = message.find("\r\n\r\n");
  return end == std::string::npos ? std::string() : message.substr(end + 4);
}

std::vector<std::string> headersOf(const std::string& message) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  const std::size_t end = message.find("\r\n\r\n");
  while (begin < end) {
    const std::size_t lineEnd = message.find("\r\n", begin);
    lines.push_back(message.substr(begin, lineEnd - begin));
    begin = lineEnd + 2;
  }
  return lines;
}

}  // namespace vel::test
