#include "tests/ui/support/log_window.h"

#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <algorithm>

namespace vel::test {

void writePhoto(const std::filesystem::path& path, int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::darkCyan);
  ASSERT_TRUE(image.save(QString::fromStdString(path.string()), "JPEG")) << path;
}

LogWindowTest::LogWindowTest() {
  writePhoto(base_.folders.pics / "noimage.jpg", 40, 30);
  writePhoto(base_.folders.pics / "JA8089.jpg", 150, 100);
  writeBytes(base_.folders.program / "services.ini", "homepage=http://home.example\n");
}

LogWindowTest::~LogWindowTest() { drivenJobs = nullptr; }

void LogWindowTest::launch() {
  program_ = std::make_unique<Program>(desktop_, base_.folders);
  drivenJobs = &program_->context().jobs;
  web_ = std::make_unique<WebAccess>(program_->context());
  setBrowsers();
  ASSERT_TRUE(program_->Main());
}

void LogWindowTest::startMainWindow() {
  launch();
  const auto shown = [this] {
    return program_->mainWindow() != nullptr && program_->mainWindow()->isVisible();
  };
  ASSERT_TRUE(QTest::qWaitFor(shown, kPatience));
}

void LogWindowTest::startAndEnd() {
  launch();
  ASSERT_TRUE(QTest::qWaitFor([this] { return desktop_.ended; }, kPatience));
  // The splash goes with its next look; no window comes in its place.
  ASSERT_TRUE(QTest::qWaitFor([] {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::none_of(windows.begin(), windows.end(),
                        [](const QWidget* window) { return window->isVisible(); });
  }));
  EXPECT_TRUE(program_->mainWindow() == nullptr || !program_->mainWindow()->isVisible());
}

void LogWindowTest::driveBrowser(BrowserWindow* browser) {
  browser_ = dynamic_cast<LogBrowser*>(browser);
  ASSERT_NE(browser_, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(browser_, kPatience));
}

std::string LogWindowTest::text(const char* name) const {
  if (const auto* edit = browser_->findChild<QLineEdit*>(QLatin1String(name))) {
    return edit->text().toStdString();
  }
  if (const auto* push = browser_->findChild<QPushButton*>(QLatin1String(name))) {
    return push->text().toStdString();
  }
  return find<QLabel>(name).text().toStdString();
}

std::vector<std::string> LogWindowTest::entries(const QComboBox& chooser) {
  std::vector<std::string> texts;
  for (int i = 0; i < chooser.count(); ++i) texts.push_back(chooser.itemText(i).toStdString());
  return texts;
}

QPoint LogWindowTest::cellPlace(int shownIndex, int column) const {
  return list().visualRect(browser_->model()->index(shownIndex, column)).center();
}

void LogWindowTest::select(int shownIndex, int column) {
  list().scrollTo(browser_->model()->index(shownIndex, column));
  QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, cellPlace(shownIndex, column));
  settle();
}

std::vector<std::string> LogWindowTest::column(int column) const {
  std::vector<std::string> texts;
  for (int i = 0; i < browser_->model()->rowCount(); ++i) {
    texts.push_back(browser_->model()->index(i, column).data().toString().toStdString());
  }
  return texts;
}

std::string LogWindowTest::line(int shownIndex) const {
  std::string joined;
  for (int i = 0; i < browser_->model()->columnCount(); ++i) {
    if (i > 0) joined += '|';
    joined += browser_->model()->index(shownIndex, i).data().toString().toStdString();
  }
  return joined;
}

long LogWindowTest::reads() const {
  const auto& log = desktop_.runLogLines;
  return static_cast<long>(std::count(log.begin(), log.end(), "Start GetLogData"));
}

void LogWindowTest::clickTitle(int column) const {
  const QHeaderView* header = list().horizontalHeader();
  const QPoint place(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                     header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
}

void LogWindowTest::openMenu(int shownIndex, int column,
                             const std::function<void(QMenu&)>& action) {
  const QPoint place = cellPlace(shownIndex, column);
  QTest::mouseClick(list().viewport(), Qt::RightButton, {}, place);
  settle();
  inDialog(
      "ListMenu",
      [&] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                                list().viewport()->mapToGlobal(place));
        QApplication::sendEvent(list().viewport(), &event);
      },
      [&](QWidget& menu) { action(dynamic_cast<QMenu&>(menu)); });
}

void LogWindowTest::chooseFromMenu(int shownIndex, int column, const std::string& entry) {
  openMenu(shownIndex, column, [&](QMenu& menu) {
    for (QAction* action : menu.actions()) {
      if (captionOf(*action) != entry) continue;
      menu.setActiveAction(action);
      QTest::keyClick(&menu, Qt::Key_Return);
      return;
    }
    ADD_FAILURE() << "no entry " << entry;
  });
  settle();
}

std::string LogWindowTest::captionOf(const QAction& action) {
  return action.text().section(QLatin1Char('\t'), 0, 0).toStdString();
}

void LogWindowTest::settle() {
  // A selection is followed in a queued call, by a look-up.
  for (int i = 0; i < 3; ++i) {
    QCoreApplication::processEvents();
    finishJobs();
  }
}

}  // namespace vel::test
