#pragma once

#include <QMargins>
#include <QRect>

#include "core/settings.h"

namespace vel {

/// Where the browsers stand on the screen: one place for all of them, kept in
/// the settings.
class CommonPlace {
 public:
  /// The settings outlive the place.
  explicit CommonPlace(Settings& settings) : settings_(settings) {}

  /// The settings are about to be read: nothing is recorded until they are.
  void settingsLoading() { startingUp_ = true; }
  /// The settings were read: takes the saved place over, where there is one. A
  /// minimised window comes back in the normal state.
  void settingsLoaded();

  [[nodiscard]] bool isRecording() const { return !startingUp_; }

  [[nodiscard]] WindowState state() const { return state_; }
  /// Outer rectangle in the normal state, in twips; null when never set.
  [[nodiscard]] const QRect& normal() const { return normal_; }
  /// Widths of the frame that the window manager puts around a browser in the
  /// normal state, in pixels; null before one was shown.
  [[nodiscard]] const QMargins& frame() const { return frame_; }

  void recordState(WindowState state);
  void recordNormal(const QRect& outer);
  void recordFrame(const QMargins& frame) { frame_ = frame; }

  /// A browser was closed in the normal state, its outer corner standing here
  /// (twips): recorded once.
  void recordUnload(QPoint corner);
  [[nodiscard]] bool awaitsFirstUnload() const { return firstUnload_; }

 private:
  Settings& settings_;
  WindowState state_ = kNormal;
  QRect normal_;
  QMargins frame_;
  bool startingUp_ = false;
  bool firstUnload_ = true;
};

}  // namespace vel
