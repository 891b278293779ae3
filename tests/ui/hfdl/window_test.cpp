#include <QComboBox>
#include <QToolTip>
#include <set>

#include <gmock/gmock.h>

#include "acars/ui/acars_browser.h"
#include "tests/ui/support/hfdl_window.h"
#include "tests/ui/support/layout_checks.h"
#include "tests/ui/support/settled_places.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class HfdlWindow : public test::HfdlWindowTest {
 protected:
  [[nodiscard]] QWidget& acars() const { return *program_->mainWindow(); }
};

TEST_F(HfdlWindow, HasItsCaptionAndItsTwelveTitles) {
  start();
  EXPECT_EQ(window().windowTitle(), QStringLiteral("VEL FMT.log Browser"));
  std::vector<std::string> titles;
  for (int i = 0; i < window().model()->columnCount(); ++i) {
    titles.push_back(
        window().model()->headerData(i, Qt::Horizontal, Qt::DisplayRole).toString().toStdString());
  }
  EXPECT_THAT(titles, ElementsAre("Line", "Time", "Tag", "U/D", "Ground station", "ICAO24",
                                  "Regist.", "Flight", "Aircraft", "Pict", "Dept.", "Dest."));
}

TEST_F(HfdlWindow, TheWayBackHidesItAndShowsTheAcarsBrowser) {
  start();
  EXPECT_FALSE(acars().isVisible());
  click("Command12");
  EXPECT_TRUE(acars().isVisible());
  EXPECT_FALSE(window().isVisible());
}

TEST_F(HfdlWindow, CtrlTabSwitchesThereAndBackAndTheListStays) {
  start();
  select(1);
  QTest::keyClick(&window(), Qt::Key_Tab, Qt::ControlModifier);
  ASSERT_TRUE(acars().isVisible());
  ASSERT_TRUE(QTest::qWaitForWindowActive(&acars()));
  const long before = reads();
  QTest::keyClick(&acars(), Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(reads(), before);
  EXPECT_EQ(list().listIndex(), 1);
  EXPECT_EQ(flight(), "JL0123");
}

TEST_F(HfdlWindow, F5RefreshesAndCtrlCCopiesTheLine) {
  start();
  const long before = reads();
  QTest::keyClick(&window(), Qt::Key_F5);
  test::finishJobs();
  EXPECT_EQ(reads(), before + 1);
  select(2);
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(desktop_.clipboard,
            "0003\t2026/01/02 09:03:00\t[1]\tD\t Agana, Guam\t861234\tJA731A\t\t"
            " JA731A ANA NH B773\tx\t\t");
}

TEST_F(HfdlWindow, ATitleSortsAndTheSortStaysInForceAcrossARead) {
  start();
  clickTitle(kHfdlFlight);
  EXPECT_THAT(column(kHfdlFlight), ElementsAre("", "123", "JL0012", "JL0123", "XX0001"));
  click("Command5");
  EXPECT_THAT(column(kHfdlFlight), ElementsAre("", "123", "JL0012", "JL0123", "XX0001"));
  clickTitle(kHfdlFlight);
  EXPECT_THAT(column(kHfdlFlight), ElementsAre("XX0001", "JL0123", "JL0012", "123", ""));
}

TEST_F(HfdlWindow, ClosingItEndsTheProgramAndSavesTheSettings) {
  start();
  window().close();
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 0);
  EXPECT_THAT(test::readBytes(base_.folders.program / "vel.env"),
              HasSubstr("\"env_Form1_WinS\",0\r\n"));
}

TEST_F(HfdlWindow, TheFirstUnloadRecordsItsPlace) {
  start();
  ASSERT_TRUE(test::placesSettle());
  settings().env_Form1_Top = -1;
  settings().env_Form1_Left = -1;
  const QRect place = window().frameGeometry();
  window().close();
  EXPECT_EQ(settings().env_Form1_Top, place.y() * 15);
  EXPECT_EQ(settings().env_Form1_Left, place.x() * 15);
  EXPECT_FALSE(program_->place().awaitsFirstUnload());
}

TEST_F(HfdlWindow, WithoutTheirWindowsTheChartButtonsAreNotShown) {
  start();
  EXPECT_FALSE(isShown("Command8"));
  EXPECT_FALSE(isShown("Command10"));
}

class HfdlCharts : public HfdlWindow {
 protected:
  void setBrowsers() override {
    program_->setBrowsers(
        [this](BrowserFrame& owner) { return std::make_unique<AcarsBrowser>(owner, *web_); },
        [this](BrowserFrame& owner) {
          auto browser = std::make_unique<HfdlBrowser>(owner, *web_);
          browser->showActivityChart = [this] { shown_ += "activity "; };
          browser->showFrequencyChart = [this] { shown_ += "frequency "; };
          return browser;
        });
  }
  std::string shown_;
};

TEST_F(HfdlCharts, TheButtonsOpenTheCharts) {
  start();
  ASSERT_TRUE(isShown("Command8") && isShown("Command10"));
  click("Command8");
  click("Command10");
  EXPECT_EQ(shown_, "activity frequency ");
}

TEST_F(HfdlWindow, EveryControlHasANameATipAndAPlaceInTheTabOrder) {
  start();
  select(0);
  std::set<std::string> reached;
  window().setFocus();
  QTest::keyClick(&window(), Qt::Key_Tab);
  for (int i = 0; i < 100 && window().focusWidget() != nullptr; ++i) {
    reached.insert(window().focusWidget()->objectName().toStdString());
    QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
  }
  for (const QWidget* widget : test::controlsOf(window())) {
    if (widget->inherits("QLabel")) continue;
    const std::string name = widget->objectName().toStdString();
    EXPECT_FALSE(name.empty()) << widget->metaObject()->className();
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << name;
    EXPECT_TRUE(reached.contains(name)) << name;
    const bool tipOfItsOwn = widget->inherits("QAbstractItemView") || name.starts_with("Label2");
    EXPECT_TRUE(tipOfItsOwn || !widget->toolTip().isEmpty()) << name;
  }
}

TEST_F(HfdlWindow, TheAirportSearchIsFilledAtStart) {
  start();
  EXPECT_EQ(find<QAbstractItemView>("List1").model()->rowCount(), 4);
}

}  // namespace
}  // namespace vel
