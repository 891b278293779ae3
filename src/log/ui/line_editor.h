#pragma once

namespace vel {

/// The editor below the list that is made ready when a line is selected for the
/// sake of a record that is missing.
enum class LineEditor { none, aircraft, flight, airline, airport, photo };

}  // namespace vel
