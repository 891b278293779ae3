#include "core/services.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel {
namespace {

using test::TemporaryFolder;
using test::writeBytes;

class ServicesTest : public testing::Test {
 protected:
  Services load(std::string_view bytes) {
    writeBytes(folder_ / "services.ini", bytes);
    return Services::load(folder_ / "services.ini");
  }
  TemporaryFolder folder_;
};

TEST_F(ServicesTest, WithoutAFileEveryServiceHasItsPublicHost) {
  const Services services = Services::load(folder_ / "services.ini");
  EXPECT_EQ(services.airliner, "https://www.airliners.net");
  EXPECT_EQ(services.jetphotos, "https://www.jetphotos.com");
  EXPECT_EQ(services.planepictures, "https://www.planepictures.net");
  EXPECT_EQ(services.feeyo, "https://www.feeyo.com");
  EXPECT_EQ(services.flightstats, "https://www.flightstats.com");
  EXPECT_EQ(services.homepage, "");
  EXPECT_EQ(services.flightaware, "https://www.flightaware.com");
  EXPECT_EQ(services.flytecomm, "https://www.flytecomm.com");
  EXPECT_EQ(services.airframes, "https://www.airframes.org");
  EXPECT_EQ(services.libhomeradar, "https://www.libhomeradar.org");
  EXPECT_EQ(services.kloth, "https://www.kloth.net");
  EXPECT_EQ(services.airportsearch, "https://www.google.com");
  EXPECT_EQ(services.conversion, "");
  EXPECT_EQ(services.encoding, "CP932");
}

TEST_F(ServicesTest, EveryKeyIsTaken) {
  const Services services = load(
      "airliner=http://a.test\r\njetphotos=http://b.test\r\nplanepictures=http://c.test\r\n"
      "feeyo=http://d.test\r\nflightstats=http://e.test\r\nhomepage=http://f.test\r\n"
      "flightaware=http://g.test\r\nflytecomm=http://h.test\r\nairframes=http://i.test\r\n"
      "libhomeradar=http://j.test\r\nkloth=http://k.test\r\nairportsearch=http://l.test\r\n"
      "conversion=http://m.test:8080\r\nencoding=UTF-8\r\n");
  EXPECT_EQ(services.airliner, "http://a.test");
  EXPECT_EQ(services.jetphotos, "http://b.test");
  EXPECT_EQ(services.planepictures, "http://c.test");
  EXPECT_EQ(services.feeyo, "http://d.test");
  EXPECT_EQ(services.flightstats, "http://e.test");
  EXPECT_EQ(services.homepage, "http://f.test");
  EXPECT_EQ(services.flightaware, "http://g.test");
  EXPECT_EQ(services.flytecomm, "http://h.test");
  EXPECT_EQ(services.airframes, "http://i.test");
  EXPECT_EQ(services.libhomeradar, "http://j.test");
  EXPECT_EQ(services.kloth, "http://k.test");
  EXPECT_EQ(services.airportsearch, "http://l.test");
  EXPECT_EQ(services.conversion, "http://m.test:8080");
  EXPECT_EQ(services.encoding, "UTF-8");
}

TEST_F(ServicesTest, CommentsBlankLinesAndUnknownKeysAreSkipped) {
  const Services services = load(
      "; airliner=http://no.test\n# feeyo=http://no.test\n\n   \n[hosts]\nno equals sign\n"
      "=http://no.test\nAIRLINER=http://no.test\nnobody=http://no.test\n"
      "  kloth = http://k.test  ");
  EXPECT_EQ(services.airliner, "https://www.airliners.net");
  EXPECT_EQ(services.feeyo, "https://www.feeyo.com");
  EXPECT_EQ(services.kloth, "http://k.test");
}

TEST_F(ServicesTest, ASlashAtTheEndOfAHostIsDropped) {
  EXPECT_EQ(load("kloth=http://k.test/\n").kloth, "http://k.test");
  EXPECT_EQ(load("kloth=http://k.test//\n").kloth, "http://k.test");
}

TEST_F(ServicesTest, AnEmptyValueLeavesTheDefault) {
  EXPECT_EQ(load("kloth=\r\n").kloth, "https://www.kloth.net");
  EXPECT_EQ(load("encoding=  \r\n").encoding, "CP932");
}

TEST_F(ServicesTest, AByteOrderMarkIsNoPartOfTheFirstKey) {
  EXPECT_EQ(load("\xEF\xBB\xBFkloth=http://k.test\r\n").kloth, "http://k.test");
}

TEST_F(ServicesTest, TheEncodingIsTheNamedOne) {
  EXPECT_EQ(load("encoding=UTF-8\n").textEncoding()->encode("é"), "é");
  EXPECT_EQ(load("encoding=windows-1252\n").textEncoding()->encode("é"), "\xE9");
}

TEST_F(ServicesTest, AnEncodingThatCannotBeUsedLeavesCodePage932) {
  for (const char* line : {"encoding=UTF-16\n", "encoding=nonsense\n", ""}) {
    const Encoding encoding = load(line).textEncoding().value();
    EXPECT_EQ(encoding.encode("羽田"), "\x89\x48\x93\x63") << line;
  }
}

TEST_F(ServicesTest, TheLastOfTwoValuesHolds) {
  EXPECT_EQ(load("kloth=http://a.test\nkloth=http://b.test\n").kloth, "http://b.test");
}

TEST_F(ServicesTest, TheUsersOwnSearchesStartFromAirlinerAndTheFlightPage) {
  const DefaultSearches usual = Services().defaultSearches();
  EXPECT_EQ(usual.regDefUrl0, "https://www.airliners.net/search/photo.search?regsearch=");
  EXPECT_EQ(usual.fltDefUrl0, "/?F=");
  const DefaultSearches own =
      load("airliner=http://a.test\nhomepage=http://f.test/\n").defaultSearches();
  EXPECT_EQ(own.regDefUrl0, "http://a.test/search/photo.search?regsearch=");
  EXPECT_EQ(own.fltDefUrl0, "http://f.test/?F=");
}

TEST_F(ServicesTest, AFolderInItsPlaceIsNoFile) {
  std::filesystem::create_directory(folder_ / "services.ini");
  EXPECT_EQ(Services::load(folder_ / "services.ini").kloth, "https://www.kloth.net");
}

}  // namespace
}  // namespace vel
