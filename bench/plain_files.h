#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

/// What measurements are compared with: the plainest that the system can do
/// with a file. One implementation for each platform.
namespace vel::bench {

/// The number of this process.
[[nodiscard]] long processNumber();

/// Reads a file to its end, through a buffer of that size; false when it cannot.
[[nodiscard]] bool readPlainly(const std::filesystem::path& file, char* buffer, std::size_t size);

/// Copies a file as the system's own command or call does.
[[nodiscard]] bool copyPlainly(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace vel::bench
