// Imports of text: each of the formats that are known by a header or a shape,
// and tables of other stations.

#include "tests/fuzz/import_trial.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::Parts parts(data, size);
  const vel::fuzz::ImportTrial trial(parts);
  vel::fuzz::importAndCheck(station, trial, parts.rest());
  return 0;
}
