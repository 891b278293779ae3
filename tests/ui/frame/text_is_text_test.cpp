#include <QAbstractItemView>
#include <QAction>
#include <QGroupBox>
#include <QHelpEvent>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QTabWidget>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>
#include <QToolTip>
#include <filesystem>

#include <gmock/gmock.h>

#include "acars/list_log.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "hfdl/ui/activity_window.h"
#include "hfdl/ui/frequency_window.h"
#include "history/ui/history_window.h"
#include "history/ui/report_window.h"
#include "tests/support/system_files.h"
#include "tests/ui/support/hfdl_window.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

// Markup that loads a file, a shortcut, and the place holder of window titles.
const std::string kMarkup = "<img src=x>&x[*]";
const QKeySequence kShortcut(QStringLiteral("Alt+X"));

void expectPlain(const QString& text, const std::string& where) {
  EXPECT_FALSE(Qt::mightBeRichText(text)) << where << ": " << text.toStdString();
}

void expectNoShortcut(const QString& text, const std::string& where) {
  EXPECT_NE(QKeySequence::mnemonic(text), kShortcut) << where << ": " << text.toStdString();
}

void expectPlainItems(const QAbstractItemView& view, const std::string& where) {
  const QAbstractItemModel* model = view.model();
  if (model == nullptr) return;
  for (int column = 0; column < model->columnCount(); ++column) {
    for (const Qt::Orientation side : {Qt::Horizontal, Qt::Vertical}) {
      expectPlain(model->headerData(column, side, Qt::ToolTipRole).toString(), where);
    }
    for (int row = 0; row < model->rowCount(); ++row) {
      for (const int role : {Qt::ToolTipRole, Qt::WhatsThisRole, Qt::StatusTipRole}) {
        expectPlain(model->index(row, column).data(role).toString(), where);
      }
    }
  }
}

// Every widget of the program, tool tips and menus that are open included.
// Returns how many texts with the markup were seen.
int expectPlainWidgets() {
  int seen = 0;
  const QString mark = QString::fromStdString(kMarkup).left(4);
  const auto saw = [&](const QString& text) { seen += text.contains(mark) ? 1 : 0; };
  for (const QWidget* widget : QApplication::allWidgets()) {
    const std::string where =
        widget->metaObject()->className() + (' ' + widget->objectName().toStdString());
    for (const QString& text : {widget->toolTip(), widget->whatsThis(), widget->statusTip()}) {
      expectPlain(text, where);
      saw(text);
    }
    saw(widget->windowTitle());
    EXPECT_FALSE(
        widget->windowTitle().remove(QLatin1String("[*][*]")).contains(QLatin1String("[*]")))
        << where;
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
      if (label->textFormat() != Qt::PlainText) expectPlain(label->text(), where);
      if (label->buddy() != nullptr) expectNoShortcut(label->text(), where);
      saw(label->text());
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
      EXPECT_NE(button->shortcut(), kShortcut) << where;
      saw(button->text());
    }
    if (const auto* frame = qobject_cast<const QGroupBox*>(widget)) {
      expectNoShortcut(frame->title(), where);
      saw(frame->title());
    }
    if (const auto* edit = qobject_cast<const QTextEdit*>(widget)) {
      EXPECT_FALSE(edit->toHtml().contains(QLatin1String("src=\"x\""))) << where;
    }
    if (const auto* view = qobject_cast<const QAbstractItemView*>(widget)) {
      expectPlainItems(*view, where);
    }
    for (const QAction* action : widget->actions()) {
      expectPlain(action->toolTip(), where);
      if (qobject_cast<const QMenu*>(widget) != nullptr) expectNoShortcut(action->text(), where);
      saw(action->text());
    }
  }
  return seen;
}

// Asks for the tool tip at a place as the resting mouse does.
void rest(QWidget& widget, const QPoint& place) {
  QHelpEvent help(QEvent::ToolTip, place, widget.mapToGlobal(place));
  QApplication::sendEvent(&widget, &help);
  // A tip is laid out when it is painted.
  QCoreApplication::processEvents();
}

class TextIsText : public test::HfdlWindowTest {
 protected:
  TextIsText() : startFolder_(fs::current_path()) {
    const std::string& m = kMarkup;
    base_.writeData("aircraft.csv", {m + "," + m});
    base_.writeData("FLIGHT.csv", {m + ",RJTTKLAX," + m});
    base_.writeData("airport.csv", {"RJTT," + m, "KLAX," + m, m + "," + m});
    base_.writeData("letter.csv", {m.substr(0, 2) + "," + m + "," + m + "," + m});
    base_.writeData("ICAO24.csv", {m + "," + m + "," + m + "," + m + "," + m});
    base_.writeLog("20260102_list.csv",
                   {m + ",O," + m + "," + m + "," + m + "," + m + "," + m + ",9:05:00",
                    m + ",O," + m + "," + m + "," + m + "," + m + "," + m + "," + m,
                    m + ",O," + m + "," + m + "," + m + "," + m + "," + m + "," + m + ",ninth"});
    test::writeBytes(base_.folders.logs / kLog,
                     test::cp932Lines({"[1]------------------------[2026/01/02 09:00:00]" + m,
                                       " DOWN LINK", "  GS NAME         = " + m,
                                       "   ICAO24 ADDRESS = " + m, "   REGISTRATION   = " + m,
                                       "   FLIGHT ID      = " + m, "   " + m, kEndOfSubRecord}));
#ifndef _WIN32
    test::writeBytes(base_.folders.eachLogs / (m + ".log"), "2026 " + m + "\r\n");
#endif
    test::writeBytes(base_.folders.program / "vel.env",
                     "\"env_regDefName0\",\"" + m + "\"\r\n\"env_regDefUrl0\",\"" + m +
                         "\"\r\n\"env_FltDefName0\",\"" + m + "\"\r\n\"env_FltDefUrl0\",\"" + m +
                         "\"\r\n\"env_Config\",1\r\n");
    // What the markup names lies in the folder that relative names start from.
    QImage picture(2, 2, QImage::Format_RGB32);
    EXPECT_TRUE(picture.save(QString::fromStdString((base_ / "x").string()), "PNG"));
    fs::current_path(base_.path());
    watch_ = std::make_unique<test::ReadWatch>(base_ / "x");
  }
  ~TextIsText() override {
    std::error_code error;
    fs::current_path(startFolder_, error);
  }
  void TearDown() override { EXPECT_FALSE(watch_->wasRead()) << "the named file was read"; }

  void startBrowser() {
    startMainWindow();
    driveBrowser(program_->mainWindow());
  }
  // Rests the mouse on every cell of the first line.
  void restOnCells() {
    for (int column = 0; column < list().model()->columnCount(); ++column) {
      list().scrollTo(list().model()->index(0, column));
      rest(*list().viewport(), cellPlace(0, column));
      expectPlainWidgets();
    }
    EXPECT_TRUE(QToolTip::isVisible());
  }

  std::unique_ptr<test::ReadWatch> watch_;

 private:
  fs::path startFolder_;
};

TEST_F(TextIsText, InTheListAndThePanelOfTheAcarsBrowser) {
  startBrowser();
  restOnCells();
  select(0);
  // Both frames' captions, both airport names, the engines' names.
  EXPECT_GE(expectPlainWidgets(), 4);
  for (const char* name : {"Label2(4)", "Label2(5)", "Combo2", "Combo3", "Frame1", "Frame2"}) {
    auto& widget = find<QWidget>(name);
    rest(widget, widget.rect().center());
    expectPlainWidgets();
  }
  EXPECT_EQ(text("Label2(4)"), kMarkup);
  EXPECT_EQ(text("Label2(5)"), kMarkup);
  auto& candidates = find<QAbstractItemView>("List1");
  QTest::mouseClick(candidates.viewport(), Qt::LeftButton, {},
                    candidates.visualRect(candidates.model()->index(0, 0)).center());
  rest(*candidates.viewport(), QPoint(5, 5));
  expectPlainWidgets();
}

TEST_F(TextIsText, InTheListAndThePanelOfTheHfdlBrowser) {
  start();
  restOnCells();
  select(0);
  EXPECT_GE(expectPlainWidgets(), 4);
  EXPECT_EQ(address(), "<img src=x>&&x[*]");
}

TEST_F(TextIsText, InMenusAndDialogs) {
  startBrowser();
  openMenu(0, kListFlight, [](QMenu&) { expectPlainWidgets(); });
  select(0);
  test::inDialog(
      "AirportDialog", [this] { click("Label2(4)"); }, [](QWidget&) { expectPlainWidgets(); });
  desktop_.clipboard = kMarkup + " HND " + kMarkup + " LAX " + kMarkup;
  test::inDialog(
      "RouteMenu", [this] { click("Command13"); }, [](QWidget&) { expectPlainWidgets(); });
  test::inDialog(
      "ConffigDialog", [this] { click("Command10"); }, [](QWidget&) { expectPlainWidgets(); });
}

// No file of Windows can have such a name.
#ifndef _WIN32
TEST_F(TextIsText, InTheRawLogViewer) {
  startBrowser();
  select(0);
  click("Command7(3)");
  ASSERT_NE(web_->rawLogs().viewer(), nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(web_->rawLogs().viewer()));
  EXPECT_GE(expectPlainWidgets(), 5);
  EXPECT_TRUE(
      web_->rawLogs().viewer()->windowTitle().endsWith(QStringLiteral("<img src=x>&x[*][*].log")));
}
#endif

TEST_F(TextIsText, InTheCharts) {
  start();
  // A name of a log that was put into the folder by hand.
  const std::string log = "20260102" + kMarkup;
  ActivityWindow activity(program_->context(), [&] { return log; });
  activity.open();
  FrequencyWindow frequencies(program_->context());
  frequencies.open();
  test::finishJobs();
  for (QWidget* window : {static_cast<QWidget*>(&activity), static_cast<QWidget*>(&frequencies)}) {
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    for (QWidget* child : window->findChildren<QWidget*>()) {
      if (!child->isVisible()) continue;
      rest(*child, child->rect().center());
    }
    expectPlainWidgets();
  }
}

TEST_F(TextIsText, InTheWindowsOverAllDays) {
  startBrowser();
  HistoryWindow found(program_->context());
  found.openWith(SearchMeaning::registration, kMarkup);
  test::finishJobs();
  auto& list = test::control<QTableView>(found, "FoundList");
  ASSERT_GE(list.model()->rowCount(), 2);
  QTimer::singleShot(0, [] {
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    expectPlainWidgets();
    auto* entry = menu->findChild<QAction*>(QStringLiteral("OnlyThis"));
    ASSERT_NE(entry, nullptr);
    entry->trigger();
    menu->close();
  });
  const QPoint cell = list.visualRect(list.model()->index(0, kFoundFlight)).center();
  Q_EMIT list.customContextMenuRequested(cell);
  test::finishJobs();
  ReportWindow report(program_->context());
  report.open(ReportKind::list, "20260102_list.csv");
  test::finishJobs();
  auto& pages = test::control<QTabWidget>(report, "Pages");
  for (int page = 0; page < pages.count(); ++page) {
    pages.setCurrentIndex(page);
    for (QWidget* window : {static_cast<QWidget*>(&found), static_cast<QWidget*>(&report)}) {
      ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
      for (QWidget* child : window->findChildren<QWidget*>()) {
        if (child->isVisible()) rest(*child, child->rect().center());
      }
    }
    for (int column = 0; column < kFoundColumns; ++column) {
      rest(*list.viewport(), list.visualRect(list.model()->index(0, column)).center());
    }
    // The value in the words, in the filter's line, and in the lists.
    EXPECT_GE(expectPlainWidgets(), 3);
  }
  report.open(ReportKind::list, "20260102" + kMarkup);
  test::finishJobs();
  EXPECT_GE(expectPlainWidgets(), 3);
}

// No file of Windows can have such a name.
#ifndef _WIN32
TEST_F(TextIsText, InTheChooserOfTheLogs) {
  const std::string longName = "2026" + std::string(200, 'x') + "_list.csv";
  const std::string marked = "20260101" + kMarkup + "\x01_list.csv";
  for (const std::string& name : {longName, marked}) {
    base_.writeLog(name, {"JL0012,O,JA8089,RJTT,KLAX,B744," + name.substr(0, 8) + ",9:05:00"});
  }
  startBrowser();
  QComboBox& chooser = logs();
  logs().showPopup();
  expectPlainWidgets();
  logs().hidePopup();
  for (int entry = 0; entry < chooser.count(); ++entry) {
    EXPECT_LE(chooser.itemText(entry).size(), kLongestEntry);
    EXPECT_EQ(chooser.itemText(entry), shownText(chooser.itemText(entry)));
    test::choose(chooser, entry);
    EXPECT_EQ(browser().shownLog(), chooser.itemData(entry).toString().toStdString());
  }
  test::choose(chooser, chooser.findData(QString::fromStdString(longName)));
  EXPECT_EQ(browser().shownLog(), longName);
  EXPECT_EQ(line(0).substr(0, 12), "0001|JL0012|");
  test::choose(chooser, chooser.findData(QString::fromStdString(marked)));
  EXPECT_EQ(browser().shownLog(), marked);
  test::pressKey(browser(), Qt::Key_F5);
  EXPECT_EQ(browser().shownLog(), marked);
}
#endif

TEST_F(TextIsText, InAMessageBox) {
  QtDesktop desktop;
  const std::function<void()> asking[] = {[&] { desktop.showMessage(kMarkup + "\r\n" + kMarkup); },
                                          [&] { EXPECT_FALSE(desktop.askRetry(kMarkup)); },
                                          [&] { EXPECT_FALSE(desktop.askYesNo(kMarkup)); }};
  for (const auto& ask : asking) {
    test::inDialog("MessageBox", ask, [](QWidget& box) {
      EXPECT_GE(expectPlainWidgets(), 1);
      EXPECT_EQ(test::control<QLabel>(box, "qt_msgbox_label").textFormat(), Qt::PlainText);
      QTest::keyClick(&box, Qt::Key_Escape);
    });
  }
}

TEST_F(TextIsText, InALabel) {
  QLabel label;
  showPlainText(label, QString::fromStdString(kMarkup));
  label.show();
  EXPECT_EQ(expectPlainWidgets(), 1);
  EXPECT_EQ(label.text().toStdString(), kMarkup);
}

// The watch itself: the toolkit does load the file from a text that it takes
// for markup.
TEST_F(TextIsText, MarkupWouldLoadTheFile) {
  QLabel label(QString::fromStdString(kMarkup));
  label.setTextFormat(Qt::RichText);
  label.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&label));
  EXPECT_TRUE(watch_->wasRead());
}

}  // namespace
}  // namespace vel
