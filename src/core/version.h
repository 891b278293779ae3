#pragma once

#define VEL_TEXT_OF(x) #x
#define VEL_JOIN_VERSION(a, b, c) VEL_TEXT_OF(a) "." VEL_TEXT_OF(b) "." VEL_TEXT_OF(c)

namespace vel {

/// Major, minor and revision number joined by full stops.
constexpr const char* kVersion =
    VEL_JOIN_VERSION(VEL_VERSION_MAJOR, VEL_VERSION_MINOR, VEL_VERSION_REVISION);

}  // namespace vel
