#include "history/ui/history_wiring.h"

#include <string>
#include <vector>

#include "acars/list_log.h"
#include "core/ui/bring_to_front.h"
#include "hfdl/hfdl_row.h"

namespace vel {
namespace {

// The first browser is that of ACARS.
LogBrowser* browserOf(Program& program, bool isHfdl) {
  return qobject_cast<LogBrowser*>(isHfdl ? program.otherWindow() : program.mainWindow());
}

LogBrowser* broughtToFront(Program& program, bool isHfdl) {
  LogBrowser* const browser = browserOf(program, isHfdl);
  LogBrowser* const other = browserOf(program, !isHfdl);
  if (browser == nullptr) return nullptr;
  if (!browser->isVisible() && other != nullptr) program.switchBrowser(*other);
  bringToFront(*browser);
  return browser;
}

LogBrowser::LineText lineTextOf(ReportKind kind, GapKind gap, const std::string& heardAs) {
  const bool isList = kind == ReportKind::list;
  switch (gap) {
    case GapKind::aircraft:
      return {{isList ? int{kListRegistration} : int{kHfdlAddress}}, heardAs};
    case GapKind::flight:
      return {{isList ? int{kListFlight} : int{kHfdlFlight}}, heardAs};
    case GapKind::prefix:
      return {{isList ? int{kListFlight} : int{kHfdlFlight}}, heardAs, true};
    case GapKind::airport:
      if (isList) return {{kListDeparture, kListDestination}, heardAs};
      return {{kHfdlOrigin, kHfdlDestination}, heardAs};
    case GapKind::photo:
      break;
  }
  return {{isList ? int{kListRegistration} : int{kHfdlRegistration}}, heardAs};
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
    LogBrowser* const browser = broughtToFront(program, source == HistorySource::hfdl);
    if (browser != nullptr) browser->showLine(log, row);
  };
  windows.selectLine = [&program](ReportKind kind, const std::string& log, GapKind gap,
                                  const std::string& heardAs) {
    LogBrowser* const browser = broughtToFront(program, kind == ReportKind::hfdl);
    if (browser != nullptr) browser->showLineWith(log, lineTextOf(kind, gap, heardAs));
  };
}

}  // namespace vel
