// A program that is used for days takes no more memory and holds no more files
// open than after its first hour.

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include <gtest/gtest.h>

#include "tests/support/test_files.h"
#include "tests/ui/monkey/process_meter.h"
#include "tests/ui/monkey/restless_files.h"
#include "tests/ui/monkey/whole_program.h"

namespace vel::test {
namespace {

/// As often as it is meant, or a tenth of it in the usual run.
int times(int all) { return std::getenv("VEL_LONG_USE") != nullptr ? all : all / 10; }

constexpr int kLongEnough = 60'000;

class LongUseOfStarts : public testing::Test {
 protected:
  LongUseOfStarts() {
    makeStation(folders_);
    writeBytes(folders_.program / "vel.env", "\"env_Config\",1\r\n");
    // What the program tells is read and put away.
    QObject::connect(&reader_, &QTimer::timeout, &reader_, [] {
      QWidget* const box = QApplication::activeModalWidget();
      if (box != nullptr && box->objectName() == QLatin1String("MessageBox")) box->close();
    });
    reader_.start(1);
  }

  /// Does it once and again, then as often as is meant: what is in use then is
  /// within a twentieth of what was after the first times.
  void repeat(const char* name, int count, const std::function<void()>& act) {
    const int first = std::max(2, count / 10);
    for (int i = 0; i < first; ++i) act();
    const std::size_t bytes = allocatedBytes();
    const std::size_t descriptors = openDescriptors();
    for (int i = first; i < first + count; ++i) act();
    const std::size_t bytesAfter = allocatedBytes();
    std::printf("%s, %d times: %zu KB, then %zu KB; %zu descriptors, then %zu\n", name, count,
                bytes / 1024, bytesAfter / 1024, descriptors, openDescriptors());
    EXPECT_LE(bytesAfter, bytes + bytes / 20);
    EXPECT_LE(openDescriptors(), descriptors + descriptors / 20);
  }

  /// Waits until a window is shown, and has it painted: one that never was takes
  /// less memory, and what paints it starts when it is first needed.
  static void see(QWidget& window) {
    const auto isShown = [&] { return window.testAttribute(Qt::WA_Mapped); };
    EXPECT_TRUE(QTest::qWaitFor(isShown, kLongEnough));
    window.repaint();
  }

  TemporaryFolder folder_;
  Folders folders_ = Folders::of(folder_ / "station" / "vel");
  QTimer reader_;
};

class LongUse : public LongUseOfStarts {
 protected:
  void SetUp() override { ASSERT_TRUE(program_.start()); }

  static void press(const QWidget& window, const char* name) {
    auto* const button = window.findChild<QAbstractButton*>(QLatin1String(name));
    ASSERT_NE(button, nullptr) << name;
    QTest::mouseClick(button, Qt::LeftButton);
  }

  void finish() const {
    while (!program_.jobs().isIdle()) QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  /// Closes a window once it has been painted: one that never was takes less
  /// memory.
  static bool closeSeen(QWidget& window) {
    if (!window.testAttribute(Qt::WA_Mapped)) return false;
    window.repaint();
    return window.close();
  }

  /// What takes all keys and clicks.
  static QWidget* modalWindow() {
    QWidget* const popup = QApplication::activePopupWidget();
    return popup != nullptr ? popup : QApplication::activeModalWidget();
  }

  /// Closes whatever the action opened, whether it waits for it or not.
  void openAndClose(const std::function<void()>& open) {
    QTimer closer;
    bool closed = false;
    QObject::connect(&closer, &QTimer::timeout, &closer, [&] {
      QWidget* const shown = modalWindow();
      if (shown != nullptr && closeSeen(*shown)) closed = true;
    });
    closer.start(1);
    open();
    finish();
    const auto nothingIsOpen = [&] {
      if (modalWindow() != nullptr) return false;
      for (QWidget* window : QApplication::topLevelWidgets()) {
        const bool isBrowser = window == &program_.acars() || window == &program_.hfdl();
        if (!window->isVisible() || isBrowser) continue;
        if (closeSeen(*window)) closed = true;
        return false;
      }
      return true;
    };
    EXPECT_TRUE(QTest::qWaitFor(nothingIsOpen, kLongEnough));
    closer.stop();
    finish();
    EXPECT_TRUE(closed) << "nothing opened";
  }

  WholeProgram program_{folders_};
};

TEST_F(LongUseOfStarts, StartingAndEnding) {
  repeat("starts", times(500), [&] {
    WholeProgram program(folders_);
    ASSERT_TRUE(program.start());
    while (!program.jobs().isIdle()) QCoreApplication::processEvents();
    see(program.acars());
    EXPECT_TRUE(program.acars().close());
    EXPECT_TRUE(QTest::qWaitFor([&] { return program.hasEnded(); }, kLongEnough));
  });
}

TEST_F(LongUse, SwitchingBetweenTheBrowsers) {
  repeat("switches", times(200), [&] {
    press(program_.acars(), "Command11");
    finish();
    press(program_.hfdl(), "Command12");
    finish();
  });
  EXPECT_TRUE(program_.acars().isVisible());
}

TEST_F(LongUse, ReadingTheLogsAgain) {
  repeat("reloads", times(500), [&] {
    press(program_.acars(), "Command5");
    finish();
  });
  EXPECT_GT(program_.acars().shownRows(), 100);
  press(program_.acars(), "Command11");
  finish();
  repeat("reloads of HFDL", times(500), [&] {
    press(program_.hfdl(), "Command5");
    finish();
  });
  EXPECT_GT(program_.hfdl().shownRows(), 100);
}

TEST_F(LongUse, OpeningEveryWindow) {
  AcarsBrowser& acars = program_.acars();
  HfdlBrowser& hfdl = program_.hfdl();
  // The name of a line's airport, by which it is edited: down the list, until a
  // line has one. A read that ends later takes the selection with it.
  auto* const airport = acars.findChild<QWidget*>(QStringLiteral("Label2(4)"));
  ASSERT_NE(airport, nullptr);
  const auto showsAnAirport = [&] {
    finish();
    if (!airport->property("text").toString().isEmpty()) return true;
    QTest::keyClick(acars.list(), Qt::Key_Down);
    return false;
  };
  ASSERT_TRUE(QTest::qWaitFor(showsAnAirport, kLongEnough));
  const int count = times(50);
  repeat("airport", count,
         [&] { openAndClose([&] { QTest::mouseClick(airport, Qt::LeftButton); }); });
  repeat("tour", count, [&] { openAndClose([&] { press(acars, "Command4"); }); });
  repeat("configuration", count, [&] { openAndClose([&] { press(acars, "Command10"); }); });
  repeat("find", count, [&] { openAndClose(acars.showFind); });
  repeat("report", count, [&] { openAndClose(acars.showReport); });
  repeat("import", count, [&] { openAndClose([&] { acars.showImport({}); }); });
  repeat("saved list", count, [&] {
    acars.saveList();
    finish();
  });
  repeat("raw log", count, [&] { openAndClose([&] { program_.openRawLog("JA1000A"); }); });
  repeat("ground stations", count, [&] { openAndClose(hfdl.showActivityChart); });
  repeat("frequencies", count, [&] { openAndClose(hfdl.showFrequencyChart); });
  repeat("magnifier", count, [&] {
    openAndClose([&] {
      hfdl.showFrequencyChart();
      finish();
      for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* enlarge = window->findChild<QAction*>(QStringLiteral("EnlargeChart"))) {
          enlarge->trigger();
        }
      }
    });
  });
}

}  // namespace
}  // namespace vel::test
