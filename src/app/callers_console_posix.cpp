#include "app/callers_console.h"

namespace vel {

CallersConsole::CallersConsole() = default;

CallersConsole::~CallersConsole() = default;

}  // namespace vel
