#include <QDialogButtonBox>
#include <QMessageBox>
#include <filesystem>

#include <gmock/gmock.h>

#include "app/ui/first_start_dialog.h"
#include "app/ui/program_icon.h"
#include "core/file.h"
#include "tests/support/test_files.h"
#include "tests/ui/support/window_driver.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class FirstStart : public testing::Test {
 protected:
  FirstStartDialog& open(const std::optional<fs::path>& sampleMaker = std::nullopt,
                         const fs::path& missing = {}) {
    dialog_ = std::make_unique<FirstStartDialog>(FirstStartDialog::Choices{
        sampleMaker, root_.path(), missing,
        [this](QWidget*, const QString&) { return QString::fromStdString(toUtf8(chosen_)); }});
    dialog_->open();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(dialog_.get()));
    return *dialog_;
  }
  void press(const char* name) {
    QTest::mouseClick(&test::control<QPushButton>(*dialog_, name), Qt::LeftButton);
  }
  [[nodiscard]] std::string note() const {
    return test::control<QLabel>(*dialog_, "Note").text().toStdString();
  }
  // A program that stands for the maker of sample stations.
  [[nodiscard]] static fs::path maker(const char* how) {
    qputenv("VEL_STAND_IN", how);
    return toPath(VEL_STAND_IN_MAKER);
  }

  test::TemporaryFolder root_;
  fs::path chosen_;
  std::unique_ptr<FirstStartDialog> dialog_;
};

TEST_F(FirstStart, OpensTheDecodersFolderAndMakesTheProgramFolderInIt) {
  test::TemporaryBase base;
  for (const char* table :
       {"aircraft.csv", "FLIGHT.csv", "airport.csv", "letter.csv", "ICAO24.csv"}) {
    base.writeData(table, {});
  }
  fs::remove(base.folders.program);
  chosen_ = base.path();
  open();
  press("OpenDecoderFolder");
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
  EXPECT_EQ(dialog_->programFolder(), base.path() / "vel");
  EXPECT_TRUE(fs::is_directory(base.path() / "vel"));
}

TEST_F(FirstStart, SaysThatAFolderHoldsNoStationAndAsksOn) {
  fs::create_directories(root_.path() / "music");
  chosen_ = root_.path() / "music";
  open();
  press("OpenDecoderFolder");
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_THAT(note(), HasSubstr("No \"logs\" and no \"data\" in " + toUtf8(chosen_)));
  EXPECT_TRUE(fs::is_empty(chosen_));
}

TEST_F(FirstStart, NothingHappensWhereNoFolderIsNamed) {
  open();
  press("OpenDecoderFolder");
  press("MakeEmpty");
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_EQ(note(), "");
}

TEST_F(FirstStart, AsksBeforeItMakesTablesThatAreMissing) {
  fs::create_directories(root_.path() / "base/logs");
  chosen_ = root_.path() / "base";
  open();
  test::inDialog(
      "MissingTables", [this] { press("OpenDecoderFolder"); },
      [](QWidget& question) {
        auto& box = dynamic_cast<QMessageBox&>(question);
        EXPECT_THAT(box.text().toStdString(), HasSubstr("airport.csv, letter.csv"));
        QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton);
      });
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_FALSE(fs::exists(root_.path() / "base/data"));
  test::inDialog(
      "MissingTables", [this] { press("OpenDecoderFolder"); },
      [](QWidget& question) {
        auto& box = dynamic_cast<QMessageBox&>(question);
        QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
      });
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
  EXPECT_TRUE(fs::exists(root_.path() / "base/data/airport.csv"));
}

TEST_F(FirstStart, MakesAnEmptyStationButNeverInAnotherOne) {
  chosen_ = root_.path() / "new";
  open();
  press("MakeEmpty");
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
  EXPECT_EQ(dialog_->programFolder(), chosen_ / "vel");
  EXPECT_EQ(test::readBytes(chosen_ / "data/FLIGHT.csv"), "");
  open();
  press("MakeEmpty");
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_THAT(note(), HasSubstr("This folder holds a station already"));
}

TEST_F(FirstStart, SaysWhyAFolderCannotBeUsedAndAsksOn) {
  test::writeBytes(root_.path() / "file", "");
  chosen_ = root_.path() / "file" / "new";
  open();
  press("MakeEmpty");
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_TRUE(dialog_->programFolder().empty());
  EXPECT_THAT(note(), HasSubstr("The station cannot be used. この受信局は使えません。\n"));
  EXPECT_THAT(note(), HasSubstr(toUtf8(root_.path() / "file")));
  chosen_ = root_.path() / "new";
  press("MakeEmpty");
  EXPECT_EQ(dialog_->programFolder(), chosen_ / "vel");
}

TEST_F(FirstStart, MakesASampleStationUnderANameOfItsOwn) {
  fs::create_directories(root_.path() / "VEL sample");
  open(maker("works"));
  press("MakeSample");
  EXPECT_FALSE(test::control<QPushButton>(*dialog_, "MakeEmpty").isEnabled());
  ASSERT_TRUE(QTest::qWaitFor([this] { return !dialog_->isVisible(); }, 30'000));
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
  EXPECT_EQ(dialog_->programFolder(), root_.path() / "VEL sample 2" / "vel");
  EXPECT_EQ(test::readBytes(root_.path() / "VEL sample 2/data/letter.csv"), "NH\n");
}

TEST_F(FirstStart, SaysWhyASampleStationWasNotMade) {
  open(maker("fails"));
  press("MakeSample");
  ASSERT_TRUE(QTest::qWaitFor([this] { return note().find("disk") != std::string::npos; }, 30'000));
  EXPECT_THAT(note(), HasSubstr("The sample station was not made."));
  EXPECT_THAT(note(), HasSubstr("<b>disk</b> is full"));
  EXPECT_TRUE(test::control<QPushButton>(*dialog_, "MakeEmpty").isEnabled());
  EXPECT_TRUE(dialog_->isVisible());
}

TEST_F(FirstStart, AMakerThatDoesNotStartIsToldToo) {
  open(root_.path() / "nothing");
  press("MakeSample");
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return note().find("was not made") != std::string::npos; }, 30'000));
  EXPECT_TRUE(test::control<QPushButton>(*dialog_, "MakeSample").isEnabled());
}

TEST_F(FirstStart, OffersNoSampleWhereNothingMakesOne) {
  open();
  EXPECT_EQ(dialog_->findChild<QPushButton*>(QStringLiteral("MakeSample")), nullptr);
}

TEST_F(FirstStart, NamesTheStationThatIsGone) {
  open(std::nullopt, "/media/stick/vel");
  EXPECT_THAT(note(), HasSubstr("The station opened last is not there: /media/stick/vel"));
}

TEST_F(FirstStart, EscapeChoosesNone) {
  open();
  QTest::keyClick(dialog_.get(), Qt::Key_Escape);
  EXPECT_EQ(dialog_->result(), QDialog::Rejected);
  EXPECT_TRUE(dialog_->programFolder().empty());
}

TEST_F(FirstStart, IsWorkedFromTheKeyboard) {
  chosen_ = root_.path() / "new";
  open(maker("fails"));
  QWidget* first = QApplication::focusWidget();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->objectName(), QStringLiteral("OpenDecoderFolder"));
  QTest::keyClick(first, Qt::Key_Tab);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("MakeEmpty"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
}

TEST(ProgramIcon, HasAPictureOfEverySize) {
  const QIcon icon = programIcon();
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size))) << size;
    const QImage picture = icon.pixmap(size, size).toImage();
    ASSERT_EQ(picture.size(), QSize(size, size));
    EXPECT_GT(qAlpha(picture.pixel(size / 2, size / 2)), 0) << size;
  }
}

}  // namespace
}  // namespace vel
