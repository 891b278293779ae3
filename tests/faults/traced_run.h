#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace vel::test {

/// What is done to one system call of a traced process.
enum class Fault {
  none,
  killBefore,  ///< the process is killed before the call is made
  killAfter,   ///< and once it has been made
  refused,     ///< the call fails with an error number
  shortCount,  ///< a read or a write is of about half as many bytes
};

struct FaultAt {
  std::size_t call = 0;  ///< which of the calls that touch a file, from 0
  Fault fault = Fault::none;
  int code = 0;  ///< for `refused`
};

/// How a traced process ran.
struct TracedRun {
  /// The names of the calls that touch a file, in their order, as far as it came.
  std::vector<std::string> fileCalls;
  /// Calls of which it is not known whether they touch a file. There have to be
  /// none: what is not known is not tried either.
  std::vector<std::string> unknownCalls;
  bool reached = false;  ///< the call that the fault is for
  bool killed = false;
  int exitStatus = -1;
};

/// True for the calls that read or write bytes, which can be cut short.
[[nodiscard]] bool transfersBytes(const std::string& fileCall);

/// Runs the work in a process of its own and does something to one of its
/// system calls. Every call is seen, whoever makes it: the kernel reports them.
/// The work gives the exit status. Throws where processes cannot be traced.
[[nodiscard]] TracedRun runTraced(const std::function<int()>& work, const FaultAt& fault = {});

}  // namespace vel::test
