#include "velweb/http_server.h"

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"
#include "tests/velweb/velweb_process.h"

namespace vel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kHost = "Host: localhost\r\n";
const std::string kPost = "POST /tools/qz2ge/ HTTP/1.1\r\n" + kHost;

// A server of its own, whose limits are short.
class ShortLimits : public testing::Test {
 protected:
  static ClientLimits limits() {
    ClientLimits limits;
    limits.header = seconds(1);
    limits.request = seconds(60);
    limits.silence = seconds(60);
    limits.bodyGrace = seconds(1);
    return limits;
  }

  // How long a client is served that sends these bytes and then one of `drip`
  // again and again.
  milliseconds servedFor(std::string_view bytes, std::string_view drip) const {
    test::RawClient client(port_);
    const auto start = Clock::now();
    client.send(bytes);
    while (Clock::now() - start < limits().request) {
      if (!client.send(drip) || client.isClosedWithin(milliseconds(50))) break;
    }
    return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
  }

  test::TemporaryBase base_;
  VelwebService service_{base_.folders, "CP932", "127.0.0.1"};
  HttpServer server_{service_, limits()};
  int port_ = server_.listen("127.0.0.1", 0);
};

TEST_F(ShortLimits, ADrippingHeaderIsCutOff) {
  const milliseconds served = servedFor("GET / HTTP/1.1\r\n" + kHost, "X-Drip: 1\r\n");
  EXPECT_GE(served, milliseconds(900));
  EXPECT_LT(served, limits().request / 2);
}

TEST_F(ShortLimits, ADrippingBodyIsCutOff) {
  const milliseconds served = servedFor(kPost + "Content-Length: 1000000\r\n\r\ndat=", "x");
  EXPECT_GE(served, milliseconds(900));
  EXPECT_LT(served, limits().request / 2);
}

TEST_F(ShortLimits, ABodyThatComesFastEnoughMayTakeItsTime) {
  test::RawClient client(port_);
  const std::string piece(500, 'x');
  client.send(kPost + "Content-Length: 20004\r\n\r\ndat=");
  const auto start = Clock::now();
  for (int i = 0; i < 40; ++i) {
    ASSERT_TRUE(client.send(piece));
    std::this_thread::sleep_for(milliseconds(60));
  }
  EXPECT_GT(Clock::now() - start, seconds(2));
  EXPECT_THAT(client.receiveAll(test::kLong), StartsWith("HTTP/1.1 200 "));
}

TEST_F(ShortLimits, AnAnswerUnderWayIsFinishedBeforeTheServerEnds) {
  auto server = std::make_unique<HttpServer>(service_, limits());
  test::RawClient client(server->listen("127.0.0.1", 0));
  client.send("GET /?F=JL0012 HTTP/1.1\r\n" + kHost + "\r\n");
  server.reset();
  EXPECT_THAT(client.receiveAll(test::kLong), Not(EndsWith("(still open)")));
}

using Clients = std::vector<std::unique_ptr<test::RawClient>>;

Clients manyThatSend(int port, std::string_view bytes) {
  constexpr int kMany = 200;
  Clients clients;
  for (int i = 0; i < kMany; ++i) {
    clients.push_back(std::make_unique<test::RawClient>(port));
    EXPECT_TRUE(clients.back()->connected());
    clients.back()->send(bytes);
  }
  return clients;
}

void expectAGoodRequestIsAnswered(int port) {
  test::RawClient client(port);
  client.send("GET /?F=JL0012 HTTP/1.1\r\n" + kHost + "\r\n");
  EXPECT_THAT(client.receiveAll(test::kLong), StartsWith("HTTP/1.1 200 "));
}

// A server that gives nobody up while the test lasts.
class LongLimits : public testing::Test {
 protected:
  static ClientLimits limits() {
    constexpr seconds kLongest(600);
    ClientLimits limits;
    limits.header = kLongest;
    limits.request = kLongest;
    limits.silence = kLongest;
    limits.bodyGrace = kLongest;
    return limits;
  }

  // Those that send these bytes and no more still wait when another one, who came
  // after them, has its answer.
  void expectNobodyIsHeldUpBy(std::string_view bytes) const {
    const Clients clients = manyThatSend(port_, bytes);
    expectAGoodRequestIsAnswered(port_);
    for (const auto& client : clients) EXPECT_FALSE(client->isClosedWithin(milliseconds(0)));
  }

  test::TemporaryBase base_;
  VelwebService service_{base_.folders, "CP932", "127.0.0.1"};
  HttpServer server_{service_, limits()};
  int port_ = server_.listen("127.0.0.1", 0);
};

TEST_F(LongLimits, UnfinishedHeadersHoldNobodyUp) {
  expectNobodyIsHeldUpBy("GET / HTTP/1.1\r\nHost: loc");
}

TEST_F(LongLimits, UnfinishedBodiesHoldNobodyUp) {
  expectNobodyIsHeldUpBy(kPost + "Content-Length: 1000\r\n\r\ndat=");
}

class ManyClients : public testing::Test {
 protected:
  test::TemporaryBase base_;
  test::VelwebProcess velweb_{{"--program-folder", base_.folders.program.string()}};
};

TEST_F(ManyClients, ThoseThatBreakOffAreForgottenAtOnce) {
  for (int round = 0; round < 5; ++round) {
    static_cast<void>(manyThatSend(velweb_.port(), kPost + "Content-Length: 10000\r\n\r\ndat="));
    static_cast<void>(manyThatSend(velweb_.port(), "GET /?F=JL0012 HTTP/1.1\r\nHo"));
  }
  constexpr std::size_t kFew = 40;
  // By their silence they would be forgotten after ten seconds.
  const auto end = Clock::now() + seconds(8);
  while (velweb_.openFiles() > kFew && Clock::now() < end) {
    std::this_thread::sleep_for(milliseconds(20));
  }
  EXPECT_LE(velweb_.openFiles(), kFew);
}

TEST_F(ManyClients, AChunkSizeWithoutEndTakesNoMemory) {
  for (const char* line : {"1", "0", "1;", "1\r\nx\r\n5;name="}) {
    test::RawClient client(velweb_.port());
    client.send(kPost + "Transfer-Encoding: chunked\r\n\r\n4\r\ndat=\r\n" + line);
    const std::string piece(std::size_t{64} << 10, line[0] == '0' ? '0' : '1');
    std::size_t sent = 0;
    while (sent < (std::size_t{64} << 20) && client.send(piece)) sent += piece.size();
    EXPECT_LT(sent, std::size_t{16} << 20) << line << ": it goes on taking the line";
    EXPECT_THAT(client.receiveAll(test::kLong), Not(HasSubstr("200 OK")));
    EXPECT_LT(velweb_.mostMemory(), std::size_t{64} << 20) << line;
  }
  expectAGoodRequestIsAnswered(velweb_.port());
}

TEST_F(ManyClients, MoreThanAreServedAtOnceAreAnsweredAfterThem) {
  test::VelwebProcess velweb(
      {"--program-folder", base_.folders.program.string(), "--timeout", "2"});
  std::vector<std::unique_ptr<test::RawClient>> clients;
  for (unsigned i = 0; i < ClientLimits().connections + 20; ++i) {
    clients.push_back(std::make_unique<test::RawClient>(velweb.port()));
    clients.back()->send("GET / HT");
  }
  test::RawClient good(velweb.port());
  good.send("GET / HTTP/1.1\r\n" + kHost + "\r\n");
  EXPECT_THAT(good.receiveAll(test::kLong), StartsWith("HTTP/1.1 200 "));
}

}  // namespace
}  // namespace vel
