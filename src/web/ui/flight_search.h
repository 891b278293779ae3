#pragma once

#include "core/context.h"
#include "tables/tables.h"
#include "web/address.h"
#include "web/ui/web_access.h"

namespace vel {

/// Opens the flight search of that position. Where nothing can be opened, the
/// user is told why; a position without an engine does nothing.
void openFlightSearch(const Context& context, WebAccess& web, const Tables& tables, int position,
                      const FlightValues& values);

}  // namespace vel
