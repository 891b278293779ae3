#include "tests/ui/monkey/monkey.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QInputMethodEvent>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <array>

#include "tests/ui/monkey/process_meter.h"

namespace vel::test {
namespace {

struct Stroke {
  Qt::Key key;
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

constexpr std::array kStrokes = {
    Stroke{Qt::Key_Return},
    Stroke{Qt::Key_Escape},
    Stroke{Qt::Key_Tab},
    Stroke{Qt::Key_Backtab, Qt::ShiftModifier},
    Stroke{Qt::Key_Down},
    Stroke{Qt::Key_Up},
    Stroke{Qt::Key_Left},
    Stroke{Qt::Key_Right},
    Stroke{Qt::Key_PageDown},
    Stroke{Qt::Key_PageUp},
    Stroke{Qt::Key_Home, Qt::ControlModifier},
    Stroke{Qt::Key_End, Qt::ControlModifier},
    Stroke{Qt::Key_Space},
    Stroke{Qt::Key_Delete},
    Stroke{Qt::Key_Backspace},
    Stroke{Qt::Key_F5},
    Stroke{Qt::Key_S, Qt::ControlModifier},
    Stroke{Qt::Key_F, Qt::ControlModifier},
    Stroke{Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier},
    Stroke{Qt::Key_L, Qt::ControlModifier},
    Stroke{Qt::Key_Tab, Qt::ControlModifier},
    Stroke{Qt::Key_A, Qt::ControlModifier},
    Stroke{Qt::Key_C, Qt::ControlModifier},
    Stroke{Qt::Key_V, Qt::ControlModifier},
    Stroke{Qt::Key_Z, Qt::ControlModifier},
    Stroke{Qt::Key_Menu},
    Stroke{Qt::Key_F4},
};

constexpr std::array kTexts = {
    "JL10", "JA1001A", "RJTT", "B77W", "From (Tokyo (HND)) to (LA (LAX))", "1", ",", "\"", "&<b>",
    "%s%n", "86D108",  "..",   "a b"};
/// Events from one errand's end to the next one's begin.
constexpr std::size_t kErrandDistance = 200;
/// Steps, most of which only wait for the program, before an errand is given up.
constexpr int kPatience = 20'000;
constexpr std::array kCommitted = {"東京", "😀", "ＡＢＣ", "é\n二行", "\u202E逆"};

}  // namespace

Monkey::Monkey(std::uint64_t seed) : random_(seed), eventsUntilErrand_(kErrandDistance) {}

std::size_t Monkey::play(std::size_t events, const std::function<bool()>& goesOn) {
  ++game_;
  left_ = events;
  done_ = 0;
  goesOn_ = goesOn;
  lastTime_ = threadTime();
  work_ = "start";
  scheduleNext();
  // As main() does it. The end of a program ends all loops of Qt, and only this
  // lets dialogs wait for their user again.
  QApplication::exec();
  measure();
  left_ = 0;
  return done_;
}

// A timer of its own for each event: it also comes while the one before is
// still within a dialog that it opened. What is left of an earlier game is over.
void Monkey::scheduleNext() {
  QTimer::singleShot(0, this, [this, game = game_] {
    if (game == game_) next();
  });
}

void Monkey::measure() {
  const auto now = threadTime();
  const auto gap = std::chrono::duration_cast<std::chrono::milliseconds>(now - lastTime_);
  lastTime_ = now;
  if (gap <= longestGap_) return;
  longestGap_ = gap;
  longestWork_ = work_;
}

void Monkey::next() {
  measure();
  if (left_ == 0 || !goesOn_()) {
    QCoreApplication::exit();
    return;
  }
  --left_;
  ++done_;
  scheduleNext();
  act();
}

void Monkey::act() {
  if (errand_ == nullptr && !errands_.empty() && eventsUntilErrand_-- == 0) {
    errand_ = errands_[errandsBegun_++ % errands_.size()].get();
    errand_->begin();
    errandSteps_ = 0;
  }
  if (errand_ == nullptr) {
    actByChance();
  } else {
    doErrand();
  }
}

void Monkey::doErrand() {
  Errand* const errand = errand_;
  QWidget* const popup = QApplication::activePopupWidget();
  QWidget* const modal = popup != nullptr ? popup : QApplication::activeModalWidget();
  work_ = std::string("errand: ") + errand->name();
  ++errandSteps_;
  // A dialog may open in it, and the next events come within that.
  const Errand::Step step = errand->step(modal);
  if (step == Errand::Step::hindered) leave(modal);
  if (step == Errand::Step::waits) {
    // Only waiting is no event.
    ++left_;
    --done_;
  }
  if (errand_ == errand && (step == Errand::Step::over || errandSteps_ > kPatience)) {
    errand_ = nullptr;
    eventsUntilErrand_ = kErrandDistance;
  }
}

QWidget* Monkey::chooseWindow() {
  if (QWidget* popup = QApplication::activePopupWidget()) return popup;
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  QWidgetList windows;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->isWindow()) windows.push_back(window);
  }
  return windows.isEmpty() ? nullptr : windows[static_cast<int>(below(windows.size()))];
}

QWidget* Monkey::chooseTarget(QWidget* window) {
  // Chance alone would leave nearly every import before it is made.
  auto* const import = window->findChild<QPushButton*>(QStringLiteral("ImportButton"));
  if (import != nullptr && import->isEnabled() && below(2) == 0) return import;
  QWidgetList targets;
  for (QWidget* child : window->findChildren<QWidget*>()) {
    if (child->isVisibleTo(window) && child->isEnabled() && child->window() == window) {
      targets.push_back(child);
    }
  }
  return targets.isEmpty() ? window : targets[static_cast<int>(below(targets.size()))];
}

void Monkey::actByChance() {
  QWidget* window = chooseWindow();
  if (window == nullptr) {
    work_ = "waiting";
    return;
  }
  const bool isModal = window->isModal() || QApplication::activePopupWidget() == window;
  if (isModal && modal_ == window) {
    ++eventsInModal_;
  } else {
    eventsInModal_ = 0;
  }
  modal_ = isModal ? window : nullptr;
  // An import has to be read before it can be made.
  const int enough = window->objectName() == QLatin1String("ImportDialog") ? 250 : 25;
  // A dialog for files could write to any place: the monkey leaves it.
  const bool isForFiles = qobject_cast<QFileDialog*>(window) != nullptr;
  if (isForFiles || eventsInModal_ > enough) {
    leave(window);
    return;
  }
  QWidget* target = chooseTarget(window);
  const std::size_t kind = below(100);
  const char* const name = kind < 45   ? "click"
                           : kind < 50 ? "drag"
                           : kind < 60 ? "wheel"
                           : kind < 80 ? "key"
                           : kind < 93 ? "type"
                           : kind < 96 ? "resize"
                           : kind < 98 ? "drop"
                                       : "leave";
  ++deeds_[name];
  work_ = std::string(name) + " " + window->metaObject()->className() + " " +
          target->objectName().toStdString() + " (" + target->metaObject()->className() + ")";
  if (kind < 45) {
    click(target);
  } else if (kind < 50) {
    drag(target);
  } else if (kind < 60) {
    wheel(target);
  } else if (kind < 80) {
    pressKey(target);
  } else if (kind < 93) {
    type(target);
  } else if (kind < 96) {
    resizeWindow(window);
  } else if (kind < 98) {
    drop(window);
  } else {
    leave(window);
  }
}

void Monkey::click(QWidget* target) {
  const QPoint place(static_cast<int>(below(static_cast<std::size_t>(target->width()) + 1)),
                     static_cast<int>(below(static_cast<std::size_t>(target->height()) + 1)));
  const QPointer<QWidget> kept = target;
  const auto button = below(6) == 0 ? Qt::RightButton : Qt::LeftButton;
  const auto modifiers = below(8) == 0 ? Qt::ShiftModifier : Qt::NoModifier;
  const bool twice = below(10) == 0;
  QTest::mousePress(kept, button, modifiers, place);
  if (button == Qt::RightButton && kept) {
    QContextMenuEvent menu(QContextMenuEvent::Mouse, place, kept->mapToGlobal(place));
    QApplication::sendEvent(kept, &menu);
  }
  if (kept) QTest::mouseRelease(kept, button, modifiers, place);
  if (twice && kept) QTest::mouseDClick(kept, button, modifiers, place);
}

void Monkey::drag(QWidget* target) {
  const QPointer<QWidget> kept = target;
  const auto place = [&] {
    return QPoint(static_cast<int>(below(static_cast<std::size_t>(kept->width()) + 1)),
                  static_cast<int>(below(static_cast<std::size_t>(kept->height()) + 1)));
  };
  QTest::mousePress(kept, Qt::LeftButton, {}, place());
  if (kept) QTest::mouseMove(kept, place());
  if (kept) QTest::mouseRelease(kept, Qt::LeftButton, {}, place());
}

void Monkey::wheel(QWidget* target) {
  const QPoint place = target->rect().center();
  const int turn = below(2) == 0 ? 120 : -120;
  QWheelEvent event(place, target->mapToGlobal(place), {}, {0, turn * 3}, Qt::NoButton,
                    below(6) == 0 ? Qt::ControlModifier : Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(target, &event);
}

void Monkey::pressKey(QWidget* target) {
  const Stroke& stroke = kStrokes[below(kStrokes.size())];
  const QPointer<QWidget> kept = target;
  if (below(2) == 0) kept->setFocus();
  QTest::keyPress(kept, stroke.key, stroke.modifiers);
  if (kept) QTest::keyRelease(kept, stroke.key, stroke.modifiers);
}

void Monkey::type(QWidget* target) {
  const QPointer<QWidget> kept = target;
  kept->setFocus();
  if (below(6) == 0) {
    QInputMethodEvent commit;
    commit.setCommitString(QString::fromUtf8(kCommitted[below(kCommitted.size())]));
    QApplication::sendEvent(kept, &commit);
    return;
  }
  const std::string text = below(60) == 0 ? std::string(2000, 'W') : kTexts[below(kTexts.size())];
  for (const char c : text) {
    if (!kept) return;
    QTest::keyClick(kept, c);
    // Each key is an event of its own.
    measure();
  }
}

void Monkey::resizeWindow(QWidget* window) {
  if (window->windowType() == Qt::Popup) return;
  const auto side = [this] { return static_cast<int>(100 + below(1500)); };
  switch (below(5)) {
    case 0:
      window->setWindowState(window->windowState() ^ Qt::WindowMaximized);
      break;
    case 1:
      window->move(static_cast<int>(below(400)), static_cast<int>(below(300)));
      break;
    default:
      window->resize(side(), side());
  }
}

void Monkey::drop(QWidget* window) {
  if (filesToDrop_.isEmpty() || !window->acceptDrops()) return;
  dropFile(
      *window,
      filesToDrop_[static_cast<qsizetype>(below(static_cast<std::size_t>(filesToDrop_.size())))]);
}

// Enter takes what a dialog proposes, Escape refuses it, and closing is left to
// the window.
void Monkey::leave(QWidget* window) {
  work_ = std::string("leave ") + window->metaObject()->className();
  const QPointer<QWidget> kept = window;
  const bool isForFiles = qobject_cast<QFileDialog*>(window) != nullptr;
  if (!isForFiles && eventsInModal_ > 0 && below(2) == 0) {
    QTest::keyClick(kept, Qt::Key_Return);
    return;
  }
  QTest::keyClick(kept, Qt::Key_Escape);
  if (kept && kept->isVisible()) kept->close();
}

}  // namespace vel::test
