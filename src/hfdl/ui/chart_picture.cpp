#include "hfdl/ui/chart_picture.h"

#include <QClipboard>
#include <QFileDialog>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QSaveFile>
#include <QStandardPaths>
#include <utility>

#include "hfdl/ui/chart_painter.h"

namespace vel {
namespace {

constexpr QColor kPointColour(0, 0, 160);

constexpr const char* kNotSaved = "The picture could not be saved. 画像を保存できませんでした。";

bool savePng(const QImage& picture, const QString& file) {
  // A picture that does not fit the disk leaves the old file as it was.
  QSaveFile saved(file);
  return saved.open(QIODevice::WriteOnly) && picture.save(&saved, "PNG") && saved.commit();
}

}  // namespace

ChartPicture::ChartPicture(Desktop& desktop, QString fileName, QWidget* parent)
    : QWidget(parent),
      desktop_(desktop),
      fileName_(std::move(fileName)),
      save_(new QAction(tr("&Save picture as PNG..."), this)),
      copy_(new QAction(tr("&Copy picture"), this)) {
  setObjectName(QStringLiteral("Picture1"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::TabFocus);
  save_->setObjectName(QStringLiteral("SavePicture"));
  save_->setIconText(tr("Save picture as PNG..."));
  save_->setShortcut(QKeySequence::Save);
  copy_->setObjectName(QStringLiteral("CopyPicture"));
  copy_->setShortcut(QKeySequence::Copy);
  addActions({save_, copy_});
  connect(save_, &QAction::triggered, this, &ChartPicture::savePicture);
  connect(copy_, &QAction::triggered, this, &ChartPicture::copyPicture);
  chooseFile = [this](const QString& suggested) {
    QFileDialog dialog(window(), tr("Save picture as PNG"),
                       QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
                       tr("PNG picture (*.png)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("png"));
    dialog.selectFile(suggested);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
  };
}

void ChartPicture::setChart(Maker make) {
  make_ = std::move(make);
  drawing_.reset();
  update();
}

const Drawing& ChartPicture::drawing() const {
  const double ratio = devicePixelRatioF();
  if (!drawing_ || drawnSize_ != size() || drawnRatio_ != ratio) {
    drawing_ = make_ ? make_(width(), height(), ratio)
                     : Drawing{static_cast<double>(width()), static_cast<double>(height()), {}, {}};
    drawnSize_ = size();
    drawnRatio_ = ratio;
  }
  return *drawing_;
}

QImage ChartPicture::picture() const { return chartImage(drawing(), devicePixelRatioF()); }

QImage ChartPicture::picture(const QRect& area) const {
  return chartImage(drawing(), area, devicePixelRatioF());
}

void ChartPicture::savePicture() {
  const QImage shown = picture();
  const QString file = chooseFile(fileName_);
  if (!file.isEmpty() && !savePng(shown, file)) desktop_.showMessage(kNotSaved);
}

void ChartPicture::copyPicture() const { QGuiApplication::clipboard()->setImage(picture()); }

void ChartPicture::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), Qt::white);
  paintChart(painter, drawing(), event->rect());
  if (point_) {
    constexpr int kArm = 6;
    painter.setPen(kPointColour);
    painter.drawLine(*point_ - QPoint(kArm, 0), *point_ + QPoint(kArm, 0));
    painter.drawLine(*point_ - QPoint(0, kArm), *point_ + QPoint(0, kArm));
  }
  if (hasFocus() && framesFocus_) paintFocus(painter);
}

// A frame around what is seen of the surface: the chart keeps its colours.
void ChartPicture::paintFocus(QPainter& painter) const {
  constexpr int kWidth = 2;
  const QRect seen = visibleRegion().boundingRect();
  const QColor colour = palette().color(QPalette::Active, QPalette::Highlight);
  for (const QRect& edge : {QRect(seen.left(), seen.top(), seen.width(), kWidth),
                            QRect(seen.left(), seen.bottom() - kWidth + 1, seen.width(), kWidth),
                            QRect(seen.left(), seen.top(), kWidth, seen.height()),
                            QRect(seen.right() - kWidth + 1, seen.top(), kWidth, seen.height())}) {
    painter.fillRect(edge, colour);
  }
}

void ChartPicture::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  // The frame stays where it is seen.
  if (hasFocus()) update();
}

void ChartPicture::focusInEvent(QFocusEvent* event) {
  // A window gives the focus to its first widget by itself: nobody asked for it.
  const bool kept =
      event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
  if (!kept) framesFocus_ = true;
  QWidget::focusInEvent(event);
}

void ChartPicture::setPoint(std::optional<QPoint> point) {
  if (point_ == point) return;
  point_ = point;
  update();
}

}  // namespace vel
