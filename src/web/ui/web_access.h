#pragma once

#include <string>
#include <string_view>

#include "core/ui/program.h"
#include "web/ui/companion.h"

namespace vel {

/// The system's own web site as the windows reach it: the host that
/// services.ini names, or the companion service.
class WebAccess {
 public:
  explicit WebAccess(Program& program) : program_(program), companion_(program.folders()) {}

  /// Scheme and host for the flight page; starts the companion service where
  /// no host is named. Empty when there is none.
  std::string homepage() { return hostOr(program_.services().homepage); }

  /// Scheme and host of the KML conversion, likewise.
  std::string conversion() { return hostOr(program_.services().conversion); }

 private:
  std::string hostOr(const std::string& named) {
    return named.empty() ? companion_.address() : named;
  }

  Program& program_;
  Companion companion_;
};

}  // namespace vel
