#include "velweb/flight_page.h"

#include "core/text.h"
#include "velweb/markup.h"
#include "velweb/sightings.h"

namespace vel {
namespace {

constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<style>
:root { --line: #ccd5e0; --soft: #64748b; --accent: #0b6bcb; --card: #fff; --page: #f3f6fa; --text: #1b2430; }
@media (prefers-color-scheme: dark) {
  :root { --line: #35404e; --soft: #9aa8ba; --accent: #6db3ff; --card: #1a212b; --page: #11161d; --text: #e4e9f0; }
}
body { margin: 0; background: var(--page); color: var(--text); font: 16px/1.5 system-ui, "Noto Sans JP", sans-serif; }
main { max-width: 60rem; margin: 0 auto; padding: 1.5rem 1rem 3rem; }
h1 { margin: 0 0 .25rem; font-size: 2rem; }
h2 { margin: 0 0 .5rem; font-size: 1rem; color: var(--soft); font-weight: 600; }
section { background: var(--card); border: 1px solid var(--line); border-radius: .6rem; padding: 1rem 1.2rem; margin: 1rem 0; overflow-x: auto; }
.route { display: flex; flex-wrap: wrap; gap: 1rem; align-items: center; }
.code { display: block; font-size: 1.5rem; font-weight: 700; }
.arrow { color: var(--accent); font-size: 1.5rem; }
.soft { color: var(--soft); }
table { border-collapse: collapse; width: 100%; }
th, td { text-align: left; padding: .3rem .8rem .3rem 0; border-bottom: 1px solid var(--line); white-space: nowrap; }
th { color: var(--soft); font-weight: 600; font-size: .85rem; }
input, button { font: inherit; padding: .3rem .6rem; border: 1px solid var(--line); border-radius: .4rem; background: var(--page); color: inherit; }
</style>
)";

std::string cell(std::string_view text) { return "<td>" + markupText(text) + "</td>"; }

std::string section(std::string_view title, const std::string& content) {
  return "<section>\n<h2>" + std::string(title) + "</h2>\n" + content + "</section>\n";
}

std::string airport(const Tables& tables, const std::string& code, std::string_view role) {
  const auto name = tables.airportNameOfFirstLine(code);
  std::string html = "<div><span class=\"code\">" + markupText(code.empty() ? "?" : code);
  html += "</span>" + markupText(name && !code.empty() ? name->value_or("") : std::string());
  return html + "<br><span class=\"soft\">" + std::string(role) + "</span></div>\n";
}

std::string routeSection(const Tables& tables, std::string_view flight) {
  constexpr std::string_view kTitle = "Route 経路";
  const auto route = tables.flightRoute(flight);
  if (!route || !*route) {
    return section(kTitle,
                   "<p class=\"soft\">This flight is not in FLIGHT.csv. "
                   "FLIGHT.csv に登録されていません。</p>\n");
  }
  const FlightRoute& found = **route;
  std::string html = "<div class=\"route\">\n" +
                     airport(tables, found.departure, "Departure 出発") +
                     "<span class=\"arrow\">&#8594;</span>\n" +
                     airport(tables, found.destination, "Destination 到着") + "</div>\n";
  if (!found.remark.empty() && found.remark != "-") {
    html += "<p>" + markupText(found.remark) + "</p>\n";
  }
  return section(kTitle, html);
}

std::string airlineSection(const Tables& tables, std::string_view flight) {
  constexpr std::string_view kTitle = "Airline 航空会社";
  const std::string_view prefix = Left(flight, 2);
  // A prefix that is only a part of another one names no airline.
  const auto known = tables.knowsAirline(prefix);
  if (known && *known) {
    const auto airline = tables.airlineOf(prefix);
    if (airline && airline->found) {
      std::string html = "<p>" + markupText(airline->display);
      if (!airline->company.empty()) html += " &#8212; " + markupText(airline->company);
      html += " <span class=\"soft\">" + markupText(prefix) + " / " +
              markupText(airline->threeLetter) + "</span></p>\n";
      return section(kTitle, html);
    }
  }
  return section(kTitle,
                 "<p class=\"soft\">This airline is not in letter.csv. "
                 "letter.csv に登録されていません。</p>\n");
}

std::string sightingsSection(const Tables& tables, std::string_view flight) {
  constexpr std::string_view kTitle = "Latest sightings 最近の受信";
  const auto sightings = latestSightings(tables, flight);
  if (sightings.empty()) {
    return section(kTitle,
                   "<p class=\"soft\">None in the newest logs. "
                   "最近のログにはありません。</p>\n");
  }
  std::string html =
      "<table>\n<tr><th>Time 時刻</th><th>Log ログ</th><th>Regist. 登録記号</th><th>Dept. 出発</th>"
      "<th>Dest. 到着</th><th>Equipment 機種</th><th>Remarks 備考</th></tr>\n";
  for (const Sighting& sighting : sightings) {
    html += "<tr>" + cell(sighting.time) + cell(sighting.source) + cell(sighting.registration) +
            cell(sighting.departure) + cell(sighting.destination) + cell(sighting.equipment) +
            cell(sighting.remark) + "</tr>\n";
  }
  return section(kTitle, html + "</table>\n");
}

std::string searchBox(std::string_view flight) {
  return "<form action=\"/\" method=\"get\"><label>Flight 便名 <input name=\"F\" value=\"" +
         markupText(flight) +
         "\" maxlength=\"32\"></label> <button type=\"submit\">Search 検索</button></form>\n";
}

}  // namespace

std::string flightPage(const Tables& tables, std::string_view flight) {
  const std::string_view wanted = Left(Trim(flight), kLongestFlight);
  const std::string title = wanted.empty() ? "Flight search 便名検索" : markupText(wanted);
  std::string html(kHead);
  html += "<title>" + title + " - VEL</title>\n</head>\n<body>\n<main>\n<h1>" + title + "</h1>\n";
  html += searchBox(wanted);
  if (!wanted.empty()) {
    html += routeSection(tables, wanted) + airlineSection(tables, wanted) +
            sightingsSection(tables, wanted);
  }
  return html + "</main>\n</body>\n</html>\n";
}

}  // namespace vel
