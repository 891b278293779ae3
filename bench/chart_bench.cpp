// What a user waits for while a chart window is resized, at single and at
// double scale: from the new size until the chart is painted again. The logs
// are seven days of 20,000 messages each from sixteen stations. Runs offscreen.

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "app/ui/program.h"
#include "core/ui/qt_desktop.h"
#include "hfdl/hfdl_lines.h"
#include "hfdl/ui/activity_window.h"
#include "hfdl/ui/frequency_window.h"
#include "tests/ui/support/paint_watch.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kRedrawLimit = 16;  // milliseconds, median
constexpr int kMessagesADay = 20'000;
constexpr int kDays = 7;
constexpr int kStations = 16;
constexpr int kFrequencies = 7;
constexpr const char* kScale = "QT_SCALE_FACTOR";

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Each message is one station's list of the frequencies that it has on air.
void writeLog(const std::filesystem::path& file, std::chrono::local_days day) {
  std::ofstream log(file, std::ios::binary);
  const std::string digits = vel::dayDigits(day);
  for (int i = 0; i < kMessagesADay; ++i) {
    const int second = static_cast<int>(86400LL * i / kMessagesADay);
    char line[160];
    const int size =
        std::snprintf(line, sizeof line,
                      "[3]------------------------[%.4s/%.2s/%.2s %02d:%02d:%02d]\r\n SQUITTER\r\n"
                      "  GS NAME         = Station %d\r\n   FREQUENCIES    = [",
                      digits.c_str(), digits.c_str() + 4, digits.c_str() + 6, second / 3600,
                      second / 60 % 60, second % 60, i % kStations);
    log.write(line, size);
    const int onAir = i / 700 + i % kStations;
    for (int f = 0; f < kFrequencies; ++f) {
      if ((onAir + f) % 3 == 0) log << ' ' << 2900 + i % kStations * 37 + f * 2711;
    }
    log << " ] (Station " << i % kStations << ")\r\n";
  }
  log.close();
  if (!log) qFatal("cannot write the log");
}

bool measureRedraw(const char* what, vel::ChartWindow& window, vel::ChartPicture* picture) {
  window.open();
  QTest::qWait(1500);
  vel::test::PaintWatch watch(picture);
  std::vector<double> times;
  for (int i = 0; i < 60; ++i) {
    const int before = watch.count;
    const auto start = Clock::now();
    window.resize(1200 - i % 12 * 20, 740 - i % 7 * 10);
    while (watch.count == before) QCoreApplication::processEvents();
    times.push_back(millisecondsSince(start));
  }
  std::sort(times.begin(), times.end());
  const double median = times[times.size() / 2];
  const bool kept = median <= kRedrawLimit;
  std::printf("%-40s scale %.0f %8.1f ms of %4.0f ms %s (longest %.1f ms)\n", what,
              picture->devicePixelRatioF(), median, kRedrawLimit, kept ? "kept" : "EXCEEDED",
              times.back());
  std::fflush(stdout);
  return kept;
}

bool measure() {
  const QTemporaryDir folder;
  const auto folders = vel::Folders::of(folder.path().toStdString() + "/vel");
  for (const auto& each : {folders.program, folders.logs}) {
    std::filesystem::create_directories(each);
  }
  vel::QtDesktop desktop;
  const auto today = std::chrono::floor<std::chrono::days>(desktop.now());
  std::string newest;
  for (int day = 0; day < kDays; ++day) {
    const auto date = today - std::chrono::days(kDays - 1 - day);
    newest = vel::dayDigits(date) + "0000_HFDL_FMT.log";
    writeLog(folders.logs / newest, date);
  }
  vel::Program program(desktop, folders);
  vel::ActivityWindow activity(program.context(), [&] { return newest; });
  vel::FrequencyWindow frequencies(program.context());
  const bool kept =
      measureRedraw("ground stations, redraw on resize, median", activity, activity.picture());
  return measureRedraw("frequencies, redraw on resize, median", frequencies,
                       frequencies.picture()) &&
         kept;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const bool scaled = qEnvironmentVariableIsSet(kScale);
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  bool kept = measure();
  if (!scaled) {
    // The scale of a program is fixed when it starts.
    qputenv(kScale, "2");
    kept = QProcess::execute(QCoreApplication::applicationFilePath(), {}) == 0 && kept;
  }
  return kept ? EXIT_SUCCESS : EXIT_FAILURE;
}
