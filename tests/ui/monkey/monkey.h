#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/ui/monkey/errands.h"

namespace vel::test {

/// Presses keys, clicks, wheels, drags, resizes and closes whatever windows the
/// program shows, modal ones too: each event comes from the event loop that
/// runs at the time. The same seed makes the same choices. What chance alone
/// would hardly bring to its end it has errands for, in turn, at fixed distances
/// of events.
class Monkey : public QObject {
  Q_OBJECT

 public:
  explicit Monkey(std::uint64_t seed);

  /// Makes so many events, as far as `goesOn` allows; returns how many.
  std::size_t play(std::size_t events, const std::function<bool()>& goesOn);

  /// Files that are dropped on the browsers; none at first.
  void setFilesToDrop(const QStringList& files) { filesToDrop_ = files; }

  void setErrands(std::vector<std::unique_ptr<Errand>> errands) { errands_ = std::move(errands); }
  [[nodiscard]] const std::vector<std::unique_ptr<Errand>>& errands() const { return errands_; }

  /// How often it did what.
  [[nodiscard]] const std::map<std::string, std::size_t>& deeds() const { return deeds_; }

  /// The longest that this thread worked between two events, in its own
  /// processor time, and after which event that was.
  [[nodiscard]] std::chrono::milliseconds longestGap() const { return longestGap_; }
  [[nodiscard]] const std::string& longestWork() const { return longestWork_; }

 private:
  void scheduleNext();
  void next();
  void act();
  void actByChance();
  void doErrand();
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
  std::size_t game_ = 0;
  std::size_t left_ = 0;
  std::size_t done_ = 0;
  std::function<bool()> goesOn_;
  QStringList filesToDrop_;
  std::vector<std::unique_ptr<Errand>> errands_;
  Errand* errand_ = nullptr;  // the one it is about
  std::size_t errandsBegun_ = 0;
  std::size_t eventsUntilErrand_;
  int errandSteps_ = 0;
  std::map<std::string, std::size_t> deeds_;
  QPointer<QWidget> modal_;
  int eventsInModal_ = 0;
  std::chrono::nanoseconds lastTime_{};
  std::chrono::milliseconds longestGap_{};
  std::string work_;
  std::string longestWork_;
};

}  // namespace vel::test
