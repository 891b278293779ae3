#pragma once

#include <QObject>
#include <functional>

namespace vel {

/// Calls `end` between window events when the system asks the program to end:
/// a signal, logging out, shutting down. One at a time; kept as long as the
/// context object lives. What runs by then is finished first.
void onEndBySystem(QObject& context, const std::function<void()>& end);

/// The platform's own ways to ask. One implementation for each platform.
void onEndSignal(QObject& context, const std::function<void()>& end);

}  // namespace vel
