#pragma once

namespace vel {

/// To be called before there is an application: has the windows follow the
/// system's choice of light or dark where the toolkit does not by itself. One
/// implementation for each platform.
void followSystemTheme();

}  // namespace vel
