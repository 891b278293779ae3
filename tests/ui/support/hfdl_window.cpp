#include "tests/ui/support/hfdl_window.h"

#include <QGroupBox>
#include <memory>

#include "acars/ui/acars_browser.h"
#include "core/helpers.h"
#include "core/text.h"

namespace vel::test {

HfdlWindowTest::HfdlWindowTest() {
  base_.writeData("aircraft.csv", {"JA8089,B744", "JA731A,B773", "JA8089,B742"});
  base_.writeData("FLIGHT.csv", {"JL0012,RJTTKLAX,Daily", "JL0123,RJAAPHNL,週末", "JL0012,X,-"});
  base_.writeData("airport.csv", {"RJTT,Tokyo Haneda HND", "RJAA,Tokyo Narita NRT",
                                  "KLAX,Los Angeles LAX", "PHNL,Honolulu HNL"});
  base_.writeData("letter.csv",
                  {"JL,JAL,Japan Airlines", "NH,ANA,All Nippon Airways", "BA,BAW,British Airways"});
  base_.writeData("ICAO24.csv", {"; a comment", "84C27D,JAL,JL,JA8089,B744", "84C27D,XXX,XX,X,X",
                                 "861234,ANA,NH,JA731A,B773", "400001,BAW,BA,G-CIVE"});
  base_.writeLog("20260102_list.csv", {"JL0012,O,JA8089,RJTT,KLAX,B744,-,9:05:00"});
  writeAircraftLog(kLog, {"84C27D JA8089 JL0012", "84C27D JA8089 123", "861234 JA731A -",
                          "AAAAAA N123 XX0001", "84C27D JA8089 JL0123"});
}

void HfdlWindowTest::writeAircraftLog(std::string_view name,
                                      std::initializer_list<std::string_view> aircraft) {
  std::string text;
  int minute = 0;
  for (const std::string_view each : aircraft) {
    const std::string time = ZeroPad(++minute, 2);
    text += cp932Lines({"[1]------------------------[2026/01/02 09:" + time + ":00]", " DOWN LINK",
                        "  GS NAME         = Agana, Guam"});
    const auto values = split(each, ' ');
    constexpr const char* kLabels[] = {
        "   ICAO24 ADDRESS = ", "   REGISTRATION   = ", "   FLIGHT ID      = "};
    for (std::size_t i = 0; i < 3; ++i) {
      if (values[i] != "-") text += cp932Lines({std::string(kLabels[i]) + std::string(values[i])});
    }
    text += cp932Lines({kEndOfSubRecord});
  }
  writeBytes(base_.folders.logs / name, text);
}

void HfdlWindowTest::setBrowsers() {
  program_->setBrowsers(
      [this](BrowserFrame& owner) { return std::make_unique<AcarsBrowser>(owner, *web_); },
      [this](BrowserFrame& owner) { return std::make_unique<HfdlBrowser>(owner, *web_); });
}

void HfdlWindowTest::start() {
  startMainWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(program_->mainWindow(), kPatience));
  press(control<QPushButton>(*program_->mainWindow(), "Command11"));
  driveBrowser(program_->otherWindow());
}

std::string HfdlWindowTest::caption(const char* frame) const {
  return find<QGroupBox>(frame).title().toStdString();
}

std::string HfdlWindowTest::aircraft() const {
  return text("Text1(0)") + '|' + text("Text1(1)") + '|' + text("Text1(2)") + '|' +
         text("Text1(3)") + '|' + text("Text1(4)");
}

std::string HfdlWindowTest::route() const {
  return text("Text2(0)") + '|' + text("Text2(1)") + '|' + text("Text2(2)");
}

}  // namespace vel::test
