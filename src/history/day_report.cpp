#include "history/day_report.h"

#include <algorithm>
#include <cstdio>

#include "core/csv_text.h"

namespace vel {
namespace {

constexpr TwoNames kFirstAircraft{"Aircraft heard for the first time", "初めて受信した機体"};
constexpr TwoNames kFirstFlights{"Flights heard for the first time", "初めて受信した便"};
constexpr TwoNames kCounts{"The day and the seven days before", "当日と前7日間"};
constexpr TwoNames kHours{"Messages of each hour", "時間帯別の受信数"};
constexpr TwoNames kMissing{"What is missing", "未登録のデータ"};

std::string both(TwoNames names) { return std::string(names.english) + " / " + names.japanese; }

std::string title(const DayReport& report) {
  return std::string("VEL ") + (report.kind == ReportKind::list ? "ACARS" : "HFDL") + " " +
         report.log;
}

// Text as the content of an element. What no document may hold becomes U+FFFD.
std::string escaped(std::string_view text) {
  std::string html;
  for (const char c : text) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
          html += "\xEF\xBF\xBD";
        } else {
          html += c;
        }
    }
  }
  return html;
}

std::string cells(const std::vector<std::string>& texts, const char* element) {
  std::string row = "<tr>";
  for (const std::string& text : texts) {
    row += std::string("<") + element + ">" + escaped(text) + "</" + element + ">";
  }
  return row + "</tr>\n";
}

// Bars, one an hour, with their numbers as titles and the hours below.
std::string hourChart(const DayCounts& day) {
  constexpr int kBar = 24;
  constexpr int kHeight = 100;
  const std::size_t most =
      std::max<std::size_t>(1, *std::max_element(day.hours.begin(), day.hours.end()));
  char part[256];
  std::snprintf(part, sizeof part,
                "<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" width=\"%d\" "
                "height=\"%d\">\n",
                24 * kBar, kHeight + 20);
  std::string svg = part;
  for (std::size_t hour = 0; hour < day.hours.size(); ++hour) {
    const std::size_t count = day.hours[hour];
    const int height = static_cast<int>((count * kHeight + most - 1) / most);
    const int x = static_cast<int>(hour) * kBar;
    std::snprintf(part, sizeof part,
                  "<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" fill=\"#3060a0\">"
                  "<title>%02d: %zu</title></rect>\n",
                  x + 2, kHeight - height, kBar - 4, height, static_cast<int>(hour), count);
    svg += part;
    std::snprintf(part, sizeof part,
                  "<text x=\"%d\" y=\"%d\" font-size=\"11\" text-anchor=\"middle\">%02d</text>\n",
                  x + kBar / 2, kHeight + 14, static_cast<int>(hour));
    svg += part;
  }
  return svg + "</svg>\n";
}

std::string csvLine(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (&field != &fields.front()) line += ',';
    line += csvField(notAFormula(field));
  }
  return line + "\r\n";
}

const std::vector<std::pair<TwoNames, const std::vector<std::string> FirstHeard::Names::*>>&
firstHeardLists() {
  static const std::vector<std::pair<TwoNames, const std::vector<std::string> FirstHeard::Names::*>>
      lists = {{kFirstAircraft, &FirstHeard::Names::aircraft},
               {kFirstFlights, &FirstHeard::Names::flights}};
  return lists;
}

}  // namespace

TwoNames nameOf(GapKind kind) {
  switch (kind) {
    case GapKind::aircraft:
      return {"Aircraft without a record", "未登録の機体"};
    case GapKind::flight:
      return {"Flights without a route", "路線のない便"};
    case GapKind::prefix:
      return {"Airline letters without a record", "未登録の航空会社コード"};
    case GapKind::airport:
      return {"Airports without a record", "未登録の空港"};
    case GapKind::photo:
      break;
  }
  return {"Aircraft without a photo", "写真のない機体"};
}

std::vector<std::vector<std::string>> countTable(const std::vector<DayCounts>& days) {
  std::vector<std::vector<std::string>> table = {{""},
                                                 {"Messages / 受信数"},
                                                 {"Aircraft / 機体"},
                                                 {"Flights / 便"},
                                                 {"Airlines / 航空会社"},
                                                 {"Types / 機種"},
                                                 {"Busiest hour / 最多時間帯"}};
  for (const DayCounts& day : days) {
    std::size_t line = 0;
    table[line++].push_back(dayText(day.day));
    const auto add = [&](std::size_t number) {
      table[line++].push_back(day.hasLog ? std::to_string(number) : "");
    };
    add(day.messages);
    add(day.aircraft.size());
    add(day.flights.size());
    add(day.airlines.size());
    add(day.types.size());
    std::string busiest;
    if (const auto hour = day.busiestHour()) {
      busiest = (*hour < 10 ? "0" : "") + std::to_string(*hour) + " (" +
                std::to_string(day.hours[static_cast<std::size_t>(*hour)]) + ")";
    }
    table[line].push_back(busiest);
  }
  return table;
}

std::string reportHtml(const DayReport& report) {
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
      escaped(title(report)) +
      "</title>\n<style>\nbody { font-family: sans-serif; }\ntable { border-collapse: collapse; }\n"
      "th, td { border: 1px solid #999; padding: 2px 8px; text-align: left; }\n"
      "</style>\n</head>\n<body>\n<h1>" +
      escaped(title(report)) + "</h1>\n";
  const auto heading = [&](TwoNames names) { html += "<h2>" + escaped(both(names)) + "</h2>\n"; };
  heading(kCounts);
  html += "<table>\n";
  const auto table = countTable(report.days);
  for (std::size_t i = 0; i < table.size(); ++i) html += cells(table[i], i == 0 ? "th" : "td");
  html += "</table>\n";
  heading(kHours);
  for (const DayCounts& day : report.days) {
    if (!day.hasLog) continue;
    html += "<h3>" + escaped(dayText(day.day)) + "</h3>\n" + hourChart(day);
  }
  heading(kMissing);
  for (std::size_t kind = 0; kind < report.gaps.size(); ++kind) {
    const auto& gaps = report.gaps[kind];
    html += "<h3>" + escaped(both(nameOf(static_cast<GapKind>(kind)))) + " (" +
            std::to_string(gaps.size()) + ")</h3>\n<table>\n";
    for (const TableGap& gap : gaps) html += cells({gap.name, std::to_string(gap.count)}, "td");
    html += "</table>\n";
  }
  for (const auto& [names, list] : firstHeardLists()) {
    heading(names);
    html += "<table>\n";
    for (const std::string& name : report.firstHeard.*list) html += cells({name}, "td");
    html += "</table>\n";
  }
  return html + "</body>\n</html>\n";
}

std::string reportCsv(const DayReport& report) {
  std::string csv = "\xEF\xBB\xBF" + csvLine({title(report)});
  for (const auto& line : countTable(report.days)) csv += csvLine(line);
  csv += csvLine({}) + csvLine({both(kHours)});
  for (const DayCounts& day : report.days) {
    std::vector<std::string> line = {dayText(day.day)};
    for (const std::size_t count : day.hours) line.push_back(std::to_string(count));
    if (day.hasLog) csv += csvLine(line);
  }
  for (std::size_t kind = 0; kind < report.gaps.size(); ++kind) {
    csv += csvLine({}) + csvLine({both(nameOf(static_cast<GapKind>(kind)))});
    for (const TableGap& gap : report.gaps[kind]) {
      csv += csvLine({gap.name, std::to_string(gap.count)});
    }
  }
  for (const auto& [names, list] : firstHeardLists()) {
    csv += csvLine({}) + csvLine({both(names)});
    for (const std::string& name : report.firstHeard.*list) csv += csvLine({name});
  }
  return csv;
}

}  // namespace vel
