#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>

namespace vel::test {

/// Sees a part of a window being hidden, and whether the window still had what
/// is its own then: in the destructors of its bases it has nothing any more that
/// the part could ask for.
template <typename Window>
class HideWatch : public QObject {
 public:
  explicit HideWatch(QWidget& part) : part_(part) { part.installEventFilter(this); }

  [[nodiscard]] bool isHidden() const { return isHidden_; }
  [[nodiscard]] bool wasWhole() const { return wasWhole_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Hide && watched == &part_ && !isHidden_) {
      isHidden_ = true;
      wasWhole_ = dynamic_cast<Window*>(part_.window()) != nullptr;
    }
    return false;
  }

 private:
  QWidget& part_;
  bool isHidden_ = false;
  bool wasWhole_ = false;
};

}  // namespace vel::test
