// Every window and dialog as it looks on a real station, in the colours, the
// letters and the scale that the environment asks for.

#include <QAction>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QTabWidget>
#include <filesystem>
#include <iostream>

#include "app/ui/first_start_dialog.h"
#include "app/ui/splash.h"
#include "core/file.h"
#include "core/ui/qt_desktop.h"
#include "exchange/ui/import_dialog.h"
#include "exchange/ui/list_saver.h"
#include "tests/ui/looks/looks_fixture.h"
#include "tour/tour_steps.h"
#include "web/ui/findable_text.h"
#include "web/ui/service_wait.h"

namespace vel::test {
namespace {

using testing::IsEmpty;

// Some of them are in the sample's table under another name.
constexpr const char* kAirports =
    "ident,type,name,municipality,iata_code\n"
    "RJTT,large_airport,Tokyo Haneda International Airport,Tokyo,HND\n"
    "RJAA,large_airport,Narita International Airport,Narita,NRT\n"
    "RJBB,large_airport,Kansai International Airport,Osaka,KIX\n"
    "KLAX,large_airport,Los Angeles International Airport,Los Angeles,LAX\n"
    "PHNL,large_airport,Daniel K Inouye International Airport,Honolulu,HNL\n"
    "EGLL,large_airport,London Heathrow Airport,London,LHR\n";

class EveryWindow : public LooksTest {
 protected:
  void SetUp() override { start(sampleStation()); }

  void expectNoMessage() const { EXPECT_THAT(desktop_.messages, IsEmpty()); }

  void lookAtMenuOf(const char* name, LogBrowser& browser) {
    lookAtMenu(name, "mainMenu", [&] { press(control<QPushButton>(browser, "menuButton")); });
  }
  void lookAtListMenu(const char* name, LogBrowser& browser) {
    lookAtMenu(name, "ListMenu", [&] {
      const QPoint place = browser.list()->visualRect(browser.model()->index(0, 1)).center();
      QContextMenuEvent asked(QContextMenuEvent::Mouse, place,
                              browser.list()->viewport()->mapToGlobal(place));
      QApplication::sendEvent(browser.list()->viewport(), &asked);
    });
  }
  void lookAtChoices(const char* name, QComboBox& chooser) {
    chooser.showPopup();
    QWidget& popup = *chooser.view()->window();
    ASSERT_TRUE(QTest::qWaitFor([&] { return popup.isVisible(); }));
    looks_.atToolkitWindow(name, popup);
    chooser.hidePopup();
  }
};

TEST_F(EveryWindow, OfTheStart) {
  {
    Splash splash([] {});
    splash.showPleaseWait();
    splash.setProgress(QStringLiteral("FMT:5000 LIST:358"));
    splash.show();
    looks_.atToolkitWindow("splash", splash);
  }
  const FirstStartDialog::Choices choices{.sampleMaker = "/usr/libexec/vel/vel-sample-base",
                                          .sampleParent = "/home/user/Documents",
                                          .chooseFolder = nullptr};
  {
    FirstStartDialog dialog(choices);
    dialog.open();
    look("first-start", dialog);
  }
  FirstStartDialog::Choices gone = choices;
  gone.missing = "/media/user/a memory stick with a long name/receiver/station of the roof/vel";
  FirstStartDialog dialog(gone);
  dialog.open();
  look("first-start-station-gone", dialog);
}

TEST_F(EveryWindow, OfTheAcarsBrowser) {
  look("acars-nothing-selected", *acars_);
  selectLine(*acars_, 0);
  look("acars-browser", *acars_);
  lookAtMenuOf("acars-menu", *acars_);
  lookAtListMenu("acars-list-menu", *acars_);
  lookAtChoices("log-chooser", control<QComboBox>(*acars_, "Combo1"));
  lookAtChoices("photo-engines", control<QComboBox>(*acars_, "Combo2"));
  lookAtDialog("airport", "AirportDialog", [this] {
    auto& name = control<QWidget>(*acars_, "Label2(4)");
    name.setFocus();
    QTest::keyClick(&name, Qt::Key_Return);
  });
  lookAtDialog("conffig", "ConffigDialog", [this] { entry(*acars_, "engines").trigger(); });
  expectNoMessage();
}

TEST_F(EveryWindow, OfTheTour) {
  constexpr int kOfTheGuide = 6;
  inWindow(
      "TourWindow", [this] { acars_->showTour(); },
      [this](QWidget& tour) {
        look("tour", tour);
        for (int step = 2; step <= kLastTourStep; ++step) {
          press(control<QPushButton>(tour, "Command2"));
          const std::string name = "tour-" + std::to_string(step / 10) + std::to_string(step % 10);
          look(name.c_str(), tour);
          if (step != kOfTheGuide) continue;
          // Its arrow blinks.
          auto& arrow = control<QWidget>(tour, "Image1(1)");
          EXPECT_TRUE(QTest::qWaitFor([&] { return arrow.isVisible(); }));
          looks_.keepPictureOf("tour-over-browser", *acars_, tour);
        }
      });
  expectNoMessage();
}

TEST_F(EveryWindow, OfTheRawLog) {
  selectLine(*acars_, 0);
  web_->rawLogs().open(acars_->list()->selectedText(kListRegistration));
  QWidget& viewer = shown("Form3");
  look("raw-log", viewer);
  auto& text = control<FindableText>(viewer, "Text1");
  text.openFindBar();
  typeKeys(control<QLineEdit>(viewer, "Text2"), "zzzzz");
  QTest::keyClick(&control<QLineEdit>(viewer, "Text2"), Qt::Key_Return);
  look("raw-log-find", viewer);
  web_->rawLogs().close();
  expectNoMessage();
}

TEST_F(EveryWindow, OverAllDays) {
  selectLine(*acars_, 0);
  history_->find().open();
  look("find-nothing", shown("HistoryWindow"));
  history_->find().openWith(SearchMeaning::registration,
                            acars_->list()->selectedText(kListRegistration));
  look("find", shown("HistoryWindow"));
  history_->find().close();
  history_->report().open(ReportKind::list, acars_->shownLog());
  QWidget& report = shown("ReportWindow");
  look("report", report);
  auto* pages = report.findChild<QTabWidget*>();
  ASSERT_NE(pages, nullptr);
  pages->setCurrentIndex(1);
  look("report-missing", report);
  pages->setCurrentIndex(2);
  look("report-first-heard", report);
  history_->report().close();
  expectNoMessage();
}

TEST_F(EveryWindow, OfTheExchange) {
  const std::filesystem::path folder = sampleStation() / "pics";
  writeBytes(folder / "airports.csv", kAirports);
  // The box shows the name as it was given.
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(QString::fromStdString(toUtf8(folder))));
  {
    ImportDialog dialog(program_->context(), acars_);
    dialog.open();
    look("import-nothing", dialog);
    dialog.setFile(QStringLiteral("airports.csv"));
    settle();
    QTest::keyClick(&control<QTableView>(dialog, "ImportDifferences"), Qt::Key_Down);
    QTest::keyClick(&control<QTableView>(dialog, "ImportDifferences"), Qt::Key_Space);
    look("import", dialog);
  }
  EXPECT_TRUE(QDir::setCurrent(before));
  ListSaver saver(program_->context());
  inWindow(
      "SaveListDialog", [&] { saver.save(*acars_->list(), QStringLiteral("20261120_list")); },
      [&](QWidget& dialog) { looks_.atToolkitWindow("save-list", dialog); });
  expectNoMessage();
}

TEST_F(EveryWindow, OfMessages) {
  QtDesktop desktop;
  lookAtDialog("message", "MessageBox", [&] {
    desktop.showMessage("Illegal character is included. 登録できない文字が含まれています。");
  });
  lookAtDialog("message-retry", "MessageBox", [&] {
    desktop.askRetry(
        "Can't write file. Using Excel to edit CSV? If not edited by Excel, close it to "
        "continue.　ファイルの書込みができません。エクセルでCSVファイルを開いていませんか？。"
        "エクセル側で書き換えを行っていなければエクセルを閉じてから再試行を行うと継続できます。");
  });
  ServiceWait wait(QStringLiteral("Starting velweb...\nvelwebを起動しています..."), acars_, [] {});
  ASSERT_TRUE(QTest::qWaitFor([&] { return wait.isVisible(); }, kLongEnough));
  look("wait", wait);
}

TEST_F(EveryWindow, OfTheHfdlBrowser) {
  press(control<QPushButton>(*acars_, "Command11"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return hfdl_->isVisible(); }));
  look("hfdl-nothing-selected", *hfdl_);
  selectLine(*hfdl_, 0);
  look("hfdl-browser", *hfdl_);
  lookAtMenuOf("hfdl-menu", *hfdl_);
  lookAtListMenu("hfdl-list-menu", *hfdl_);
  activity_->open();
  look("activity-chart", shown("ActivityChart"));
  lookAtChoices("stations", control<QComboBox>(*activity_, "Combo1"));
  activity_->close();
  frequencies_->open();
  look("frequency-chart", shown("FrequencyChart"));
  frequencies_->picture()->setPoint(QPoint(frequencies_->picture()->width() / 2, 200));
  auto* enlarge = frequencies_->findChild<QAction*>(QStringLiteral("EnlargeChart"));
  ASSERT_NE(enlarge, nullptr);
  lookAtDialog("magnifier", "Magnifier", [&] { enlarge->trigger(); });
  expectNoMessage();
}

// A station that holds nothing yet: every window says what to do.
class EmptyStation : public LooksTest {
 protected:
  TemporaryBase base_;
};

TEST_F(EmptyStation, SaysWhatToDoInEveryWindow) {
  for (const char* table :
       {"aircraft.csv", "FLIGHT.csv", "airport.csv", "letter.csv", "ICAO24.csv"}) {
    base_.writeData(table, {});
  }
  start(base_.path());
  look("acars-no-log", *acars_);
  press(control<QPushButton>(*acars_, "Command11"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return hfdl_->isVisible(); }));
  look("hfdl-no-log", *hfdl_);
  writeBytes(base_.folders.logs / "EachLogs" / "JA8089.log", "");
  web_->rawLogs().open("JA8089");
  look("raw-log-empty", shown("Form3"));
  web_->rawLogs().close();
}

}  // namespace
}  // namespace vel::test
