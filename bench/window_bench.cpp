// What the user waits for: a keystroke in the flight filter until the list is
// repainted, one in the airport search until the candidates are, the longest
// time without a turn of the event loop while a log of a million lines or a
// busy day of HFDL loads, what very long fields cost when they are shown and
// when their line is clicked, the longest piece of the work on a raw log that is
// all line breaks, and the start of the program with the sample logs. Runs
// offscreen.

#include <QAbstractScrollArea>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <vector>

#include "acars/ui/acars_browser.h"
#include "app/ui/program.h"
#include "bench/hfdl_day_files.h"
#include "bench/processor_time.h"
#include "core/ui/qt_desktop.h"
#include "hfdl/hfdl_row.h"
#include "hfdl/ui/hfdl_browser.h"
#include "tests/ui/support/paint_watch.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kKeystrokeLimit = 100;  // milliseconds, median
constexpr double kAirportLimit = 16;     // milliseconds, median
constexpr double kGapLimit = 50;         // milliseconds, longest
constexpr double kStartLimit = 1000;     // milliseconds, median
constexpr double kLongFieldLimit = 50;   // milliseconds of processor time
constexpr double kRawLogLimit = 50;      // milliseconds of processor time, longest piece

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

bool report(const char* what, double measured, double limit) {
  const bool kept = measured <= limit;
  std::printf("%-64s %8.1f ms of %6.0f ms %s\n", what, measured, limit, kept ? "kept" : "EXCEEDED");
  return kept;
}

void writeLog(const std::filesystem::path& file, int lines) {
  std::ofstream log(file, std::ios::binary);
  char line[128];
  for (int i = 0; i < lines; ++i) {
    const int size = std::snprintf(
        line, sizeof line, "%c%c%04d,X,JA%03d%c,RJTT,KSFO,B7%02d,-,%d:%02d:%02d\r\n", 'A' + i % 26,
        'A' + i / 7 % 26, i % 10'000, i % 1000, 'A' + i % 26, i % 90, i % 24, i / 24 % 60, i % 60);
    log.write(line, size);
  }
  log.close();
  if (!log) qFatal("cannot write the log");
}

// A station's folders, empty, and the program on them.
class Folder {
 public:
  Folder() : folders_(vel::Folders::of(folder_.path().toStdString() + "/vel")) {
    for (const auto& each : {folders_.program, folders_.data, folders_.logs, folders_.pics}) {
      std::filesystem::create_directories(each);
    }
  }
  [[nodiscard]] const vel::Folders& folders() const { return folders_; }

  // Reads what stands in the folders by then.
  void start() {
    program_ = std::make_unique<vel::Program>(desktop_, folders_);
    web_ = std::make_unique<vel::WebAccess>(program_->context());
  }
  vel::Program& program() { return *program_; }
  vel::WebAccess& web() { return *web_; }

 private:
  QTemporaryDir folder_;
  vel::Folders folders_;
  vel::QtDesktop desktop_;
  std::unique_ptr<vel::Program> program_;
  std::unique_ptr<vel::WebAccess> web_;
};

// A station whose newest log has so many lines.
class Station {
 public:
  explicit Station(int lines) {
    const vel::Folders& folders = folder_.folders();
    writeLog(folders.logs / "20260101_list.csv", lines);
    // As many airports as users have.
    std::ofstream airports(folders.data / "airport.csv", std::ios::binary);
    for (int i = 0; i < 6293; ++i) {
      airports << 'R' << static_cast<char>('A' + i % 26) << static_cast<char>('A' + i / 26 % 26)
               << static_cast<char>('A' + i / 676) << ",Place " << i << " International Airport HN"
               << static_cast<char>('A' + i % 26) << "\r\n";
    }
    airports.close();
    if (!airports) qFatal("cannot write the airports");
    folder_.start();
    browser_ = std::make_unique<vel::AcarsBrowser>(folder_.program(), folder_.web());
  }
  vel::AcarsBrowser& browser() { return *browser_; }

 private:
  Folder folder_;
  std::unique_ptr<vel::AcarsBrowser> browser_;
};

// A station with a busy day of HFDL.
class HfdlStation {
 public:
  HfdlStation() {
    const vel::bench::HfdlDayFiles files(folder_.folders());
    folder_.start();
    browser_ = std::make_unique<vel::HfdlBrowser>(folder_.program(), folder_.web());
  }
  vel::HfdlBrowser& browser() { return *browser_; }

 private:
  Folder folder_;
  std::unique_ptr<vel::HfdlBrowser> browser_;
};

// Lets events run until the browser has read its first log.
template <typename Browser>
void fill(Browser& browser) {
  bool filled = false;
  QObject::connect(&browser, &Browser::loaded, [&filled] { filled = true; });
  browser.load();
  while (!filled) QCoreApplication::processEvents();
}

bool measureKeystroke() {
  Station station(100'000);
  vel::AcarsBrowser& browser = station.browser();
  fill(browser);
  browser.show();
  auto* box = browser.findChild<QLineEdit*>(QStringLiteral("Text4(0)"));
  vel::test::PaintWatch watch(browser.list()->viewport());
  std::vector<double> times;
  for (int i = 0; i < 40; ++i) {
    QTest::qWait(5);
    const int before = watch.count;
    const auto start = Clock::now();
    QTest::keyClick(box, i % 2 == 0 ? Qt::Key_J : Qt::Key_Backspace);
    while (watch.count == before) QCoreApplication::processEvents();
    times.push_back(millisecondsSince(start));
  }
  return report("keystroke in the flight filter, 100,000 lines, median", median(times),
                kKeystrokeLimit);
}

bool measureAirportKeystroke() {
  Station station(10);
  vel::AcarsBrowser& browser = station.browser();
  fill(browser);
  browser.show();
  auto* box = browser.findChild<QLineEdit*>(QStringLiteral("Text3"));
  auto* candidates = browser.findChild<QAbstractScrollArea*>(QStringLiteral("List1"));
  vel::test::PaintWatch watch(candidates->viewport());
  std::vector<double> times;
  for (int i = 0; i < 60; ++i) {
    QTest::qWait(5);
    const int before = watch.count;
    const auto start = Clock::now();
    QTest::keyClick(box, i % 2 == 0 ? Qt::Key_A : Qt::Key_Backspace);
    while (watch.count == before) QCoreApplication::processEvents();
    times.push_back(millisecondsSince(start));
  }
  return report("keystroke in the airport search, 6,293 airports, median", median(times),
                kAirportLimit);
}

// Reads the log again, while events run.
template <typename Browser>
void refresh(Browser& browser) {
  browser.GetLogFileList();
  while (!browser.context().jobs.isIdle()) QCoreApplication::processEvents();
}

// The longest time without a turn of the event loop while something runs.
template <typename Work>
double longestGap(Work work) {
  double longest = 0;
  auto last = Clock::now();
  QTimer turns;
  QObject::connect(&turns, &QTimer::timeout, [&] {
    longest = std::max(longest, millisecondsSince(last));
    last = Clock::now();
  });
  turns.start(0);
  QCoreApplication::processEvents();
  last = Clock::now();
  longest = 0;
  work();
  return std::max(longest, millisecondsSince(last));
}

// Whether a sort by registration is in force while a log is read.
enum class Order { ofLog, sorted };

bool measureGap(Order order) {
  Station station(1'000'000);
  vel::AcarsBrowser& browser = station.browser();
  browser.show();
  if (order == Order::sorted) browser.model()->sort(vel::kListRegistration, Qt::AscendingOrder);
  const double longest = longestGap([&browser] { refresh(browser); });
  if (browser.shownRows() != 1'000'000) qFatal("the log was not read");
  return report(order == Order::sorted
                    ? "longest gap of the event loop, 1,000,000 lines, sort in force"
                    : "longest gap of the event loop, 1,000,000 lines",
                longest, kGapLimit);
}

bool measureHfdlGap(Order order) {
  HfdlStation station;
  vel::HfdlBrowser& browser = station.browser();
  browser.show();
  if (order == Order::sorted) browser.model()->sort(vel::kHfdlRegistration, Qt::AscendingOrder);
  const double longest = longestGap([&browser] { refresh(browser); });
  if (browser.shownRows() != vel::bench::HfdlDayFiles::kSubRecords) qFatal("the log was not read");
  return report(order == Order::sorted
                    ? "longest gap of the event loop, a day of HFDL, sort in force"
                    : "longest gap of the event loop, a day of HFDL",
                longest, kGapLimit);
}

// The browser of a station whose log was written by `write` into the logs folder.
template <typename Browser>
class LogStation {
 public:
  template <typename Write>
  explicit LogStation(Write write) {
    // Without its tables the program asks and ends.
    for (const char* table : {"aircraft", "FLIGHT", "airport", "letter", "ICAO24"}) {
      std::ofstream file(folder_.folders().data / (std::string(table) + ".csv"), std::ios::binary);
      file.close();
      if (!file) qFatal("cannot write a table");
    }
    write(folder_.folders());
    folder_.start();
    browser_ = std::make_unique<Browser>(folder_.program(), folder_.web());
  }
  Browser& browser() { return *browser_; }
  vel::WebAccess& web() { return folder_.web(); }
  const vel::Folders& folders() { return folder_.folders(); }

 private:
  Folder folder_;
  std::unique_ptr<Browser> browser_;
};

constexpr int kLongRows = 25;

// Lets events run until nothing is left to do and the list was painted since.
template <typename Browser>
void settle(Browser& browser, const vel::test::PaintWatch& watch, int paintsBefore) {
  while (!browser.context().jobs.isIdle() || watch.count == paintsBefore) {
    QCoreApplication::processEvents();
  }
  QCoreApplication::processEvents();
}

// The processor time until the rows of a log are shown, and until a click on
// one of them is done: the least of some rounds.
template <typename Browser>
bool measureLongFields(const std::string& what, LogStation<Browser>& station) {
  Browser& browser = station.browser();
  fill(browser);
  browser.show();
  vel::test::PaintWatch watch(browser.list()->viewport());
  while (watch.count == 0) QCoreApplication::processEvents();
  if (browser.shownRows() != kLongRows) qFatal("the log was not read");
  constexpr int kRounds = 5;
  constexpr int kClickedRows = 5;
  vel::bench::LeastTime shown;
  vel::bench::LeastTime clicked(kClickedRows);
  for (int round = 0; round < kRounds; ++round) {
    shown.measure(0, [&] {
      const int before = watch.count;
      browser.GetLogFileList();
      settle(browser, watch, before);
    });
    for (int row = 0; row < kClickedRows; ++row) {
      clicked.measure(static_cast<std::size_t>(row), [&] {
        const int before = watch.count;
        const QModelIndex index = browser.model()->index(row, 1);
        QTest::mouseClick(browser.list()->viewport(), Qt::LeftButton, {},
                          browser.list()->visualRect(index).center());
        settle(browser, watch, before);
      });
    }
  }
  const bool kept = report((what + ", shown").c_str(), shown.seconds() * 1000, kLongFieldLimit);
  return report((what + ", a click").c_str(), clicked.seconds() * 1000 / kClickedRows,
                kLongFieldLimit) &&
         kept;
}

void writeLongRemarks(const vel::Folders& folders, char filling) {
  const std::string remark(900 << 10, filling);
  std::ofstream log(folders.logs / "20260101_list.csv", std::ios::binary);
  for (int i = 0; i < kLongRows; ++i) {
    log << "JL" << 1000 + i << ",X,JA" << 8000 + i << ",RJTT,KSFO,B748," << remark
        << ",12:34:56\r\n";
  }
  log.close();
  if (!log) qFatal("cannot write the log");
}

void writeLongHfdl(const vel::Folders& folders, char filling) {
  const std::string longText(60 << 10, filling);
  std::ofstream log(folders.logs / "202601010000_HFDL_FMT.log", std::ios::binary);
  for (int i = 0; i < kLongRows; ++i) {
    log << "[3]------------------------[2026/01/01 12:34:" << 10 + i
        << "]\r\n DOWN LINK\r\n  GS NAME         = Agana, Guam\r\n   ICAO24 ADDRESS = 84000"
        << i % 10 << "\r\n   REGISTRATION   = " << longText
        << "\r\n   FLIGHT ID      = " << longText << "\r\n  ..............................\r\n";
  }
  log.close();
  if (!log) qFatal("cannot write the log");
}

bool measureLongFields() {
  bool kept = true;
  for (const auto& [filling, name] : {std::pair{'x', "letters"}, std::pair{'\0', "NULs"}}) {
    LogStation<vel::AcarsBrowser> acars(
        [&](const vel::Folders& folders) { writeLongRemarks(folders, filling); });
    kept = measureLongFields(std::string("25 remarks of 900 KB, ") + name, acars) && kept;
    LogStation<vel::HfdlBrowser> hfdl(
        [&](const vel::Folders& folders) { writeLongHfdl(folders, filling); });
    kept = measureLongFields(std::string("25 HFDL fields of 60 KB, ") + name, hfdl) && kept;
  }
  return kept;
}

// A raw log of 20 MB that is nearly all line breaks: the longest turn of the
// event loop while it is read and shown, in processor time.
bool measureRawLog() {
  LogStation<vel::AcarsBrowser> station([](const vel::Folders& folders) {
    std::filesystem::create_directories(folders.eachLogs);
    std::ofstream log(folders.eachLogs / "JA8089.log", std::ios::binary);
    std::string breaks;
    while (breaks.size() < 900 << 10) breaks += "<CR><VF>";
    for (int i = 0; i < 22; ++i) {
      log << "[2026/01/01 12:34:56] >+*<12345678901234Y .JA8089<NAK>H11<STX>M01AJL0123" << breaks
          << "<ETX>\r\n";
    }
    log.close();
    if (!log) qFatal("cannot write the raw log");
  });
  vel::RawLogs& logs = station.web().rawLogs();
  logs.open("JA8089");
  double longest = 0;
  int turns = 0;
  while (!station.browser().context().jobs.isIdle()) {
    const double begin = vel::bench::processorSeconds();
    QCoreApplication::processEvents();
    longest = std::max(longest, vel::bench::processorSeconds() - begin);
    ++turns;
  }
  if (turns < 3 || logs.viewer()->rawText().size() < 15 << 20) qFatal("the raw log was not read");
  logs.close();
  return report("raw log of 2,600,000 line breaks, longest piece", longest * 1000, kRawLogLimit);
}

// From the start of the process to its end after the picture of the shown
// window was saved: more than the user waits for.
bool measureStart() {
  QTemporaryDir folder;
  const QString base = folder.filePath(QStringLiteral("base"));
  if (QProcess::execute(QStringLiteral(VEL_SAMPLE_BASE), {base}) != 0) qFatal("no sample base");
  std::vector<double> times;
  for (int i = 0; i < 7; ++i) {
    const auto start = Clock::now();
    const int status = QProcess::execute(
        QStringLiteral(VEL_PROGRAM),
        {QStringLiteral("--program-folder"), base + QStringLiteral("/vel"),
         QStringLiteral("--screenshot"), folder.filePath(QStringLiteral("window.png"))});
    if (status != 0) qFatal("the program failed");
    times.push_back(millisecondsSince(start));
  }
  return report("start to saved picture with the sample logs, median", median(times), kStartLimit);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  bool kept = measureKeystroke();
  kept = measureAirportKeystroke() && kept;
  kept = measureGap(Order::ofLog) && kept;
  kept = measureGap(Order::sorted) && kept;
  kept = measureHfdlGap(Order::ofLog) && kept;
  kept = measureHfdlGap(Order::sorted) && kept;
  kept = measureLongFields() && kept;
  kept = measureRawLog() && kept;
  kept = measureStart() && kept;
  return kept ? EXIT_SUCCESS : EXIT_FAILURE;
}
