#include "tests/ui/looks/contrast.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStyleOption>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTableView>
#include <algorithm>
#include <cmath>
#include <map>

#include "log/ui/log_list_view.h"
#include "tests/ui/support/layout_checks.h"

namespace vel::test {
namespace {

constexpr int kRows = 4;  // of a list

double luminance(QRgb colour) {
  const auto channel = [](int value) {
    const double part = value / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * channel(qRed(colour)) + 0.7152 * channel(qGreen(colour)) +
         0.0722 * channel(qBlue(colour));
}

double ratio(QRgb left, QRgb right) {
  const double a = luminance(left) + 0.05;
  const double b = luminance(right) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

// Of the most frequent colour, which is what the letters stand on, to the one
// that differs most from it: the middle of a stroke. 1 where nothing is drawn.
double contrastIn(const QImage& picture, const QRect& place) {
  const QRect part = place & picture.rect();
  std::map<QRgb, int> colours;
  for (int y = part.top(); y <= part.bottom(); ++y) {
    for (int x = part.left(); x <= part.right(); ++x) ++colours[picture.pixel(x, y)];
  }
  if (colours.empty()) return 1;
  const auto back = std::max_element(
      colours.begin(), colours.end(),
      [](const auto& left, const auto& right) { return left.second < right.second; });
  double best = 1;
  for (const auto& [colour, count] : colours) best = std::max(best, ratio(colour, back->first));
  return best;
}

class Measurement {
 public:
  Measurement(const QWidget& window, const QImage& picture) : window_(window), picture_(picture) {}

  void add(const QWidget& widget, const QRect& place, const QString& text) {
    if (text.trimmed().isEmpty() || place.isEmpty()) return;
    const QRect shown = place & widget.rect();
    const double scale = picture_.devicePixelRatio();
    const QRect inWindow(widget.mapTo(&window_, shown.topLeft()), shown.size());
    const QRect pixels = QRectF(inWindow.x() * scale, inWindow.y() * scale,
                                inWindow.width() * scale, inWindow.height() * scale)
                             .toRect();
    found_.push_back(
        {nameOf(widget) + ": " + text.left(30).toStdString(), contrastIn(picture_, pixels)});
  }

  void addControl(QWidget& widget);
  void addFrame(const QGroupBox& frame);
  void addList(QAbstractItemView& list);
  void addTabs(const QTabBar& tabs);
  void addText(const QPlainTextEdit& text);
  void addMenu(const QMenu& menu);

  [[nodiscard]] std::vector<TextContrast> take() { return std::move(found_); }

 private:
  const QWidget& window_;
  const QImage& picture_;
  std::vector<TextContrast> found_;
};

void Measurement::addControl(QWidget& widget) {
  const QStyle& style = *widget.style();
  if (const auto* label = qobject_cast<QLabel*>(&widget)) {
    // The words beside a box that cannot be used are as weak as the box.
    const bool isOfDisabled = label->buddy() != nullptr && !label->buddy()->isEnabled();
    if (!isOfDisabled) add(widget, label->contentsRect(), label->text());
  } else if (const auto* button = qobject_cast<QAbstractButton*>(&widget)) {
    QStyleOptionButton option;
    option.initFrom(button);
    option.text = button->text();
    const bool isBox = button->inherits("QCheckBox") || button->inherits("QRadioButton");
    const QRect all = button->rect().adjusted(6, 4, -6, -4);
    add(widget, isBox ? style.subElementRect(QStyle::SE_CheckBoxContents, &option, button) : all,
        button->text());
  } else if (const auto* box = qobject_cast<QLineEdit*>(&widget)) {
    add(widget, box->rect().adjusted(4, 3, -4, -3),
        box->text().isEmpty() ? box->placeholderText() : box->text());
  } else if (const auto* chooser = qobject_cast<QComboBox*>(&widget)) {
    QStyleOptionComboBox option;
    option.initFrom(chooser);
    add(widget,
        style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, chooser)
            .adjusted(2, 3, -2, -3),
        chooser->currentText());
  }
}

void Measurement::addFrame(const QGroupBox& frame) {
  QStyleOptionGroupBox option;
  option.initFrom(&frame);
  option.text = frame.title();
  option.textAlignment = frame.alignment();
  option.lineWidth = 1;
  option.subControls = QStyle::SC_GroupBoxLabel | QStyle::SC_GroupBoxFrame;
  add(frame,
      frame.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &frame),
      frame.title());
}

void Measurement::addList(QAbstractItemView& list) {
  const QAbstractItemModel* model = list.model();
  if (model == nullptr) return;
  for (int row = 0; row < std::min(kRows, model->rowCount(list.rootIndex())); ++row) {
    for (int column = 0; column < model->columnCount(list.rootIndex()); ++column) {
      const QModelIndex cell = model->index(row, column, list.rootIndex());
      const QRect place = list.visualRect(cell) & list.viewport()->rect();
      // What the list's edge cuts can be scrolled to.
      if (place.width() < 12 || place.height() < list.visualRect(cell).height()) continue;
      add(*list.viewport(), place.adjusted(2, 1, -2, -1), cell.data().toString());
    }
  }
  if (const auto* lines = qobject_cast<const LogListView*>(&list);
      lines && model->rowCount() == 0) {
    add(*list.viewport(), list.viewport()->rect(), lines->emptyHint());
  }
  auto* table = qobject_cast<QTableView*>(&list);
  if (table == nullptr || !table->horizontalHeader()->isVisible()) return;
  QHeaderView* titles = table->horizontalHeader();
  for (int column = 0; column < titles->count(); ++column) {
    const QRect place(titles->sectionViewportPosition(column), 0, titles->sectionSize(column),
                      titles->height());
    if (!titles->viewport()->rect().contains(place.center())) continue;
    add(*titles->viewport(), place.adjusted(3, 2, -3, -2),
        model->headerData(column, Qt::Horizontal).toString());
  }
}

void Measurement::addTabs(const QTabBar& tabs) {
  for (int tab = 0; tab < tabs.count(); ++tab) {
    add(tabs, tabs.tabRect(tab).adjusted(4, 4, -4, -4), tabs.tabText(tab));
  }
}

void Measurement::addText(const QPlainTextEdit& text) {
  const QString shown = text.toPlainText();
  add(*text.viewport(), text.viewport()->rect(), shown.isEmpty() ? text.placeholderText() : shown);
}

void Measurement::addMenu(const QMenu& menu) {
  for (QAction* entry : menu.actions()) {
    if (entry->isVisible() && entry->isEnabled()) {
      add(menu, menu.actionGeometry(entry).adjusted(2, 2, -2, -2), entry->text());
    }
  }
}

}  // namespace

std::vector<TextContrast> contrastsOf(const QWidget& window, const QImage& picture) {
  Measurement measured(window, picture);
  for (QWidget* widget : controlsOf(window)) {
    if (!widget->isEnabled()) continue;
    if (auto* list = qobject_cast<QAbstractItemView*>(widget)) {
      measured.addList(*list);
    } else {
      measured.addControl(*widget);
    }
  }
  for (const QGroupBox* frame : window.findChildren<QGroupBox*>()) {
    if (frame->isVisible() && frame->isEnabled()) measured.addFrame(*frame);
  }
  for (const QTabBar* tabs : window.findChildren<QTabBar*>()) {
    if (tabs->isVisible()) measured.addTabs(*tabs);
  }
  for (const QPlainTextEdit* text : window.findChildren<QPlainTextEdit*>()) {
    if (text->isVisible()) measured.addText(*text);
  }
  if (const auto* menu = qobject_cast<const QMenu*>(&window)) measured.addMenu(*menu);
  return measured.take();
}

}  // namespace vel::test
