#include <QCommandLineParser>
#include <QDateTime>
#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <system_error>

#include "core/file.h"
#include "samples/failure.h"
#include "samples/hfdl_log.h"
#include "samples/list_log.h"
#include "samples/photo.h"
#include "samples/raw_log.h"
#include "samples/sample_data.h"
#include "samples/schedule.h"
#include "samples/tables.h"

namespace vel::samples {
namespace {

constexpr int kFailed = 1;
constexpr int kRefused = 2;

/// Of the newest day's aircraft, one of so many has no photo, and of those
/// without one, one of so many has a raw log.
constexpr std::size_t kUnphotographed = 6;
constexpr std::size_t kLoggedWithoutPhoto = 8;
constexpr int kRawLogDays = 3;

struct Request {
  std::filesystem::path base;
  int days = 7;
  Day today;
  /// Nothing in the logs is later than this.
  Moment until;
  std::uint64_t seed = 1;
  bool force = false;
};

Moment localNow() {
  const QDateTime now = QDateTime::currentDateTime();
  return Moment(std::chrono::seconds(now.toSecsSinceEpoch() + now.offsetFromUtc()));
}

/// The folders of a base folder, created where they are missing.
Status makeFolders(const std::filesystem::path& base) {
  for (const char* name : {"vel", "data", "logs", "logs/EachLogs", "pics"}) {
    std::error_code error;
    std::filesystem::create_directories(base / name, error);
    if (error) return failure(toUtf8(base / name) + ": cannot create: " + error.message());
  }
  return {};
}

/// The newest day's aircraft, each once: those of its list in the order in which
/// they were heard, then those of its HFDL log.
std::vector<const Aircraft*> aircraftOf(const std::vector<Reception>& receptions,
                                        const std::set<const Aircraft*>& onHfdl) {
  std::vector<const Aircraft*> heard;
  std::set<const Aircraft*> seen;
  for (const Reception& reception : receptions) {
    if (seen.insert(reception.flight->aircraft).second) heard.push_back(reception.flight->aircraft);
  }
  const auto firstOnHfdl = static_cast<std::ptrdiff_t>(heard.size());
  for (const Aircraft* aircraft : onHfdl) {
    if (seen.insert(aircraft).second) heard.push_back(aircraft);
  }
  std::sort(heard.begin() + firstOnHfdl, heard.end(),
            [](const Aircraft* a, const Aircraft* b) { return a->registration < b->registration; });
  return heard;
}

/// Whose photos to draw: of those whose airline's colours are known, most.
std::vector<const Aircraft*> choosePhotographed(const SampleData& data,
                                                const std::vector<const Aircraft*>& heard) {
  std::vector<const Aircraft*> chosen;
  std::size_t number = 0;
  for (const Aircraft* aircraft : heard) {
    if (data.airline(aircraft->airline).fuselageColour.empty()) continue;
    if (++number % kUnphotographed != 0) chosen.push_back(aircraft);
  }
  return chosen;
}

/// Whose raw logs to write: of all with a photo, and of some others.
std::vector<const Aircraft*> chooseRawLogs(const std::vector<const Aircraft*>& heard,
                                           const std::set<std::string>& photographed) {
  std::vector<const Aircraft*> chosen;
  std::size_t without = 0;
  for (const Aircraft* aircraft : heard) {
    if (aircraft->registration.size() > kLongestAddress) continue;
    if (photographed.contains(aircraft->registration) || ++without % kLoggedWithoutPhoto == 0) {
      chosen.push_back(aircraft);
    }
  }
  return chosen;
}

Status makeSampleBase(const Request& request) {
  SampleData data;
  if (Status status = data.load(); !status) return status;
  if (Status status = makeFolders(request.base); !status) return status;
  if (Status status = writeTables(data, request.base / "data"); !status) return status;

  const Day first = request.today - std::chrono::days(request.days - 1);
  const Schedule schedule(data, first, request.today, request.seed);
  std::map<Day, std::vector<Reception>> receptions;
  for (Day day = first; day <= request.today; day += std::chrono::days(1)) {
    receptions[day] = receptionsOf(data, schedule, day, request.until, request.seed);
  }
  const std::vector<const Aircraft*> heard =
      aircraftOf(receptions[request.today], aircraftOnHfdl(schedule, request.today, request.until));
  std::set<std::string> photographed;
  for (const Aircraft* aircraft : choosePhotographed(data, heard)) {
    photographed.insert(aircraft->registration);
    if (Status status = writePhoto(request.base / "pics", *aircraft,
                                   data.airline(aircraft->airline), request.seed);
        !status) {
      return status;
    }
  }
  if (Status status = writeNoImage(request.base / "pics"); !status) return status;

  const std::filesystem::path logs = request.base / "logs";
  for (const auto& [day, heardThen] : receptions) {
    // The newest log opens first; a report of bad lines is no way to say hello.
    const bool withMalformed = day != request.today;
    if (Status status =
            writeListLog(logs, day, heardThen, photographed, withMalformed, request.seed);
        !status) {
      return status;
    }
    if (Status status = writeHfdlLog(logs, data, schedule, day, request.until, request.seed);
        !status) {
      return status;
    }
  }
  const Moment rawFrom = request.today - std::chrono::days(kRawLogDays - 1);
  for (const Aircraft* aircraft : chooseRawLogs(heard, photographed)) {
    if (Status status = writeRawLog(logs / "EachLogs", *aircraft, schedule, rawFrom, request.until,
                                    request.seed);
        !status) {
      return status;
    }
  }
  return {};
}

std::optional<Day> parseDay(const QString& text) {
  const QDate date = QDate::fromString(text, Qt::ISODate);
  if (!date.isValid()) return std::nullopt;
  return Day(std::chrono::year_month_day(std::chrono::year(date.year()),
                                         std::chrono::month(static_cast<unsigned>(date.month())),
                                         std::chrono::day(static_cast<unsigned>(date.day()))));
}

/// What the command line asks for; nothing, with a message on the standard
/// error stream, where it is not understood.
std::optional<Request> parseCommandLine(const QCoreApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Makes a sample base folder: reference tables, logs, raw logs and photos."));
  parser.addHelpOption();
  parser.addPositionalArgument(QStringLiteral("DIR"), QStringLiteral("The base folder to make."));
  parser.addOptions({
      {QStringLiteral("days"), QStringLiteral("Days of logs, 1 to 60 (7)."), QStringLiteral("N"),
       QStringLiteral("7")},
      {QStringLiteral("today"),
       QStringLiteral("The last day of the logs (today). A given day ends at 18:00."),
       QStringLiteral("YYYY-MM-DD")},
      {QStringLiteral("until"), QStringLiteral("When the last day's logs end (now)."),
       QStringLiteral("HH:MM")},
      {QStringLiteral("seed"), QStringLiteral("Another number makes other logs (1)."),
       QStringLiteral("N"), QStringLiteral("1")},
      {QStringLiteral("force"), QStringLiteral("Write into a folder that has tables already.")},
  });
  parser.process(application);

  const auto refuse = [](const std::string& message) {
    std::cerr << "vel-sample-base: " << message << '\n';
    return std::nullopt;
  };
  Request request;
  if (parser.positionalArguments().size() != 1) return refuse("name one folder; --help tells more");
  request.base = toPath(parser.positionalArguments().constFirst().toStdString());
  request.force = parser.isSet(QStringLiteral("force"));
  bool daysOk = false;
  request.days = parser.value(QStringLiteral("days")).toInt(&daysOk);
  bool seedOk = false;
  request.seed = parser.value(QStringLiteral("seed")).toULongLong(&seedOk);
  if (!daysOk || request.days < 1 || request.days > 60 || !seedOk) {
    return refuse("--days takes 1 to 60 and --seed a whole number");
  }
  const Moment now = localNow();
  request.today = std::chrono::floor<std::chrono::days>(now);
  request.until = now;
  if (parser.isSet(QStringLiteral("today"))) {
    const std::optional<Day> day = parseDay(parser.value(QStringLiteral("today")));
    if (!day) return refuse("--today takes a date like 2026-11-20");
    request.today = *day;
    request.until = *day + std::chrono::hours(18);
  }
  if (parser.isSet(QStringLiteral("until"))) {
    const QTime time =
        QTime::fromString(parser.value(QStringLiteral("until")), QStringLiteral("HH:mm"));
    if (!time.isValid()) return refuse("--until takes a time like 18:00");
    request.until = request.today + std::chrono::seconds(time.msecsSinceStartOfDay() / 1000);
  }
  return request;
}

}  // namespace
}  // namespace vel::samples

int main(int argc, char* argv[]) {
  using namespace vel::samples;
#ifndef _WIN32
  // Photos are drawn in memory; no display is needed, not even where there is one.
  // Windows always has its own, and only with that the fonts.
  if (!qputenv("QT_QPA_PLATFORM", "offscreen")) {
    std::cerr << "vel-sample-base: cannot set the drawing platform\n";
    return kFailed;
  }
#endif
  const QGuiApplication application(argc, argv);
  const std::optional<Request> request = parseCommandLine(application);
  if (!request) return kFailed;
  std::error_code error;
  if (!request->force && std::filesystem::exists(request->base / "data", error)) {
    std::cerr << "vel-sample-base: " << vel::toUtf8(request->base / "data")
              << " exists already; --force writes over it\n";
    return kRefused;
  }
  if (const vel::Status status = makeSampleBase(*request); !status) {
    std::cerr << "vel-sample-base: " << status.error().text() << '\n';
    return kFailed;
  }
  std::cout << vel::toUtf8(request->base) << ": " << request->days << " days of logs up to "
            << timeStamp(request->until) << '\n';
  return std::cout.flush() ? 0 : kFailed;
}
