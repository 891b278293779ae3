#pragma once

#include <QMargins>
#include <QObject>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/context.h"
#include "core/desktop.h"
#include "core/folders.h"
#include "core/platform.h"
#include "core/services.h"
#include "core/settings.h"
#include "core/text.h"
#include "core/ui/event_loop_jobs.h"

namespace vel {

class BrowserWindow;
class Splash;

/// Where the browsers stand on the screen: one place for both of them.
struct ScreenPlace {
  WindowState state = kNormal;
  /// Outer rectangle in the normal state, in twips; null when never set.
  QRect normal;
  /// Widths of the frame that the window manager puts around a browser in the
  /// normal state, in pixels; null before one was shown.
  QMargins frame;
};

/// The application frame: start-up, splash, the two browsers and the end of
/// the program. Lives in main(); windows get it by reference.
class Program : public QObject {
  Q_OBJECT

 public:
  using BrowserFactory = std::function<std::unique_ptr<BrowserWindow>(Program&)>;

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

  /// What every window works with.
  [[nodiscard]] const Context& context() const { return context_; }
  [[nodiscard]] Desktop& desktop() const { return desktop_; }
  [[nodiscard]] const Folders& folders() const { return folders_; }
  [[nodiscard]] const Services& services() const { return services_; }
  [[nodiscard]] const Encoding& encoding() const { return encoding_; }
  [[nodiscard]] Settings& settings() { return settings_; }

  /// True while LoadEnv runs: resize handlers record nothing.
  bool startingUp = false;
  /// The first unload in normal state still has to record its place.
  bool firstUnload = false;
  /// 0 just shown, 1 main windows being loaded, 2 main window may be shown.
  int splashStage = 0;
  /// Log readers that still have to finish their first read.
  int loadProgressCount = 0;

  /// The browsers' common place on the screen.
  [[nodiscard]] ScreenPlace& place() { return place_; }

  /// Puts both browsers' row counts on the splash, if it is still there.
  void showProgress();

  /// Writes vel.env. A failure is not reported: the old file stands.
  void SaveEnv();

  /// Hides one browser and shows the other one in its place.
  void switchBrowser(const BrowserWindow& from);
  [[nodiscard]] bool hasOtherBrowser() const { return otherWindow_ != nullptr; }
  [[nodiscard]] BrowserWindow* mainWindow() const { return mainWindow_.get(); }
  [[nodiscard]] BrowserWindow* otherWindow() const { return otherWindow_.get(); }

  /// What has to be closed before the settings are saved: the raw log viewer.
  void addUnloadStep(std::function<void()> step) { unloadSteps_.push_back(std::move(step)); }

  /// Form_Unload of either browser: closes every window, saves the settings
  /// and ends the program.
  void unload(BrowserWindow& closing);

 private:
  void splashTick();
  void mainWindowLoaded();
  void closeSplash();
  void restorePlace();

  Desktop& desktop_;
  Folders folders_;
  Services services_;
  Encoding encoding_;
  Settings settings_;
  EventLoopJobs jobs_;
  Context context_;
  ScreenPlace place_;
  std::unique_ptr<platform::InstanceLock> lock_;
  BrowserFactory makeMainWindow_;
  BrowserFactory makeOtherWindow_;
  std::unique_ptr<Splash> splash_;
  std::unique_ptr<BrowserWindow> mainWindow_;
  std::unique_ptr<BrowserWindow> otherWindow_;
  std::vector<std::function<void()>> unloadSteps_;
  bool unloading_ = false;
};

/// The title message when another copy of the program is running.
constexpr const char* kAlreadyRunning = "既に起動されています。";

}  // namespace vel
