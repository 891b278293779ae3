#include "tour/ui/tour_window.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStyle>
#include <algorithm>
#include <optional>
#include <span>
#include <vector>

#include "core/ui/twips.h"

namespace vel {
namespace {

// 4,300 x 1,900 twips less the thin frame that window managers put around a
// dialog: a wider window would cover controls that it explains.
constexpr QSize kDesignSize(toPixels(4230), toPixels(1900));

constexpr int kMargin = 3;
// Slightly smaller letters show more of a text without scrolling; where a step
// leaves too little room for a large font, they get as small as this.
constexpr int kTextPercent = 90;
constexpr int kLeastTextPercent = 75;
constexpr int kTextPercentStep = 5;
constexpr int kLeastLetters = 11;
constexpr int kLeastTextLines = 4;

QString textOf(int step) {
  return QString::fromStdString(shownText(step)).remove(QLatin1Char('\r'));
}

int nearestPixel(int twips) { return toPixels(static_cast<double>(twips)); }

TourRect toRect(const QRect& rect) { return {rect.x(), rect.y(), rect.width(), rect.height()}; }

TourRect toTwips(const QRect& rect) { return toRect(toTwipRect(rect)); }

// The edge with an arrow makes room for it, so that it hides nothing.
QMargins marginsFor(std::span<const std::optional<TourPointer>> arrows, int size) {
  QMargins margins(kMargin, kMargin, kMargin, kMargin);
  const int room = size + 1;
  for (const std::optional<TourPointer>& arrow : arrows) {
    if (!arrow) continue;
    switch (arrow->edge) {
      case TourEdge::left:
        margins.setLeft(room);
        break;
      case TourEdge::top:
        margins.setTop(room);
        break;
      case TourEdge::right:
        margins.setRight(room);
        break;
      case TourEdge::bottom:
        margins.setBottom(room);
        break;
    }
  }
  return margins;
}

}  // namespace

TourWindow::TourWindow(const TourHost& host, TourState& state)
    : QDialog(host.window()), host_(host), state_(state) {
  setWindowTitle(QStringLiteral("Tour"));
  setWindowModality(Qt::WindowModal);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  buildControls();
  buildKeys();
  fitToFont();
  resize(TourWindow::sizeHint());
  host_.window()->installEventFilter(this);
}

TourWindow::~TourWindow() { removeFrames(0); }

void TourWindow::buildControls() {
  setObjectName(QStringLiteral("TourWindow"));
  text_ = new WholeLines(this);
  text_->setObjectName(QStringLiteral("Text1"));
  text_->setAccessibleName(QStringLiteral("Explanation"));

  position_ = new PositionLabel(this);
  position_->setObjectName(QStringLiteral("Label1"));
  position_->setAccessibleName(QStringLiteral("Position of the tour window"));

  const auto button = [this](const char* name, const char* caption, const char* help) {
    auto* made = new QPushButton(QString::fromLatin1(caption), this);
    made->setObjectName(QString::fromLatin1(name));
    made->setToolTip(QString::fromLatin1(help));
    return made;
  };
  previous_ = button("Command1", "Prev.", "Previous step (Alt+P, Left)");
  previous_->setAccessibleName(QStringLiteral("Previous step"));
  next_ = button("Command2", "Next", "Next step (Alt+N, Right)");
  next_->setAccessibleName(QStringLiteral("Next step"));
  close_ = button("Command3", "Close", "Close the tour; it resumes here (Esc)");
  close_->setAccessibleName(QStringLiteral("Close the tour"));
  next_->setDefault(true);
  next_->setFocus();

  auto* row = new QHBoxLayout;
  row->setSpacing(2);
  row->addWidget(position_, 1);
  row->addWidget(previous_);
  row->addWidget(next_);
  row->addWidget(close_);
  layout_ = new QVBoxLayout(this);
  layout_->setSpacing(2);
  layout_->addWidget(text_, 1);
  layout_->addLayout(row);

  for (int i = 0; i < kTourPointerCount; ++i) {
    auto* picture = new PointerPicture(this);
    picture->setObjectName(QStringLiteral("Image1(%1)").arg(i));
    picture->setAccessibleName(QStringLiteral("Pointer to the explained control"));
    picture->hide();
    pictures_[static_cast<std::size_t>(i)] = picture;
  }

  timer_ = new QTimer(this);
  timer_->setObjectName(QStringLiteral("Timer1"));
  timer_->setInterval(kTourBlinkMilliseconds);

  connect(previous_, &QPushButton::clicked, this, &TourWindow::goBack);
  connect(next_, &QPushButton::clicked, this, &TourWindow::goOn);
  connect(close_, &QPushButton::clicked, this, &QWidget::close);
  connect(position_, &PositionLabel::clicked, this, &TourWindow::reportPosition);
  connect(timer_, &QTimer::timeout, this, &TourWindow::blink);
}

void TourWindow::buildKeys() {
  const auto press = [this](const QKeySequence& keys, QPushButton* button) {
    auto* shortcut = new QShortcut(keys, this);
    // A key held down a moment too long must not run through the tour.
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
  };
  press(Qt::ALT | Qt::Key_N, next_);
  press(Qt::Key_Right, next_);
  press(Qt::ALT | Qt::Key_P, previous_);
  press(Qt::Key_Left, previous_);

  const auto scroll = [this](Qt::Key key, QAbstractSlider::SliderAction action) {
    auto* shortcut = new QShortcut(key, this);
    connect(shortcut, &QShortcut::activated, this, [this, action] { scrollText(action); });
  };
  scroll(Qt::Key_Up, QAbstractSlider::SliderSingleStepSub);
  scroll(Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd);
  scroll(Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub);
  scroll(Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd);
}

void TourWindow::fitToFont() {
  const QFontMetrics metrics(font());
  for (QPushButton* button : {previous_, next_, close_}) {
    button->setFixedSize(metrics.horizontalAdvance(button->text()) + 16, metrics.height() + 5);
  }
  useLetters(kTextPercent);
  text_->setMinimumHeight(kLeastTextLines * QFontMetrics(text_->font()).lineSpacing() + 8);
}

void TourWindow::useLetters(int percent) {
  QFont letters = font();
  letters.setPointSizeF(QFontInfo(letters).pointSizeF() * percent / 100);
  text_->setFont(letters);
}

QSize TourWindow::sizeHint() const { return kDesignSize.expandedTo(minimumSizeHint()); }

int TourWindow::pointerSize() const { return std::max(16, fontMetrics().height()); }

TourPoint TourWindow::ownCorner() const { return {toTwips(pos().x()), toTwips(pos().y())}; }

TourPoint TourWindow::hostCorner() const {
  const QPoint corner = host_.outerGeometry().topLeft();
  return {toTwips(corner.x()), toTwips(corner.y())};
}

void TourWindow::goBack() {
  state_.step = stepBefore(state_.step);
  showStep();
}

void TourWindow::goOn() {
  position_->setText(QString::fromStdString(nextButtonReport(ownCorner(), hostCorner())));
  state_.step = stepAfter(state_.step);
  showStep();
}

void TourWindow::reportPosition() {
  position_->setText(QString::fromStdString(
      positionReport(state_.step, ownCorner(), hostCorner(), host_.panelTop())));
}

void TourWindow::blink() {
  blink_ = blink_ == Blink::on ? Blink::off : Blink::on;
  // The window manager adds its frame some time after the window was shown.
  if (frameGeometry().size() - size() != placedFrame_) moveToStep();
  // Columns may have been dragged or a control shown since the last tick.
  pointAtControls();
}

void TourWindow::showStep() {
  pointers_ = pointersOf(state_.step);
  if (state_.step == kTourOver) {
    state_.step = kFirstTourStep;
    close();
    return;
  }
  if (tourStep(state_.step) != nullptr) {
    // The next text is laid out at the width that it will have, without the
    // scroll bar that the last one may have needed.
    text_->clear();
    moveToStep();
    pointAtControls();
    text_->setPlainText(textOf(state_.step));
    setAccessibleDescription(QStringLiteral("Step %1 of %2").arg(state_.step).arg(kLastTourStep));
  }
  pointAtControls();
  update();
}

void TourWindow::followHost() {
  followPending_ = false;
  if (!isVisible()) return;
  moveToStep();
  pointAtControls();
}

void TourWindow::moveToStep() {
  std::vector<TourRect> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {
    screens.push_back(toTwips(screen->availableGeometry()));
  }
  // The frame around a control is to be seen whole, too.
  std::vector<TourRect> framed;
  for (const QRect& control : shownControls()) {
    framed.push_back(toTwips(ControlFrame::around(control)));
  }
  const TourRect host = toTwips(host_.outerGeometry());
  const QSize frame = frameGeometry().size() - size();
  placedFrame_ = frame;
  const QSize least = sizeHint() + frame;
  const auto needed = [this](const TourRect& at) { return neededHeight(at); };
  TourSize outer;
  std::optional<TourPoint> place;
  for (int percent = kTextPercent; percent >= kLeastTextPercent; percent -= kTextPercentStep) {
    useLetters(percent);
    outer = tourSize(state_.step, host, host_.panelTop(),
                     {toTwips(least.width()), toTwips(least.height())}, screens, framed, needed);
    place = tourPosition(state_.step, host, host_.panelTop(), outer, screens, framed);
    if (!place) return;
    const TourRect at{place->left, place->top, outer.width, outer.height};
    const int smaller =
        QFontInfo(text_->font()).pixelSize() * (percent - kTextPercentStep) / percent;
    if (needed(at) <= outer.height || smaller < kLeastLetters) {
      break;
    }
  }
  resize(QSize(nearestPixel(outer.width), nearestPixel(outer.height)) - frame);
  move(nearestPixel(place->left), nearestPixel(place->top));
}

int TourWindow::neededHeight(const TourRect& outer) const {
  const QSize frame = frameGeometry().size() - size();
  const QPoint corner = geometry().topLeft() - pos();
  const TourRect inner{nearestPixel(outer.left) + corner.x(), nearestPixel(outer.top) + corner.y(),
                       nearestPixel(outer.width) - frame.width(),
                       nearestPixel(outer.height) - frame.height()};
  const QMargins margins = marginsFor(arrowsOf(inner), pointerSize());
  const int width = inner.width - margins.left() - margins.right();
  const int below = layout_->spacing() + next_->height();
  return toTwips(text_->heightFor(textOf(state_.step), width) + below + margins.top() +
                 margins.bottom() + frame.height());
}

QList<QRect> TourWindow::shownControls() const {
  QList<QRect> controls = host_.controlsOf(state_.step);
  controls.removeIf([](const QRect& control) { return control.isEmpty(); });
  return controls;
}

std::array<std::optional<TourPointer>, kTourPointerCount> TourWindow::arrowsOf(
    const TourRect& inner) const {
  std::vector<TourRect> rects;
  for (const QRect& control : shownControls()) rects.push_back(toRect(control));
  return placePointers(pointers_, inner, rects, pointerSize());
}

void TourWindow::pointAtControls() {
  const int size = pointerSize();
  const TourRect own = toRect(geometry());
  const auto placed = arrowsOf(own);
  for (std::size_t i = 0; i < placed.size(); ++i) {
    if (!placed[i]) continue;
    const TourPoint middle = pointerMiddle(own, *placed[i], size);
    pictures_[i]->setGeometry(middle.left - own.left - size / 2, middle.top - own.top - size / 2,
                              size, size);
    pictures_[i]->setAngle(placed[i]->angle);
  }
  layout_->setContentsMargins(marginsFor(placed, size));
  layout_->activate();
  applyBlink();
  frameControls(shownControls());
}

void TourWindow::applyBlink() {
  const PointerSet visible = visiblePointers(blink_, pointers_);
  for (std::size_t i = 0; i < visible.size(); ++i) pictures_[i]->setVisible(visible[i]);
}

void TourWindow::frameControls(const QList<QRect>& controls) {
  removeFrames(controls.size());
  QWidget* window = host_.window();
  for (qsizetype i = 0; i < controls.size(); ++i) {
    if (i == frames_.size()) frames_.append(nullptr);
    if (frames_[i] == nullptr) {
      frames_[i] = new ControlFrame(window);
      frames_[i]->setObjectName(QStringLiteral("TourFrame(%1)").arg(i));
    }
    frames_[i]->frame(QRect(window->mapFromGlobal(controls[i].topLeft()), controls[i].size()));
  }
}

void TourWindow::removeFrames(qsizetype keep) {
  while (frames_.size() > keep) {
    if (ControlFrame* frame = frames_.takeLast()) {
      frame->setParent(nullptr);
      frame->deleteLater();
    }
  }
}

void TourWindow::scrollText(QAbstractSlider::SliderAction action) {
  text_->verticalScrollBar()->triggerAction(action);
}

bool TourWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget() && isVisible() && !followPending_) {
    switch (event->type()) {
      case QEvent::Move:
      case QEvent::Resize:
      case QEvent::WindowStateChange:
        // Only after the window has laid itself out are its places right.
        followPending_ = true;
        QMetaObject::invokeMethod(this, &TourWindow::followHost, Qt::QueuedConnection);
        break;
      default:
        break;
    }
  }
  return QDialog::eventFilter(watched, event);
}

void TourWindow::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitToFont();
}

void TourWindow::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) {
    blink_ = Blink::on;
    showStep();
    timer_->start();
  }
  QDialog::showEvent(event);
}

void TourWindow::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) {
    timer_->stop();
    removeFrames(0);
  }
  QDialog::hideEvent(event);
}

void TourWindow::moveEvent(QMoveEvent* event) {
  QDialog::moveEvent(event);
  if (isVisible()) pointAtControls();
}

void TourWindow::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  if (isVisible()) pointAtControls();
}

void TourWindow::paintEvent(QPaintEvent* event) {
  QDialog::paintEvent(event);
  QPainter painter(this);
  const int done = width() * std::clamp(state_.step, 0, kLastTourStep) / kLastTourStep;
  painter.fillRect(0, height() - 2, done, 2, palette().color(QPalette::Highlight));
  // Some window managers draw no frame around a dialog: without a line of its
  // own the tour would melt into the window below.
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace vel
