#pragma once

#include <memory>
#include <string>

#include "acars/ui/acars_browser.h"
#include "app/ui/program.h"
#include "core/ui/qt_desktop.h"
#include "hfdl/ui/hfdl_browser.h"
#include "web/ui/web_access.h"

namespace vel::test {

/// The real desktop, but nothing is opened outside the program.
class EnclosedDesktop : public QtDesktop {
 public:
  int open(const std::string& target) override;

  /// How many addresses and files were to be opened.
  [[nodiscard]] std::size_t opened() const { return opened_; }

 private:
  std::size_t opened_ = 0;
};

/// The whole program with all its windows, as main() puts it together. Where it
/// asks for a file, it is given one of the base folder: of those in `imports`, or
/// a place in `saved`.
class WholeProgram {
 public:
  explicit WholeProgram(const Folders& folders);
  ~WholeProgram();

  /// Starts it and waits until its main window is shown; false where it has
  /// ended instead.
  bool start();

  [[nodiscard]] bool hasEnded() const { return desktop_.isEnding(); }
  [[nodiscard]] const JobRunner& jobs() const { return program_->context().jobs; }
  [[nodiscard]] AcarsBrowser& acars() const;
  [[nodiscard]] HfdlBrowser& hfdl() const;
  /// How many imports wrote a table, and how many lists were to be saved.
  [[nodiscard]] std::size_t imports() const;
  [[nodiscard]] std::size_t savedLists() const;
  void openRawLog(const std::string& registration) { web_->rawLogs().open(registration); }

 private:
  struct SideWindows;

  void offerExchange(LogBrowser& browser, BrowserFrame& frame);
  [[nodiscard]] QString nextFile();

  EnclosedDesktop desktop_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<WebAccess> web_;
  std::unique_ptr<SideWindows> side_;
};

}  // namespace vel::test
