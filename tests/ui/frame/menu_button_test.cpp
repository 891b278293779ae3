#include "core/ui/menu_button.h"

#include <gmock/gmock.h>

#include "hfdl/ui/hfdl_browser.h"
#include "tests/ui/support/acars_window.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Both browsers with everything that their menu can offer, counted.
class MenuButtonTest : public AcarsWindowTest {
 protected:
  MenuButtonTest() {
    base_.writeData("ICAO24.csv", {"3482D8,JAL,JL,JA8089,B789"});
    base_.writeLog("202601010000_HFDL_FMT.log",
                   {"[2]------------------------[2026/01/01 00:04:19]",
                    "   ICAO24 ADDRESS = 000001", "   REGISTRATION   = VH-OQA"});
  }

  template <typename Browser>
  std::unique_ptr<BrowserWindow> makeBrowser(BrowserFrame& owner) {
    auto browser = std::make_unique<Browser>(owner, *web_);
    if (!offersAll_) return browser;
    browser->showImport = [this](const QString&) { chosen_.emplace_back("import"); };
    browser->saveList = [this] { chosen_.emplace_back("save"); };
    browser->showFind = [this] { chosen_.emplace_back("find"); };
    browser->showReport = [this] { chosen_.emplace_back("report"); };
    return browser;
  }

  void setBrowsers() override {
    program_->setBrowsers([this](BrowserFrame& owner) { return makeBrowser<AcarsBrowser>(owner); },
                          [this](BrowserFrame& owner) { return makeBrowser<HfdlBrowser>(owner); });
  }

  /// Runs `trigger`, and `action` in the menu that it opens: at once or, as an
  /// animated button does, a moment later.
  static void inMenu(const std::function<void()>& trigger,
                     const std::function<void(QWidget&)>& action) {
    bool isOver = false;
    inDialog(
        "mainMenu",
        [&] {
          trigger();
          EXPECT_TRUE(QTest::qWaitFor([&] { return isOver; }));
        },
        [&](QWidget& menu) {
          isOver = true;
          action(menu);
        });
  }

  /// The entries that the menu shows when its button is clicked, with their keys.
  std::vector<std::string> shownEntries() {
    std::vector<std::string> entries;
    inMenu([this] { click("menuButton"); },
           [&](QWidget& menu) {
             for (const QAction* each : menu.actions()) {
               if (!each->isVisible() || each->isSeparator()) continue;
               const std::string keys = each->shortcut().toString().toStdString();
               entries.push_back(captionOf(*each) + (keys.empty() ? keys : " " + keys));
             }
           });
    return entries;
  }

  bool offersAll_ = true;
  std::vector<std::string> chosen_;
};

TEST_F(MenuButtonTest, BothBrowsersOfferWhatTheyCanDoInOneMenu) {
  start();
  const auto everything =
      ElementsAre("&Import...", "&Save list as... Ctrl+S", "&Find... Ctrl+Shift+F",
                  "&Report... Ctrl+R", "Search &engines...");
  EXPECT_THAT(shownEntries(), everything);
  EXPECT_EQ(button("menuButton").accessibleName().toStdString(), "Menu");
  EXPECT_FALSE(button("menuButton").toolTip().isEmpty());
  click("Command11");
  driveBrowser(program_->otherWindow());
  EXPECT_THAT(shownEntries(), everything);
}

TEST_F(MenuButtonTest, TheKeyboardOpensItAndItsLettersChoose) {
  start();
  inMenu([this] { QTest::keyClick(&browser(), Qt::Key_M, Qt::AltModifier); },
         [](QWidget& menu) { QTest::keyClick(&menu, Qt::Key_I); });
  for (const Qt::Key letter : {Qt::Key_S, Qt::Key_F, Qt::Key_R}) {
    button("menuButton").setFocus();
    inMenu([this] { QTest::keyClick(&button("menuButton"), Qt::Key_Space); },
           [letter](QWidget& menu) { QTest::keyClick(&menu, letter); });
  }
  EXPECT_THAT(chosen_, ElementsAre("import", "save", "find", "report"));
}

TEST_F(MenuButtonTest, ItsKeysWorkWithoutIt) {
  start();
  list().setFocus();
  QTest::keyClick(&list(), Qt::Key_S, Qt::ControlModifier);
  QTest::keyClick(&list(), Qt::Key_R, Qt::ControlModifier);
  QTest::keyClick(&box("Text4(0)"), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_THAT(chosen_, ElementsAre("save", "report", "find"));
}

TEST_F(MenuButtonTest, WhatAProgramLacksIsNotOffered) {
  offersAll_ = false;
  start();
  EXPECT_THAT(shownEntries(), ElementsAre("Search &engines..."));
  QTest::keyClick(&list(), Qt::Key_S, Qt::ControlModifier);
  EXPECT_THAT(chosen_, IsEmpty());
}

TEST_F(MenuButtonTest, AnotherPartAddsAnEntryOfItsOwn) {
  start();
  browser().menu().addSeparator();
  browser().menu().addEntry(QStringLiteral("&Help"), QKeySequence(Qt::Key_F1),
                            [this] { chosen_.emplace_back("help"); });
  QTest::keyClick(&list(), Qt::Key_F1);
  inMenu([this] { click("menuButton"); }, [](QWidget& menu) { QTest::keyClick(&menu, Qt::Key_H); });
  EXPECT_THAT(chosen_, ElementsAre("help", "help"));
}

TEST_F(MenuButtonTest, AtTheSmallestWidthEveryButtonOfTheRowHasItsRoom) {
  start();
  const auto expectRoom = [this] {
    browser().resize(browser().minimumSize().width(), browser().height());
    const QWidget& row = *button("menuButton").parentWidget();
    int end = 0;
    for (const QPushButton* each : row.findChildren<QPushButton*>()) {
      if (!each->isVisible()) continue;
      EXPECT_GE(each->width(), each->minimumSizeHint().width()) << each->text().toStdString();
      EXPECT_GE(each->x(), end) << each->text().toStdString();
      end = each->geometry().right();
    }
    EXPECT_LE(end, row.width());
  };
  expectRoom();
  click("Command11");
  driveBrowser(program_->otherWindow());
  expectRoom();
}

}  // namespace
}  // namespace vel::test
