// The scan of all logs: the list's lines that hold a text against a plain look
// at each of them, and the reports of the day.

#include <algorithm>

#include "history/day_report.h"
#include "history/found_order.h"
#include "history/history_search.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

FoundMessages search(const Station& station, const Encoding& encoding, const HistoryQuery& query) {
  FoundMessages found;
  HistorySearch job(station.folders(), encoding, query, found);
  while (true) {
    const Result<JobProgress> progress = job.step(Job::Clock::time_point::min());
    check(progress.ok(), "the logs cannot be searched");
    if (*progress == JobProgress::done) break;
  }
  check(job.problems().empty(), "a log that changed by itself");
  for (std::size_t i = 0; i < found.size(); ++i) {
    for (int column = 0; column < kFoundColumns; ++column) {
      check(isUtf8(found.cell(i, column)), "a cell that is no text");
    }
  }
  return found;
}

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), foldedByte);
  return text;
}

/// How many records of the list log hold the text.
std::size_t plainCount(std::string_view log, const Encoding& encoding, const std::string& text,
                       bool ignoreCase) {
  std::size_t count = 0;
  for (const std::string_view line : plainLines(log, false)) {
    const std::vector<std::string_view> fields = plainFields(line);
    if (fields.size() != 8 || fields[0] == "Flight No.") continue;
    const std::string decoded = encoding.decode(line);
    const bool holds = ignoreCase ? lower(decoded).find(lower(text)) != std::string::npos
                                  : decoded.find(text) != std::string::npos;
    count += holds ? 1 : 0;
  }
  return count;
}

template <typename Work>
void finish(Work& job) {
  while (true) {
    const Result<JobProgress> progress = job.step(Job::Clock::time_point::min());
    if (!progress || *progress == JobProgress::done) return;
  }
}

void report(const Station& station, const Encoding& encoding, ReportKind kind) {
  const Tables tables(station.folders(), encoding);
  DayCounting counting(tables, kind, *dayOfName("20261120"));
  finish(counting);
  check(!counting.days().empty(), "no day");
  DayReport report;
  report.kind = kind;
  report.log = "20261120_list.csv";
  report.days = counting.days();
  TableGaps gaps(tables, kind, report.days.front());
  finish(gaps);
  for (std::size_t i = 0; i < kGapKinds; ++i) report.gaps[i] = gaps.gaps(static_cast<GapKind>(i));
  check(isUtf8(reportHtml(report)) && isUtf8(reportCsv(report)), "a report that is no text");
  check(reportHtml(report).find("<script") == std::string::npos, "a log's text became markup");
}

void run(const Station& station, Parts parts) {
  const std::string_view first = parts.next();
  const Encoding encoding = encodingOf(lineOfPart(first, 0));
  HistoryQuery query;
  query.meaning = static_cast<SearchMeaning>(numberOf(lineOfPart(first, 1), 5));
  query.ignoreCase = lineOfPart(first, 2) == "case";
  query.text = lineOfPart(first, 3);
  if (!isUtf8(query.text)) return;
  const std::string_view list = parts.next();
  const std::string_view hfdl = parts.next();
  const std::string_view raw = parts.rest();
  put(station.folders().logs / "20261120_list.csv", list);
  put(station.folders().logs / "202611200000_HFDL_FMT.log", hfdl);
  put(station.folders().eachLogs / "JA8089.log", raw);
  put(station.folders().data / "ICAO24.csv", "86D4E8,JAL,JL,JA731J,B77W\r\n");
  for (const char* table : {"aircraft.csv", "FLIGHT.csv", "airport.csv", "letter.csv"}) {
    put(station.folders().data / table, "");
  }
  report(station, encoding, ReportKind::list);
  report(station, encoding, ReportKind::hfdl);
  if (problemOf(query, encoding) != QueryProblem::none) return;
  const FoundMessages found = search(station, encoding, query);
  HistoryQuery folded = query;
  folded.ignoreCase = true;
  check(search(station, encoding, folded).size() >= found.size(), "case found less");

  // Where all is ASCII, only the list's rule is to be known.
  HistoryQuery listOnly = query;
  listOnly.meaning = SearchMeaning::anyText;
  listOnly.hfdl = false;
  listOnly.rawLogs = false;
  if (!isAscii(query.text) || !isAscii(list)) return;
  if (problemOf(listOnly, encoding) != QueryProblem::none) return;
  check(search(station, encoding, listOnly).size() ==
            plainCount(list, encoding, query.text, query.ignoreCase),
        "another number of lines holds the text");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
