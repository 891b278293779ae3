#pragma once

#include <chrono>
#include <cstddef>

namespace vel::test {

/// Bytes that this process has allocated at this moment.
[[nodiscard]] std::size_t allocatedBytes();

/// Its open descriptors.
[[nodiscard]] std::size_t openDescriptors();

/// Processor time that this thread has used: what a busy machine does besides
/// does not count.
[[nodiscard]] std::chrono::nanoseconds threadTime();

}  // namespace vel::test
