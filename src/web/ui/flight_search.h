#pragma once

#include "core/context.h"
#include "tables/tables.h"
#include "web/address.h"
#include "web/ui/own_site.h"

namespace vel {

/// Opens a flight search for a window, once the own web site's address is
/// known where the search leads there. Where nothing can be opened, the user is
/// told why. The tables outlive the window.
void openFlightSearch(const Context& context, OwnSite& site, const Tables& tables,
                      FlightEngine engine, const FlightValues& values, QWidget* window);

}  // namespace vel
