#include "hfdl/ui/frequency_window.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QShortcut>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/screen_room.h"
#include "hfdl/frequency_chart.h"

namespace vel {
namespace {

using std::chrono::local_days;

constexpr QSize kDesignedSize(1120, 680);
constexpr QSize kLeastFrame(700, 260);
// What the window has beside and above the chart, about.
constexpr QSize kControls(40, 60);
constexpr int kPointStep = 6;  // about an hour

QToolButton* makeButton(QAction* action, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setDefaultAction(action);
  button->setToolTip(QStringLiteral("%1 (%2)").arg(
      action->iconText(), action->shortcut().toString(QKeySequence::NativeText)));
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

}  // namespace

FrequencyWindow::FrequencyWindow(const Context& context)
    : ChartWindow(context), tables_(context.encoding), weekJob_(context.jobs) {
  setObjectName(QStringLiteral("FrequencyChart"));
  setWindowTitle(QStringLiteral("VEL Frequencies of the last seven days"));
  buildControls();
  buildActions();
  buildKeys();
  auto* chart = new QHBoxLayout;
  chart->setSpacing(0);
  chart->addWidget(frame_, 1);
  chart->addWidget(scroll_);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 6);
  rows->addLayout(buildButtons());
  rows->addLayout(chart, 1);
  resize(kDesignedSize);
}

void FrequencyWindow::buildControls() {
  frame_ = new QWidget(this);
  frame_->setObjectName(QStringLiteral("Frame1"));
  frame_->setMinimumSize(kLeastFrame.boundedTo(screenRoom(*this) - kControls));
  frame_->installEventFilter(this);
  picture_ = new ChartPicture(desktop(), QStringLiteral("frequencies.png"), frame_);
  picture_->setAccessibleName(tr("Chart of the frequencies of a week"));
  picture_->setToolTip(tr("Right-click to enlarge"));
  picture_->installEventFilter(this);
  axis_ = new TimeAxis(
      [this](double width, double ratio) { return timeAxis(start_, width, ratio); }, frame_);

  scroll_ = new QScrollBar(Qt::Vertical, this);
  scroll_->setObjectName(QStringLiteral("VScroll1"));
  scroll_->setAccessibleName(tr("Position of the chart"));
  scroll_->setSingleStep(static_cast<int>(2 * frequency_chart::kRowHeight));
  connect(scroll_, &QScrollBar::valueChanged, this, &FrequencyWindow::slideSurface);

  magnifier_ =
      new Magnifier([this](const QRect& area) { return picture_->picture(area); },
                    [this](const QRect& area) {
                      return enlargedTimeAxis(start_, picture_->width(), area.left(), area.width(),
                                              Magnifier::kTimes, devicePixelRatioF());
                    },
                    this);
}

void FrequencyWindow::buildActions() {
  enlarge_ = new QAction(tr("&Enlarge"), this);
  enlarge_->setObjectName(QStringLiteral("EnlargeChart"));
  connect(enlarge_, &QAction::triggered, this, &FrequencyWindow::enlarge);
  reload_ = new QAction(tr("&Reload"), this);
  reload_->setObjectName(QStringLiteral("ReloadChart"));
  reload_->setShortcut(QKeySequence(Qt::Key_F5));
  addAction(reload_);
  connect(reload_, &QAction::triggered, this, &FrequencyWindow::reload);
  menu_ = new QMenu(this);
  menu_->setObjectName(QStringLiteral("ChartMenu"));
  menu_->addActions({enlarge_, picture_->saveAction(), picture_->copyAction(), reload_});
}

QLayout* FrequencyWindow::buildButtons() {
  auto* hint = new QLabel(tr("Right-click: load again and enlarge   F5: load again"), this);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(makeButton(picture_->saveAction(), this));
  buttons->addWidget(makeButton(picture_->copyAction(), this));
  buttons->addStretch();
  buttons->addWidget(hint);
  return buttons;
}

void FrequencyWindow::buildKeys() {
  const auto onKey = [this](const QKeySequence& key, auto run) {
    connect(new QShortcut(key, this), &QShortcut::activated, this, run);
  };
  const auto scrolls = [this, &onKey](Qt::Key key, QAbstractSlider::SliderAction action) {
    onKey(key, [this, action] {
      if (scroll_->isEnabled()) scroll_->triggerAction(action);
    });
  };
  scrolls(Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub);
  scrolls(Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd);
  scrolls(Qt::Key_Home, QAbstractSlider::SliderToMinimum);
  scrolls(Qt::Key_End, QAbstractSlider::SliderToMaximum);
  onKey(Qt::Key_Up, [this] { movePoint(0, -1); });
  onKey(Qt::Key_Down, [this] { movePoint(0, 1); });
  onKey(Qt::Key_Left, [this] { movePoint(-kPointStep, 0); });
  onKey(Qt::Key_Right, [this] { movePoint(kPointStep, 0); });
  onKey(Qt::CTRL | Qt::Key_Left, [this] { movePoint(-1, 0); });
  onKey(Qt::CTRL | Qt::Key_Right, [this] { movePoint(1, 0); });
  onKey(Qt::Key_Menu, [this] { showMenu(); });
  onKey(Qt::SHIFT | Qt::Key_F10, [this] { showMenu(); });
}

void FrequencyWindow::whenOpened() {
  firstActivation_ = true;
  point_.reset();
  scroll_->setRange(0, 0);
}

void FrequencyWindow::whenActivated() {
  if (!firstActivation_) return;
  firstActivation_ = false;
  reload();
}

void FrequencyWindow::whenClosed() {
  weekJob_.stop();
  week_.reset();
  shownProgress_.clear();
}

void FrequencyWindow::reload() { loadFMTlog(chartStart(desktop().now())); }

void FrequencyWindow::loadFMTlog(local_days start) { load(start, std::nullopt); }

void FrequencyWindow::reloadAndEnlarge(const QPoint& point) {
  load(chartStart(desktop().now()), point);
}

void FrequencyWindow::load(local_days start, std::optional<QPoint> enlarged) {
  if (week_) return;
  start_ = start;
  week_.emplace(context().folders, tables_, start);
  showProgress();
  weekJob_.start(makeJob([this](Job::Clock::time_point deadline) { return week_->step(deadline); }),
                 {.stepped = [this] { showProgress(); },
                  .ended = [this, enlarged](const Status&) { finishLoad(enlarged); }});
}

void FrequencyWindow::finishLoad(std::optional<QPoint> enlarged) {
  const std::vector<std::string> messages = week_->messages();
  if (const std::string overflow = week_->overflowText(); !overflow.empty()) {
    desktop().showMessage(overflow);
    // The window was closed meanwhile, and perhaps opened again.
    if (!week_ || weekJob_.isRunning()) return;
  }
  week_.reset();
  DrawGraph();
  // A message follows: the chart is there before it.
  if (!messages.empty()) picture_->repaint();
  for (const std::string& message : messages) {
    desktop().showMessage(message);
    if (week_ || !isVisible()) return;
  }
  if (enlarged) showMagnifier(*enlarged);
}

void FrequencyWindow::showProgress() {
  const std::string& text = week_->progressText();
  if (shownProgress_ == text) return;
  shownProgress_ = text;
  scroll_->setEnabled(false);
  axis_->hide();
  picture_->setPoint(std::nullopt);
  picture_->setChart(
      [text](double width, double height, double) { return progressDrawing(text, width, height); });
  picture_->setGeometry(frame_->rect());
  // The work begins after it has been drawn.
  picture_->repaint();
}

void FrequencyWindow::DrawGraph() {
  shownProgress_.clear();
  scroll_->setEnabled(false);
  picture_->setChart([this](double width, double height, double ratio) {
    return vel::DrawGraph(tables_, start_, width, height, ratio);
  });
  placeSurface();
  if (point_ && !picture_->rect().contains(*point_)) point_.reset();
  picture_->setPoint(point_);
  axis_->update();
  axis_->show();
  scroll_->setEnabled(true);
}

void FrequencyWindow::placeSurface() {
  const int height = std::max(frame_->height(), static_cast<int>(std::ceil(neededHeight(tables_))));
  scroll_->setPageStep(frame_->height());
  scroll_->setRange(0, height - frame_->height());
  picture_->setGeometry(0, -scroll_->value(), frame_->width(), height);
  axis_->setGeometry(0, 0, frame_->width(), static_cast<int>(frequency_chart::kAxisHeight));
  axis_->setCoversRows(scroll_->value() > 0);
}

void FrequencyWindow::slideSurface() {
  if (week_) return;
  picture_->move(0, -scroll_->value());
  axis_->setCoversRows(scroll_->value() > 0);
}

void FrequencyWindow::surfacePressed(Qt::MouseButton button, const QPoint& point) {
  if (button != Qt::LeftButton) reloadAndEnlarge(point);
}

void FrequencyWindow::enlarge() { reloadAndEnlarge(point_.value_or(seenRows().center())); }

void FrequencyWindow::showMagnifier(const QPoint& point) {
  magnifier_->setCentre(point.x(), point.y());
  magnifier_->show();
}

void FrequencyWindow::showMenu() {
  if (week_ || menu_->isVisible()) return;
  const bool seen = point_ && seenRows().contains(*point_);
  menu_->popup(picture_->mapToGlobal(seen ? *point_ : seenRows().center()));
}

// The part of the surface that is in sight below the axis.
QRect FrequencyWindow::seenRows() const {
  return {0, scroll_->value() + axis_->height(), frame_->width(),
          frame_->height() - axis_->height()};
}

void FrequencyWindow::movePoint(int columns, int rows) {
  if (week_) return;
  if (rows != 0) {
    scroll_->triggerAction(rows < 0 ? QAbstractSlider::SliderSingleStepSub
                                    : QAbstractSlider::SliderSingleStepAdd);
  }
  const std::vector<FrequencyRow> all = frequencyRows(tables_);
  const auto middleOf = [](const FrequencyRow& row) {
    return static_cast<int>(row.top + frequency_chart::kRowHeight / 2);
  };
  const bool seen = point_ && seenRows().contains(*point_);
  QPoint point = seen ? *point_ : seenRows().center();
  const auto below = std::find_if(all.begin(), all.end(), [&](const FrequencyRow& row) {
    return row.top + frequency_chart::kRowHeight > point.y();
  });
  if (!all.empty()) {
    auto row = std::min<std::ptrdiff_t>(below - all.begin(), std::ssize(all) - 1);
    if (seen) row = std::clamp<std::ptrdiff_t>(row + rows, 0, std::ssize(all) - 1);
    point.setY(middleOf(all[static_cast<std::size_t>(row)]));
  }
  if (seen) point.setX(std::clamp(point.x() + columns, 0, picture_->width() - 1));
  const int half = static_cast<int>(frequency_chart::kRowHeight / 2);
  if (point.y() - half < seenRows().top()) {
    scroll_->setValue(point.y() - half - axis_->height());
  } else if (point.y() + half > seenRows().bottom()) {
    scroll_->setValue(point.y() + half - frame_->height());
  }
  point_ = point;
  picture_->setPoint(point_);
  showPointTip(point);
}

QString FrequencyWindow::tipAt(const QPoint& point) const {
  const QString place =
      toQString(placeTip(tables_, start_, picture_->width(), point.x(), point.y()));
  return place.isEmpty() ? picture_->toolTip() : place + QLatin1Char('\n') + picture_->toolTip();
}

void FrequencyWindow::showPointTip(const QPoint& point) {
  const QString tip = tipAt(point);
  picture_->setAccessibleDescription(tip);
  QToolTip::showText(picture_->mapToGlobal(point), plainToolTip(tip), picture_);
}

bool FrequencyWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == frame_ && event->type() == QEvent::Resize) {
    if (week_) {
      picture_->setGeometry(frame_->rect());
    } else {
      placeSurface();
    }
  }
  if (watched != picture_) return ChartWindow::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
      const auto* mouse = static_cast<QMouseEvent*>(event);
      surfacePressed(mouse->button(), mouse->position().toPoint());
      return true;
    }
    case QEvent::ContextMenu:
      // The mouse enlarges instead.
      if (static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) {
        showMenu();
      }
      return true;
    case QEvent::ToolTip:
      if (week_) return true;
      showPointTip(static_cast<QHelpEvent*>(event)->pos());
      return true;
    default:
      return ChartWindow::eventFilter(watched, event);
  }
}

void FrequencyWindow::wheelEvent(QWheelEvent* event) {
  if (scroll_->isEnabled()) QCoreApplication::sendEvent(scroll_, event);
}

}  // namespace vel
