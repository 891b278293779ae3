#include "tests/ui/support/acars_window.h"

#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <algorithm>

namespace vel::test {

void writePhoto(const std::filesystem::path& path, int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::darkCyan);
  ASSERT_TRUE(image.save(QString::fromStdString(path.string()), "JPEG")) << path;
}

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
  writePhoto(base_.folders.pics / "noimage.jpg", 40, 30);
  writePhoto(base_.folders.pics / "JA8089.jpg", 150, 100);
  writeBytes(base_.folders.program / "services.ini", "homepage=http://home.example\n");
}

AcarsWindowTest::~AcarsWindowTest() = default;

void AcarsWindowTest::launch() {
  program_ = std::make_unique<Program>(desktop_, base_.folders);
  web_ = std::make_unique<WebAccess>(*program_);
  program_->setBrowsers(
      [this](Program& owner) { return std::make_unique<AcarsBrowser>(owner, *web_); }, nullptr);
  ASSERT_TRUE(program_->Main());
}

void AcarsWindowTest::start() {
  launch();
  const auto shown = [this] {
    return program_->mainWindow() != nullptr && program_->mainWindow()->isVisible();
  };
  ASSERT_TRUE(QTest::qWaitFor(shown));
  window_ = dynamic_cast<AcarsBrowser*>(program_->mainWindow());
  ASSERT_NE(window_, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
}

void AcarsWindowTest::startAndEnd() {
  launch();
  ASSERT_TRUE(QTest::qWaitFor([this] { return desktop_.ended; }));
  QTest::qWait(150);
  EXPECT_TRUE(program_->mainWindow() == nullptr || !program_->mainWindow()->isVisible());
}

std::string AcarsWindowTest::text(const char* name) const {
  if (const auto* edit = window_->findChild<QLineEdit*>(QLatin1String(name))) {
    return edit->text().toStdString();
  }
  if (const auto* push = window_->findChild<QPushButton*>(QLatin1String(name))) {
    return push->text().toStdString();
  }
  return find<QLabel>(name).text().toStdString();
}

QPoint AcarsWindowTest::cellPlace(int shownIndex, int column) const {
  return list().visualRect(window_->model()->index(shownIndex, column)).center();
}

void AcarsWindowTest::select(int shownIndex, int column) {
  list().scrollTo(window_->model()->index(shownIndex, column));
  QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, cellPlace(shownIndex, column));
  settle();
}

std::vector<std::string> AcarsWindowTest::column(int column) const {
  std::vector<std::string> texts;
  for (int i = 0; i < window_->model()->rowCount(); ++i) {
    texts.push_back(window_->model()->index(i, column).data().toString().toStdString());
  }
  return texts;
}

std::string AcarsWindowTest::line(int shownIndex) const {
  std::string joined;
  for (int i = 0; i < kListColumns; ++i) {
    if (i > 0) joined += '|';
    joined += window_->model()->index(shownIndex, i).data().toString().toStdString();
  }
  return joined;
}

long AcarsWindowTest::reads() const {
  const auto& log = desktop_.runLogLines;
  return std::count(log.begin(), log.end(), "Start GetLogData");
}

void AcarsWindowTest::clickTitle(int column) const {
  const QHeaderView* header = list().horizontalHeader();
  const QPoint place(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                     header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
}

void AcarsWindowTest::settle() {
  // A selection is followed by a queued look-up, which lets events run itself.
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
}

}  // namespace vel::test
