#include <atomic>
#include <chrono>
#include <memory>
#include <set>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

#include "tests/support/test_files.h"
#include "tests/velweb/documents.h"
#include "tests/velweb/velweb_process.h"
#include "web/form_encoder.h"

namespace vel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kForm = "application/x-www-form-urlencoded";
constexpr const char* kKml = "application/vnd.google-earth.kml+xml";

const std::string kLog =
    "2026/11/20 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2.JA212P<NAK>200<STX>M00AQS2697"
    "POSN23457W159037,,211733,360,OTT<ETX><CRC><DEL>\r\n";

// The status of an answer; 0 without one, which is told.
int statusOf(const httplib::Result& result) {
  EXPECT_TRUE(result) << httplib::to_string(result.error());
  return result ? result->status : 0;
}

class RunningVelweb : public testing::Test {
 protected:
  // How long a client may take: short, for tests wait until it is over.
  explicit RunningVelweb(const char* timeout = "3")
      : velweb_({"--program-folder", base_.folders.program.string(), "--timeout", timeout}) {
    base_.writeData("FLIGHT.csv", {"JL0012,RJTTKLAX,臨時便"});
    base_.writeData("airport.csv", {"RJTT,東京 羽田 Tokyo Haneda HND", "KLAX,Los Angeles LAX"});
    base_.writeData("letter.csv", {"JL,JAL,Japan Airlines"});
    EXPECT_GT(velweb_.port(), 0) << velweb_.line();
  }

  httplib::Client client() const {
    httplib::Client made("127.0.0.1", velweb_.port());
    made.set_read_timeout(test::kLong);
    made.set_write_timeout(test::kLong);
    return made;
  }

  /// What comes back for exactly these bytes.
  std::string exchange(std::string_view bytes) const {
    test::RawClient raw(velweb_.port());
    EXPECT_TRUE(raw.connected());
    raw.send(bytes);
    return raw.receiveAll(test::kLong);
  }

  void expectAlive() const { EXPECT_EQ(statusOf(client().Get("/?F=JL0012")), 200); }

  test::TemporaryBase base_;
  test::VelwebProcess velweb_;
};

// For much that a slow machine takes long to send.
class PatientVelweb : public RunningVelweb {
 protected:
  PatientVelweb() : RunningVelweb("120") {}

  httplib::Client client() const {
    httplib::Client made = RunningVelweb::client();
    made.set_read_timeout(120);
    made.set_write_timeout(120);
    return made;
  }
};

TEST_F(RunningVelweb, PrintsItsAddressAsOneLine) {
  EXPECT_EQ(velweb_.line(), "http://127.0.0.1:" + std::to_string(velweb_.port()));
}

TEST_F(RunningVelweb, AnswersAFlightPage) {
  const auto answer = client().Get("/?F=JL0012");
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->status, 200);
  EXPECT_EQ(answer->get_header_value("Content-Type"), "text/html; charset=utf-8");
  EXPECT_EQ(answer->get_header_value("X-Content-Type-Options"), "nosniff");
  EXPECT_THAT(answer->get_header_value("Content-Security-Policy"),
              StartsWith("default-src 'none'"));
  EXPECT_THAT(answer->body, HasSubstr("東京 羽田 Tokyo Haneda HND"));
  EXPECT_THAT(answer->body, HasSubstr("Japan Airlines"));
}

TEST_F(RunningVelweb, AnswersARawLogWithKml) {
  const auto answer = client().Post("/tools/qz2ge/", "dat=" + encodeForm(kLog), kForm);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->status, 200);
  EXPECT_EQ(answer->get_header_value("Content-Type"), kKml);
  EXPECT_THAT(answer->body, HasSubstr("<coordinates>-159.061667,23.761667,10972.8</coordinates>"));
  pugi::xml_document xml;
  EXPECT_EQ(test::readXml(answer->body, xml), "");
}

TEST_F(PatientVelweb, TakesALogThatArrivesInManyPieces) {
  std::string log;
  for (int i = 0; i < 10'001; ++i) log += kLog;
  const std::string form = "dat=" + encodeForm(log);
  const auto answer = client().Post(
      "/tools/qz2ge/",
      [&form](std::size_t offset, httplib::DataSink& sink) {
        if (offset >= form.size()) {
          sink.done();
          return true;
        }
        return sink.write(form.data() + offset, std::min<std::size_t>(1000, form.size() - offset));
      },
      kForm);
  ASSERT_TRUE(answer) << httplib::to_string(answer.error());
  EXPECT_EQ(answer->status, 200);
  EXPECT_THAT(answer->body, HasSubstr("10001 position reports in 10001 messages"));
}

TEST_F(RunningVelweb, RefusesWrongMethodsAndPaths) {
  httplib::Client asking = client();
  EXPECT_EQ(statusOf(asking.Get("/nothing")), 404);
  EXPECT_EQ(statusOf(asking.Get("/../../etc/passwd")), 404);
  EXPECT_EQ(statusOf(asking.Get("/tools/qz2ge/")), 405);
  const auto refused = asking.Get("/tools/qz2ge/");
  ASSERT_TRUE(refused) << httplib::to_string(refused.error());
  EXPECT_EQ(refused->get_header_value("Allow"), "POST");
  EXPECT_EQ(statusOf(asking.Put("/tools/qz2ge/", "dat=", kForm)), 405);
  EXPECT_EQ(statusOf(asking.Delete("/")), 405);
  EXPECT_EQ(statusOf(asking.Options("/")), 405);
  EXPECT_EQ(statusOf(asking.Post("/", std::string(100'000, 'x'), kForm)), 405);
  EXPECT_EQ(statusOf(asking.Post("/tools/qz2ge/", "x=1", kForm)), 400);
  httplib::MultipartFormDataItems parts = {{"dat", kLog, "", ""}};
  EXPECT_EQ(statusOf(asking.Post("/tools/qz2ge/", parts)), 400);
  const auto head = asking.Head("/?F=JL0012");
  ASSERT_TRUE(head) << httplib::to_string(head.error());
  EXPECT_EQ(head->status, 200);
  EXPECT_EQ(head->body, "");
  expectAlive();
}

TEST_F(RunningVelweb, AnswersOnlyItsOwnName) {
  httplib::Client asking = client();
  EXPECT_EQ(statusOf(asking.Get("/", {{"Host", "evil.example"}})), 403);
  EXPECT_EQ(statusOf(asking.Get("/", {{"Host", "localhost:1"}})), 200);
  EXPECT_EQ(statusOf(asking.Post("/tools/qz2ge/", {{"Host", "evil.example"}}, "dat=", kForm)), 403);
  EXPECT_THAT(exchange("GET / HTTP/1.1\r\n\r\n"), StartsWith("HTTP/1.1 403 "));
  EXPECT_THAT(exchange("GET / HTTP/1.1\r\nHost: localhost\r\nHost: evil.example\r\n\r\n"),
              StartsWith("HTTP/1.1 403 "));
}

TEST_F(PatientVelweb, TakesSixtyFourMebibytesAndRefusesMore) {
  constexpr std::size_t kLimit = std::size_t{64} << 20;
  std::string form = "dat=" + std::string(kLimit - 4, '~');
  EXPECT_EQ(statusOf(client().Post("/tools/qz2ge/", form, kForm)), 200);
  form += '~';
  const auto told = client().Post("/tools/qz2ge/", form, kForm);
  EXPECT_EQ(statusOf(told), 413);
  const auto untold = client().Post(
      "/tools/qz2ge/",
      [&form](std::size_t offset, httplib::DataSink& sink) {
        if (offset >= form.size()) {
          sink.done();
          return true;
        }
        return sink.write(form.data() + offset,
                          std::min<std::size_t>(1 << 20, form.size() - offset));
      },
      kForm);
  EXPECT_EQ(statusOf(untold), 413);
  expectAlive();
}

TEST_F(RunningVelweb, SurvivesWhatIsNoRequest) {
  const std::string host = "Host: localhost\r\n";
  EXPECT_THAT(exchange("GET /?F=JL0012 HTTP/1.0\r\n" + host + "\r\n"), HasSubstr("200 OK"));
  EXPECT_THAT(exchange("GET /" + std::string(9000, 'x') + " HTTP/1.1\r\n" + host + "\r\n"),
              HasSubstr(" 414 "));
  for (const std::string& bytes : {
           std::string("\r\n\r\n"),
           std::string("GET\r\n\r\n"),
           std::string("BREW / HTTP/1.1\r\n" + host + "\r\n"),
           std::string("GET / HTTP/9.9\r\n" + host + "\r\n"),
           std::string("\x16\x03\x01\x02\x00\x01\x00\x01\xFC\x03\x03\r\n\r\n", 15),
           std::string(1000, '\0') + "\r\n\r\n",
           "POST /tools/qz2ge/ HTTP/1.1\r\n" + host + "Content-Length: -5\r\n\r\ndat=",
           "POST /tools/qz2ge/ HTTP/1.1\r\n" + host + "Content-Length: x\r\n\r\ndat=",
           "POST /tools/qz2ge/ HTTP/1.1\r\n" + host +
               "Content-Length: 99999999999999999999999\r\n\r\ndat=",
           "POST /tools/qz2ge/ HTTP/1.1\r\n" + host +
               "Transfer-Encoding: chunked\r\n\r\nzz\r\ndat=",
           "POST /tools/qz2ge/ HTTP/1.1\r\n" + host +
               "Transfer-Encoding: chunked\r\n\r\nFFFFFFFFFFFFFFFFFF\r\ndat=",
           "POST /tools/qz2ge/ HTTP/1.1\r\n" + host +
               "Content-Encoding: gzip\r\nContent-Length: 9\r\n\r\nnot gzip.",
           "GET / HTTP/1.1\r\n" + host + "Range: bytes=0-1,0-1,0-1\r\n\r\n",
       }) {
    test::RawClient raw(velweb_.port());
    raw.send(bytes);
    raw.endSending();
    EXPECT_THAT(raw.receiveAll(test::kLong), testing::Not(EndsWith("(still open)"))) << bytes;
    expectAlive();
  }
}

TEST_F(RunningVelweb, AHeaderWithoutEndIsCutOff) {
  for (const std::string& line : {std::string(1000, 'x'), std::string("X-Line: 1\r\n")}) {
    test::RawClient raw(velweb_.port());
    raw.send("GET / HTTP/1.1\r\nHost: localhost\r\n");
    std::size_t sent = 0;
    while (sent < (std::size_t{8} << 20) && raw.send(line)) sent += line.size();
    EXPECT_THAT(raw.receiveAll(test::kLong), testing::Not(HasSubstr("200 OK")));
    expectAlive();
  }
}

TEST_F(RunningVelweb, ABodyThatBreaksOffGivesNoDocument) {
  test::RawClient raw(velweb_.port());
  raw.send("POST /tools/qz2ge/ HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100000\r\n\r\ndat=" +
           encodeForm(kLog));
  raw.endSending();
  const std::string answer = raw.receiveAll(test::kLong);
  EXPECT_THAT(answer, testing::Not(HasSubstr("200 OK")));
  EXPECT_THAT(answer, testing::Not(HasSubstr("<kml")));
  expectAlive();
}

using SlowClients = std::vector<std::unique_ptr<test::RawClient>>;

SlowClients slowClients(int port) {
  SlowClients slow;
  for (int i = 0; i < 64; ++i) {
    slow.push_back(std::make_unique<test::RawClient>(port));
    EXPECT_TRUE(slow.back()->connected());
    slow.back()->send(i % 2 == 0 ? "GET / HTTP/1.1\r\nHost: loc"
                                 : "POST /tools/qz2ge/ HTTP/1.1\r\nHost: localhost\r\n"
                                   "Content-Length: 1000\r\n\r\ndat=");
  }
  return slow;
}

TEST_F(PatientVelweb, SlowClientsHoldNobodyUp) {
  const SlowClients slow = slowClients(velweb_.port());
  expectAlive();
  // While those that send a header are still waited for, ten seconds long.
  for (std::size_t i = 0; i < slow.size(); i += 2) {
    EXPECT_FALSE(slow[i]->isClosedWithin(milliseconds(0))) << i;
  }
}

TEST_F(RunningVelweb, SlowClientsAreCutOff) {
  const SlowClients slow = slowClients(velweb_.port());
  // A byte now and then does not buy more time than the three seconds.
  const auto start = steady_clock::now();
  for (const auto& client : {slow[0].get(), slow[1].get()}) {
    while (client->send("a") && !client->isClosedWithin(milliseconds(250))) {
      ASSERT_LT(steady_clock::now() - start, test::kLong);
    }
  }
  for (const auto& client : slow) {
    EXPECT_THAT(client->receiveAll(test::kLong), testing::Not(EndsWith("(still open)")));
  }
  expectAlive();
}

TEST_F(PatientVelweb, SixtyFourAtOnceAreAllAnswered) {
  std::string log;
  for (int i = 0; i < 200; ++i) log += kLog;
  const std::string form = "dat=" + encodeForm(log);
  std::atomic<int> right = 0;
  std::vector<std::thread> clients;
  for (int i = 0; i < 64; ++i) {
    clients.emplace_back([&, i] {
      httplib::Client asking("127.0.0.1", velweb_.port());
      asking.set_read_timeout(120);
      const auto answer =
          i % 2 == 0 ? asking.Get("/?F=JL0012") : asking.Post("/tools/qz2ge/", form, kForm);
      const char* expected = i % 2 == 0 ? "<title>JL0012 - VEL</title>" : "200 position reports";
      if (answer && answer->status == 200 && answer->body.find(expected) != std::string::npos) {
        ++right;
      }
    });
  }
  for (std::thread& thread : clients) thread.join();
  EXPECT_EQ(right, 64);
}

TEST_F(RunningVelweb, WritesNothingToDisk) {
  const auto listing = [this] {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(base_.path())) {
      names.insert(entry.path().string());
    }
    return names;
  };
  const auto before = listing();
  expectAlive();
  EXPECT_EQ(statusOf(client().Post("/tools/qz2ge/", "dat=" + encodeForm(kLog), kForm)), 200);
  EXPECT_EQ(listing(), before);
}

TEST_F(PatientVelweb, EndsWhenItsParentClosesThePipe) {
  test::RawClient open(velweb_.port());
  open.send("GET / HT");
  velweb_.closePipe();
  // That client would be given up after ten seconds.
  EXPECT_TRUE(velweb_.endsWithin(seconds(8))) << "also while a client is connected";
  EXPECT_EQ(velweb_.status(), 0);
}

TEST(VelwebEnd, IsNotHeldUpByConnectionsThatDoNotClose) {
  test::VelwebProcess stuck({}, VEL_STUCK_SERVICE);
  ASSERT_EQ(stuck.port(), 1);
  EXPECT_FALSE(stuck.endsWithin(milliseconds(0)));
  stuck.closePipe();
  EXPECT_TRUE(stuck.endsWithin(test::kLong));
  EXPECT_EQ(stuck.status(), 0);
}

TEST_F(RunningVelweb, NobodyListensOnceItHasEnded) {
  test::RawClient open(velweb_.port());
  open.send("GET / HT");
  velweb_.closePipe();
  ASSERT_TRUE(velweb_.endsWithin(test::kLong));
  // The system closes what an ended process had open when it comes to it.
  const auto end = steady_clock::now() + seconds(5);
  while (test::RawClient(velweb_.port()).connected() && steady_clock::now() < end) {
    std::this_thread::sleep_for(milliseconds(100));
  }
  EXPECT_FALSE(test::RawClient(velweb_.port()).connected());
}

TEST_F(RunningVelweb, ASecondOneDoesNotTakeItsPort) {
  test::VelwebProcess second({"--port", std::to_string(velweb_.port())});
  EXPECT_TRUE(second.endsWithin(test::kLong));
  EXPECT_EQ(second.status(), 1);
  EXPECT_EQ(second.line(), "");
  expectAlive();
}

TEST_F(RunningVelweb, ReadsTheBaseFolderThatItIsGiven) {
  test::VelwebProcess other({"--base", base_.path().string()});
  ASSERT_GT(other.port(), 0);
  const auto answer = httplib::Client("127.0.0.1", other.port()).Get("/?F=JL0012");
  ASSERT_TRUE(answer);
  EXPECT_THAT(answer->body, HasSubstr("東京 羽田 Tokyo Haneda HND"));
}

TEST_F(RunningVelweb, ReadsTheEncodingFromServicesIni) {
  test::writeBytes(base_.folders.program / "services.ini", "encoding=UTF-8\n");
  test::writeBytes(base_.folders.data / "airport.csv", "RJTT,羽田 HND\n");
  test::VelwebProcess other({"--program-folder", base_.folders.program.string()});
  ASSERT_GT(other.port(), 0);
  const auto answer = httplib::Client("127.0.0.1", other.port()).Get("/?F=JL0012");
  ASSERT_TRUE(answer);
  EXPECT_THAT(answer->body, HasSubstr("</span>羽田 HND<br>"));
}

TEST(VelwebStart, AWrongCommandLineIsRefused) {
  for (const std::vector<std::string>& options : {std::vector<std::string>{"--port", "65536"},
                                                  {"--port", "x"},
                                                  {"--port"},
                                                  {"--nonsense", "1"},
                                                  {"--timeout", "0"},
                                                  {"--host", ""},
                                                  {"stray"}}) {
    test::VelwebProcess velweb(options);
    EXPECT_TRUE(velweb.endsWithin(test::kLong));
    EXPECT_EQ(velweb.status(), 2) << options[0];
    EXPECT_EQ(velweb.line(), "");
  }
}

TEST(VelwebStart, WithoutItsBaseFolderItDoesNotStart) {
  const test::TemporaryBase base;
  test::VelwebProcess velweb({"--base", (base.path() / "missing").string()});
  EXPECT_TRUE(velweb.endsWithin(test::kLong));
  EXPECT_EQ(velweb.status(), 1);
  EXPECT_EQ(velweb.line(), "");
}

TEST(VelwebStart, OnAnotherLoopbackAddressItAnswersUnderThatAddress) {
  const test::TemporaryBase base;
  test::VelwebProcess velweb({"--host", "127.0.0.2", "--base", base.path().string()});
  ASSERT_GT(velweb.port(), 0);
  EXPECT_THAT(velweb.line(), StartsWith("http://127.0.0.2:"));
  httplib::Client asking("127.0.0.2", velweb.port());
  const auto answer = asking.Get("/");
  ASSERT_TRUE(answer) << httplib::to_string(answer.error());
  EXPECT_EQ(answer->status, 200);
  EXPECT_EQ(statusOf(asking.Get("/", {{"Host", "evil.example"}})), 403);
  EXPECT_EQ(statusOf(asking.Get("/", {{"Host", "127.0.0.3"}})), 403);
}

}  // namespace
}  // namespace vel
