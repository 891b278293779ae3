#include <QApplication>
#include <QMenu>
#include <memory>

#include <gmock/gmock.h>

#include "acars/ui/acars_browser.h"
#include "tests/ui/web/web_fixture.h"
#include "web/ui/raw_log_viewer.h"

namespace vel {
namespace {

using test::rawLine;
using test::shownBlock;
using testing::ElementsAre;

class RawLogFromAcarsTest : public test::WebWindowTest {
 protected:
  void SetUp() override {
    makeProgram();
    for (const char* table :
         {"FLIGHT.csv", "aircraft.csv", "letter.csv", "airport.csv", "ICAO24.csv"}) {
      base_.writeData(table, {});
    }
    base_.writeLog("20261120_list.csv", {"JL0012,O,JA8089,RJTT,RJFF,B763,-,00:01:00",
                                         "JL0014,O,..,RJTT,RJFF,B763,-,00:02:00"});
    writeRawLog("JA8089", rawLine("HDR", "POS") + "\r\n");
    browser_ = std::make_unique<AcarsBrowser>(*program_, *web_);
    browser_->load();
    browser_->show();
    ASSERT_TRUE(QTest::qWaitFor([this] { return browser_->model()->rowCount() == 2; }));
    ASSERT_TRUE(QTest::qWaitForWindowActive(browser_.get()));
    ASSERT_EQ(browser_->model()->rowCount(), 2);
    ASSERT_TRUE(desktop_.messages.empty());
  }
  void TearDown() override {
    browser_.reset();
    test::WebWindowTest::TearDown();
  }
  void pressRawLog() {
    auto* button = browser_->findChild<QPushButton*>(QStringLiteral("Command7(3)"));
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
    letWindowRead();
  }

  std::unique_ptr<AcarsBrowser> browser_;
};

TEST_F(RawLogFromAcarsTest, TheButtonOpensTheLogOfTheSelectedLinesRegistration) {
  browser_->list()->setListIndex(0);
  pressRawLog();
  ASSERT_NE(viewer(), nullptr);
  EXPECT_TRUE(viewer()->isVisible());
  EXPECT_EQ(text(), shownBlock("HDR", "POS"));
}

TEST_F(RawLogFromAcarsTest, WithoutASelectedLineTheButtonSaysSo) {
  pressRawLog();
  EXPECT_THAT(desktop_.messages, ElementsAre("Log list not selected. データが選択されていません"));
  EXPECT_EQ(viewer(), nullptr);
}

TEST_F(RawLogFromAcarsTest, ARegistrationThatWouldLeaveTheFolderHasNoRawLog) {
  browser_->list()->setListIndex(1);
  pressRawLog();
  EXPECT_THAT(desktop_.messages, ElementsAre("Not found log file."));
}

TEST_F(RawLogFromAcarsTest, TheContextMenuOpensItToo) {
  browser_->list()->setListIndex(0);
  bool chosen = false;
  QTimer::singleShot(200, browser_.get(), [&chosen] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    for (QAction* action : menu->actions()) {
      if (action->text() != QStringLiteral("Open raw log")) continue;
      action->trigger();
      chosen = true;
    }
    menu->close();
  });
  const QPoint row = browser_->list()->visualRect(browser_->model()->index(0, 3)).center();
  Q_EMIT browser_->list()->customContextMenuRequested(row);
  EXPECT_TRUE(chosen);
  ASSERT_NE(viewer(), nullptr);
  letWindowRead();
  EXPECT_TRUE(viewer()->isVisible());
  EXPECT_EQ(text(), shownBlock("HDR", "POS"));
}

}  // namespace
}  // namespace vel
