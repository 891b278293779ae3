#include <QLabel>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/settled_places.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNoCode = "Write 4-letter airport code. 4桁の空港コードを記入してください";
constexpr const char* kIllegal =
    "Illegal character is included. 登録できない文字が含まれています。";

class AirportDialogWindow : public test::AcarsWindowTest {
 protected:
  void SetUp() override {
    start();
    select(0);
  }
  void inAirportDialog(const char* label, const std::function<void(QWidget&)>& action) {
    test::inDialog(
        "AirportDialog", [&] { click(label); }, action);
  }
  static QLineEdit& code(QWidget& dialog) { return test::control<QLineEdit>(dialog, "Text1(0)"); }
  static QLineEdit& name(QWidget& dialog) { return test::control<QLineEdit>(dialog, "Text1(1)"); }
  static void pressIn(QWidget& dialog, const char* button) {
    test::press(test::control<QPushButton>(dialog, button));
  }
  [[nodiscard]] std::string table() const { return base_.data("airport.csv"); }
};

TEST_F(AirportDialogWindow, AClickOnAnAirportsNameOpensItWithTheNameAndABlank) {
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    EXPECT_EQ(code(dialog).text(), QString());
    EXPECT_EQ(name(dialog).text(), QStringLiteral("Tokyo Haneda HND "));
  });
  inAirportDialog("Label2(5)", [](QWidget& dialog) {
    EXPECT_EQ(name(dialog).text(), QStringLiteral("Los Angeles LAX "));
  });
}

TEST_F(AirportDialogWindow, EnterOnAnAirportsNameOpensItToo) {
  for (const char* label : {"Label2(4)", "Label2(5)"}) {
    button(label).setFocus();
    test::inDialog(
        "AirportDialog", [&] { QTest::keyClick(&button(label), Qt::Key_Return); },
        [&](QWidget& dialog) {
          EXPECT_EQ(name(dialog).text(), QString::fromStdString(text(label)) + QLatin1Char(' '));
        });
  }
}

TEST_F(AirportDialogWindow, ALabelWithoutANameOpensItToo) {
  test::typeOver(box("Text2(0)"), "QQQQ");
  inAirportDialog("Label2(4)",
                  [](QWidget& dialog) { EXPECT_EQ(name(dialog).text(), QStringLiteral(" ")); });
}

TEST_F(AirportDialogWindow, ItSaysWhatToWriteWhere) {
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    std::string all;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
      all += label->text().toStdString() + '\n';
    }
    EXPECT_THAT(all, testing::HasSubstr("4Letter code\n"));
    EXPECT_THAT(all, testing::HasSubstr("Airport name + 3Letter code\n"));
    EXPECT_THAT(all, testing::HasSubstr("Please write 3letter code in this end."));
    EXPECT_EQ(test::control<QPushButton>(dialog, "OKButton").text(), QStringLiteral("Enter"));
    EXPECT_EQ(test::control<QPushButton>(dialog, "CancelButton").text(), QStringLiteral("Cancel"));
  });
}

TEST_F(AirportDialogWindow, AKnownCodeShowsItsNameInCapitals) {
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("rja"));
    EXPECT_EQ(code(dialog).text(), QStringLiteral("RJA"));
    EXPECT_EQ(name(dialog).text(), QStringLiteral("Tokyo Haneda HND "));
    QTest::keyClicks(&code(dialog), QStringLiteral("a"));
    EXPECT_EQ(code(dialog).text(), QStringLiteral("RJAA"));
    EXPECT_EQ(name(dialog).text(), QStringLiteral("Tokyo Narita NRT"));
  });
}

TEST_F(AirportDialogWindow, EnterWritesTheAirportAndCloses) {
  const std::string before = test::readBytes(base_.folders.data / "airport.csv");
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("rjtt"));
    test::typeOver(name(dialog), "羽田 HND");
    pressIn(dialog, "OKButton");
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(code(dialog).text(), QString());
  });
  EXPECT_EQ(table(),
            "RJTT,羽田 HND\r\nRJAA,Tokyo Narita NRT\r\nKLAX,Los Angeles LAX\r\n"
            "PHNL,Honolulu HNL\r\nEGLL,London Heathrow LHR\r\n");
  EXPECT_EQ(test::readBytes(base_.folders.data / "airport.bak"), before);
  EXPECT_TRUE(find<QLabel>("Label6").isVisible());
}

TEST_F(AirportDialogWindow, TheReturnKeyInABoxWritesToo) {
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("ksfo"));
    test::typeOver(name(dialog), "San Francisco SFO");
    test::pressKey(name(dialog), Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
  });
  EXPECT_TRUE(table().ends_with("KSFO,San Francisco SFO\r\n"));
}

TEST_F(AirportDialogWindow, AnEmptyNameDeletesTheAirport) {
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("RJTT"));
    test::typeOver(name(dialog), "");
    pressIn(dialog, "OKButton");
  });
  EXPECT_TRUE(table().starts_with("RJAA,"));
}

TEST_F(AirportDialogWindow, CancelWritesNothing) {
  const std::string before = table();
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("RJTT"));
    test::typeOver(name(dialog), "changed HND");
    pressIn(dialog, "CancelButton");
    EXPECT_FALSE(dialog.isVisible());
  });
  EXPECT_EQ(table(), before);
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(AirportDialogWindow, RefusalsLeaveItOpenAndTheTableAsItWas) {
  const std::string before = table();
  inAirportDialog("Label2(4)", [this](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("HND"));
    pressIn(dialog, "OKButton");
    QTest::keyClicks(&code(dialog), QStringLiteral("X"));
    test::typeOver(name(dialog), "a,b");
    pressIn(dialog, "OKButton");
    EXPECT_THAT(desktop_.messages, ElementsAre(kNoCode, kIllegal));
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(name(dialog).text(), QStringLiteral("a,b"));
  });
  EXPECT_EQ(table(), before);
}

TEST_F(AirportDialogWindow, TheWebSearchLooksForTheCode) {
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("rjtt"));
    pressIn(dialog, "Command6");
    EXPECT_TRUE(dialog.isVisible());
  });
  EXPECT_THAT(desktop_.opened, ElementsAre("https://www.google.com/search?hl=ja&q=ICAO+RJTT+IATA+"
                                           "airport+wiki"));
}

TEST_F(AirportDialogWindow, AMissingTableEndsTheProgramOnceAndClosesTheDialog) {
  inAirportDialog("Label2(4)", [this](QWidget& dialog) {
    std::filesystem::remove(base_.folders.data / "airport.csv");
    QTest::keyClicks(&code(dialog), QStringLiteral("r"));
    EXPECT_FALSE(dialog.isVisible());
  });
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #53"));
  EXPECT_EQ(desktop_.exitStatus, 1);
}

TEST_F(AirportDialogWindow, ItDoesNotMoveTheWindowWhenItCloses) {
  // The window's place settles after it was shown.
  ASSERT_TRUE(test::placesSettle());
  const QRect before = window().frameGeometry();
  inAirportDialog("Label2(4)", [](QWidget& dialog) { pressIn(dialog, "CancelButton"); });
  ASSERT_TRUE(test::placesSettle());
  EXPECT_EQ(window().frameGeometry(), before);
}

TEST_F(AirportDialogWindow, ACodeWhoseRecordHasAnEmptyNameEmptiesTheBox) {
  base_.writeData("airport.csv", {"RJTT,Tokyo Haneda HND", "RJAA,"});
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("rja"));
    EXPECT_EQ(name(dialog).text(), QStringLiteral("Tokyo Haneda HND "));
    QTest::keyClicks(&code(dialog), QStringLiteral("a"));
    EXPECT_EQ(name(dialog).text(), QString());
  });
}

TEST_F(AirportDialogWindow, AnAmpersandInANameIsAnAmpersand) {
  base_.writeData("airport.csv", {"RJTT,Tokyo & Haneda HND", "RJAA,Narita && NRT"});
  select(1);
  select(0);
  EXPECT_EQ(text("Label2(4)"), "Tokyo & Haneda HND");
  EXPECT_TRUE(button("Label2(4)").shortcut().isEmpty());
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    EXPECT_EQ(name(dialog).text(), QStringLiteral("Tokyo & Haneda HND "));
    QTest::keyClicks(&code(dialog), QStringLiteral("rjaa"));
    EXPECT_EQ(name(dialog).text(), QStringLiteral("Narita && NRT"));
  });
}

TEST_F(AirportDialogWindow, ALongNameShowsItsBeginning) {
  base_.writeData("airport.csv", {"RJTT," + std::string(300, 'n')});
  select(1);
  select(0);
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    EXPECT_EQ(name(dialog).cursorPosition(), 0);
    QTest::keyClicks(&code(dialog), QStringLiteral("rjtt"));
    EXPECT_EQ(name(dialog).cursorPosition(), 0);
  });
}

TEST_F(AirportDialogWindow, TheTabKeyGoesFromTheCodeThroughTheNameToTheButtons) {
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    std::vector<std::string> order;
    for (int i = 0; i < 5; ++i) {
      order.push_back(dialog.focusWidget()->objectName().toStdString());
      QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_THAT(order, ElementsAre("Text1(0)", "Command6", "Text1(1)", "OKButton", "CancelButton"));
  });
}

TEST_F(AirportDialogWindow, ItStaysOpenUntilTheAirportIsWritten) {
  inAirportDialog("Label2(4)", [](QWidget& dialog) {
    QTest::keyClicks(&code(dialog), QStringLiteral("rjtt"));
    test::typeOver(name(dialog), "Haneda HND");
    QTest::mouseClick(&test::control<QPushButton>(dialog, "OKButton"), Qt::LeftButton);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible());
    test::finishJobs();
    EXPECT_FALSE(dialog.isVisible());
  });
  EXPECT_TRUE(table().starts_with("RJTT,Haneda HND\r\n"));
  EXPECT_EQ(text("Label2(4)"), "Haneda HND");
}

}  // namespace
}  // namespace vel
