#pragma once

#include <string>
#include <string_view>

#include "tables/tables.h"

namespace vel {

/// The system's own flight page as an HTML document: route with airport names,
/// airline, and the latest sightings, in English and Japanese. Valid UTF-8;
/// every text from outside is escaped. A table or log that cannot be read
/// leaves its part of the page empty. An empty flight gives the search box.
[[nodiscard]] std::string flightPage(const Tables& tables, std::string_view flight);

/// Longer texts are cut before anything is looked up, in characters.
constexpr std::size_t kLongestFlight = 32;

}  // namespace vel
