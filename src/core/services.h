#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "core/settings.h"
#include "core/text.h"

namespace vel {

/// What follows the hosts of the Airliner photo search and of the system's own
/// flight page, before what is searched.
constexpr std::string_view kAirlinerPath = "/search/photo.search?regsearch=";
constexpr std::string_view kHomepagePath = "/?F=";

/// What services.ini holds: one host (scheme and host name, no path) for each
/// service, and the text encoding. Keys are the member names. A missing file,
/// key or value leaves the default.
struct Services {
  std::string airliner = "https://www.airliners.net";
  std::string jetphotos = "https://www.jetphotos.com";
  std::string planepictures = "https://www.planepictures.net";
  std::string feeyo = "https://www.feeyo.com";
  std::string flightstats = "https://www.flightstats.com";
  /// The system's own web site; empty means the companion service velweb,
  /// which the program starts by itself when it is first needed.
  std::string homepage;
  std::string flightaware = "https://www.flightaware.com";
  std::string flytecomm = "https://www.flytecomm.com";
  std::string airframes = "https://www.airframes.org";
  std::string libhomeradar = "https://www.libhomeradar.org";
  std::string kloth = "https://www.kloth.net";
  std::string airportsearch = "https://www.google.com";
  /// The KML conversion; empty means the companion service, as above.
  std::string conversion;
  /// Name of the encoding of tables, settings and logs.
  std::string encoding = "CP932";

  /// Reads `key=value` lines; blank lines and lines that begin with ';' or '#'
  /// are comments, unknown keys are skipped, and a slash at the end of a host
  /// is dropped. The file itself is UTF-8.
  static Services load(const std::filesystem::path& file);

  /// What the user's own two searches start from: the Airliner photo search
  /// and the flight page. Without a host for the web site the latter begins
  /// with "/": the companion service's address is put before it when it opens.
  [[nodiscard]] DefaultSearches defaultSearches() const;

  /// The encoding by its name, or code page 932 where the name is not usable; an
  /// Error with its message where the platform has neither.
  [[nodiscard]] Result<Encoding> textEncoding() const;
};

}  // namespace vel
