#pragma once

#include <QFile>
#include <QProcess>
#include <QTest>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/test_files.h"

namespace vel::test {

inline constexpr int kLongEnough = 60'000;

/// The program itself, started as a user or the system starts and ends it, with a
/// small base folder of its own.
class TheProgram : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* table :
         {"aircraft.csv", "FLIGHT.csv", "airport.csv", "letter.csv", "ICAO24.csv"}) {
      base_.writeData(table, {});
    }
    base_.writeLog("20260102_list.csv", {"A1,O,R,D,E,Q,M,01:00:00"});
    base_.writeLog("202601020000_HFDL_FMT.log", {});
    environment_ = QProcessEnvironment::systemEnvironment();
  }

  void start(QStringList options) {
    options += {QStringLiteral("--program-folder"),
                QString::fromStdString(base_.folders.program.string())};
    process_.setProcessEnvironment(environment_);
    process_.start(QStringLiteral(VEL_PROGRAM), options);
    ASSERT_TRUE(process_.waitForStarted());
  }
  void finish() {
    ASSERT_TRUE(process_.waitForFinished(kLongEnough));
    EXPECT_EQ(process_.exitStatus(), QProcess::NormalExit);
    output_ = process_.readAllStandardOutput().replace("\r\n", "\n").toStdString();
    errors_ = process_.readAllStandardError().replace("\r\n", "\n").toStdString();
  }
  void withoutDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
      environment_.remove(QString::fromLatin1(name));
    }
  }
  [[nodiscard]] QString picture() const {
    return QString::fromStdString((base_.folders.base / "window.png").string());
  }
  [[nodiscard]] std::filesystem::path settings() const { return base_.folders.program / "vel.env"; }

  TemporaryBase base_;
  QProcessEnvironment environment_;
  QProcess process_;
  std::string output_;
  std::string errors_;
};

}  // namespace vel::test
