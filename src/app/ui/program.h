#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "app/ui/browser_frame.h"
#include "core/platform.h"
#include "core/ui/event_loop_jobs.h"

namespace vel {

class Splash;

/// The program around its windows: start-up, splash, the two browsers and the
/// end. Lives in main(); windows know it as their BrowserFrame.
class Program : public QObject, public BrowserFrame {
  Q_OBJECT

 public:
  using BrowserFactory = std::function<std::unique_ptr<BrowserWindow>(BrowserFrame&)>;

  /// How far the start has come.
  enum class Stage {
    splashShown,  ///< nothing is loaded yet
    loading,      ///< the browsers read their first logs
    loaded,       ///< the main window is shown at the splash's next tick
  };

  /// The desktop must outlive the program.
  Program(Desktop& desktop, const Folders& folders);
  ~Program() override;

  /// The browsers are made by these when the splash loads them. The first one
  /// is the main window; the second one may be missing.
  void setBrowsers(BrowserFactory mainWindow, BrowserFactory otherWindow);

  /// Starts the program: everything else happens in window events. False when
  /// another copy is running for this program folder; nothing was touched then.
  bool Main();

  /// Called once when the main window has been shown.
  std::function<void(BrowserWindow&)> onShown;

  /// What has to be closed before the settings are saved: the raw log viewer.
  void addUnloadStep(std::function<void()> step) { unloadSteps_.push_back(std::move(step)); }

  /// The system asks the program to end: as if its window were closed.
  void endBySystem();

  [[nodiscard]] const Context& context() const override { return context_; }
  [[nodiscard]] CommonPlace& place() override { return place_; }
  void switchBrowser(const BrowserWindow& from) override;
  [[nodiscard]] bool hasOtherBrowser() const override { return otherWindow_ != nullptr; }
  void rowsRead(int untilReads) override;
  void readEnded() override;
  void tablesChanged() override;
  void unload(BrowserWindow& closing) override;

  [[nodiscard]] Settings& settings() { return settings_; }
  [[nodiscard]] Stage stage() const { return stage_; }
  /// First reads that have not ended yet.
  [[nodiscard]] int readsToEnd() const { return loadProgressCount_; }
  /// Null until the splash loads them, or where there is none.
  [[nodiscard]] BrowserWindow* mainWindow() const { return mainWindow_.get(); }
  [[nodiscard]] BrowserWindow* otherWindow() const { return otherWindow_.get(); }

 private:
  void splashTick();
  void loadMainWindow();
  void loadOtherWindow();
  void showMainWindow();
  void closeSplash();
  void saveAndEnd();

  Desktop& desktop_;
  Folders folders_;
  Services services_;
  Encoding encoding_;
  Settings settings_;
  EventLoopJobs jobs_;
  Context context_;
  CommonPlace place_;
  std::unique_ptr<platform::InstanceLock> lock_;
  BrowserFactory makeMainWindow_;
  BrowserFactory makeOtherWindow_;
  std::unique_ptr<Splash> splash_;
  std::unique_ptr<BrowserWindow> mainWindow_;
  std::unique_ptr<BrowserWindow> otherWindow_;
  std::vector<std::function<void()>> unloadSteps_;
  Stage stage_ = Stage::splashShown;
  int loadProgressCount_ = 0;
  bool unloading_ = false;
};

/// The message when another copy of the program is running.
constexpr const char* kAlreadyRunning = "既に起動されています。";

}  // namespace vel
