#pragma once

#include <QImage>
#include <QWidget>
#include <filesystem>

namespace vel {

/// The photo of the selected line, scaled into its frame. A click on it, or
/// Enter, asks to open it.
class PhotoView : public QWidget {
  Q_OBJECT

 public:
  explicit PhotoView(QWidget* parent);

  /// Shows a JPEG file. False when it is no picture that can be read; nothing
  /// is shown then.
  bool load(const std::filesystem::path& file);

  /// The true size of the shown picture in its own pixels; invalid without one.
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
};

}  // namespace vel
