#include "app/ui/station_choice.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <filesystem>
#include <optional>

#include <gmock/gmock.h>

#include "core/file.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/support/unprivileged_user.h"
#include "tests/ui/support/window_driver.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A user who starts an installed program: no station lies beside it.
class StationChoice : public testing::Test {
 protected:
  void SetUp() override {
    nameBefore_ = QCoreApplication::applicationName();
    QCoreApplication::setApplicationName(QStringLiteral("vel"));
    before_ = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(toUtf8(root_.path() / "config")));
  }
  void TearDown() override {
    qputenv("XDG_CONFIG_HOME", before_);
    if (before_.isNull()) qunsetenv("XDG_CONFIG_HOME");
    QCoreApplication::setApplicationName(nameBefore_);
  }

  [[nodiscard]] fs::path note() const { return root_.path() / "config" / "vel" / "station"; }

  std::optional<fs::path> choose() { return chooseProgramFolder(options_, desktop_); }
  /// What is chosen, with `action` while the dialog is open.
  std::optional<fs::path> chooseIn(const std::function<void(QWidget&)>& action) {
    std::optional<fs::path> chosen;
    test::inDialog(
        "FirstStart", [&] { chosen = choose(); }, action);
    return chosen;
  }
  /// Makes an empty station in that folder by the keys alone.
  static void makeEmptyByKeys(const fs::path& folder) {
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    QWidget* at = QApplication::focusWidget();
    while (at->objectName() != QLatin1String("MakeEmpty")) {
      QTest::keyClick(at, Qt::Key_Tab);
      ASSERT_NE(QApplication::focusWidget(), at);
      at = QApplication::focusWidget();
    }
    test::inDialog(
        "QFileDialog", [&] { QTest::keyClick(at, Qt::Key_Space); },
        [&](QWidget& dialog) {
          auto& name = test::control<QLineEdit>(dialog, "fileNameEdit");
          name.setText(QString::fromStdString(toUtf8(folder)));
          QTest::keyClick(&name, Qt::Key_Return);
        });
  }

  test::TemporaryFolder root_;
  test::RecordingDesktop desktop_;
  Options options_;
  QByteArray before_;
  QString nameBefore_;
};

TEST_F(StationChoice, IsAskedOnceByKeysAloneAndRememberedForTheUser) {
  const fs::path folder = root_.path() / "受信局";
  fs::create_directories(folder);
  EXPECT_EQ(chooseIn([&](QWidget&) { makeEmptyByKeys(folder); }), folder / "vel");
  EXPECT_TRUE(fs::is_directory(folder / "logs"));
  EXPECT_TRUE(fs::exists(note()));
  // No dialog any more.
  EXPECT_EQ(choose(), folder / "vel");
  EXPECT_FALSE(desktop_.ended);
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(StationChoice, CancelEndsTheProgramAndRemembersNothing) {
  EXPECT_EQ(chooseIn([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }),
            std::nullopt);
  EXPECT_TRUE(desktop_.ended);
  EXPECT_EQ(desktop_.exitStatus, 0);
  EXPECT_FALSE(fs::exists(note()));
}

TEST_F(StationChoice, IsAskedAgainOnDemandAndKeptWhereThatIsCancelled) {
  const fs::path folder = root_.path() / "base";
  fs::create_directories(folder);
  ASSERT_EQ(chooseIn([&](QWidget&) { makeEmptyByKeys(folder); }), folder / "vel");
  options_.chooseStation = true;
  chooseIn([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  options_.chooseStation = false;
  EXPECT_EQ(choose(), folder / "vel");
}

TEST_F(StationChoice, OpensAlsoWhereItCannotBeRemembered) {
  const fs::path folder = root_.path() / "base";
  fs::create_directories(folder);
  test::writeBytes(root_.path() / "config", "a file");
  EXPECT_EQ(chooseIn([&](QWidget&) { makeEmptyByKeys(folder); }), folder / "vel");
  EXPECT_THAT(desktop_.messages, ElementsAre(HasSubstr("Can't remember the station. ")));
}

TEST_F(StationChoice, AFolderThatMayNotBeWrittenIsSaidInTheDialog) {
  const fs::path folder = root_.path() / "base";
  fs::create_directories(folder);
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
  const test::UnprivilegedUser somebody(root_.path());
  EXPECT_EQ(chooseIn([&](QWidget& dialog) {
              makeEmptyByKeys(folder);
              EXPECT_TRUE(dialog.isVisible());
              EXPECT_THAT(test::control<QLabel>(dialog, "Note").text().toStdString(),
                          HasSubstr("The station cannot be used. "));
            }),
            std::nullopt);
  EXPECT_FALSE(fs::exists(note()));
}

}  // namespace
}  // namespace vel
