#include "tests/ui/looks/looks.h"

#include <QAccessible>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStyleFactory>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTableView>
#include <algorithm>
#include <iostream>
#include <set>

#include "core/ui/readable_colours.h"
#include "log/ui/log_list_view.h"
#include "tests/ui/looks/contrast.h"
#include "tests/ui/support/layout_checks.h"

namespace vel::test {
namespace {

// What normal text needs to be read by everybody.
constexpr double kReadable = 4.5;

QPalette darkPalette() {
  QPalette dark;
  const QColor window(0x2b, 0x2b, 0x2b);
  const QColor base(0x1e, 0x1e, 0x1e);
  const QColor text(0xe6, 0xe6, 0xe6);
  dark.setColor(QPalette::Window, window);
  dark.setColor(QPalette::WindowText, text);
  dark.setColor(QPalette::Base, base);
  dark.setColor(QPalette::AlternateBase, QColor(0x2a, 0x2a, 0x2a));
  dark.setColor(QPalette::Text, text);
  dark.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa0));
  dark.setColor(QPalette::Button, QColor(0x38, 0x38, 0x38));
  dark.setColor(QPalette::ButtonText, text);
  dark.setColor(QPalette::Highlight, QColor(0x1d, 0x5f, 0xa8));
  dark.setColor(QPalette::HighlightedText, Qt::white);
  dark.setColor(QPalette::ToolTipBase, base);
  dark.setColor(QPalette::ToolTipText, text);
  dark.setColor(QPalette::Link, QColor(0x7a, 0xb8, 0xff));
  dark.setColor(QPalette::Light, QColor(0x50, 0x50, 0x50));
  dark.setColor(QPalette::Midlight, QColor(0x44, 0x44, 0x44));
  dark.setColor(QPalette::Mid, QColor(0x24, 0x24, 0x24));
  dark.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x18));
  dark.setColor(QPalette::Shadow, Qt::black);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    dark.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
  }
  return dark;
}

void expectReadable(const char* name, const QWidget& window, const QImage& picture) {
  const std::vector<TextContrast> texts = contrastsOf(window, picture);
  double least = 21;
  for (const TextContrast& text : texts) {
    EXPECT_GE(text.ratio, kReadable) << text.what;
    least = std::min(least, text.ratio);
  }
  std::cout << name << ": " << texts.size() << " texts, contrast at least " << least << std::endl;
}

// Titles whose columns are as the program made them have room for their words,
// and so have tabs and texts of several lines.
void expectTextsHaveRoom(const QWidget& window) {
  // Codes of a few letters are shown whole.
  constexpr int kCode = 8;
  constexpr int kRows = 20;
  for (const LogListView* list : window.findChildren<LogListView*>()) {
    const QAbstractItemModel* model = list->model();
    // With letters a little larger the columns stay where the tour points at them:
    // their widest codes lose their end, but no line number does.
    const int percent = qEnvironmentVariableIntValue("VEL_LOOKS_FONT");
    const int columns = percent > 100 && percent < 140 ? 1 : model->columnCount();
    for (int row = 0; row < std::min(kRows, model->rowCount()); ++row) {
      for (int column = 0; column < columns; ++column) {
        const QString text = model->index(row, column).data().toString();
        if (text.size() > kCode) continue;
        EXPECT_GT(list->columnWidth(column), list->fontMetrics().horizontalAdvance(text) + 4)
            << text.toStdString();
      }
    }
  }
  for (const QComboBox* chooser : window.findChildren<QComboBox*>()) {
    if (!chooser->isVisible() || chooser->currentText().size() > kCode) continue;
    QStyleOptionComboBox option;
    option.initFrom(chooser);
    option.editable = false;
    const QRect room = chooser->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                        QStyle::SC_ComboBoxEditField, chooser);
    EXPECT_GE(room.width(), chooser->fontMetrics().horizontalAdvance(chooser->currentText()))
        << nameOf(*chooser) << ": " << chooser->currentText().toStdString();
  }
  for (const QTableView* list : window.findChildren<QTableView*>()) {
    const QHeaderView* titles = list->horizontalHeader();
    if (!titles->isVisible()) continue;
    for (int column = 0; column < titles->count(); ++column) {
      const QString title = list->model()->headerData(column, Qt::Horizontal).toString();
      EXPECT_GE(titles->sectionSize(column), titles->fontMetrics().horizontalAdvance(title))
          << nameOf(*list) << ": " << title.toStdString();
    }
  }
  for (const QTabBar* tabs : window.findChildren<QTabBar*>()) {
    if (!tabs->isVisible()) continue;
    for (int tab = 0; tab < tabs->count(); ++tab) {
      EXPECT_TRUE(tabs->rect().contains(tabs->tabRect(tab))) << tabs->tabText(tab).toStdString();
      EXPECT_GE(tabs->tabRect(tab).width(),
                tabs->fontMetrics().horizontalAdvance(tabs->tabText(tab).remove(QLatin1Char('&'))))
          << tabs->tabText(tab).toStdString();
    }
  }
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    if (!label->isVisible() || !label->wordWrap() || label->text().isEmpty()) continue;
    EXPECT_GE(label->height(), label->heightForWidth(label->width())) << nameOf(*label);
  }
}

// Every control has room for its words: at least the height of its letters, and
// the width that it says it needs.
void expectNothingCut(const QWidget& window) {
  for (const QWidget* widget : controlsOf(window)) {
    if (widget->parentWidget()->inherits("QAbstractSpinBox")) continue;
    const QSize needed = neededBy(*widget);
    EXPECT_GE(widget->height(), qMin(needed.height(), widget->fontMetrics().height() + 2))
        << nameOf(*widget);
    // This one breaks its text and makes it smaller.
    const bool fitsItself = widget->inherits("vel::PositionLabel");
    EXPECT_GE(widget->width(), fitsItself ? 0 : needed.width()) << nameOf(*widget);
    for (const QWidget* parent = widget; parent != &window;) {
      parent = parent->parentWidget();
      const QRect place(widget->mapTo(parent, QPoint()), widget->size());
      EXPECT_TRUE(parent->rect().contains(place))
          << nameOf(*widget) << " leaves " << nameOf(*parent);
    }
  }
  expectTextsHaveRoom(window);
}

void expectOnScreen(const QWidget& window) {
  const QSize screen = window.screen()->availableSize();
  EXPECT_LE(window.minimumSize().width(), screen.width());
  EXPECT_LE(window.minimumSize().height(), screen.height());
  if (qobject_cast<const QDialog*>(&window) == nullptr) return;
  EXPECT_LE(window.width(), screen.width());
  EXPECT_LE(window.height(), screen.height());
}

// Every control that can be used is reached by Tab, and a screen reader has a
// name for it.
void expectKeysAndNames(const QWidget& window) {
  std::set<const QWidget*> reached;
  const QWidget* next = window.nextInFocusChain();
  for (int count = 0; next != &window && count < 1000; ++count) {
    reached.insert(next);
    next = next->nextInFocusChain();
  }
  for (QWidget* widget : controlsOf(window)) {
    if (qobject_cast<QLabel*>(widget) != nullptr || !widget->isEnabled()) continue;
    if ((widget->focusPolicy() & Qt::TabFocus) != 0) {
      EXPECT_TRUE(reached.contains(widget)) << nameOf(*widget) << " is left out by Tab";
    } else {
      const auto* button = qobject_cast<QAbstractButton*>(widget);
      const bool isMarked = button != nullptr && button->inherits("QRadioButton");
      EXPECT_TRUE(isMarked || button == nullptr) << nameOf(*widget) << " takes no keys";
    }
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(spoken, nullptr) << nameOf(*widget);
    EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty()) << nameOf(*widget) << " has no name";
  }
}

}  // namespace

void useLooksOfEnvironment() {
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  if (qEnvironmentVariableIsSet("VEL_LOOKS_DARK")) QApplication::setPalette(darkPalette());
  static const ReadableColours readable;
  if (const int percent = qEnvironmentVariableIntValue("VEL_LOOKS_FONT"); percent > 0) {
    static const QFont usual = QApplication::font();
    QFont larger = usual;
    larger.setPointSizeF(usual.pointSizeF() * percent / 100);
    QApplication::setFont(larger);
  }
}

Looks::Looks() : pictures_(qEnvironmentVariable("VEL_LOOKS_PICTURES")) {
  if (pictures_.isEmpty()) return;
  // On Windows a path without a drive means the current one, which a test may change.
  pictures_ = QFileInfo(pictures_).absoluteFilePath();
  QDir().mkpath(pictures_);
}

void Looks::keep(const char* name, const QImage& picture) const {
  if (pictures_.isEmpty()) return;
  EXPECT_TRUE(picture.save(pictures_ + QLatin1Char('/') + QLatin1String(name) + ".png")) << name;
}

QImage Looks::pictureOf(const char* name, QWidget& window) const {
  QImage picture = window.grab().toImage();
  keep(name, picture);
  return picture;
}

void Looks::at(const char* name, QWidget& window) const {
  SCOPED_TRACE(name);
  expectReadable(name, window, pictureOf(name, window));
  expectNothingCut(window);
  expectOnScreen(window);
  expectKeysAndNames(window);
}

void Looks::atToolkitWindow(const char* name, QWidget& window) const {
  SCOPED_TRACE(name);
  expectReadable(name, window, pictureOf(name, window));
  expectOnScreen(window);
}

void Looks::atMenu(const char* name, QMenu& menu) const {
  SCOPED_TRACE(name);
  expectReadable(name, menu, pictureOf(name, menu));
  const QSize screen = menu.screen()->availableSize();
  EXPECT_LE(menu.width(), screen.width());
  EXPECT_LE(menu.height(), screen.height());
}

void Looks::keepPictureOf(const char* name, QWidget& window, QWidget& over) const {
  const QRect below(window.mapToGlobal(QPoint()), window.size());
  const QRect above(over.mapToGlobal(QPoint()), over.size());
  const QRect all = below.united(above);
  QImage picture(all.size() * window.devicePixelRatioF(), QImage::Format_RGB32);
  picture.setDevicePixelRatio(window.devicePixelRatioF());
  picture.fill(Qt::white);
  QPainter painter(&picture);
  painter.drawPixmap(below.topLeft() - all.topLeft(), window.grab());
  painter.drawPixmap(above.topLeft() - all.topLeft(), over.grab());
  painter.setPen(Qt::darkGray);
  painter.drawRect(above.translated(-all.topLeft()).adjusted(-1, -1, 0, 0));
  painter.end();
  keep(name, picture);
}

}  // namespace vel::test
