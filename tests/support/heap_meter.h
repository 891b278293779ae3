#pragma once

#include <cstddef>

namespace vel::test {

/// Bytes that this program holds through `new` at this moment.
[[nodiscard]] std::size_t heapInUse();

/// The most that it held since resetHeapPeak().
[[nodiscard]] std::size_t heapPeak();
void resetHeapPeak();

}  // namespace vel::test
