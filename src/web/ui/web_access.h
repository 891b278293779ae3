#pragma once

#include <string>
#include <string_view>

#include "core/context.h"
#include "web/ui/companion.h"
#include "web/ui/raw_log_viewer.h"

namespace vel {

/// What both browsers share of the web module: the system's own web site, as
/// the host that services.ini names or the companion service, and the one raw
/// log viewer.
class WebAccess {
 public:
  /// The program outlives this object. `companion` is velweb's path.
  explicit WebAccess(const Context& context,
                     const QString& companion = Companion::defaultExecutable())
      : context_(context), companion_(context.folders, companion), rawLogs_(context, *this) {}

  /// Scheme and host for the flight page; starts the companion service where
  /// no host is named. Empty when there is none.
  std::string homepage() {
    const std::string& named = context_.services.homepage;
    return named.empty() ? companion_.address() : named;
  }

  /// Calls `ready` with scheme and host of the KML conversion, empty when
  /// there is none; from the event loop where the companion service has to
  /// answer, and not when `context` is gone by then.
  void requestConversion(QObject* context, const Companion::Ready& ready) {
    const std::string& named = context_.services.conversion;
    if (named.empty()) {
      companion_.request(context, ready);
    } else {
      ready(named);
    }
  }

  [[nodiscard]] RawLogs& rawLogs() { return rawLogs_; }

 private:
  const Context& context_;
  Companion companion_;
  RawLogs rawLogs_;
};

}  // namespace vel
