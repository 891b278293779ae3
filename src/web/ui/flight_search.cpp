#include "web/ui/flight_search.h"

#include "core/helpers.h"

namespace vel {
namespace {

constexpr const char* kNoNumber =
    "The flight number is not numeric. 便名の番号部分が数値ではありません";

constexpr const char* kNoService = "The service velweb can't be started. velwebを起動できません";

}  // namespace

void openFlightSearch(const Context& context, WebAccess& web, const Tables& tables, int position,
                      const FlightValues& values) {
  const Settings& env = context.settings;
  const bool ownSite = needsHomepage(env, position);
  const std::string homepage = ownSite ? web.homepage() : std::string();
  if (ownSite && homepage.empty()) {
    context.desktop.showMessage(kNoService);
    return;
  }
  const auto address = flightAddress(context.services, env, homepage, tables, position, values);
  if (!address) {
    const bool noNumber = address.error().number == ErrorNumber::typeMismatch;
    context.desktop.showMessage(noNumber ? kNoNumber : address.error().text());
    return;
  }
  if (*address) ShellOpen(context.desktop, **address);
}

}  // namespace vel
