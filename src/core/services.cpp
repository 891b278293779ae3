#include "core/services.h"

#include <map>

#include "core/line_reader.h"

namespace vel {

Services Services::load(const std::filesystem::path& file) {
  Services services;
  Result<InputFile> opened = InputFile::open(file);
  if (!opened) return services;
  const std::map<std::string_view, std::string*> members = {
      {"airliner", &services.airliner},
      {"jetphotos", &services.jetphotos},
      {"planepictures", &services.planepictures},
      {"feeyo", &services.feeyo},
      {"flightstats", &services.flightstats},
      {"homepage", &services.homepage},
      {"flightaware", &services.flightaware},
      {"flytecomm", &services.flytecomm},
      {"airframes", &services.airframes},
      {"libhomeradar", &services.libhomeradar},
      {"kloth", &services.kloth},
      {"airportsearch", &services.airportsearch},
      {"conversion", &services.conversion},
      {"encoding", &services.encoding},
  };
  LineReader lines(std::move(*opened));
  while (true) {
    const auto line = lines.next();
    if (!line || !*line) return services;
    const std::string_view text = Trim(**line);
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos || text.front() == ';' || text.front() == '#') continue;
    const auto member = members.find(Trim(text.substr(0, equals)));
    std::string_view value = Trim(text.substr(equals + 1));
    while (value.ends_with('/')) value.remove_suffix(1);
    if (member != members.end() && !value.empty()) *member->second = value;
  }
}

DefaultSearches Services::defaultSearches() const {
  return {airliner + std::string(kAirlinerPath), homepage + std::string(kHomepagePath)};
}

Result<Encoding> Services::textEncoding() const { return vel::textEncoding(encoding); }

}  // namespace vel
