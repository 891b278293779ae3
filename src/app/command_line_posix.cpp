#include "app/options.h"

namespace vel {

std::vector<std::string> commandLine(int argc, const char* const* argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

}  // namespace vel
