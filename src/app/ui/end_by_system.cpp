#include "app/ui/end_by_system.h"

#include <QGuiApplication>

namespace vel {

void onEndBySystem(QObject& context, const std::function<void()>& end) {
  onEndSignal(context, end);
  QObject::connect(qApp, &QGuiApplication::commitDataRequest, &context,
                   [end](QSessionManager&) { end(); });
}

}  // namespace vel
