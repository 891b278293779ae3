#include "exchange/ui/import_dialog.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <filesystem>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hfdl/hfdl_row.h"
#include "hfdl/ui/hfdl_browser.h"
#include "tests/ui/support/acars_window.h"
#include "tests/ui/support/hide_watch.h"
#include "tests/ui/support/layout_checks.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Both browsers as the program has them, with the import.
class ImportDialogTest : public AcarsWindowTest {
 protected:
  ImportDialogTest() {
    base_.writeData("airport.csv", {"PHNL,my Honolulu HNL", "KLAX,Los Angeles LAX"});
    base_.writeData("aircraft.csv", {});
    base_.writeData("ICAO24.csv", {});
    base_.writeLog(kLog, {kHeaderLine, "NH0105,X,JA731A,RJTT,PHNL,B773,-,8:00:00",
                          "JL0012,O,JA8089,RJTT,KLAX,B744,first day,9:05:00"});
    base_.writeLog("202601010000_HFDL_FMT.log",
                   {"[2]------------------------[2026/01/01 00:04:19]",
                    "   ICAO24 ADDRESS = 3482D8", "   REGISTRATION   = JA8089"});
    writeBytes(airports_,
               "ident,type,name,iata_code\nRJTT,large_airport,Tokyo Haneda,HND\n"
               "PHNL,large_airport,Honolulu & Daniel,HNL\nKLAX,large_airport,Los Angeles,LAX\n"
               "EGLL,large_airport,London Heathrow,LHR\n");
    writeBytes(aircraft_, "icao24,registration,typecode\n3482d8,JA8089,B748\n");
  }

  template <typename Browser>
  std::unique_ptr<BrowserWindow> makeBrowser(BrowserFrame& owner) {
    auto browser = std::make_unique<Browser>(owner, *web_);
    browser->showImport = [this, &owner, window = browser.get()](const QString& file) {
      ImportDialog dialog(owner.context(), window);
      QObject::connect(&dialog, &ImportDialog::tablesChanged, &dialog,
                       [&owner] { owner.tablesChanged(); });
      dialog.chooseFile = [this](QWidget*) { return toQString(chosen_); };
      if (!file.isEmpty()) dialog.setFile(file);
      dialog.exec();
    };
    return browser;
  }
  static QString toQString(const std::filesystem::path& path) {
    return QString::fromStdString(toUtf8(path));
  }

  void setBrowsers() override {
    program_->setBrowsers([this](BrowserFrame& owner) { return makeBrowser<AcarsBrowser>(owner); },
                          [this](BrowserFrame& owner) { return makeBrowser<HfdlBrowser>(owner); });
  }

  /// Chooses "Import..." and a file there, and lets `action` run in the dialog.
  void import(const std::filesystem::path& file, const std::function<void(ImportDialog&)>& action) {
    chosen_ = file;
    inDialog(
        "ImportDialog", [this] { browser().showImport(QString()); },
        [&](QWidget& dialog) {
          press(control<QPushButton>(dialog, "ImportChoose"));
          action(dynamic_cast<ImportDialog&>(dialog));
        });
  }
  static std::string summary(const QWidget& dialog) {
    return control<QLabel>(dialog, "ImportSummary").text().toStdString();
  }
  static QTableView& differences(const QWidget& dialog) {
    return control<QTableView>(dialog, "ImportDifferences");
  }
  static std::string cell(const QWidget& dialog, int row, int column) {
    return differences(dialog).model()->index(row, column).data().toString().toStdString();
  }
  /// Presses Import and waits until the tables are written.
  static void pressImport(const QWidget& dialog) {
    press(control<QPushButton>(dialog, "ImportButton"));
    EXPECT_TRUE(QTest::qWaitFor([&] {
      finishJobs();
      return control<QPushButton>(dialog, "CancelButton").text() == QLatin1String("Close");
    }));
    finishJobs();
  }

  std::filesystem::path airports_ = base_.folders.pics / "airports.csv";
  std::filesystem::path aircraft_ = base_.folders.pics / "aircraft.csv";
  std::filesystem::path chosen_;
};

TEST_F(ImportDialogTest, WhatWouldBecomeOfTheTablesIsShownBeforeAnythingIsTouched) {
  start();
  const std::string before = base_.data("airport.csv");
  import(airports_, [&](ImportDialog& dialog) {
    EXPECT_EQ(summary(dialog),
              "OurAirports airports.csv: 4 rows read\nairport.csv: 1 new, 1 differs, 1 the same\n"
              "Import writes 1 records (0 ticked). 1件を書き込みます。");
  ASSERT_EQ(differences(dialog).model()->rowCount(), 1);
  EXPECT_EQ(cell(dialog, 0, DifferenceModel::kTable), "airport");
  EXPECT_EQ(cell(dialog, 0, DifferenceModel::kBefore), "PHNL, my Honolulu HNL");
  EXPECT_EQ(cell(dialog, 0, DifferenceModel::kAfter), "PHNL, Honolulu & Daniel HNL");
  press(control<QPushButton>(dialog, "CancelButton"));
  EXPECT_FALSE(dialog.isVisible());
});
EXPECT_EQ(base_.data("airport.csv"), before);
EXPECT_FALSE(std::filesystem::exists(base_.folders.data / "airport.bak"));
}  // namespace

TEST_F(ImportDialogTest, APathCanBeTypedOrPasted) {
  start();
  const std::string before = base_.data("airport.csv");
  inDialog(
      "ImportDialog", [this] { browser().showImport(QString()); },
      [&](QWidget& dialog) {
        auto& file = control<QLineEdit>(dialog, "ImportFile");
        EXPECT_EQ(dialog.focusWidget(), &file);
        QTest::keyClicks(&file, QLatin1Char('"') + toQString(airports_) + QLatin1Char('"'));
        // Enter in the box reads the file; nothing is written yet.
        QTest::keyClick(&file, Qt::Key_Return);
        finishJobs();
        EXPECT_EQ(file.text(), toQString(airports_));
        EXPECT_THAT(summary(dialog), HasSubstr("airport.csv: 1 new, 1 differs, 1 the same"));
        EXPECT_EQ(base_.data("airport.csv"), before);
        // Nor where the key of Import comes before that path is read.
        press(control<QPushButton>(dialog, "TickAll"));
        typeOver(file, "no such file");
        QTest::keyClick(&file, Qt::Key_I, Qt::AltModifier);
        // A button is pressed for a moment before it is clicked.
        EXPECT_TRUE(QTest::qWaitFor([&] {
          finishJobs();
          return summary(dialog).find("There is no such file.") != std::string::npos;
        }));
        EXPECT_EQ(base_.data("airport.csv"), before);
        typeOver(file, "no such file");
        QTest::keyClick(&file, Qt::Key_Tab);
        finishJobs();
        EXPECT_THAT(summary(dialog), HasSubstr("There is no such file."));
        EXPECT_FALSE(control<QPushButton>(dialog, "ImportButton").isEnabled());
        typeOver(file, "");
        QTest::keyClick(&file, Qt::Key_Tab);
        EXPECT_THAT(summary(dialog), HasSubstr("Choose a file"));
        press(control<QPushButton>(dialog, "CancelButton"));
      });
}

TEST_F(ImportDialogTest, ATickTakesARecordFromTheFile) {
  start();
  import(airports_, [&](ImportDialog& dialog) {
    QTableView& list = differences(dialog);
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Down);
  QTest::keyClick(&list, Qt::Key_Space);
  EXPECT_THAT(summary(dialog), HasSubstr("Import writes 2 records (1 ticked)."));
  press(control<QPushButton>(dialog, "TickNone"));
  EXPECT_THAT(summary(dialog), HasSubstr("(0 ticked)"));
  press(control<QPushButton>(dialog, "TickAll"));
  EXPECT_THAT(summary(dialog), HasSubstr("(1 ticked)"));
  pressImport(dialog);
  EXPECT_THAT(summary(dialog), HasSubstr("airport.csv: 2 records written."));
  EXPECT_FALSE(control<QPushButton>(dialog, "ImportButton").isEnabled());
});
EXPECT_EQ(base_.data("airport.csv"),
          "PHNL,Honolulu & Daniel HNL\r\nKLAX,Los Angeles LAX\r\nRJTT,Tokyo Haneda HND\r\n");
EXPECT_EQ(base_.data("airport.bak"), "PHNL,my Honolulu HNL\r\nKLAX,Los Angeles LAX\r\n");
EXPECT_THAT(desktop_.messages, IsEmpty());
}  // namespace vel::test

TEST_F(ImportDialogTest, EverythingIsTakenWhenItIsAskedFor) {
  start();
  import(airports_, [&](ImportDialog& dialog) {
    QTest::keyClick(&dialog, Qt::Key_E, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return control<QCheckBox>(dialog, "ImportAll").isChecked(); }));
  finishJobs();
  EXPECT_THAT(summary(dialog), HasSubstr("airport.csv: 2 new, 1 differs, 1 the same"));
});
}

TEST_F(ImportDialogTest, BothBrowsersShowTheNewValuesAtOnce) {
  start();
  select(1);
  ASSERT_EQ(text("Text1"), "");
  auto* hfdl = qobject_cast<LogBrowser*>(program_->otherWindow());
  ASSERT_EQ(hfdl->model()->cell(0, kHfdlAircraft), "");
  import(aircraft_, [&](ImportDialog& dialog) {
    EXPECT_THAT(summary(dialog), HasSubstr("aircraft.csv: 1 new, 0 differ, 0 the same\n"
                                           "ICAO24.csv: 1 new, 0 differ, 0 the same\n"));
  pressImport(dialog);
  // The dialog still is open.
  EXPECT_EQ(text("Text1"), "B748");
  EXPECT_EQ(list().selectedText(kListRegistration), "JA8089");
  EXPECT_THAT(hfdl->model()->cell(0, kHfdlAircraft), HasSubstr("JA8089"));
});
EXPECT_EQ(base_.data("ICAO24.csv"), "3482D8,,,JA8089,B748\r\n");
}

TEST_F(ImportDialogTest, AWrongFileIsRefusedWithWhatWasExpected) {
  start();
  writeBytes(base_.folders.pics / "wrong", "hello\n");
  import(base_.folders.pics / "wrong", [&](ImportDialog& dialog) {
    EXPECT_THAT(summary(dialog), HasSubstr("This file is none that can be imported. Expected: "
                                           "OurAirports airports.csv; "));
  EXPECT_FALSE(control<QPushButton>(dialog, "ImportButton").isEnabled());
});
}

TEST_F(ImportDialogTest, AHeldTableAsksAsForAnEdit) {
  start();
  auto lock = FolderLock::take(base_.folders.data);
  ASSERT_TRUE(lock);
  desktop_.onRetry = [&] {
    lock.reset();
    return true;
  };
  import(airports_, [&](ImportDialog& dialog) { pressImport(dialog);
});
EXPECT_THAT(desktop_.messages, ElementsAre(kTableHeld));
EXPECT_THAT(base_.data("airport.csv"), HasSubstr("RJTT,Tokyo Haneda HND"));
}

TEST_F(ImportDialogTest, AFileDroppedOnABrowserIsImported) {
  start();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(toQString(airports_))});
  // On the list, and on a box that takes text.
  for (QWidget* target : std::initializer_list<QWidget*>{list().viewport(), &box("Text4(0)")}) {
    inDialog(
        "ImportDialog",
        [&] {
          QDragEnterEvent enter(QPoint(3, 3), Qt::CopyAction, &data, Qt::LeftButton, {});
          QApplication::sendEvent(target, &enter);
          EXPECT_TRUE(enter.isAccepted());
          QDropEvent drop(QPointF(3, 3), Qt::CopyAction, &data, Qt::LeftButton, {});
          QApplication::sendEvent(target, &drop);
          QCoreApplication::processEvents();
        },
        [&](QWidget& dialog) {
          finishJobs();
          EXPECT_EQ(control<QLineEdit>(dialog, "ImportFile").text(), toQString(airports_));
          EXPECT_THAT(summary(dialog), HasSubstr("airport.csv: 1 new"));
        });
  }
  EXPECT_EQ(text("Text4(0)"), "");
}

TEST_F(ImportDialogTest, AtTheProgramsEndItsListGoesBeforeWhatTheListShows) {
  start();
  auto dialog = std::make_unique<ImportDialog>(program_->context(), nullptr);
  dialog->setFile(toQString(airports_));
  dialog->show();
  finishJobs();
  ASSERT_GT(differences(*dialog).model()->rowCount(), 0);
  const HideWatch<ImportDialog> watch(differences(*dialog));
  dialog.reset();
  EXPECT_TRUE(watch.isHidden());
  EXPECT_TRUE(watch.wasWhole());
}

TEST_F(ImportDialogTest, NothingIsClippedAlsoWithALargerFont) {
  const ScaledFont font(1.25);
  start();
  import(airports_, [&](ImportDialog& dialog) {
    // The summary has more lines than before.
    QCoreApplication::processEvents();
  expectNothingClipped(dialog);
  expectNoOverlap(dialog);
});
}

}  // namespace
}  // namespace vel::test
