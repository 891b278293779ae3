#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace vel::test {

/// Bytes that this process has allocated at this moment.
[[nodiscard]] std::size_t allocatedBytes();

/// Its open descriptors.
[[nodiscard]] std::size_t openDescriptors();

/// What they are of, a line each.
[[nodiscard]] std::string namesOfDescriptors();

/// Processor time that this thread has used: what a busy machine does besides
/// does not count.
[[nodiscard]] std::chrono::nanoseconds threadTime();

}  // namespace vel::test
