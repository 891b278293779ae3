#pragma once

#include <string>
#include <utility>

namespace vel::samples {

/// What a step came to: nothing to say, or one line for the person at the
/// terminal that names the file and the reason.
class [[nodiscard]] Outcome {
 public:
  static Outcome success() { return Outcome({}); }
  /// `message` must not be empty.
  static Outcome failure(std::string message) { return Outcome(std::move(message)); }

  bool failed() const { return !message_.empty(); }
  const std::string& message() const { return message_; }

 private:
  explicit Outcome(std::string message) : message_(std::move(message)) {}

  std::string message_;
};

}  // namespace vel::samples
