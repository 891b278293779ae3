// Requests to the companion service, without its sockets: an answer of a known
// kind, text that is text only, and KML that is well-formed.

#include <algorithm>
#include <array>
#include <cmath>

#include <pugixml.hpp>

#include "tests/fuzz/fuzz_support.h"
#include "velweb/velweb_service.h"

namespace vel::fuzz {
namespace {

constexpr std::string_view kLetters =
    "JL,JAL,Japan <b>Airlines</b> & \"sons\"\r\nNH,ANA,ANA,Co.\r\n";
constexpr std::string_view kFlights =
    "JL0005,RJTTKJFK,<script>alert(1)</script>\r\nNH0010,RJAAKLAX,-\r\n";
constexpr std::string_view kAirports = "RJTT,Tokyo HND\r\nKJFK,New York JFK\r\nRJAA,Narita NRT\r\n";
constexpr std::string_view kList =
    "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time\r\n"
    "JL0005,O,JA731J,RJTT,KJFK,B77W,<i>&,0:01:02\r\nNH0010,X,JA784A,RJAA,KLAX,B77W,-,12:00:00\r\n";
constexpr std::string_view kHfdl =
    "[1]------------------------[2026/11/20 00:00:04]\r\n DOWN LINK\r\n"
    "  GS NAME         = <Agana>\r\n   ICAO24 ADDRESS = 86D4E8\r\n"
    "   REGISTRATION   = JA731J\r\n   FLIGHT ID      = JL0005\r\n"
    "  ..............................\r\n";

/// A page holds these tags and no others, whatever was asked and logged.
void checkPage(std::string_view page) {
  constexpr std::array<std::string_view, 25> kTags = {
      "!DOCTYPE", "html",  "head",  "meta",  "style",  "title",   "body",  "main", "h1",
      "h2",       "form",  "label", "input", "button", "section", "p",     "div",  "span",
      "br",       "table", "tr",    "th",    "td",     "a",       "strong"};
  check(isUtf8(page), "a page that is no text");
  for (std::size_t at = page.find('<'); at != std::string_view::npos; at = page.find('<', at + 1)) {
    std::string_view tag = page.substr(at + 1);
    if (tag.starts_with('/')) tag.remove_prefix(1);
    tag = tag.substr(0, tag.find_first_of(" >\n"));
    check(std::find(kTags.begin(), kTags.end(), tag) != kTags.end(), "a tag of nobody's");
  }
}

void checkKml(const std::string& body) {
  check(isUtf8(body), "a document that is no text");
  pugi::xml_document document;
  check(document.load_buffer(body.data(), body.size()), "a document that is not well-formed");
  const pugi::xml_node kml = document.child("kml");
  check(!kml.empty(), "no KML");
  for (const auto& place : kml.select_nodes("//Point/coordinates")) {
    double longitude = 999;
    double latitude = 999;
    const int read = std::sscanf(place.node().child_value(), "%lf,%lf", &longitude, &latitude);
    check(read == 2 && std::abs(latitude) <= 90 && std::abs(longitude) <= 180, "no place on earth");
  }
}

void checkConversion(const VelwebService& service, std::string_view body) {
  std::string first;
  for (const std::size_t piece : {std::size_t{1} << 20, std::size_t{17}}) {
    Conversion conversion = service.startConversion();
    for (std::size_t at = 0; at < body.size(); at += piece) {
      check(conversion.add(body.substr(at, piece)), "too large");
    }
    const WebResponse response = conversion.finish();
    check(response.status == 200 || response.status == 400, "another status");
    if (response.status == 200) checkKml(response.body);
    if (first.empty()) first = response.body;
    check(first == response.body, "pieces change the document");
  }
}

void run(const Station& station, Parts parts) {
  const std::string_view first = parts.next();
  const std::string encoding(lineOfPart(first, 0));
  const VelwebService service(station.folders(), encoding == "UTF-8" ? encoding : "CP932",
                              std::string(lineOfPart(first, 1)));
  const WebRequest request{std::string(lineOfPart(first, 2)), std::string(lineOfPart(first, 3)),
                           std::string(lineOfPart(first, 4))};
  const std::optional<WebResponse> refusal = service.refusal(request);
  if (refusal) {
    constexpr std::array<int, 4> kRefusals = {403, 404, 405, 503};
    check(std::find(kRefusals.begin(), kRefusals.end(), refusal->status) != kRefusals.end(),
          "another refusal");
    check((refusal->status == 405) == !refusal->allow.empty(), "a 405 tells what is allowed");
  }
  const std::optional<WebResponse> response = service.answer(request);
  if (!response) {
    check(VelwebService::isConversion(request) && request.method == "POST", "no answer");
  } else if (!refusal) {
    check(response->status == 200, "another status");
    checkPage(response->body);
  }
  checkConversion(service, parts.rest());
}

class Pages : public Station {
 public:
  Pages() {
    put(folders().data / "letter.csv", kLetters);
    put(folders().data / "FLIGHT.csv", kFlights);
    put(folders().data / "airport.csv", kAirports);
    put(folders().data / "ICAO24.csv", "86D4E8,JAL,JL,JA731J,B77W\r\n");
    put(folders().logs / "20261120_list.csv", kList);
    put(folders().logs / "202611200000_HFDL_FMT.log", kHfdl);
  }
};

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Pages station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
