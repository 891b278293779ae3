#include "history/ui/history_wiring.h"

#include <string>
#include <utility>
#include <vector>

#include "acars/list_log.h"
#include "core/ui/bring_to_front.h"
#include "hfdl/hfdl_row.h"

namespace vel {
namespace {

// The first browser is that of ACARS.
LogBrowser* broughtToFront(Program& program, ReportKind kind) {
  auto* browser = qobject_cast<LogBrowser*>(program.mainWindow());
  auto* other = qobject_cast<LogBrowser*>(program.otherWindow());
  if (kind == ReportKind::hfdl) std::swap(browser, other);
  if (browser == nullptr) return nullptr;
  if (!browser->isVisible() && other != nullptr) program.switchBrowser(*other);
  bringToFront(*browser);
  return browser;
}

LogBrowser::LineText lineTextOf(ReportKind kind, GapKind gap, const std::string& heardAs,
                                const std::string& address) {
  const bool isList = kind == ReportKind::list;
  LogBrowser::LineText wanted;
  wanted.text = heardAs;
  switch (gap) {
    case GapKind::aircraft:
      wanted.columns = {isList ? int{kListRegistration} : int{kHfdlAddress}};
      wanted.editor = LineEditor::aircraft;
      break;
    case GapKind::flight:
      wanted.columns = {isList ? int{kListFlight} : int{kHfdlFlight}};
      wanted.editor = LineEditor::flight;
      if (address.empty()) break;
      wanted.otherColumn = kHfdlAddress;
      wanted.otherText = address;
      break;
    case GapKind::prefix:
      wanted.columns = {isList ? int{kListFlight} : int{kHfdlFlight}};
      wanted.begins = true;
      wanted.editor = LineEditor::airline;
      break;
    case GapKind::airport:
      wanted.columns = {kHfdlOrigin, kHfdlDestination};
      if (isList) wanted.columns = {kListDeparture, kListDestination};
      wanted.editor = LineEditor::airport;
      wanted.key = heardAs;
      break;
    case GapKind::photo:
      wanted.columns = {isList ? int{kListRegistration} : int{kHfdlRegistration}};
      wanted.editor = LineEditor::photo;
      break;
  }
  return wanted;
}

}  // namespace

void offerHistory(LogBrowser& browser, ReportKind kind, HistoryWindows& windows) {
  browser.showFind = [&windows] { windows.find().open(); };
  browser.showReport = [&browser, &windows, kind] {
    windows.report().open(kind, browser.shownLog());
  };
  browser.findAircraft = [&windows](const std::string& registration) {
    windows.find().openWith(SearchMeaning::registration, registration);
  };
  browser.findFlight = [&windows](const std::string& flight) {
    windows.find().openWith(SearchMeaning::flight, flight);
  };
}

void openFromHistory(HistoryWindows& windows, Program& program, RawLogs& rawLogs) {
  windows.openMessage = [&program, &rawLogs](HistorySource source, const std::string& log,
                                             std::size_t row) {
    if (source == HistorySource::raw) {
      constexpr std::size_t kSuffix = 4;  // ".log"
      rawLogs.openAt(log.substr(0, log.size() - kSuffix), row);
      return;
    }
    LogBrowser* const browser = broughtToFront(
        program, source == HistorySource::hfdl ? ReportKind::hfdl : ReportKind::list);
    if (browser != nullptr) browser->showLine(log, row);
  };
  windows.selectLine = [&program](ReportKind kind, const std::string& log, GapKind gap,
                                  const std::string& heardAs, const std::string& address) {
    LogBrowser* const browser = broughtToFront(program, kind);
    if (browser != nullptr) browser->showLineWith(log, lineTextOf(kind, gap, heardAs, address));
  };
}

}  // namespace vel
