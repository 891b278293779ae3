#include <QFileDialog>
#include <QMimeData>
#include <filesystem>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/ui/list_saver.h"
#include "history/ui/history_windows.h"
#include "tests/ui/support/acars_window.h"

namespace vel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class SaveListTest : public AcarsWindowTest {
 protected:
  SaveListTest() {
    base_.writeLog(kLog, {kHeaderLine, "NH0105,X,JA731A,RJTT,PHNL,B773,=1+1,8:00:00",
                          "JL0012,O,JA8089,RJTT,KLAX,B744,first day,9:05:00"});
  }

  void setBrowsers() override {
    AcarsWindowTest::setBrowsers();
    saver_ = std::make_unique<ListSaver>(program_->context());
    saver_->chooseFile = [this](QWidget*, const QString& suggested) {
      suggested_.push_back(suggested.toStdString());
      return choice_;
    };
  }

  void startAndOffer() {
    start();
    browser().saveList = [this] { saver_->save(list(), QStringLiteral("a list")); };
    saveEntry()->setVisible(true);
  }

  QAction* saveEntry() {
    for (QAction* each : browser().menu().entries().actions()) {
      if (each->text().contains(QLatin1String("Save list"))) return each;
    }
    return nullptr;
  }

  [[nodiscard]] std::filesystem::path file(const char* name) const {
    return base_.folders.pics / name;
  }
  void choose(const char* name, ListFormat format) {
    choice_ = {QString::fromStdString(toUtf8(file(name))), format};
  }

  void TearDown() override { saver_.reset(); }

  std::unique_ptr<ListSaver> saver_;
  ListSaver::Choice choice_;
  std::vector<std::string> suggested_;
};

TEST_F(SaveListTest, CtrlSSavesTheShownRowsInTheShownOrder) {
  startAndOffer();
  clickTitle(kListTime);
  clickTitle(kListTime);
  choose("list.csv", ListFormat::spreadsheet);
  QTest::keyClick(&list(), Qt::Key_S, Qt::ControlModifier);
  finishJobs();
  EXPECT_THAT(suggested_, ElementsAre("a list"));
  EXPECT_EQ(readBytes(file("list.csv")),
            "\xEF\xBB\xBF"
            "Line,Flight,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time\r\n"
            "0002,JL0012,O,JA8089,RJTT,KLAX,B744,first day,09:05:00\r\n"
            "0001,NH0105,X,JA731A,RJTT,PHNL,B773,'=1+1,08:00:00\r\n");
  typeKeys(box("Text4(0)"), "NH");
  choose("list.html", ListFormat::html);
  QTest::keyClick(&list(), Qt::Key_S, Qt::ControlModifier);
  finishJobs();
  EXPECT_THAT(readBytes(file("list.html")), HasSubstr("<td>NH0105</td>"));
  EXPECT_THAT(readBytes(file("list.html")), ::testing::Not(HasSubstr("JL0012")));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(SaveListTest, WhatCannotBeSavedIsRefusedWithTheReason) {
  startAndOffer();
  choose("missing/list.csv", ListFormat::spreadsheet);
  QTest::keyClick(&list(), Qt::Key_S, Qt::ControlModifier);
  finishJobs();
  EXPECT_THAT(desktop_.messages,
              ElementsAre("The list could not be saved. 一覧を保存できませんでした。\n\n"
                          "There is no such folder. フォルダがありません。"));
  choice_ = {};
  QTest::keyClick(&list(), Qt::Key_S, Qt::ControlModifier);
  finishJobs();
  EXPECT_EQ(desktop_.messages.size(), 1U);
}

TEST_F(SaveListTest, AListThatIsFilledAnewMeanwhileIsNotSavedInPart) {
  startAndOffer();
  choose("list.csv", ListFormat::spreadsheet);
  QTest::keyClick(&list(), Qt::Key_S, Qt::ControlModifier);
  ASSERT_TRUE(saver_->isSaving());
  browser().model()->clear();
  finishJobs();
  EXPECT_FALSE(saver_->isSaving());
  EXPECT_FALSE(std::filesystem::exists(file("list.csv")));
  EXPECT_THAT(desktop_.messages,
              ElementsAre("The list could not be saved. 一覧を保存できませんでした。\n\n"
                          "The list was filled anew while it was saved. "
                          "保存中に一覧が更新されました。"));
}

TEST_F(SaveListTest, DraggedRowsAreTabSeparatedText) {
  start();
  list().selectAll();
  ASSERT_TRUE(list().dragEnabled());
  const std::unique_ptr<QMimeData> data(
      browser().model()->mimeData(list().selectionModel()->selectedIndexes()));
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->text().toStdString(),
            "0001\tNH0105\tX\tJA731A\tRJTT\tPHNL\tB773\t=1+1\t08:00:00\n"
            "0002\tJL0012\tO\tJA8089\tRJTT\tKLAX\tB744\tfirst day\t09:05:00");
  EXPECT_TRUE(browser().model()->flags(browser().model()->index(0, 0)) & Qt::ItemIsDragEnabled);
}

TEST_F(SaveListTest, TheDialogOffersThreeForms) {
  start();
  ListSaver saver(program_->context());
  QStringList forms;
  inDialog(
      "SaveListDialog", [&] { saver.save(list(), QStringLiteral("20260102_list")); },
      [&](QWidget& dialog) {
        auto& chooser = dynamic_cast<QFileDialog&>(dialog);
        forms = chooser.nameFilters();
        chooser.setDirectory(QString::fromStdString(toUtf8(base_.folders.pics)));
        chooser.selectNameFilter(forms[2]);
        Q_EMIT chooser.filterSelected(forms[2]);
        chooser.selectFile(QStringLiteral("page"));
        static_cast<QDialog&>(chooser).accept();
      });
  finishJobs();
  EXPECT_EQ(
      forms.join(QLatin1Char('|')).toStdString(),
      "CSV for spreadsheets (*.csv)|CSV in the station's encoding (*.csv)|HTML page (*.html)");
  EXPECT_THAT(readBytes(file("page.html")), HasSubstr("<h1>20260102_list</h1>"));
}

TEST_F(SaveListTest, TheWindowsOverAllDaysSaveTheirLists) {
  start();
  HistoryWindows windows(program_->context());
  std::vector<std::string> asked;
  windows.saveList = [&](QTableView& list, const QString& title) {
    asked.push_back(list.objectName().toStdString() + " " + title.toStdString());
  };
  windows.find().open();
  QTest::keyClick(&windows.find(), Qt::Key_S, Qt::ControlModifier);
  windows.report().open(ReportKind::list, kLog);
  finishJobs();
  for (const Qt::Key page : {Qt::Key_C, Qt::Key_M, Qt::Key_F}) {
    QTest::keyClick(&windows.report(), page, Qt::AltModifier);
    QTest::keyClick(&windows.report(), Qt::Key_S, Qt::ControlModifier);
  }
  EXPECT_THAT(asked,
              ElementsAre("FoundList found_messages", "Counts 20260102_list_counts",
                          "GapList 20260102_list_missing", "FirstList 20260102_list_first_heard"));
  windows.close();
}

}  // namespace
}  // namespace vel::test
