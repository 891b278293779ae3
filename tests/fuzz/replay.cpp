// Runs a target on the files of its corpus, where there is no fuzzing engine:
// each as it stands, cut off at many places, and with single bytes changed.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_support.h"

namespace {

namespace fs = std::filesystem;

void run(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

void runVariants(const std::string& input) {
  constexpr std::size_t kVariants = 60;
  constexpr std::string_view kBytes("\0\r\n,\"-09AZaz<>&% \x81\x9F\xE0\xFC\xFF", 22);
  const std::size_t stride = std::max<std::size_t>(1, input.size() / kVariants);
  for (std::size_t at = 0; at < input.size(); at += stride) {
    run(input.substr(0, at));
    std::string changed = input;
    changed[at] = kBytes[at % kBytes.size()];
    run(changed);
    run(input.substr(0, at) + input.substr(at + 1));
  }
}

}  // namespace

int main(int count, char** arguments) {
  std::size_t files = 0;
  for (int i = 1; i < count; ++i) {
    std::vector<fs::path> inputs;
    for (const fs::directory_entry& entry : fs::directory_iterator(arguments[i])) {
      if (entry.is_regular_file()) inputs.push_back(entry.path());
    }
    std::sort(inputs.begin(), inputs.end());
    for (const fs::path& input : inputs) {
      const std::string bytes = vel::fuzz::get(input);
      run(bytes);
      runVariants(bytes);
      ++files;
    }
  }
  std::printf("%zu inputs\n", files);
  return files > 0 ? 0 : 1;
}
