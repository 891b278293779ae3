// services.ini against a second, plain reader, and encodings by any name.

#include <map>

#include "core/services.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

std::map<std::string, std::string> valuesOf(const Services& services) {
  return {{"airliner", services.airliner},
          {"jetphotos", services.jetphotos},
          {"planepictures", services.planepictures},
          {"feeyo", services.feeyo},
          {"flightstats", services.flightstats},
          {"homepage", services.homepage},
          {"flightaware", services.flightaware},
          {"flytecomm", services.flytecomm},
          {"airframes", services.airframes},
          {"libhomeradar", services.libhomeradar},
          {"kloth", services.kloth},
          {"airportsearch", services.airportsearch},
          {"conversion", services.conversion},
          {"encoding", services.encoding}};
}

std::map<std::string, std::string> plainly(std::string_view bytes) {
  std::map<std::string, std::string> values = valuesOf(Services());
  for (const std::string_view each : plainLines(withoutMark(bytes), false)) {
    const std::string_view line = Trim(each);
    if (line.starts_with(';') || line.starts_with('#')) continue;
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const auto known = values.find(std::string(Trim(line.substr(0, equals))));
    std::string value(Trim(line.substr(equals + 1)));
    while (value.ends_with('/')) value.pop_back();
    if (known != values.end() && !value.empty()) known->second = value;
  }
  return values;
}

void run(const Station& station, const Parts& parts) {
  const std::string_view bytes = parts.rest();
  const auto file = station.folders().program / "services.ini";
  put(file, bytes);
  const Services services = Services::load(file);
  check(valuesOf(services) == plainly(bytes), "other services");
  check(services.defaultSearches().fltDefUrl0 == services.homepage + "/?F=", "another search");
  const Result<Encoding> encoding = services.textEncoding();
  check(encoding.ok(), "no encoding");
  check(encoding->encode("A,\"1\r\n") == "A,\"1\r\n", "an encoding without ASCII");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
