#pragma once

#include <QDialog>
#include <functional>

namespace vel {

/// Says that something is being waited for, and offers to give it up. It holds
/// nobody up: the window behind it stays in use. A wait that is soon over
/// is never seen.
class ServiceWait : public QDialog {
  Q_OBJECT

 public:
  /// `text` says what is waited for. Cancel, Esc and the close button call
  /// `givenUp`, once.
  ServiceWait(const QString& text, QWidget* parent, std::function<void()> givenUp);

  void reject() override;

 private:
  std::function<void()> givenUp_;
};

}  // namespace vel
