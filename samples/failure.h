#pragma once

#include <string>
#include <utility>

#include "core/result.h"

namespace vel::samples {

/// A failure with one line for the person at the terminal, which names the file
/// and the reason.
inline Error failure(std::string message) {
  return Error{ErrorNumber::deviceIo, std::move(message)};
}

}  // namespace vel::samples
