#include "app/ui/program.h"

#include <QApplication>
#include <algorithm>
#include <cmath>
#include <utility>

#include "app/ui/browser_window.h"
#include "app/ui/splash.h"
#include "core/file.h"
#include "core/program_files.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/twips.h"

namespace vel {
namespace {

constexpr int kLoadedInterval = 100;
// Saved sizes below these, in twips, count as none.
constexpr int kSmallestSavedWidth = 2000;
constexpr int kSmallestSavedHeight = 500;

}  // namespace

Program::Program(Desktop& desktop, const Folders& folders)
    : desktop_(desktop),
      folders_(folders),
      services_(Services::load(servicesFile(folders))),
      encoding_(services_.textEncoding().value()),
      context_{desktop_, folders_, services_, encoding_, settings_, jobs_} {
  jobs_.isEnding = [&desktop] { return desktop.isEnding(); };
}

Program::~Program() = default;

void Program::setBrowsers(BrowserFactory mainWindow, BrowserFactory otherWindow) {
  makeMainWindow_ = std::move(mainWindow);
  makeOtherWindow_ = std::move(otherWindow);
}

bool Program::Main() {
  std::error_code error;
  Result<std::unique_ptr<platform::InstanceLock>> lock =
      platform::lockInstance(toUtf8(std::filesystem::weakly_canonical(folders_.program, error)));
  // Where no lock can be made at all, the user is not locked out.
  if (lock && *lock == nullptr) {
    desktop_.showMessage(kAlreadyRunning);
    desktop_.endProgram(0);
    return false;
  }
  if (lock) lock_ = std::move(*lock);
  removeLeftOvers(folders_);
  WriteRunLog(desktop_, "Start main");
  startingUp = true;
  firstUnload = true;
  loadProgressCount = 2;
  const Status loaded =
      LoadEnv(desktop_, settingsFile(folders_), encoding_, services_.defaultSearches(), settings_);
  if (!loaded) desktop_.showMessage(loaded.error().text());
  startingUp = false;
  splash_ = std::make_unique<Splash>([this] { splashTick(); });
  splashStage = 0;
  splash_->show();
  WriteRunLog(desktop_, "End main");
  return true;
}

void Program::splashTick() {
  if (desktop_.isEnding()) {
    closeSplash();
    return;
  }
  switch (splashStage) {
    case 0:
      splash_->showPleaseWait();
      desktop_.processEvents();
      splashStage = 1;
      mainWindow_ = makeMainWindow_(*this);
      if (makeOtherWindow_) otherWindow_ = makeOtherWindow_(*this);
      restorePlace();
      splash_->setInterval(kLoadedInterval);
      connect(mainWindow_.get(), &BrowserWindow::loaded, this, &Program::mainWindowLoaded);
      mainWindow_->load();
      break;
    case 2:
      closeSplash();
      mainWindow_->show();
      if (onShown) onShown(*mainWindow_);
      break;
    default:
      break;
  }
}

void Program::mainWindowLoaded() {
  const auto loaded = [this] { splashStage = 2; };
  if (otherWindow_ == nullptr) {
    loaded();
    return;
  }
  connect(otherWindow_.get(), &BrowserWindow::loaded, this, loaded);
  otherWindow_->load();
}

void Program::closeSplash() {
  // Called from inside its own timer: it has to outlive that call.
  Splash* splash = splash_.release();
  splash->stop();
  splash->hide();
  splash->deleteLater();
}

void Program::restorePlace() {
  const bool saved = settings_.env_Form1_Width >= kSmallestSavedWidth &&
                     settings_.env_Form1_Height >= kSmallestSavedHeight;
  if (!saved) return;
  // Far beyond every screen, and still a number that fits.
  static constexpr double kFarthest = 1'000'000;
  const auto whole = [](double twips) {
    return static_cast<int>(std::lround(std::clamp(twips, -kFarthest, kFarthest)));
  };
  place_.normal = QRect(whole(settings_.env_Form1_Left), whole(settings_.env_Form1_Top),
                        whole(settings_.env_Form1_Width), whole(settings_.env_Form1_Height));
  place_.state = settings_.env_Form1_WinS == kMaximised ? kMaximised : kNormal;
}

void Program::showProgress() {
  if (splash_ == nullptr) return;
  const int hfdl = otherWindow_ != nullptr ? otherWindow_->shownRows() : 0;
  const int acars = mainWindow_ != nullptr ? mainWindow_->shownRows() : 0;
  splash_->setProgress(QStringLiteral("FMT:%1 LIST:%2").arg(hfdl).arg(acars));
}

void Program::SaveEnv() {
  // Nothing is shown for any trouble with the settings.
  static_cast<void>(vel::SaveEnv(settingsFile(folders_), encoding_, settings_));
}

void Program::switchBrowser(const BrowserWindow& from) {
  BrowserWindow* to = &from == mainWindow_.get() ? otherWindow_.get() : mainWindow_.get();
  BrowserWindow* shown = &from == mainWindow_.get() ? mainWindow_.get() : otherWindow_.get();
  if (to == nullptr) return;
  to->show();
  shown->hide();
  to->raise();
  to->activateWindow();
}

void Program::unload(BrowserWindow& closing) {
  if (unloading_) return;
  unloading_ = true;
  const bool normal = !closing.isMinimized() && !closing.isMaximized() && !closing.isFullScreen();
  if (normal && firstUnload) {
    settings_.env_Form1_Top = toTwips(closing.outerGeometry().y());
    settings_.env_Form1_Left = toTwips(closing.outerGeometry().x());
    firstUnload = false;
  }
  for (const auto& step : unloadSteps_) step();
  for (BrowserWindow* browser : {mainWindow_.get(), otherWindow_.get()}) {
    if (browser != nullptr && browser != &closing) browser->hide();
  }
  if (!desktop_.isEnding()) {
    SaveEnv();
    desktop_.endProgram(0);
  }
}

}  // namespace vel
