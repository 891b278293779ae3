#pragma once

#include <string>
#include <vector>

#include "samples/schedule.h"

namespace vel::samples {

/// Where an aircraft is, for a report of it.
struct PositionFix {
  Place place;
  /// Hundreds of feet.
  int flightLevel = 0;
  Moment time;
  const Flight* flight = nullptr;
};

/// One of the ways in which aircraft write their position.
struct PositionForm {
  /// Label of the message, two characters.
  const char* label;
  std::string (*body)(const PositionFix& fix);
};

/// Every form that the sample logs use.
const std::vector<PositionForm>& positionForms();

/// The body of a message with label 44, which tells of an event ("OUT01",
/// "OFF01", "ON01", "IN01", "POS02") and where it was.
std::string eventReport(const std::string& event, const PositionFix& fix);

/// "hhmmss" of that moment in UTC.
std::string utcClock(Moment time);

/// A registration as messages carry it: seven characters, filled with full
/// stops from the left.
std::string addressField(const std::string& registration);

}  // namespace vel::samples
