#include <QLabel>
#include <QMenu>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/rewrite_watch.h"

namespace vel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNotSelected = "Log list not selected. データが選択されていません";
constexpr const char* kNoDeparture = "Departure airport not filled. 出発空港が記入されていません";
constexpr const char* kNoDestination =
    "Destination airport not filled. 到着空港が記入されていません";
constexpr const char* kIllegal =
    "Illegal character is included. 登録できない文字が含まれています。";

/// The watched labels and disabled buttons that were drawn, and not merely
/// shown, before a rewrite touched the files of its table.
class DrawnBefore : public QObject {
 public:
  explicit DrawnBefore(std::filesystem::path table) : table_(std::move(table)) {}

  std::vector<std::string> names;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto exists = [this](const char* extension) {
      return std::filesystem::exists(std::filesystem::path(table_).replace_extension(extension));
    };
    if (event->type() != QEvent::Paint || exists("$$$") || exists("bak")) return false;
    const auto* control = qobject_cast<QPushButton*>(watched);
    if (control == nullptr || !control->isEnabled()) {
      names.push_back(watched->objectName().toStdString());
    }
    return false;
  }

 private:
  std::filesystem::path table_;
};

class FlightEditorWindow : public test::AcarsWindowTest {
 protected:
  void SetUp() override {
    base_.writeData("FLIGHT.csv", {"NH0105,RJTTPHNL,-,lost", "JL0012,RJTTKLAX,Daily",
                                   "JL0012,RJTTKSFO,second", "BA0007,EGLLRJAA,x"});
    base_.writeLog(kLog, {"JL0012,O,JA8089,RJTT,KLAX,B744,Log remark,9:05:00",
                          "JL0012,O,JA8088,RJTT,KLAX,B744,Log remark,9:06:00",
                          "QQ0001,O,JA9999,AAAA,BBBB,,,9:07:00"});
    start();
  }
  [[nodiscard]] std::string table() const { return base_.data("FLIGHT.csv"); }
  [[nodiscard]] bool shown(const char* name) const { return find<QWidget>(name).isVisible(); }
  void fill(const std::string& departure, const std::string& destination,
            const std::string& remark) const {
    test::typeOver(box("Text2(0)"), departure);
    test::typeOver(box("Text2(1)"), destination);
    test::typeOver(box("Text2(2)"), remark);
  }
  void pasteMenu(const std::function<void(QMenu&)>& action) {
    test::inDialog(
        "RouteMenu", [this] { click("Command13"); },
        [&](QWidget& menu) { action(dynamic_cast<QMenu&>(menu)); });
  }
  std::vector<std::string> offered() {
    std::vector<std::string> entries;
    pasteMenu([&](QMenu& menu) {
      for (const QAction* action : menu.actions()) {
        if (action->isEnabled()) entries.push_back(action->text().toStdString());
      }
    });
    return entries;
  }
};

TEST_F(FlightEditorWindow, TheEditedRouteReplacesTheFirstLineOfTheFlight) {
  const std::string before = test::readBytes(base_.folders.data / "FLIGHT.csv");
  select(0);
  fill("RJAA", "KSFO", "定期便");
  click("Command2");
  EXPECT_EQ(table(), "NH0105,RJTTPHNL,-\r\nJL0012,RJAAKSFO,定期便\r\nBA0007,EGLLRJAA,x\r\n");
  EXPECT_EQ(test::readBytes(base_.folders.data / "FLIGHT.bak"), before);
  EXPECT_FALSE(fileExists(base_.folders.data / "FLIGHT.$$$"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(FlightEditorWindow, OnlyTheSelectedLineOfTheListChanges) {
  select(0);
  fill("RJAA", "KSFO", "new");
  click("Command2");
  EXPECT_EQ(line(0), "0001|JL0012|O|JA8089|RJAA|KSFO|B744|new|09:05:00");
  EXPECT_EQ(line(1), "0002|JL0012|O|JA8088|RJTT|KLAX|B744|Log remark|09:06:00");
}

TEST_F(FlightEditorWindow, AnUnknownFlightIsAddedAtTheEnd) {
  select(2);
  fill("RJTT", "EGLL", "x");
  click("Command2");
  EXPECT_EQ(table(),
            "NH0105,RJTTPHNL,-\r\nJL0012,RJTTKLAX,Daily\r\nJL0012,RJTTKSFO,second\r\n"
            "BA0007,EGLLRJAA,x\r\nQQ0001,RJTTEGLL,x\r\n");
}

TEST_F(FlightEditorWindow, AnEmptyRemarkBecomesADash) {
  select(0);
  fill("RJAA", "KSFO", "");
  click("Command2");
  EXPECT_EQ(text("Text2(2)"), "-");
  EXPECT_EQ(table(), "NH0105,RJTTPHNL,-\r\nJL0012,RJAAKSFO,-\r\nBA0007,EGLLRJAA,x\r\n");
  EXPECT_EQ(line(0), "0001|JL0012|O|JA8089|RJAA|KSFO|B744|-|09:05:00");
}

TEST_F(FlightEditorWindow, AnyFourCharactersPass) {
  select(0);
  fill("a 1.", "東京羽田", "x");
  click("Command2");
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(table(), "NH0105,RJTTPHNL,-\r\nJL0012,a 1.東京羽田,x\r\nBA0007,EGLLRJAA,x\r\n");
}

TEST_F(FlightEditorWindow, TheChecksComeInTheirOrder) {
  const std::string before = test::readBytes(base_.folders.data / "FLIGHT.csv");
  select(0);
  fill("RJT", "KL", "a,b");
  list().clearSelection();
  click("Command2");
  select(0);
  fill("RJT", "KL", "a,b");
  click("Command2");
  test::typeOver(box("Text2(0)"), "RJTT");
  click("Command2");
  test::typeOver(box("Text2(1)"), "KLAX");
  click("Command2");
  EXPECT_THAT(desktop_.messages, ElementsAre(kNotSelected, kNoDeparture, kNoDestination, kIllegal));
  EXPECT_EQ(text("Text2(2)"), "a,b");
  EXPECT_EQ(test::readBytes(base_.folders.data / "FLIGHT.csv"), before);
  EXPECT_FALSE(shown("Label6"));
}

TEST_F(FlightEditorWindow, ADepartureOfThreeOrFiveLettersIsRefused) {
  select(0);
  for (const char* typed : {"HND", "RJTTX", ""}) {
    desktop_.messages.clear();
    test::typeOver(box("Text2(0)"), typed);
    click("Command2");
    EXPECT_THAT(desktop_.messages, ElementsAre(kNoDeparture)) << typed;
    EXPECT_EQ(text("Text2(0)"), typed);
  }
}

TEST_F(FlightEditorWindow, ACommaOrAQuoteInAnyBoxIsRefused) {
  const std::string before = table();
  select(0);
  const struct {
    const char* departure;
    const char* destination;
    const char* remark;
  } kTyped[] = {{"RJ,T", "KLAX", "x"}, {"RJTT", "KL\"X", "x"}, {"RJTT", "KLAX", "a\"b"}};
  for (const auto& typed : kTyped) {
    desktop_.messages.clear();
    fill(typed.departure, typed.destination, typed.remark);
    click("Command2");
    EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal));
  }
  EXPECT_EQ(table(), before);
}

TEST_F(FlightEditorWindow, EnterInEachBoxPressesTheButton) {
  for (const char* name : {"Text2(0)", "Text2(1)", "Text2(2)"}) {
    select(0);
    test::typeOver(box("Text2(2)"), name);
    test::pressKey(box(name), Qt::Key_Return);
    EXPECT_EQ(column(kListRemarks)[0], name);
  }
}

TEST_F(FlightEditorWindow, ProcessingIsShownAndTheButtonIsDisabledWhileTheTableIsWritten) {
  select(0);
  test::watchRewrite(
      jobs(), [this] { clickOnly("Command2"); },
      [this](int) {
        EXPECT_TRUE(shown("Label7"));
        EXPECT_FALSE(button("Command2").isEnabled());
        EXPECT_TRUE(button("Command1").isEnabled());
      });
  EXPECT_FALSE(shown("Label7"));
  EXPECT_TRUE(shown("Label6"));
  EXPECT_TRUE(button("Command2").isEnabled());
}

TEST_F(FlightEditorWindow, ALineOfTheTableWithTwoFieldsEndsTheProgramWithTheTableUntouched) {
  base_.writeData("FLIGHT.csv", {"JL0012,RJTTKLAX,Daily", "short,line"});
  const std::string before = test::readBytes(base_.folders.data / "FLIGHT.csv");
  select(0);
  click("Command2");
  EXPECT_THAT(desktop_.messages, ElementsAre("ERROR #9\n\nFLIGHT.csv, line 2"));
  EXPECT_EQ(desktop_.exitStatus, 1);
  EXPECT_EQ(test::readBytes(base_.folders.data / "FLIGHT.csv"), before);
  EXPECT_FALSE(fileExists(base_.folders.data / "FLIGHT.bak"));
}

TEST_F(FlightEditorWindow, ATableNamedInSmallLettersKeepsItsName) {
  test::giveName(base_.folders.data / "FLIGHT.csv", "flight.csv");
  select(0);
  fill("RJAA", "KSFO", "x");
  click("Command2");
  EXPECT_THAT(listFolder(base_.folders.data).value(),
              ElementsAre("aircraft.csv", "airport.csv", "FLIGHT.bak", "flight.csv", "letter.csv"));
}

TEST_F(FlightEditorWindow, AClipboardWithoutARouteOffersNone) {
  for (const char* pasted : {"", "hello", "From (Tokyo (HND)", "From (Tokyo (HND))",
                             "to (Los Angeles (LAX))", "From (())\nto (())"}) {
    desktop_.clipboard = pasted;
    EXPECT_THAT(offered(), IsEmpty()) << pasted;
  }
}

TEST_F(FlightEditorWindow, OneRouteInTheClipboardFillsBothBoxes) {
  select(0);
  desktop_.clipboard = "From (Narita (NRT))\r\nto (London Heathrow (LHR))\r\n";
  pasteMenu([](QMenu& menu) {
    ASSERT_EQ(menu.actions().size(), 1);
    EXPECT_EQ(menu.actions()[0]->text(), QStringLiteral("NRT>LHR"));
    menu.setActiveAction(menu.actions()[0]);
    QTest::keyClick(&menu, Qt::Key_Return);
  });
  EXPECT_EQ(text("Text2(0)"), "RJAA");
  EXPECT_EQ(text("Text2(1)"), "EGLL");
  EXPECT_EQ(text("Label2(4)"), "Tokyo Narita NRT");
  EXPECT_EQ(text("Label2(5)"), "London Heathrow LHR");
}

TEST_F(FlightEditorWindow, AtMostElevenRoutesAreOffered) {
  const auto routes = [](int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
      const std::string code = {'A', 'A', static_cast<char>('A' + i)};
      text += "From (Here (" + code + "))\r\nto (Haneda (HND))\r\n";
    }
    return text;
  };
  desktop_.clipboard = routes(11);
  EXPECT_EQ(offered().size(), 11U);
  EXPECT_EQ(offered().back(), "AAK>HND");
  desktop_.clipboard = routes(12);
  EXPECT_EQ(offered().size(), 11U);
  EXPECT_EQ(offered().back(), "AAK>HND");
}

TEST_F(FlightEditorWindow, ARouteWithoutAnAirportInTheTableKeepsItsBoxAndSaysSoBesideIt) {
  select(0);
  desktop_.clipboard = "From (Nowhere (QQQ))\nto (Haneda (HND))\n";
  pasteMenu([](QMenu& menu) {
    menu.setActiveAction(menu.actions()[0]);
    QTest::keyClick(&menu, Qt::Key_Return);
  });
  EXPECT_EQ(text("Text2(0)"), "RJTT");
  EXPECT_EQ(text("Label2(4)"), "Tokyo Haneda HND");
  EXPECT_EQ(text("Notice(0)"), "Not in airport.csv / 未登録: QQQ");
  EXPECT_TRUE(shown("Notice(0)"));
  EXPECT_EQ(text("Text2(1)"), "RJTT");
  EXPECT_FALSE(shown("Notice(1)"));
  EXPECT_THAT(desktop_.messages, IsEmpty());
  // It goes when the box changes, and with another line.
  test::typeKeys(box("Text2(0)"), "x");
  EXPECT_FALSE(shown("Notice(0)"));
}

TEST_F(FlightEditorWindow, TheNoticeOfAMissingAirportMovesNothing) {
  select(0);
  const QRect name = find<QWidget>("Label2(5)").geometry();
  const QRect frame = find<QWidget>("Frame2").geometry();
  desktop_.clipboard = "From (Nowhere (QQQ))\nto (Nowhere (QQQ))\n";
  pasteMenu([](QMenu& menu) {
    menu.setActiveAction(menu.actions()[0]);
    QTest::keyClick(&menu, Qt::Key_Return);
  });
  QCoreApplication::processEvents();
  EXPECT_EQ(find<QWidget>("Frame2").geometry(), frame);
  EXPECT_EQ(find<QWidget>("Label2(5)").geometry().topLeft(), name.topLeft());
  EXPECT_TRUE(shown("Notice(1)"));
  select(1);
  EXPECT_FALSE(shown("Notice(0)"));
  EXPECT_FALSE(shown("Notice(1)"));
}

TEST_F(FlightEditorWindow, AFlightThatNoFieldCanHoldIsRefusedAtEveryPress) {
  base_.writeLog(kLog, {"A\"B12,O,JA8089,RJTT,KLAX,B744,,9:05:00"});
  click("Command5");
  select(0);
  const std::string before = base_.data("FLIGHT.csv");
  fill("RJAA", "KSFO", "");
  click("Command2");
  click("Command2");
  EXPECT_THAT(desktop_.messages, ElementsAre(kIllegal, kIllegal));
  EXPECT_EQ(base_.data("FLIGHT.csv"), before);
  EXPECT_EQ(text("Text2(2)"), "");
}

TEST_F(FlightEditorWindow, ALongRemarkShowsItsBeginning) {
  base_.writeData("FLIGHT.csv", {"JL0012,RJTTKLAX," + std::string(200, 'r')});
  select(0);
  EXPECT_EQ(box("Text2(2)").cursorPosition(), 0);
}

TEST_F(FlightEditorWindow, ProcessingIsDrawnBeforeTheTableIsTouched) {
  select(0);
  DrawnBefore drawn(base_.folders.data / "FLIGHT.csv");
  find<QWidget>("Label7").installEventFilter(&drawn);
  button("Command2").installEventFilter(&drawn);
  click("Command2");
  EXPECT_THAT(drawn.names, testing::IsSupersetOf({"Label7", "Command2"}));
}

TEST_F(FlightEditorWindow, TwoEditorsPressedAtOnceBothWriteTheirTables) {
  select(0);
  test::typeOver(box("Text2(1)"), "KSFO");
  test::typeOver(box("Text1"), "B748");
  clickOnly("Command2");
  clickOnly("Command1");
  test::finishJobs();
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_EQ(column(kListDestination)[0], "KSFO");
  EXPECT_EQ(column(kListEquipment)[0], "B748");
  EXPECT_THAT(base_.data("FLIGHT.csv"), testing::HasSubstr("JL0012,RJTTKSFO,Daily\r\n"));
  EXPECT_TRUE(base_.data("aircraft.csv").starts_with("JA8089,B748\r\n"));
  EXPECT_TRUE(button("Command1").isEnabled());
  EXPECT_TRUE(button("Command2").isEnabled());
}

TEST_F(FlightEditorWindow, AWindowThatClosesDuringARewriteFinishesIt) {
  select(0);
  test::typeOver(box("Text2(1)"), "KSFO");
  clickOnly("Command2");
  window().close();
  test::drivenJobs = nullptr;
  web_.reset();
  program_.reset();
  EXPECT_THAT(base_.data("FLIGHT.csv"), testing::HasSubstr("JL0012,RJTTKSFO,Daily\r\n"));
  EXPECT_FALSE(fileExists(base_.folders.data / "FLIGHT.$$$"));
}

}  // namespace
}  // namespace vel
