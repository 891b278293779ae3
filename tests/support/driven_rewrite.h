#pragma once

#include <functional>

#include "tables/rewrite.h"
#include "tests/support/recording_desktop.h"

namespace vel::test {

/// What became of a rewrite that was driven as a window drives it.
enum class DrivenRewrite { done, refused, programEnds };

/// The turns of an event loop between the steps of a rewrite, and what happens
/// in each.
struct EventTurns {
  int count = 0;
  std::function<void()> each;

  void next() {
    ++count;
    if (each) each();
  }
};

/// Takes a rewrite through its steps, with a turn of the event loop before each
/// that touches files, the messages shown and the end of the program where it
/// comes to that.
inline DrivenRewrite drive(RecordingDesktop& desktop, ReferenceTableRewrite& rewrite,
                           EventTurns& turns) {
  RewriteOutcome outcome = rewrite.next();
  while (true) {
    switch (outcome) {
      case RewriteOutcome::more:
        turns.next();
        if (desktop.isEnding()) return DrivenRewrite::programEnds;
        break;
      case RewriteOutcome::done:
        return DrivenRewrite::done;
      case RewriteOutcome::refused:
        desktop.showMessage(kIllegalCharacter);
        return DrivenRewrite::refused;
      case RewriteOutcome::busy:
      case RewriteOutcome::held:
        if (desktop.askRetry(kTableHeld)) break;
        desktop.endProgram(1);
        return DrivenRewrite::programEnds;
      case RewriteOutcome::failed:
        endWithError(desktop, rewrite.error());
        return DrivenRewrite::programEnds;
    }
    outcome = rewrite.next();
  }
}

inline DrivenRewrite drive(RecordingDesktop& desktop, const Folders& folders,
                           const Encoding& encoding, const TableEdit& edit, EventTurns& turns) {
  ReferenceTableRewrite rewrite(folders, encoding, edit);
  return drive(desktop, rewrite, turns);
}

inline DrivenRewrite drive(RecordingDesktop& desktop, const Folders& folders,
                           const Encoding& encoding, const TableEdit& edit) {
  EventTurns turns;
  return drive(desktop, folders, encoding, edit, turns);
}

}  // namespace vel::test
