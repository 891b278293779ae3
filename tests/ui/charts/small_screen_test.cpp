// Every window beside the browsers is wholly in sight on the smallest screen:
// 1280 x 800 device pixels at double scale.

#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>

#include "hfdl/ui/activity_window.h"
#include "hfdl/ui/frequency_window.h"
#include "history/ui/history_window.h"
#include "history/ui/report_window.h"
#include "tests/ui/charts/chart_station.h"

namespace vel::test {
namespace {

class SmallScreen : public testing::Test {
 protected:
  SmallScreen() { station_.use(); }

  void SetUp() override { ASSERT_EQ(screen().size(), QSize(640, 400)); }

  static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }

  static void expectInSight(const QWidget& window) {
    EXPECT_LE(window.width(), screen().width());
    // A title bar stands above the window.
    EXPECT_LE(window.height() + 24, screen().height());
    EXPECT_GE(window.width(), window.minimumSizeHint().width());
    EXPECT_GE(window.height(), window.minimumSizeHint().height());
  }

  TestStation station_;
};

TEST_F(SmallScreen, HoldsBothCharts) {
  ActivityWindow activity(station_.context(), [] { return std::string(); });
  activity.open();
  FrequencyWindow frequencies(station_.context());
  frequencies.open();
  finishJobs();
  for (const QWidget* window :
       {static_cast<QWidget*>(&activity), static_cast<QWidget*>(&frequencies)}) {
    expectInSight(*window);
  }
}

TEST_F(SmallScreen, HoldsTheMagnifierWhichScrolls) {
  FrequencyWindow frequencies(station_.context());
  frequencies.open();
  finishJobs();
  Magnifier& magnifier = *frequencies.magnifier();
  magnifier.setCentre(200, 100);
  magnifier.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&magnifier));
  expectInSight(magnifier);
  auto& area = control<QScrollArea>(magnifier, "MagnifierArea");
  EXPECT_EQ(area.widget()->size(), QSize(608, 644));
  EXPECT_GT(area.verticalScrollBar()->maximum(), 0);
  QTest::keyClick(&area, Qt::Key_Down);
  EXPECT_GT(area.verticalScrollBar()->value(), 0);
  QTest::keyClick(&magnifier, Qt::Key_Escape);
  EXPECT_FALSE(magnifier.isVisible());
}

TEST_F(SmallScreen, HoldsTheWindowsOverAllDays) {
  std::string lines;
  for (int i = 0; i < 20; ++i) {
    lines += "FLIGHT-OF-SOME-LENGTH-" + std::to_string(i) + ",X,JA8089-OF-SOME-LENGTH,RJTT" +
             std::to_string(i) + ",KSFO,B789,-,9:05:00\r\n";
  }
  writeBytes(station_.base.folders.logs / "20261120_list.csv", lines);
  HistoryWindow found(station_.context());
  found.openWith(SearchMeaning::anyText, "FLIGHT");
  finishJobs();
  EXPECT_EQ(control<QTableView>(found, "FoundList").model()->rowCount(), 20);
  expectInSight(found);
  ReportWindow report(station_.context());
  report.open(ReportKind::list, "20261120_list.csv");
  finishJobs();
  expectInSight(report);
}

}  // namespace
}  // namespace vel::test
