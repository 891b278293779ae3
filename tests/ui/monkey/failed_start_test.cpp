// Programs that cannot be started, or do not come up: asked for again and
// again, they leave no descriptor open.

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "app/ui/first_start_dialog.h"
#include "core/file.h"
#include "core/ui/qt_desktop.h"
#include "tests/support/test_files.h"
#include "tests/ui/monkey/process_meter.h"
#include "web/ui/companion.h"

namespace vel::test {
namespace {

namespace fs = std::filesystem;

constexpr int kTimes = 50;
constexpr int kLongEnough = 60'000;

/// How many descriptors more are open after a piece of work was done fifty
/// times. What a library sets up when it is first used is no growth.
long growth(const std::function<void()>& work) {
  const auto count = [] {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return static_cast<long>(openDescriptors());
  };
  work();
  const long before = count();
  for (int i = 0; i < kTimes && !testing::Test::HasFatalFailure(); ++i) work();
  return count() - before;
}

class FailedStart : public testing::Test {
 protected:
  void TearDown() override { qunsetenv("VEL_STAND_IN"); }

  /// A file that stands where the companion should.
  [[nodiscard]] QString file(std::string_view bytes, fs::perms permissions) const {
    const fs::path path = base_ / "velweb";
    writeBytes(path, bytes);
    fs::permissions(path, permissions);
    return toQString(toUtf8(path));
  }
  [[nodiscard]] static QString standIn(const char* how) {
    qputenv("VEL_STAND_IN", how);
    return QStringLiteral(VEL_STAND_IN_SERVICE);
  }
  /// Asks for the companion and waits for the answer that there is none.
  static void askInVain(Companion& companion) {
    QObject asker;
    int answers = 0;
    std::string address = "not answered";
    companion.request(&asker, [&](const std::string& answer) {
      ++answers;
      address = answer;
    });
    EXPECT_EQ(answers, 0) << "answered before the event loop ran";
    ASSERT_TRUE(QTest::qWaitFor([&answers] { return answers > 0; }, kLongEnough));
    EXPECT_EQ(address, "");
  }

  TemporaryBase base_;
};

TEST_F(FailedStart, AMissingCompanionLeavesNothingOpen) {
  Companion companion(base_.folders, QStringLiteral("/nowhere/velweb"));
  EXPECT_EQ(growth([&] { askInVain(companion); }), 0);
}

TEST_F(FailedStart, AFileThatMayNotBeStartedLeavesNothingOpen) {
  Companion companion(base_.folders,
                      file("#!/bin/sh\n", fs::perms::owner_read | fs::perms::owner_write));
  EXPECT_EQ(growth([&] { askInVain(companion); }), 0);
}

// The library keeps a descriptor for each start that the system refuses.
TEST_F(FailedStart, AProgramThatTheSystemRefusesIsLeftAloneInTheEnd) {
  constexpr long kMostRefusedStarts = 10;
  Companion companion(base_.folders, file("\x7f"
                                          "ELF of no kind",
                                          fs::perms::owner_all));
  EXPECT_LE(growth([&] { askInVain(companion); }), kMostRefusedStarts);
  EXPECT_EQ(growth([&] { askInVain(companion); }), 0);
}

TEST_F(FailedStart, ACompanionThatSaysSomethingElseLeavesNothingOpen) {
  Companion companion(base_.folders, standIn("other"));
  EXPECT_EQ(growth([&] { askInVain(companion); }), 0);
}

TEST_F(FailedStart, ACompanionThatIsLeftWhileItStartsLeavesNothingOpen) {
  const QString silent = standIn("silent");
  EXPECT_EQ(growth([&] {
              Companion companion(base_.folders, silent);
              QObject asker;
              companion.request(&asker, [](const std::string&) { ADD_FAILURE() << "answered"; });
            }),
            0);
}

TEST_F(FailedStart, AMakerOfSamplesThatIsGoneLeavesNothingOpen) {
  FirstStartDialog dialog({.sampleMaker = base_ / "nothing", .sampleParent = base_.path()});
  dialog.show();
  auto* const make = dialog.findChild<QPushButton*>(QStringLiteral("MakeSample"));
  auto* const note = dialog.findChild<QLabel*>(QStringLiteral("Note"));
  ASSERT_TRUE(make != nullptr && note != nullptr);
  EXPECT_EQ(
      growth([&] {
        note->clear();
        QTest::mouseClick(make, Qt::LeftButton);
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return note->text().contains(QLatin1String("was not made")); }, kLongEnough));
      }),
      0);
}

TEST_F(FailedStart, AMissingOpenerLeavesNothingOpen) {
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", QByteArray::fromStdString(base_.path().string()));
  QtDesktop desktop;
  constexpr int kNoProgram = 31;
  EXPECT_EQ(growth([&] { EXPECT_EQ(desktop.open("http://127.0.0.1:9/"), kNoProgram); }), 0);
  qputenv("PATH", path);
}

}  // namespace
}  // namespace vel::test
