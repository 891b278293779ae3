#include "hfdl/ui/frequency_window.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <cmath>

#include "hfdl/frequency_chart.h"

namespace vel {
namespace {

using std::chrono::local_days;

constexpr QSize kDesignedSize(1120, 680);
constexpr QSize kLeastFrame(700, 260);

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
    : ChartWindow(context), tables_(context.encoding) {
  setObjectName(QStringLiteral("FrequencyChart"));
  setWindowTitle(QStringLiteral("VEL Frequencies of the last seven days"));
  buildControls();
  buildKeys();
  resize(kDesignedSize);
}

void FrequencyWindow::buildControls() {
  frame_ = new QWidget(this);
  frame_->setObjectName(QStringLiteral("Frame1"));
  frame_->setMinimumSize(kLeastFrame);
  frame_->installEventFilter(this);
  picture_ = new ChartPicture(desktop(), QStringLiteral("frequencies.png"), frame_);
  picture_->setAccessibleName(tr("Chart of the frequencies of a week"));
  picture_->setToolTip(tr("Right-click to enlarge"));
  picture_->installEventFilter(this);

  scroll_ = new QScrollBar(Qt::Vertical, this);
  scroll_->setObjectName(QStringLiteral("VScroll1"));
  scroll_->setAccessibleName(tr("Position of the chart"));
  scroll_->setSingleStep(static_cast<int>(2 * frequency_chart::kRowHeight));
  connect(scroll_, &QScrollBar::valueChanged, this, &FrequencyWindow::VScroll1_Change);

  magnifier_ = new Magnifier([this](const QRect& area) { return picture_->picture(area); }, this);

  auto* hint = new QLabel(tr("Right-click: load again and enlarge   F5: load again"), this);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(makeButton(picture_->saveAction(), this));
  buttons->addWidget(makeButton(picture_->copyAction(), this));
  buttons->addStretch();
  buttons->addWidget(hint);

  auto* chart = new QHBoxLayout;
  chart->setSpacing(0);
  chart->addWidget(frame_, 1);
  chart->addWidget(scroll_);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 6);
  rows->addLayout(buttons);
  rows->addLayout(chart, 1);
}

void FrequencyWindow::buildKeys() {
  const auto onKey = [this](Qt::Key key, auto run) {
    connect(new QShortcut(QKeySequence(key), this), &QShortcut::activated, this, run);
  };
  const auto scrolls = [this, &onKey](Qt::Key key, QAbstractSlider::SliderAction action) {
    onKey(key, [this, action] {
      if (scroll_->isEnabled()) scroll_->triggerAction(action);
    });
  };
  scrolls(Qt::Key_Up, QAbstractSlider::SliderSingleStepSub);
  scrolls(Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd);
  scrolls(Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub);
  scrolls(Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd);
  scrolls(Qt::Key_Home, QAbstractSlider::SliderToMinimum);
  scrolls(Qt::Key_End, QAbstractSlider::SliderToMaximum);
  onKey(Qt::Key_F5, [this] { loadFMTlog(chartStart(desktop().now())); });
}

void FrequencyWindow::Form_Load() {
  firstActivation_ = true;
  loading_ = false;
  ++load_;
}

void FrequencyWindow::Form_Activate() {
  if (!firstActivation_) return;
  firstActivation_ = false;
  loadFMTlog(chartStart(desktop().now()));
}

void FrequencyWindow::loadFMTlog(local_days start) {
  if (loading_ || !isOpen()) return;
  loading_ = true;
  const int number = ++load_;
  start_ = start;
  FrequencyLoad load(context().folders, tables_, start);
  showProgress(load.progressText());
  const bool complete = readLogs(load);
  // After a newer load the window belongs to that one.
  if (number != load_) return;
  if (complete) {
    for (const std::string& message : load.messages()) {
      desktop().showMessage(message);
      if (number != load_) return;
    }
    DrawGraph();
  }
  loading_ = false;
}

bool FrequencyWindow::readLogs(FrequencyLoad& load) {
  const int number = load_;
  const auto letEventsRun = [this, number] {
    desktop().processEvents();
    return isOpen() && number == load_;
  };
  while (load.nextFile()) {
    showProgress(load.progressText());
    if (!letEventsRun()) return false;
    while (load.readPiece()) {
      if (!letEventsRun()) return false;
    }
  }
  return true;
}

void FrequencyWindow::showProgress(const std::string& text) {
  scroll_->setEnabled(false);
  picture_->setChart(
      [text](double width, double height, double) { return progressDrawing(text, width, height); });
  picture_->setGeometry(frame_->rect());
}

void FrequencyWindow::DrawGraph() {
  scroll_->setEnabled(false);
  picture_->setChart([this](double width, double height, double ratio) {
    return vel::DrawGraph(tables_, start_, width, height, ratio);
  });
  placeSurface();
  scroll_->setEnabled(true);
}

void FrequencyWindow::placeSurface() {
  const int height = qMax(frame_->height(), static_cast<int>(std::ceil(neededHeight(tables_))));
  scroll_->setPageStep(frame_->height());
  scroll_->setRange(0, height - frame_->height());
  picture_->setGeometry(0, -scroll_->value(), frame_->width(), height);
}

void FrequencyWindow::Form_Resize() {
  if (loading_) {
    picture_->setGeometry(frame_->rect());
  } else {
    placeSurface();
  }
}

void FrequencyWindow::VScroll1_Change() {
  if (!loading_) picture_->move(0, -scroll_->value());
}

void FrequencyWindow::Picture1_MouseDown(Qt::MouseButton button, const QPoint& point) {
  if (button == Qt::LeftButton || loading_) return;
  // A modal window must not open inside the delivery of the press.
  QMetaObject::invokeMethod(
      this, [this, point] { reloadAndMagnify(point); }, Qt::QueuedConnection);
}

void FrequencyWindow::reloadAndMagnify(const QPoint& point) {
  loadFMTlog(chartStart(desktop().now()));
  if (!isOpen() || loading_) return;
  magnifier_->setCentre(point.x(), point.y());
  magnifier_->exec();
}

bool FrequencyWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == frame_ && event->type() == QEvent::Resize) Form_Resize();
  const bool pressed =
      event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
  if (watched == picture_ && pressed) {
    const auto* mouse = static_cast<QMouseEvent*>(event);
    Picture1_MouseDown(mouse->button(), mouse->position().toPoint());
    return true;
  }
  return ChartWindow::eventFilter(watched, event);
}

void FrequencyWindow::wheelEvent(QWheelEvent* event) {
  if (scroll_->isEnabled()) QCoreApplication::sendEvent(scroll_, event);
}

}  // namespace vel
