#include "tests/ui/support/acars_window.h"

#include <memory>

namespace vel::test {

AcarsWindowTest::AcarsWindowTest() {
  base_.writeData("aircraft.csv", {"JA8089,B744", "JA731A,B773", "G-CIVE,B744"});
  base_.writeData("FLIGHT.csv", {"JL0012,RJTTKLAX,Daily", "NH0105,RJTTPHNL,-"});
  base_.writeData("airport.csv",
                  {"RJTT,Tokyo Haneda HND", "RJAA,Tokyo Narita NRT", "KLAX,Los Angeles LAX",
                   "PHNL,Honolulu HNL", "EGLL,London Heathrow LHR"});
  base_.writeData("letter.csv",
                  {"JL,JAL,Japan Airlines", "NH,ANA,All Nippon Airways", "BA,BAW,British Airways"});
  base_.writeLog(kLog, {kHeaderLine, "JL0012,O,JA8089,RJTT,KLAX,B744,Log remark,9:05:00",
                        "NH0105,X,JA731A,RJTT,PHNL,B773,定期便,09:35:00",
                        "BA0007,○,G-CIVE,EGLL,RJAA,B744,,10:00:00",
                        "ZZ0009,×,N123,KSFO,RJBB,A388,x,23:59:59"});
}

void AcarsWindowTest::setBrowsers() {
  program_->setBrowsers(
      [this](BrowserFrame& owner) { return std::make_unique<AcarsBrowser>(owner, *web_); },
      nullptr);
}

void AcarsWindowTest::start() {
  startMainWindow();
  driveBrowser(program_->mainWindow());
}

}  // namespace vel::test
