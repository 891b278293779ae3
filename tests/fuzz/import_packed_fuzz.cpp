// Imports of packed files: the bytes as they stand, and packed whatever they are.

#include "tests/fuzz/import_trial.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::Parts parts(data, size);
  const vel::fuzz::ImportTrial trial(parts);
  vel::fuzz::importAndCheck(station, trial, parts.rest());
  vel::fuzz::importAndCheck(station, trial, vel::fuzz::packed(parts.rest()));
  return 0;
}
