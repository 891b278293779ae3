#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

/// What the service asks of the system as a process. endWithParent() is the same
/// everywhere; the rest has one implementation file for each platform
/// (process_posix.cpp, process_windows.cpp).
namespace vel {

/// The program's arguments in UTF-8, without its own name.
[[nodiscard]] std::vector<std::string> processArguments(int argc, const char* const* argv);

/// From now on the process ends with the program that started it. Before it ends
/// it calls `close`, once and from another thread, and waits for that a moment at
/// most.
void endWithParent(std::function<void()> close);

/// That moment.
constexpr std::chrono::seconds kLongestClose(2);

/// Calls `ended`, from another thread, at times from two at once, when the program
/// that started this process has ended: when the pipe that is the standard input
/// ends, also where that program is killed, and where a third program holds the
/// pipe's other end open.
void whenParentEnds(std::function<void()> ended);

/// Ends the process well, without a look at what other threads do.
[[noreturn]] void endAtOnce();

/// Never returns.
[[noreturn]] void waitForever();

}  // namespace vel
