#include "tests/ui/monkey/errands.h"

#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <system_error>

namespace vel::test {
namespace {

namespace fs = std::filesystem;

/// So often the program is given the time for what it was told.
constexpr int kWaits = 500;

/// A browser on the screen, or null.
QWidget* shownBrowser() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->isEnabled() && window->acceptDrops()) return window;
  }
  return nullptr;
}

/// Whether a list is there in whole: what the program writes has another name
/// until then.
bool hasList(const fs::path& folder) {
  std::error_code error;
  for (const fs::directory_entry& file : fs::directory_iterator(folder, error)) {
    if (!file.path().has_extension()) return true;
  }
  return false;
}

}  // namespace

void ImportErrand::begin() {
  tries_ = 0;
  waits_ = 0;
  pressedIn_ = nullptr;
}

Errand::Step ImportErrand::step(QWidget* modal) {
  if (modal != nullptr) {
    if (modal->objectName() != QLatin1String("ImportDialog")) return Step::hindered;
    waits_ = 0;
    return stepOf(*modal);
  }
  // A dropped file is imported once the drop is over.
  if (waits_ > 0 && --waits_ > 0) return Step::waits;
  QWidget* const browser = shownBrowser();
  if (browser == nullptr) return Step::waits;
  if (tries_++ == files_.size()) return Step::over;
  const bool isTaken = dropFile(*browser, files_[next_]);
  next_ = (next_ + 1) % files_.size();
  if (isTaken) waits_ = kWaits;
  return Step::made;
}

Errand::Step ImportErrand::stepOf(QWidget& dialog) {
  auto* const import = dialog.findChild<QPushButton*>(QStringLiteral("ImportButton"));
  auto* const leave = dialog.findChild<QPushButton*>(QStringLiteral("CancelButton"));
  const auto* const progress = dialog.findChild<QWidget*>(QStringLiteral("ImportProgress"));
  if (import->isEnabled()) {
    pressedIn_ = &dialog;
    QTest::mouseClick(import, Qt::LeftButton);
    return Step::made;
  }
  // It reads the file, or writes the tables.
  if (progress->isVisible() || !leave->isEnabled()) return Step::waits;
  const bool isImported = pressedIn_ == &dialog;
  QTest::mouseClick(leave, Qt::LeftButton);
  if (!isImported) return Step::made;
  ++done_;
  return Step::over;
}

void SaveErrand::begin() {
  tries_ = 0;
  waits_ = 0;
  std::error_code error;
  for (const fs::directory_entry& saved : fs::directory_iterator(folder_)) {
    fs::remove(saved.path(), error);
  }
}

Errand::Step SaveErrand::step(QWidget* modal) {
  if (hasList(folder_)) {
    ++done_;
    return Step::over;
  }
  if (modal != nullptr) {
    auto* const menu = qobject_cast<QMenu*>(modal);
    if (menu == nullptr || menu->objectName() != QLatin1String("mainMenu")) return Step::hindered;
    for (QAction* entry : menu->actions()) {
      if (!entry->text().contains(QLatin1String("Save list"))) continue;
      QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(entry).center());
      return Step::made;
    }
    return Step::hindered;
  }
  // A list that is filled anew meanwhile is not saved: then once more.
  constexpr int kTries = 20;
  if (waits_ > 0 && --waits_ > 0) return Step::waits;
  QWidget* const browser = shownBrowser();
  auto* const menu =
      browser == nullptr ? nullptr : browser->findChild<QPushButton*>(QStringLiteral("menuButton"));
  if (menu == nullptr) return Step::waits;
  waits_ = kWaits;
  if (tries_++ == kTries) return Step::over;
  QTest::mouseClick(menu, Qt::LeftButton);
  return Step::made;
}

bool dropFile(QWidget& window, const QString& file) {
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(file)});
  const QPoint place = window.rect().center();
  QDragEnterEvent enter(place, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &enter);
  if (!enter.isAccepted()) return false;
  QDropEvent dropped(place, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &dropped);
  return dropped.isAccepted();
}

}  // namespace vel::test
