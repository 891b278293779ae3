#include "web/ui/flight_search.h"

#include "core/helpers.h"

namespace vel {

void openFlightSearch(const Context& context, OwnSite& site, const Tables& tables,
                      FlightEngine engine, const FlightValues& values, QWidget* window) {
  const auto openAt = [&context, &tables, engine, values](const std::string& homepage) {
    const Result<std::string> address =
        flightAddress(context.services, context.settings, homepage, tables, engine, values);
    if (address) {
      ShellOpen(context.desktop, *address);
    } else {
      context.desktop.showMessage(address.error().text());
    }
  };
  if (needsHomepage(context.settings, engine)) {
    site.requestHomepage(window, openAt);
  } else {
    openAt({});
  }
}

}  // namespace vel
