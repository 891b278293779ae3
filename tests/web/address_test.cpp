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

  std::string flight(int position, std::string_view column1) {
    return flight(position, FlightValues::fromAcars(column1));
  }
  std::string flight(int position, const FlightValues& values) {
    const auto address = flightAddress(services_, settings_, kHome, tables_, position, values);
    if (!address) return address.error().text();
    return *address ? **address : "nothing opens";
  }
  std::string photo(SearchWindow window, int position, std::string_view registration) {
    return photoAddress(services_, settings_, window, position, registration)
        .value_or("nothing opens");
  }

  test::TemporaryBase base_;
  Services services_;
  Settings settings_;
  Tables tables_{base_.folders, Encoding::codePage932()};
};

TEST_F(Address, PhotoServicesOfTheAcarsWindow) {
  settings_.env_regDefUrl0 = "https://photos.example/?reg=";
  EXPECT_EQ(photo(SearchWindow::acars, 0, "JA8089"),
            "https://www.airliners.net/search/photo.search?regsearch=JA8089");
  EXPECT_EQ(photo(SearchWindow::acars, 1, "JA8089"),
            "https://www.jetphotos.com/showphotos.php?regsearch=JA8089");
  EXPECT_EQ(photo(SearchWindow::acars, 2, "JA8089"),
            "https://www.planepictures.net/netsearch4.cgi?stype=reg&srng=2&srch=JA8089");
  EXPECT_EQ(photo(SearchWindow::acars, 3, "JA8089"), "https://photos.example/?reg=JA8089");
  EXPECT_EQ(photo(SearchWindow::acars, 4, "JA8089"), "nothing opens");
  EXPECT_EQ(photo(SearchWindow::acars, -1, "JA8089"), "nothing opens");
}

TEST_F(Address, PhotoServicesOfTheHfdlWindow) {
  settings_.env_regDefUrl0 = "https://photos.example/?reg=";
  EXPECT_EQ(photo(SearchWindow::hfdl, 0, "JA8089"),
            "https://www.airliners.net/search/photo.search?regsearch=JA8089");
  EXPECT_EQ(photo(SearchWindow::hfdl, 1, "JA8089"),
            "https://www.jetphotos.com/showphotos.php?regsearch=JA8089");
  EXPECT_EQ(photo(SearchWindow::hfdl, 2, "JA8089"),
            "https://www.planepictures.net/netsearch4.cgi?stype=reg&srng=2&srch=JA8089");
  EXPECT_EQ(photo(SearchWindow::hfdl, 3, "JA8089"),
            "https://www.feeyo.com/searchpic.jsp?action=search&pictype=1&airplane_regcode=JA8089");
  EXPECT_EQ(photo(SearchWindow::hfdl, 4, "JA8089"), "https://photos.example/?reg=JA8089");
  EXPECT_EQ(photo(SearchWindow::hfdl, 5, "JA8089"), "nothing opens");
}

TEST_F(Address, ARegistrationIsSentExactlyAsItIs) {
  const std::string prefix = "https://www.jetphotos.com/showphotos.php?regsearch=";
  for (const char* registration :
       {"JA-8089", "JA8089", "ja8089", " JA 8089 ", "a&b;c$(x)", "羽田", "%41", ""}) {
    EXPECT_EQ(photo(SearchWindow::acars, 1, registration), prefix + registration);
  }
}

TEST_F(Address, Ba0007OnEveryFlightService) {
  settings_.env_FltDefUrl0 = "https://flights.example/";
  EXPECT_EQ(flight(0, "BA0007"),
            "https://www.flightstats.com/go/FlightStatus/"
            "flightStatusByFlight.do?airline=%28BA%29&flightNumber=7");
  EXPECT_EQ(flight(1, "BA0007"), "http://127.0.0.1:40123/?F=BA0007");
  EXPECT_EQ(flight(2, "BA0007"), "https://www.flightaware.com/live/flight/BAW7");
  EXPECT_EQ(flight(3, "BA0007"),
            "https://www.flytecomm.com/cgi-bin/trackflight?action=select_advanced&flight_id=BAW7");
  EXPECT_EQ(flight(4, "BA0007"), "https://flights.example/BA0007");
  EXPECT_EQ(flight(5, "BA0007"), "nothing opens");
  EXPECT_EQ(flight(-1, "BA0007"), "nothing opens");
}

TEST_F(Address, ZeroSuppressionConcernsOnlyTheUsersOwnEngine) {
  settings_.env_FltDefUrl0 = "https://flights.example/";
  settings_.env_fltSchZsp = 1;
  EXPECT_EQ(flight(4, "BA0007"), "https://flights.example/BA7");
  EXPECT_EQ(flight(4, "BA12A"), "https://flights.example/BA12");
  EXPECT_EQ(flight(4, "BA"), "https://flights.example/BA0");
  EXPECT_EQ(flight(1, "BA0007"), "http://127.0.0.1:40123/?F=BA0007");
  settings_.env_fltSchZsp = 2;
  EXPECT_EQ(flight(4, "BA0007"), "https://flights.example/BA0007");
}

TEST_F(Address, TheHfdlWindowTakesItsTextsFromThreePlaces) {
  const FlightValues values{"JL0012", " JL012 ", "2026/11/20 00:03:00"};
  settings_.env_FltDefUrl0 = "https://flights.example/";
  EXPECT_EQ(flight(0, values),
            "https://www.flightstats.com/go/FlightStatus/"
            "flightStatusByFlight.do?airline=%28JL%29&flightNumber=12");
  EXPECT_EQ(flight(1, values), "http://127.0.0.1:40123/?F= JL012 ");
  EXPECT_EQ(flight(2, values), "https://www.flightaware.com/live/flight/JAL12");
  EXPECT_EQ(flight(4, values), "https://flights.example/2026/11/20 00:03:00");
}

TEST_F(Address, ACodeWithoutARowInLetterCsvKeepsItsTwoLetters) {
  EXPECT_EQ(flight(2, "ZZ0100"), "https://www.flightaware.com/live/flight/ZZ100");
  EXPECT_EQ(flight(3, "ba0100"),
            "https://www.flytecomm.com/cgi-bin/trackflight?action=select_advanced&flight_id=ba100");
}

TEST_F(Address, TheFirstOfTwoRowsOfACodeIsUsed) {
  EXPECT_EQ(flight(2, "JL0001"), "https://www.flightaware.com/live/flight/JAL1");
}

TEST_F(Address, AFlightIsCutAtCharactersNotBytes) {
  base_.writeData("letter.csv", {"全日,ANA,全日空"});
  EXPECT_EQ(flight(2, "全日0012"), "https://www.flightaware.com/live/flight/ANA12");
  EXPECT_EQ(flight(0, "全日0012"),
            "https://www.flightstats.com/go/FlightStatus/"
            "flightStatusByFlight.do?airline=%28全日%29&flightNumber=12");
}

TEST_F(Address, ACodeThatTheTablesCannotHoldIsNotInThem) {
  EXPECT_EQ(flight(2, "é€12"), "https://www.flightaware.com/live/flight/é€12");
}

TEST_F(Address, ARowWithAnEmptyThreeLetterCodeGivesAnEmptyCode) {
  base_.writeData("letter.csv", {"BA,,British Airways"});
  EXPECT_EQ(flight(2, "BA0007"), "https://www.flightaware.com/live/flight/7");
}

TEST_F(Address, AMatchingRowWithoutASecondFieldIsAnError) {
  base_.writeData("letter.csv", {"BA"});
  EXPECT_EQ(flight(2, "BA0007"), "ERROR #9");
  EXPECT_EQ(flight(3, "JL0007"),
            "https://www.flytecomm.com/cgi-bin/trackflight?action=select_advanced&flight_id=JL7");
}

TEST_F(Address, AMissingLetterCsvOpensNothing) {
  std::filesystem::remove(base_.folders.data / "letter.csv");
  EXPECT_EQ(flight(2, "BA0007"), "ERROR #53");
  EXPECT_EQ(flight(3, "BA0007"), "ERROR #53");
  EXPECT_EQ(flight(1, "BA0007"), "http://127.0.0.1:40123/?F=BA0007") << "needs no table";
}

TEST_F(Address, FlightStatsRefusesANumberPartThatIsNoNumber) {
  for (const char* identifier : {"BA12A", "BA", "B", "", "BAX", "BA1 2", "BA--1", "BA.", "BA1E3"}) {
    EXPECT_EQ(flight(0, identifier), "ERROR #13") << identifier;
  }
}

TEST_F(Address, AnEmptyFlightIsSentEmpty) {
  EXPECT_EQ(flight(1, ""), "http://127.0.0.1:40123/?F=");
  EXPECT_EQ(flight(2, ""), "https://www.flightaware.com/live/flight/0");
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
  EXPECT_EQ(icao24Page(services_, 0), "https://www.airframes.org/");
  EXPECT_EQ(icao24Page(services_, 1),
            "https://www.libhomeradar.org/databasequery/icao24allocations.php");
  EXPECT_EQ(icao24Page(services_, 2), "https://www.kloth.net/radio/icao24lookup.php");
  EXPECT_EQ(icao24Page(services_, 3), std::nullopt);
  EXPECT_EQ(icao24Page(services_, -1), std::nullopt);
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
  EXPECT_EQ(photo(SearchWindow::hfdl, 2, "N1"),
            "http://photos.local:8080/netsearch4.cgi?stype=reg&srng=2&srch=N1");
  EXPECT_EQ(flight(0, "UA0900"),
            "http://stats.local/go/FlightStatus/"
            "flightStatusByFlight.do?airline=%28UA%29&flightNumber=900");
  EXPECT_EQ(icao24Page(services_, 2), "http://kloth.local/radio/icao24lookup.php");
  EXPECT_EQ(airportSearchAddress(services_, ""),
            "http://search.local/search?hl=ja&q=ICAO++IATA+airport+wiki");
}

TEST_F(Address, EntriesOfTheLists) {
  settings_.env_regDefName0 = "わたしの写真";
  settings_.env_FltDefName0 = "MY FLIGHTS";
  EXPECT_THAT(photoEngineLabels(SearchWindow::acars, settings_),
              ElementsAre("Airliner", "JetPhotos", "Planepictures", "わたしの写真"));
  EXPECT_THAT(photoEngineLabels(SearchWindow::hfdl, settings_),
              ElementsAre("Airliner", "JetPhotos", "Planepictures", "Feeyo"));
  EXPECT_THAT(flightEngineLabels(SearchWindow::acars, settings_),
              ElementsAre("FLIGHTSTATS", "HOMEPAGE", "FlightAware", "FlyteComm", "MY FLIGHTS"));
  EXPECT_THAT(flightEngineLabels(SearchWindow::hfdl, settings_),
              ElementsAre("FLIGHTSTATS", "HOMEPAGE", "FlightAware", "FlyteComm"));
  EXPECT_THAT(icao24EngineLabels(), ElementsAre("Airframes", "libhomeradar", "KLOTH"));
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
  EXPECT_EQ(flight(4, "BA0007"), "http://127.0.0.1:40123/?F=BA0007");
  settings_.env_fltSchZsp = 1;
  EXPECT_EQ(flight(4, "BA0007"), "http://127.0.0.1:40123/?F=BA7");
  EXPECT_EQ(flightSample("/?F=", false, kHome).address, "http://127.0.0.1:40123/?F=BA0007");
  EXPECT_TRUE(needsHomepage(settings_, 4));
  EXPECT_TRUE(needsHomepage(settings_, 1));
  EXPECT_FALSE(needsHomepage(settings_, 2));
  settings_.env_FltDefUrl0 = "https://flights.example/";
  EXPECT_FALSE(needsHomepage(settings_, 4));
}

TEST(Samples, TestButtonsOfTheConffigDialog) {
  const SearchSample registration = registrationSample("https://photos.example/?reg=");
  EXPECT_EQ(registration.message, "The sample is opened by using 'G-CIVE'.");
  EXPECT_EQ(registration.address, "https://photos.example/?reg=G-CIVE");
  const SearchSample whole = flightSample("https://flights.example/", false, kHome);
  EXPECT_EQ(whole.message, "The sample is opened by using 'BA0007'.");
  EXPECT_EQ(whole.address, "https://flights.example/BA0007");
  const SearchSample suppressed = flightSample("https://flights.example/", true, kHome);
  EXPECT_EQ(suppressed.message, "The sample is opened by using 'BA7'.");
  EXPECT_EQ(suppressed.address, "https://flights.example/BA7");
  EXPECT_EQ(registrationSample("").address, "G-CIVE");
}

}  // namespace
}  // namespace vel
