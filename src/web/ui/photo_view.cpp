#include "web/ui/photo_view.h"

#include <QFile>
#include <QImageReader>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include "core/file.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

// More than the frame ever shows, on a screen of double scale too.
constexpr int kLargestKept = 1600;

// A JPEG file ends with these bytes, which no picture data holds. Some
// programs leave a little of their own behind them.
constexpr char kEndOfImage[] = "\xFF\xD9";
constexpr qint64 kLongestTail = 4096;

// The decoder would show the upper part of a file that was cut off.
bool isWhole(QIODevice& file) {
  file.seek(qMax(qint64{0}, file.size() - kLongestTail));
  const bool whole = file.read(kLongestTail).contains(kEndOfImage);
  return file.seek(0) && whole;
}

}  // namespace

PhotoView::PhotoView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("Image1"));
  setAccessibleName(tr("Aircraft photo"));
  setToolTip(tr("Click to open the photo\nクリックで写真を開く"));
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
}

bool PhotoView::load(const std::filesystem::path& file) {
  QFile bytes(toQString(toUtf8(file)));
  if (!bytes.open(QIODevice::ReadOnly) || !isWhole(bytes)) return false;
  QImageReader reader(&bytes, "JPEG");
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (qMax(size.width(), size.height()) > kLargestKept) {
    reader.setScaledSize(size.scaled(kLargestKept, kLargestKept, Qt::KeepAspectRatio));
  }
  QImage picture = reader.read();
  if (picture.isNull()) return false;
  const bool turned = (reader.transformation() & QImageIOHandler::TransformationRotate90) != 0;
  picture_ = std::move(picture);
  pictureSize_ = turned ? size.transposed() : size;
  update();
  return true;
}

void PhotoView::clear() {
  picture_ = QImage();
  pictureSize_ = QSize();
  update();
}

void PhotoView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect frame = rect();
  painter.fillRect(frame, palette().color(QPalette::Midlight));
  if (!picture_.isNull()) {
    const QSize shown = picture_.size().scaled(frame.size(), Qt::KeepAspectRatio);
    QRect place(QPoint(), shown);
    place.moveCenter(frame.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSize device = shown * devicePixelRatioF();
    painter.drawImage(place,
                      picture_.scaled(device, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(frame.adjusted(0, 0, -1, -1));
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void PhotoView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos())) Q_EMIT clicked();
}

void PhotoView::keyPressEvent(QKeyEvent* event) {
  const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                     event->key() == Qt::Key_Space;
  if (opens) {
    Q_EMIT clicked();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace vel
