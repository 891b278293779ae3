#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace vel {

/// The photo of the selected line, scaled into its frame. A click on it, or
/// Enter, asks to open it.
class PhotoView : public QWidget {
  Q_OBJECT

 public:
  explicit PhotoView(QWidget* parent);

  /// Shows a picture whose true size, in its own pixels, is this.
  void showPicture(const QImage& picture, QSize trueSize);

  /// Says instead of a picture what to do to have one. Plain text.
  void showHint(const QString& hint);
  [[nodiscard]] const QString& hint() const { return hint_; }

  /// The true size of the shown picture; invalid without one.
  [[nodiscard]] QSize pictureSize() const { return pictureSize_; }

  void clear();

  [[nodiscard]] QSize sizeHint() const override { return {210, 105}; }

 Q_SIGNALS:
  void clicked();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QImage picture_;
  QSize pictureSize_;
  QString hint_;
  QPixmap scaled_;  // to the size that was painted last
};

}  // namespace vel
