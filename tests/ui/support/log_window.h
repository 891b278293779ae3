#pragma once

#include <QMenu>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/ui/program.h"
#include "log/ui/log_browser.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "tests/ui/support/window_driver.h"
#include "web/ui/web_access.h"

namespace vel::test {

/// A JPEG of that size in one colour.
void writePhoto(const std::filesystem::path& path, int width, int height);

/// The program with its browsers over a small base folder of its own, and one
/// of the browsers on the screen, driven as a user drives it.
class LogWindowTest : public testing::Test {
 protected:
  LogWindowTest();
  ~LogWindowTest() override;

  /// Tells the program which browsers it has.
  virtual void setBrowsers() = 0;

  void launch();

  /// Starts the program and waits until its main window is shown.
  void startMainWindow();

  /// Starts the program and waits until it has ended by itself.
  void startAndEnd();

  /// The browser that the rest is about.
  void driveBrowser(BrowserWindow* browser);
  [[nodiscard]] LogBrowser& browser() const { return *browser_; }

  [[nodiscard]] Settings& settings() const { return program_->settings(); }

  template <typename T>
  [[nodiscard]] T& find(const char* name) const {
    return control<T>(*browser_, name);
  }
  [[nodiscard]] QLineEdit& box(const char* name) const { return find<QLineEdit>(name); }
  [[nodiscard]] QPushButton& button(const char* name) const { return find<QPushButton>(name); }
  [[nodiscard]] std::string text(const char* name) const;
  void click(const char* buttonName) const { press(button(buttonName)); }
  /// A click that does not wait for what it starts.
  void clickOnly(const char* buttonName) const {
    QTest::mouseClick(&button(buttonName), Qt::LeftButton);
  }
  [[nodiscard]] JobRunner& jobs() const { return program_->context().jobs; }

  [[nodiscard]] QComboBox& logs() const { return find<QComboBox>("Combo1"); }
  [[nodiscard]] std::vector<std::string> logNames() const { return entries(logs()); }
  /// The entries of a chooser.
  static std::vector<std::string> entries(const QComboBox& chooser);

  /// Clicks a line of the list and lets its look-up run.
  void select(int shownIndex, int column = 1);
  [[nodiscard]] LogListView& list() const { return *browser_->list(); }

  /// One column of the list from top to bottom.
  [[nodiscard]] std::vector<std::string> column(int column) const;
  /// One line, its cells joined by "|".
  [[nodiscard]] std::string line(int shownIndex) const;

  /// How many reads of a log have begun.
  [[nodiscard]] long reads() const;

  /// The place of a cell in the list's viewport.
  [[nodiscard]] QPoint cellPlace(int shownIndex, int column) const;

  void clickTitle(int column) const;

  /// Right-clicks a cell; `action` gets the menu that opens.
  void openMenu(int shownIndex, int column, const std::function<void(QMenu&)>& action);
  /// Right-clicks a cell and chooses an entry of the menu.
  void chooseFromMenu(int shownIndex, int column, const std::string& entry);
  static std::string captionOf(const QAction& action);

  /// Lets events run until the list's selection has been followed.
  static void settle();

  TemporaryBase base_;
  RecordingDesktop desktop_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<WebAccess> web_;

 private:
  LogBrowser* browser_ = nullptr;
};

}  // namespace vel::test
