#pragma once

#include <string>
#include <vector>

namespace vel::test {

/// The process numbers of the velwebs (the executable VEL_VELWEB) that serve a
/// program folder. One implementation for each platform.
[[nodiscard]] std::vector<long long> runningServices(const std::string& programFolder);

/// Ends a process as a crash would; false when that fails.
[[nodiscard]] bool killProcess(long long number);

}  // namespace vel::test
