#include <QCheckBox>
#include <QContextMenuEvent>
#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kIllegal =
    "Illegal character is included. 登録できない文字が含まれています。";

class Conffig : public test::AcarsWindowTest {
 protected:
  void startWithConfig() {
    test::writeBytes(
        base_.folders.program / "vel.env",
        "\"env_regDefName0\",\"Mine\"\r\n\"env_regDefUrl0\",\"http://p.example/?r=\"\r\n"
        "\"env_FltDefName0\",\"Flights\"\r\n\"env_FltDefUrl0\",\"http://f.example/?f=\"\r\n"
        "\"env_keepCsrPos\",1\r\n\"env_Config\",1\r\n");
    start();
  }
  void inConffig(const std::function<void(QWidget&)>& action) {
    test::inDialog(
        "ConffigDialog", [this] { click("Command10"); }, action);
  }
  static QLineEdit& boxIn(QWidget& dialog, const char* name) {
    return test::control<QLineEdit>(dialog, name);
  }
  static QCheckBox& check(QWidget& dialog, const char* name) {
    return test::control<QCheckBox>(dialog, name);
  }
  static void pressIn(QWidget& dialog, const char* name) {
    test::press(test::control<QPushButton>(dialog, name));
  }
  [[nodiscard]] std::string saved() const {
    return test::readBytes(base_.folders.program / "vel.env");
  }
};

TEST_F(Conffig, AnAddressOfAnyLengthIsKeptWhole) {
  const std::string address = "http://p.example/" + std::string(40'000, 'x');
  startWithConfig();
  settings().env_regDefUrl0 = address;
  inConffig([&](QWidget& dialog) { pressIn(dialog, "OKButton"); });
  EXPECT_EQ(settings().env_regDefUrl0, address);
  EXPECT_THAT(saved(), HasSubstr("\"env_regDefUrl0\",\"" + address + "\"\r\n"));
}

TEST_F(Conffig, ItsButtonIsHiddenUnlessTheOptionIsSet) {
  start();
  EXPECT_FALSE(button("Command10").isVisible());
}

TEST_F(Conffig, ItsButtonIsShownWhenTheOptionIsSet) {
  startWithConfig();
  EXPECT_TRUE(button("Command10").isVisible());
  EXPECT_EQ(button("Command10").text(), QStringLiteral("Config"));
}

TEST_F(Conffig, TheMenuAndBothChoosersOpenItWhateverTheOptionSays) {
  start();
  ASSERT_EQ(settings().env_Config, 0);
  const auto isOpened = [this](const char* menuName, const std::function<void()>& openMenu) {
    bool opened = false;
    test::inDialog(menuName, openMenu, [&](QWidget& widget) {
      auto& menu = dynamic_cast<QMenu&>(widget);
      const auto entries = menu.actions();
      const auto entry = std::find_if(entries.begin(), entries.end(), [](const QAction* each) {
        return captionOf(*each) == "Search &engines...";
      });
      ASSERT_NE(entry, entries.end());
      test::inDialog(
          "ConffigDialog",
          [&] {
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(*entry).center());
          },
          [&](QWidget& dialog) { opened = dialog.isVisible(); });
    });
    return opened;
  };
  select(0);
  for (const char* chooser : {"Combo2", "Combo3"}) {
    EXPECT_TRUE(isOpened("EngineMenu", [&] {
      QContextMenuEvent asked(QContextMenuEvent::Mouse, QPoint(5, 5),
                              logs().mapToGlobal(QPoint(5, 5)));
      QApplication::sendEvent(&find<QComboBox>(chooser), &asked);
    })) << chooser;
  }
  EXPECT_FALSE(button("Command10").isVisible());
}

TEST_F(Conffig, ItShowsTheSettings) {
  startWithConfig();
  inConffig([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Conffig"));
    EXPECT_EQ(boxIn(dialog, "Text1").text(), QStringLiteral("Mine"));
    EXPECT_EQ(boxIn(dialog, "Text2").text(), QStringLiteral("http://p.example/?r="));
    EXPECT_EQ(boxIn(dialog, "Text3").text(), QStringLiteral("Flights"));
    EXPECT_EQ(boxIn(dialog, "Text4").text(), QStringLiteral("http://f.example/?f="));
    EXPECT_FALSE(check(dialog, "Check1").isChecked());
    EXPECT_TRUE(check(dialog, "Check2").isChecked());
    EXPECT_EQ(check(dialog, "Check1").text(),
              QStringLiteral("Zero suppress  ( ex. JL0012 -> JL12 )"));
    EXPECT_EQ(check(dialog, "Check2").text(),
              QStringLiteral("When retrieving, the cursor position is kept."));
    EXPECT_EQ(test::control<QPushButton>(dialog, "OKButton").text(), QStringLiteral("OK"));
    EXPECT_EQ(test::control<QPushButton>(dialog, "CancelButton").text(), QStringLiteral("Cancel"));
    EXPECT_EQ(test::control<QPushButton>(dialog, "Command1(0)").text(), QStringLiteral("Test"));
    std::vector<std::string> frames;
    for (const auto* frame : dialog.findChildren<QGroupBox*>()) {
      frames.push_back(frame->title().toStdString());
    }
    EXPECT_THAT(frames, ElementsAre("Reg.No. search", "Flight No. search"));
  });
}

TEST_F(Conffig, OkStoresTheSixValuesAndWritesTheFile) {
  startWithConfig();
  inConffig([](QWidget& dialog) {
    test::typeOver(boxIn(dialog, "Text1"), "写真");
    test::typeOver(boxIn(dialog, "Text2"), "http://a.example/x,y?r=");
    test::typeOver(boxIn(dialog, "Text3"), "say \"hi\"");
    test::typeOver(boxIn(dialog, "Text4"), "http://b.example/?f=");
    QTest::keyClick(&check(dialog, "Check1"), Qt::Key_Space);
    QTest::keyClick(&check(dialog, "Check2"), Qt::Key_Space);
    pressIn(dialog, "OKButton");
    EXPECT_FALSE(dialog.isVisible());
  });
  const Settings& env = settings();
  EXPECT_EQ(env.env_regDefName0, "写真");
  EXPECT_EQ(env.env_regDefUrl0, "http://a.example/x,y?r=");
  EXPECT_EQ(env.env_FltDefName0, "say \"hi\"");
  EXPECT_EQ(env.env_FltDefUrl0, "http://b.example/?f=");
  EXPECT_EQ(env.env_fltSchZsp, 1);
  EXPECT_EQ(env.env_keepCsrPos, 0);
  EXPECT_THAT(saved(), HasSubstr(test::cp932("\"env_regDefName0\",\"写真\"\r\n"
                                             "\"env_regDefUrl0\",\"http://a.example/x,y?r=\"\r\n"
                                             "\"env_FltDefName0\",\"say \"hi\"\"\r\n"
                                             "\"env_FltDefUrl0\",\"http://b.example/?f=\"\r\n")));
  EXPECT_THAT(saved(), HasSubstr("\"env_fltSchZsp\",1\r\n\"env_keepCsrPos\",0\r\n"));
}

TEST_F(Conffig, WhatWasStoredComesBackAtTheNextStart) {
  startWithConfig();
  inConffig([](QWidget& dialog) {
    test::typeOver(boxIn(dialog, "Text1"), "a, \"b\"");
    pressIn(dialog, "OKButton");
  });
  window().close();
  program_.reset();
  desktop_.ended = false;
  start();
  EXPECT_EQ(settings().env_regDefName0, "a, \"b\"");
  EXPECT_EQ(find<QComboBox>("Combo2").itemText(0), QStringLiteral("a, \"b\""));
}

TEST_F(Conffig, TheChoosersShowANewNameOnlyWhenTheWindowIsLoadedAgain) {
  startWithConfig();
  inConffig([](QWidget& dialog) {
    test::typeOver(boxIn(dialog, "Text1"), "Changed");
    pressIn(dialog, "OKButton");
  });
  test::finishJobs();
  QCoreApplication::processEvents();
  EXPECT_EQ(find<QComboBox>("Combo2").itemText(0), QStringLiteral("Mine"));
}

TEST_F(Conffig, CancelStoresNothing) {
  startWithConfig();
  const std::string before = saved();
  inConffig([](QWidget& dialog) {
    test::typeOver(boxIn(dialog, "Text1"), "Changed");
    QTest::keyClick(&check(dialog, "Check2"), Qt::Key_Space);
    pressIn(dialog, "CancelButton");
    EXPECT_FALSE(dialog.isVisible());
  });
  EXPECT_EQ(settings().env_regDefName0, "Mine");
  EXPECT_EQ(settings().env_keepCsrPos, 1);
  EXPECT_EQ(saved(), before);
}

TEST_F(Conffig, ANameThatTheFileCannotHoldIsRefused) {
  startWithConfig();
  const std::string before = saved();
  inConffig([](QWidget& dialog) {
    test::typeOver(boxIn(dialog, "Text1"), "✈");
    pressIn(dialog, "OKButton");
    EXPECT_TRUE(dialog.isVisible());
  });
  EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal));
  EXPECT_EQ(saved(), before);
}

TEST_F(Conffig, TheTestButtonsOpenTheTypedAddressWithASample) {
  startWithConfig();
  std::size_t openedAtMessage = 0;
  desktop_.onMessage = [&](const std::string&) { openedAtMessage = desktop_.opened.size(); };
  inConffig([&](QWidget& dialog) {
    test::typeOver(boxIn(dialog, "Text2"), "http://new.example/?r=");
    pressIn(dialog, "Command1(0)");
    EXPECT_EQ(openedAtMessage, 0U);
    pressIn(dialog, "Command1(1)");
    EXPECT_EQ(openedAtMessage, 1U);
    QTest::keyClick(&check(dialog, "Check1"), Qt::Key_Space);
    pressIn(dialog, "Command1(1)");
  });
  EXPECT_THAT(desktop_.messages, ElementsAre("The sample is opened by using 'G-CIVE'.",
                                             "The sample is opened by using 'BA0007'.",
                                             "The sample is opened by using 'BA7'."));
  EXPECT_THAT(desktop_.opened,
              ElementsAre("http://new.example/?r=G-CIVE", "http://f.example/?f=BA0007",
                          "http://f.example/?f=BA7"));
  EXPECT_EQ(settings().env_regDefUrl0, "http://p.example/?r=");
}

TEST_F(Conffig, TheDefaultFlightAddressIsTestedOnTheSystemsOwnSite) {
  test::writeBytes(base_.folders.program / "vel.env", "\"env_Config\",1\r\n");
  start();
  inConffig([](QWidget& dialog) { pressIn(dialog, "Command1(1)"); });
  EXPECT_THAT(desktop_.opened, ElementsAre("http://home.example/?F=BA0007"));
}

}  // namespace
}  // namespace vel
