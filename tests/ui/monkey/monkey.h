#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <chrono>
#include <cstdint>
#include <functional>
#include <random>
#include <string>

namespace vel::test {

/// Presses keys, clicks, wheels, drags, resizes and closes whatever windows the
/// program shows, modal ones too: each event comes from the event loop that
/// runs at the time. The same seed makes the same choices.
class Monkey : public QObject {
  Q_OBJECT

 public:
  explicit Monkey(std::uint64_t seed);

  /// Makes so many events, as far as `goesOn` allows; returns how many.
  std::size_t play(std::size_t events, const std::function<bool()>& goesOn);

  /// Files that are dropped on the browsers; none at first.
  void setFilesToDrop(const QStringList& files) { filesToDrop_ = files; }

  /// The longest that this thread worked between two events, in its own
  /// processor time, and after which event that was.
  [[nodiscard]] std::chrono::milliseconds longestGap() const { return longestGap_; }
  [[nodiscard]] const std::string& longestWork() const { return longestWork_; }

 private:
  void scheduleNext();
  void next();
  void act();
  void measure();
  [[nodiscard]] QWidget* chooseWindow();
  [[nodiscard]] QWidget* chooseTarget(QWidget* window);
  [[nodiscard]] std::size_t below(std::size_t limit) { return random_() % limit; }

  void click(QWidget* target);
  void drag(QWidget* target);
  void wheel(QWidget* target);
  void pressKey(QWidget* target);
  void type(QWidget* target);
  void resizeWindow(QWidget* window);
  void leave(QWidget* window);
  void drop(QWidget* window);

  std::mt19937_64 random_;
  std::size_t left_ = 0;
  std::size_t done_ = 0;
  std::function<bool()> goesOn_;
  QStringList filesToDrop_;
  QPointer<QWidget> modal_;
  int eventsInModal_ = 0;
  std::chrono::nanoseconds lastTime_{};
  std::chrono::milliseconds longestGap_{};
  std::string work_;
  std::string longestWork_;
};

}  // namespace vel::test
