#pragma once

#include <QGroupBox>
#include <memory>
#include <string>
#include <vector>

#include "acars/ui/acars_browser.h"
#include "tests/support/test_files.h"
#include "tests/ui/support/window_driver.h"
#include "web/ui/web_access.h"

namespace vel::test {

/// A JPEG of that size in one colour.
void writePhoto(const std::filesystem::path& path, int width, int height);

/// The ACARS browser as the program starts it, over a small base folder of its
/// own that a test changes before start().
class AcarsWindowTest : public testing::Test {
 protected:
  static constexpr const char* kLog = "20260102_list.csv";
  static constexpr const char* kHeaderLine =
      "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time";

  AcarsWindowTest();
  ~AcarsWindowTest() override;

  /// Starts the program and waits until its main window is shown.
  void start();

  /// Starts the program and waits until it has ended by itself.
  void startAndEnd();

  [[nodiscard]] AcarsBrowser& window() const { return *window_; }
  [[nodiscard]] Settings& settings() const { return program_->settings(); }

  template <typename T>
  [[nodiscard]] T& find(const char* name) const {
    return control<T>(*window_, name);
  }
  [[nodiscard]] QLineEdit& box(const char* name) const { return find<QLineEdit>(name); }
  [[nodiscard]] QPushButton& button(const char* name) const { return find<QPushButton>(name); }
  [[nodiscard]] std::string text(const char* name) const;
  void click(const char* buttonName) const { press(button(buttonName)); }

  /// Clicks a line of the list and lets its look-up run.
  void select(int shownIndex, int column = 1);
  [[nodiscard]] xLView& list() const { return *window_->list(); }

  /// One column of the list from top to bottom.
  [[nodiscard]] std::vector<std::string> column(int column) const;
  [[nodiscard]] std::vector<std::string> flights() const { return column(kListFlight); }
  /// One line, its cells joined by "|".
  [[nodiscard]] std::string line(int shownIndex) const;

  /// How many reads of a log have begun.
  [[nodiscard]] long reads() const;

  /// The place of a cell in the list's viewport.
  [[nodiscard]] QPoint cellPlace(int shownIndex, int column) const;

  void clickTitle(int column) const;

  /// Lets events run until the list's selection has been followed.
  static void settle();

  TemporaryBase base_;
  WindowDesktop desktop_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<WebAccess> web_;

 private:
  void launch();

  AcarsBrowser* window_ = nullptr;
};

}  // namespace vel::test
