#include "web/address.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel {
namespace {

using testing::ElementsAre;

constexpr const char* kHome = "http://127.0.0.1:40123";

class Address : public testing::Test {
 protected:
  Address() {
    base_.writeData("letter.csv", {"BA,BAW,British Airways", "JL,JAL,Japan Airlines,JAL",
                                   "JL,XXX,a second line", "全,ZEN,全日空"});
  }

  std::string flight(FlightEngine engine, std::string_view column1) {
    return flight(engine, FlightValues::fromAcars(column1));
  }
  std::string flight(FlightEngine engine, const FlightValues& values) {
    const auto address = flightAddress(services_, settings_, kHome, tables_, engine, values);
    return address ? *address : address.error().text();
  }
  std::string photo(PhotoEngine engine, std::string_view registration) {
    return photoAddress(services_, settings_, engine, registration);
  }

  test::TemporaryBase base_;
  Services services_;
  Settings settings_;
  Tables tables_{base_.folders, Encoding::codePage932()};
};

TEST_F(Address, PhotoServicesOfTheAcarsWindow) {
  settings_.env_regDefUrl0 = "https://photos.example/?reg=";
  EXPECT_EQ(photo(PhotoEngine::airliner, "JA8089"),
            "https://www.airliners.net/search/photo.search?regsearch=JA8089");
  EXPECT_EQ(photo(PhotoEngine::jetphotos, "JA8089"),
            "https://www.jetphotos.com/showphotos.php?regsearch=JA8089");
  EXPECT_EQ(photo(PhotoEngine::planepictures, "JA8089"),
            "https://www.planepictures.net/netsearch4.cgi?stype=reg&srng=2&srch=JA8089");
  EXPECT_EQ(photo(PhotoEngine::user, "JA8089"), "https://photos.example/?reg=JA8089");
}

TEST_F(Address, PhotoServicesOfTheHfdlWindow) {
  settings_.env_regDefUrl0 = "https://photos.example/?reg=";
  EXPECT_EQ(photo(PhotoEngine::airliner, "JA8089"),
            "https://www.airliners.net/search/photo.search?regsearch=JA8089");
  EXPECT_EQ(photo(PhotoEngine::jetphotos, "JA8089"),
            "https://www.jetphotos.com/showphotos.php?regsearch=JA8089");
  EXPECT_EQ(photo(PhotoEngine::planepictures, "JA8089"),
            "https://www.planepictures.net/netsearch4.cgi?stype=reg&srng=2&srch=JA8089");
  EXPECT_EQ(photo(PhotoEngine::feeyo, "JA8089"),
            "https://www.feeyo.com/searchpic.jsp?action=search&pictype=1&airplane_regcode=JA8089");
  EXPECT_EQ(photo(PhotoEngine::user, "JA8089"), "https://photos.example/?reg=JA8089");
}

TEST_F(Address, ARegistrationIsSentExactlyAsItIs) {
  const std::string prefix = "https://www.jetphotos.com/showphotos.php?regsearch=";
  for (const char* registration :
       {"JA-8089", "JA8089", "ja8089", " JA 8089 ", "a&b;c$(x)", "羽田", "%41", ""}) {
    EXPECT_EQ(photo(PhotoEngine::jetphotos, registration), prefix + registration);
  }
}

TEST_F(Address, Ba0007OnEveryFlightService) {
  settings_.env_FltDefUrl0 = "https://flights.example/";
  EXPECT_EQ(flight(FlightEngine::flightStats, "BA0007"),
            "https://www.flightstats.com/go/FlightStatus/"
            "flightStatusByFlight.do?airline=%28BA%29&flightNumber=7");
  EXPECT_EQ(flight(FlightEngine::homepage, "BA0007"), "http://127.0.0.1:40123/?F=BA0007");
  EXPECT_EQ(flight(FlightEngine::flightAware, "BA0007"),
            "https://www.flightaware.com/live/flight/BAW7");
  EXPECT_EQ(flight(FlightEngine::flyteComm, "BA0007"),
            "https://www.flytecomm.com/cgi-bin/trackflight?action=select_advanced&flight_id=BAW7");
  EXPECT_EQ(flight(FlightEngine::user, "BA0007"), "https://flights.example/BA0007");
}

TEST_F(Address, ZeroSuppressionConcernsOnlyTheUsersOwnEngine) {
  settings_.env_FltDefUrl0 = "https://flights.example/";
  settings_.env_fltSchZsp = 1;
  EXPECT_EQ(flight(FlightEngine::user, "BA0007"), "https://flights.example/BA7");
  EXPECT_EQ(flight(FlightEngine::user, "BA12A"), "https://flights.example/BA12");
  EXPECT_EQ(flight(FlightEngine::user, "BA"), "https://flights.example/BA0");
  EXPECT_EQ(flight(FlightEngine::homepage, "BA0007"), "http://127.0.0.1:40123/?F=BA0007");
  settings_.env_fltSchZsp = 2;
  EXPECT_EQ(flight(FlightEngine::user, "BA0007"), "https://flights.example/BA0007");
}

TEST_F(Address, TheHfdlWindowTakesItsTextsFromThreePlaces) {
  const FlightValues values{"JL0012", " JL012 ", "2026/11/20 00:03:00"};
  settings_.env_FltDefUrl0 = "https://flights.example/";
  EXPECT_EQ(flight(FlightEngine::flightStats, values),
            "https://www.flightstats.com/go/FlightStatus/"
            "flightStatusByFlight.do?airline=%28JL%29&flightNumber=12");
  EXPECT_EQ(flight(FlightEngine::homepage, values), "http://127.0.0.1:40123/?F= JL012 ");
  EXPECT_EQ(flight(FlightEngine::flightAware, values),
            "https://www.flightaware.com/live/flight/JAL12");
  EXPECT_EQ(flight(FlightEngine::user, values), "https://flights.example/2026/11/20 00:03:00");
}

TEST_F(Address, ACodeWithoutARowInLetterCsvKeepsItsTwoLetters) {
  EXPECT_EQ(flight(FlightEngine::flightAware, "ZZ0100"),
            "https://www.flightaware.com/live/flight/ZZ100");
  EXPECT_EQ(flight(FlightEngine::flyteComm, "ba0100"),
            "https://www.flytecomm.com/cgi-bin/trackflight?action=select_advanced&flight_id=ba100");
}

TEST_F(Address, TheFirstOfTwoRowsOfACodeIsUsed) {
  EXPECT_EQ(flight(FlightEngine::flightAware, "JL0001"),
            "https://www.flightaware.com/live/flight/JAL1");
}

TEST_F(Address, AFlightIsCutAtCharactersNotBytes) {
  base_.writeData("letter.csv", {"全日,ANA,全日空"});
  EXPECT_EQ(flight(FlightEngine::flightAware, "全日0012"),
            "https://www.flightaware.com/live/flight/ANA12");
  EXPECT_EQ(flight(FlightEngine::flightStats, "全日0012"),
            "https://www.flightstats.com/go/FlightStatus/"
            "flightStatusByFlight.do?airline=%28全日%29&flightNumber=12");
}

TEST_F(Address, ACodeThatTheTablesCannotHoldIsNotInThem) {
  EXPECT_EQ(flight(FlightEngine::flightAware, "é€12"),
            "https://www.flightaware.com/live/flight/é€12");
}

TEST_F(Address, ARowWithAnEmptyThreeLetterCodeGivesAnEmptyCode) {
  base_.writeData("letter.csv", {"BA,,British Airways"});
  EXPECT_EQ(flight(FlightEngine::flightAware, "BA0007"),
            "https://www.flightaware.com/live/flight/7");
}

TEST_F(Address, AMatchingRowWithoutASecondFieldIsAnError) {
  base_.writeData("letter.csv", {"BA"});
  EXPECT_EQ(flight(FlightEngine::flightAware, "BA0007"), "ERROR #9\n\nletter.csv, line 1");
  EXPECT_EQ(flight(FlightEngine::flyteComm, "JL0007"),
            "https://www.flytecomm.com/cgi-bin/trackflight?action=select_advanced&flight_id=JL7");
}

TEST_F(Address, AMissingLetterCsvOpensNothing) {
  std::filesystem::remove(base_.folders.data / "letter.csv");
  EXPECT_EQ(flight(FlightEngine::flightAware, "BA0007"), "ERROR #53");
  EXPECT_EQ(flight(FlightEngine::flyteComm, "BA0007"), "ERROR #53");
  EXPECT_EQ(flight(FlightEngine::homepage, "BA0007"), "http://127.0.0.1:40123/?F=BA0007")
      << "needs no table";
}

TEST_F(Address, FlightStatsRefusesANumberPartThatIsNoNumber) {
  for (const char* identifier : {"BA12A", "BA", "B", "", "BAX", "BA1 2", "BA--1", "BA.", "BA1E3"}) {
    EXPECT_EQ(flight(FlightEngine::flightStats, identifier),
              "The flight number is not numeric. 便名の番号部分が数値ではありません")
        << identifier;
  }
}

TEST_F(Address, AnEmptyFlightIsSentEmpty) {
  EXPECT_EQ(flight(FlightEngine::homepage, ""), "http://127.0.0.1:40123/?F=");
  EXPECT_EQ(flight(FlightEngine::flightAware, ""), "https://www.flightaware.com/live/flight/0");
}

TEST(Numbers, StrictNumberTakesTheWholeTextOrNothing) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"0007", "7"},
      {"7", "7"},
      {"0", "0"},
      {"0000", "0"},
      {" 12 ", "12"},
      {"-05", "-5"},
      {"+05", "5"},
      {"-0", "0"},
      {"1.50", "1.5"},
      {".5", "0.5"},
      {"7.", "7"},
      {"00.00", "0"},
      {"00099999999999999999999", "99999999999999999999"}};
  for (const auto& [text, number] : cases) {
    const Result<std::string> strict = strictNumber(text);
    ASSERT_TRUE(strict) << text;
    EXPECT_EQ(*strict, number) << text;
  }
  for (const char* text : {"", " ", "12A", "A12", "1 2", "1,000", "１２", "-", "&H1F", "0x1F"}) {
    const Result<std::string> strict = strictNumber(text);
    ASSERT_FALSE(strict) << text;
    EXPECT_EQ(strict.error().number, ErrorNumber::typeMismatch);
  }
}

TEST(Numbers, LeadingNumberTakesWhatTheTextBeginsWith) {
  EXPECT_EQ(leadingNumber("0007"), "7");
  EXPECT_EQ(leadingNumber("12A"), "12");
  EXPECT_EQ(leadingNumber("012A3"), "12");
  EXPECT_EQ(leadingNumber(""), "0");
  EXPECT_EQ(leadingNumber("A12"), "0");
  EXPECT_EQ(leadingNumber("000"), "0");
  EXPECT_EQ(leadingNumber(" 012"), "12");
  EXPECT_EQ(leadingNumber("-012X"), "-12");
}

TEST_F(Address, PagesOfTheIcao24Services) {
  EXPECT_EQ(addressPage(services_, AddressEngine::airframes), "https://www.airframes.org/");
  EXPECT_EQ(addressPage(services_, AddressEngine::libhomeradar),
            "https://www.libhomeradar.org/databasequery/icao24allocations.php");
  EXPECT_EQ(addressPage(services_, AddressEngine::kloth),
            "https://www.kloth.net/radio/icao24lookup.php");
}

TEST_F(Address, SearchForAnAirportCode) {
  EXPECT_EQ(airportSearchAddress(services_, "RJTT"),
            "https://www.google.com/search?hl=ja&q=ICAO+RJTT+IATA+airport+wiki");
}

TEST_F(Address, ConfiguredHostsTakeThePlaceOfTheDefaults) {
  services_.planepictures = "http://photos.local:8080";
  services_.flightstats = "http://stats.local";
  services_.kloth = "http://kloth.local";
  services_.airportsearch = "http://search.local";
  EXPECT_EQ(photo(PhotoEngine::planepictures, "N1"),
            "http://photos.local:8080/netsearch4.cgi?stype=reg&srng=2&srch=N1");
  EXPECT_EQ(flight(FlightEngine::flightStats, "UA0900"),
            "http://stats.local/go/FlightStatus/"
            "flightStatusByFlight.do?airline=%28UA%29&flightNumber=900");
  EXPECT_EQ(addressPage(services_, AddressEngine::kloth),
            "http://kloth.local/radio/icao24lookup.php");
  EXPECT_EQ(airportSearchAddress(services_, ""),
            "http://search.local/search?hl=ja&q=ICAO++IATA+airport+wiki");
}

TEST_F(Address, EntriesOfTheLists) {
  settings_.env_regDefName0 = "わたしの写真";
  settings_.env_FltDefName0 = "MY FLIGHTS";
  using Photo = EngineEntry<PhotoEngine>;
  using Flight = EngineEntry<FlightEngine>;
  const Photo airliner{"Airliner", PhotoEngine::airliner};
  const Photo jetphotos{"JetPhotos", PhotoEngine::jetphotos};
  const Photo planepictures{"Planepictures", PhotoEngine::planepictures};
  EXPECT_THAT(
      photoEngines(SearchWindow::acars, settings_),
      ElementsAre(Photo{"わたしの写真", PhotoEngine::user}, airliner, jetphotos, planepictures));
  EXPECT_THAT(photoEngines(SearchWindow::hfdl, settings_),
              ElementsAre(airliner, jetphotos, planepictures, Photo{"Feeyo", PhotoEngine::feeyo}));
  const Flight flightStats{"FLIGHTSTATS", FlightEngine::flightStats};
  const Flight homepage{"HOMEPAGE", FlightEngine::homepage};
  const Flight flightAware{"FlightAware", FlightEngine::flightAware};
  const Flight flyteComm{"FlyteComm", FlightEngine::flyteComm};
  EXPECT_THAT(flightEngines(SearchWindow::acars, settings_),
              ElementsAre(Flight{"MY FLIGHTS", FlightEngine::user}, flightStats, homepage,
                          flightAware, flyteComm));
  EXPECT_THAT(flightEngines(SearchWindow::hfdl, settings_),
              ElementsAre(flightStats, homepage, flightAware, flyteComm));
  using Page = EngineEntry<AddressEngine>;
  EXPECT_THAT(addressEngines(), ElementsAre(Page{"Airframes", AddressEngine::airframes},
                                            Page{"libhomeradar", AddressEngine::libhomeradar},
                                            Page{"KLOTH", AddressEngine::kloth}));
}

TEST_F(Address, TheUsersEnginesStartFromTheAirlinerAndHomepageTemplates) {
  services_.homepage = "https://home.example";
  const DefaultSearches defaults = services_.defaultSearches();
  EXPECT_EQ(defaults.regDefUrl0, "https://www.airliners.net/search/photo.search?regsearch=");
  EXPECT_EQ(defaults.fltDefUrl0, "https://home.example/?F=");
}

TEST_F(Address, AUserEngineOfTheOwnSiteFollowsItsHost) {
  settings_.env_FltDefUrl0 = services_.defaultSearches().fltDefUrl0;
  EXPECT_EQ(settings_.env_FltDefUrl0, "/?F=");
  EXPECT_EQ(flight(FlightEngine::user, "BA0007"), "http://127.0.0.1:40123/?F=BA0007");
  settings_.env_fltSchZsp = 1;
  EXPECT_EQ(flight(FlightEngine::user, "BA0007"), "http://127.0.0.1:40123/?F=BA7");
  EXPECT_EQ(flightSample("/?F=", LeadingZeros::kept, kHome).address,
            "http://127.0.0.1:40123/?F=BA0007");
  EXPECT_TRUE(needsHomepage(settings_, FlightEngine::user));
  EXPECT_TRUE(needsHomepage(settings_, FlightEngine::homepage));
  EXPECT_FALSE(needsHomepage(settings_, FlightEngine::flightAware));
  settings_.env_FltDefUrl0 = "https://flights.example/";
  EXPECT_FALSE(needsHomepage(settings_, FlightEngine::user));
}

TEST_F(Address, AUsersPrefixWithoutASchemeGetsHttps) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"photos.example/?reg=", "https://photos.example/?reg=JA8089"},
      {"www.photos.example:8080/", "https://www.photos.example:8080/JA8089"},
      {"", "https://JA8089"},
      {"/etc/", "https:///etc/JA8089"},
      {"C:\\", "https://C:\\JA8089"},
      {"\\\\server\\", "https://\\\\server\\JA8089"},
      {"日本://", "https://日本://JA8089"},
      {"http://photos.example/", "http://photos.example/JA8089"},
      {"HTTPS://photos.example/", "HTTPS://photos.example/JA8089"},
      {"mailto:someone@photos.example?subject=", "mailto:someone@photos.example?subject=JA8089"},
      {"view-source:https://x/", "view-source:https://x/JA8089"}};
  for (const auto& [prefix, address] : cases) {
    settings_.env_regDefUrl0 = prefix;
    EXPECT_EQ(photo(PhotoEngine::user, "JA8089"), address);
    EXPECT_EQ(registrationSample(prefix).address.substr(0, 5), std::string(address).substr(0, 5));
  }
  settings_.env_FltDefUrl0 = "flights.example/";
  EXPECT_EQ(flight(FlightEngine::user, "BA0007"), "https://flights.example/BA0007");
  EXPECT_EQ(flightSample("flights.example/", LeadingZeros::kept, kHome).address,
            "https://flights.example/BA0007");
  services_.jetphotos = "jetphotos.local";
  EXPECT_EQ(photo(PhotoEngine::jetphotos, "N1"),
            "https://jetphotos.local/showphotos.php?regsearch=N1");
}

TEST_F(Address, NothingLeadsToALocalFile) {
  for (const char* prefix : {"", "file:", "file://", "FILE:///etc/", "/", "../"}) {
    for (const char* listed : {"/etc/passwd", "file:///etc/passwd", "etc/passwd", "C:\\x", ".."}) {
      settings_.env_regDefUrl0 = prefix;
      settings_.env_FltDefUrl0 = prefix;
      services_.airliner = prefix;
      services_.airportsearch = prefix;
      for (const std::string& address :
           {photo(PhotoEngine::user, listed), photo(PhotoEngine::airliner, listed),
            flight(FlightEngine::user, listed), airportSearchAddress(services_, listed),
            registrationSample(prefix).address,
            flightSample(prefix, LeadingZeros::dropped, kHome).address}) {
        EXPECT_TRUE(address.starts_with("https://") || address.starts_with(kHome)) << address;
      }
    }
  }
}

TEST(Samples, TestButtonsOfTheConffigDialog) {
  const SearchSample registration = registrationSample("https://photos.example/?reg=");
  EXPECT_EQ(registration.message, "The sample is opened by using 'G-CIVE'.");
  EXPECT_EQ(registration.address, "https://photos.example/?reg=G-CIVE");
  const SearchSample whole = flightSample("https://flights.example/", LeadingZeros::kept, kHome);
  EXPECT_EQ(whole.message, "The sample is opened by using 'BA0007'.");
  EXPECT_EQ(whole.address, "https://flights.example/BA0007");
  const SearchSample suppressed =
      flightSample("https://flights.example/", LeadingZeros::dropped, kHome);
  EXPECT_EQ(suppressed.message, "The sample is opened by using 'BA7'.");
  EXPECT_EQ(suppressed.address, "https://flights.example/BA7");
  EXPECT_EQ(registrationSample("").address, "https://G-CIVE");
}

}  // namespace
}  // namespace vel
