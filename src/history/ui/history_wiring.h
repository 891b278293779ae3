#pragma once

#include "app/ui/program.h"
#include "history/day_counts.h"
#include "history/ui/history_windows.h"
#include "log/ui/log_browser.h"
#include "web/ui/raw_logs.h"

namespace vel {

/// Offers the windows over all days in a browser; before its load(). All outlive
/// the browser's use.
void offerHistory(LogBrowser& browser, ReportKind kind, HistoryWindows& windows);

/// What a double click in the windows does: shows the line in the program's
/// browser of its kind, which comes to the front, or the message in the raw log
/// viewer.
void openFromHistory(HistoryWindows& windows, Program& program, RawLogs& rawLogs);

}  // namespace vel
