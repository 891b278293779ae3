#include "core/ui/busy_labels.h"

#include <QHBoxLayout>

namespace vel {
namespace {

constexpr int kCompleteMilliseconds = 1500;

QLabel* makeLabel(QWidget* parent, const QString& name, const QString& text, const char* style) {
  auto* label = new QLabel(text, parent);
  label->setObjectName(name);
  label->setAlignment(Qt::AlignCenter);
  label->setStyleSheet(QString::fromLatin1(style));
  label->hide();
  return label;
}

}  // namespace

BusyLabels::BusyLabels(const QString& lookUpCaption, QWidget* parent)
    : QWidget(parent), lookUpCaption_(lookUpCaption) {
  processing_ = makeLabel(this, QStringLiteral("Label7"), lookUpCaption,
                          "background:#fff3c4;color:#5c4400;border-radius:3px;padding:1px 10px");
  complete_ = makeLabel(this, QStringLiteral("Label6"), QStringLiteral("Complete"),
                        "background:#d5f0d8;color:#0f4d1a;border-radius:3px;padding:1px 10px");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(processing_);
  row->addWidget(complete_);
  row->addStretch();
  // Nothing moves when a word is shown. A style counts once it is applied.
  for (QLabel* label : {processing_, complete_}) {
    label->ensurePolished();
    setMinimumHeight(qMax(minimumHeight(), label->sizeHint().height()));
  }
  timer_ = new QTimer(this);
  timer_->setObjectName(QStringLiteral("Timer1"));
  timer_->setSingleShot(true);
  timer_->setInterval(kCompleteMilliseconds);
  connect(timer_, &QTimer::timeout, complete_, &QLabel::hide);
}

void BusyLabels::show(const QString& caption) {
  processing_->setText(caption);
  processing_->show();
  // Drawn at once: the work begins with the next turn of the event loop.
  layout()->activate();
  processing_->repaint();
}

void BusyLabels::setReading(bool reading) {
  isReading_ = reading;
  if (reading) {
    show(lookUpCaption_);
  } else {
    processing_->hide();
  }
}

void BusyLabels::showProcessing() { show(lookUpCaption_); }

void BusyLabels::showRewriting() { show(QStringLiteral("Processing")); }

void BusyLabels::hideProcessing() {
  if (isReading_) {
    show(lookUpCaption_);
  } else {
    processing_->hide();
  }
}

void BusyLabels::showComplete() {
  hideProcessing();
  complete_->show();
  timer_->start();
}

}  // namespace vel
