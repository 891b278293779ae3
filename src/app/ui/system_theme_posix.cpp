#include "app/ui/system_theme.h"

namespace vel {

// The desktop's own theme does it.
void followSystemTheme() {}

}  // namespace vel
