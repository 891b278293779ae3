#include "web/ui/flight_search.h"

#include "core/helpers.h"

namespace vel {
namespace {

constexpr const char* kNoNumber =
    "The flight number is not numeric. 便名の番号部分が数値ではありません";

}  // namespace

void openFlightSearch(const Context& context, OwnSite& site, const Tables& tables, int position,
                      const FlightValues& values, QWidget* window) {
  const auto openAt = [&context, &tables, position, values](const std::string& homepage) {
    const auto address =
        flightAddress(context.services, context.settings, homepage, tables, position, values);
    if (!address) {
      const bool noNumber = address.error().number == ErrorNumber::typeMismatch;
      context.desktop.showMessage(noNumber ? kNoNumber : address.error().text());
      return;
    }
    if (*address) ShellOpen(context.desktop, **address);
  };
  if (needsHomepage(context.settings, position)) {
    site.requestHomepage(window, openAt);
  } else {
    openAt({});
  }
}

}  // namespace vel
