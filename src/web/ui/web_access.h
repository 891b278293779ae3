#pragma once

#include "core/context.h"
#include "web/ui/own_site.h"
#include "web/ui/raw_logs.h"

namespace vel {

/// What both browsers share of the web module.
class WebAccess {
 public:
  /// The context outlives this object. `companion` is velweb's path.
  explicit WebAccess(const Context& context,
                     const QString& companion = Companion::defaultExecutable())
      : site_(context, companion), rawLogs_(context, site_) {}

  [[nodiscard]] OwnSite& site() { return site_; }
  [[nodiscard]] RawLogs& rawLogs() { return rawLogs_; }

 private:
  OwnSite site_;
  RawLogs rawLogs_;
};

}  // namespace vel
