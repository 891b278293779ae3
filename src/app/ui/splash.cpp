#include "app/ui/splash.h"

#include <QPainter>
#include <QVBoxLayout>
#include <utility>

#include "core/ui/qt_desktop.h"
#include "core/version.h"

namespace vel {
namespace {

// Long enough for the splash to be drawn before loading starts.
constexpr int kFirstInterval = 30;

QLabel* makeLabel(QWidget* parent, const QString& name, double scale) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setAlignment(Qt::AlignCenter);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * scale);
  label->setFont(font);
  return label;
}

}  // namespace

Splash::Splash(std::function<void()> tick)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
  setObjectName(QStringLiteral("Splash"));
  setWindowTitle(QString::fromLatin1(kProgramTitle));
  auto* title = makeLabel(this, QStringLiteral("Title"), 1.4);
  title->setText(QString::fromLatin1(kProgramTitle));
  auto* version = makeLabel(this, QStringLiteral("Version"), 1.0);
  version->setText(QStringLiteral("Version ") + QString::fromLatin1(kVersion));
  pleaseWait_ = makeLabel(this, QStringLiteral("PleaseWait"), 1.0);
  pleaseWait_->setText(QStringLiteral("Please wait for a while."));
  pleaseWait_->setVisible(false);
  progress_ = makeLabel(this, QStringLiteral("Progress"), 1.0);

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(28, 24, 28, 20);
  column->addWidget(title);
  column->addWidget(version);
  column->addStretch();
  column->addWidget(pleaseWait_);
  column->addWidget(progress_);
  resize(sizeHint().expandedTo(QSize(440, 190)));

  connect(&timer_, &QTimer::timeout, this, std::move(tick));
}

void Splash::startTicking() { timer_.start(kFirstInterval); }

void Splash::showPleaseWait() { pleaseWait_->setVisible(true); }

void Splash::setProgress(const QString& text) { progress_->setText(text); }

void Splash::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().base());
  painter.fillRect(QRect(0, 0, width(), 6), palette().highlight());
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace vel
