#pragma once

namespace vel {

/// The two airports of a flight, in the order of their boxes.
enum class RouteEnd { departure, destination };

}  // namespace vel
