#include "app/ui/program.h"

#include <QCoreApplication>

#include "app/ui/browser_window.h"
#include "app/ui/splash.h"
#include "core/file.h"
#include "core/program_files.h"
#include "core/ui/twips.h"

namespace vel {
namespace {

constexpr int kLoadingInterval = 100;
constexpr int kBrowsers = 2;

}  // namespace

Program::Program(Desktop& desktop, const Folders& folders)
    : desktop_(desktop),
      folders_(folders),
      services_(Services::load(servicesFile(folders))),
      encoding_(services_.textEncoding().value()),
      context_{desktop_, folders_, services_, encoding_, settings_, jobs_},
      place_(settings_) {
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
  loadProgressCount_ = kBrowsers;
  place_.settingsLoading();
  const Status loaded =
      LoadEnv(desktop_, settingsFile(folders_), encoding_, services_.defaultSearches(), settings_);
  if (!loaded) desktop_.showMessage(loaded.error().text());
  place_.settingsLoaded();
  splash_ = std::make_unique<Splash>([this] { splashTick(); });
  stage_ = Stage::splashShown;
  splash_->show();
  WriteRunLog(desktop_, "End main");
  // Not before: some systems let timers tick while a window is being shown.
  splash_->startTicking();
  return true;
}

void Program::splashTick() {
  if (desktop_.isEnding()) {
    closeSplash();
    return;
  }
  if (stage_ == Stage::splashShown) loadMainWindow();
  if (stage_ == Stage::loaded) showMainWindow();
}

void Program::loadMainWindow() {
  stage_ = Stage::loading;
  splash_->setInterval(kLoadingInterval);
  splash_->showPleaseWait();
  // Making the windows takes a moment: the words are drawn before.
  QCoreApplication::processEvents();
  if (desktop_.isEnding()) return;
  mainWindow_ = makeMainWindow_(*this);
  if (makeOtherWindow_) otherWindow_ = makeOtherWindow_(*this);
  connect(mainWindow_.get(), &BrowserWindow::loaded, this, &Program::loadOtherWindow);
  mainWindow_->load();
}

void Program::loadOtherWindow() {
  disconnect(mainWindow_.get(), &BrowserWindow::loaded, this, nullptr);
  if (otherWindow_ == nullptr) {
    stage_ = Stage::loaded;
    return;
  }
  connect(otherWindow_.get(), &BrowserWindow::loaded, this, [this] { stage_ = Stage::loaded; });
  otherWindow_->load();
}

void Program::showMainWindow() {
  closeSplash();
  mainWindow_->show();
  if (onShown) onShown(*mainWindow_);
}

void Program::closeSplash() {
  // Called from inside its own timer: it has to outlive that call.
  Splash* splash = splash_.release();
  splash->stop();
  splash->hide();
  splash->deleteLater();
}

void Program::rowsRead(int untilReads) {
  if (splash_ == nullptr || loadProgressCount_ <= untilReads) return;
  const int hfdl = otherWindow_ != nullptr ? otherWindow_->shownRows() : 0;
  const int acars = mainWindow_ != nullptr ? mainWindow_->shownRows() : 0;
  splash_->setProgress(QStringLiteral("FMT:%1 LIST:%2").arg(hfdl).arg(acars));
}

void Program::readEnded() {
  if (loadProgressCount_ > 0) --loadProgressCount_;
}

void Program::switchBrowser(const BrowserWindow& from) {
  if (otherWindow_ == nullptr) return;
  const bool fromMain = &from == mainWindow_.get();
  BrowserWindow& shown = fromMain ? *mainWindow_ : *otherWindow_;
  BrowserWindow& next = fromMain ? *otherWindow_ : *mainWindow_;
  next.show();
  shown.hide();
  next.raise();
  next.activateWindow();
}

void Program::tablesChanged() {
  for (BrowserWindow* browser : {mainWindow_.get(), otherWindow_.get()}) {
    if (browser != nullptr) browser->tablesChanged();
  }
}

void Program::unload(BrowserWindow& closing) {
  if (unloading_) return;
  unloading_ = true;
  if (isNormal(closing)) {
    place_.recordUnload(
        {toTwips(closing.outerGeometry().x()), toTwips(closing.outerGeometry().y())});
  }
  for (BrowserWindow* browser : {mainWindow_.get(), otherWindow_.get()}) {
    if (browser != nullptr && browser != &closing) browser->hide();
  }
  saveAndEnd();
}

void Program::endBySystem() {
  for (BrowserWindow* browser : {mainWindow_.get(), otherWindow_.get()}) {
    if (browser != nullptr && browser->isVisible()) browser->close();
  }
  // No browser is shown while the program starts.
  if (!std::exchange(unloading_, true)) saveAndEnd();
}

void Program::saveAndEnd() {
  for (const auto& step : unloadSteps_) step();
  if (desktop_.isEnding()) return;
  for (BrowserWindow* browser : {mainWindow_.get(), otherWindow_.get()}) {
    if (browser != nullptr) browser->programEnds();
  }
  // Nothing is shown for any trouble with the settings.
  static_cast<void>(SaveEnv(settingsFile(folders_), encoding_, settings_));
  desktop_.endProgram(0);
}

}  // namespace vel
