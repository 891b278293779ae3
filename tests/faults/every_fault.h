#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "tests/faults/traced_run.h"

namespace vel::test {

/// Work on files and what has to hold whatever becomes of its system calls.
struct Trial {
  /// Puts the files into the state before the work.
  std::function<void()> prepare;
  /// The work, in a process of its own; gives its exit status, 0 for success.
  std::function<int()> work;
  /// What has to hold after it; run in the test's process.
  std::function<void(const TracedRun& run, Fault fault)> check;
};

/// Which faults are tried.
enum class Faults {
  all,     ///< each at every call
  many,    ///< a hundred; all where the environment has VEL_EVERY_FAULT
  sample,  ///< twenty; all where the environment has that
};

struct Tally {
  std::size_t calls = 0;   ///< that touch a file, where nothing fails
  std::size_t faults = 0;  ///< that were tried
};

/// Does the work once without a fault, which has to succeed, then once for each
/// fault: killed before and after each call that touches a file, ENOSPC, EIO,
/// EACCES and EINTR at each, and short reads and writes. The test fails where a
/// call is made of which it is not known whether it touches a file. Prints the
/// tally under the name.
Tally tryEveryFault(const std::string& name, const Trial& trial, Faults faults = Faults::all);

}  // namespace vel::test
