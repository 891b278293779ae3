#pragma once

#include <string>
#include <utility>
#include <variant>

namespace vel {

/// What went wrong with a file, under the numbers that users see after "ERROR #".
enum class ErrorNumber : int {
  none = 0,
  incompleteRecord = 9,  ///< A record lacks a field that is needed.
  typeMismatch = 13,     ///< A text that must be a number is none.
  fileNotFound = 53,
  deviceIo = 57,  ///< Any input or output error without a number of its own.
  fileExists = 58,
  diskFull = 61,
  permissionDenied = 70,  ///< Any refusal but that of a rename.
  pathAccess = 75,        ///< A rename refused: the file is held, or access is denied.
  pathNotFound = 76,
};

/// A failure as a value, handed up to the window that shows it.
struct Error {
  ErrorNumber number = ErrorNumber::none;
  /// The exact message for the user; empty means "ERROR #" and the number.
  std::string message = {};

  /// What the user is shown.
  [[nodiscard]] std::string text() const {
    return message.empty() ? "ERROR #" + std::to_string(static_cast<int>(number)) : message;
  }
};

/// A value or the Error that took its place.
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : content_(std::move(value)) {}
  Result(Error error) : content_(std::move(error)) {}
  Result(ErrorNumber number) : content_(Error{number}) {}

  [[nodiscard]] bool ok() const { return content_.index() == 0; }
  explicit operator bool() const { return ok(); }

  /// The value; only valid when ok().
  [[nodiscard]] T& value() & { return std::get<0>(content_); }
  [[nodiscard]] const T& value() const& { return std::get<0>(content_); }
  [[nodiscard]] T&& value() && { return std::get<0>(std::move(content_)); }
  T& operator*() & { return value(); }
  const T& operator*() const& { return value(); }
  T&& operator*() && { return std::move(*this).value(); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }

  /// The failure; only valid when not ok().
  [[nodiscard]] const Error& error() const { return std::get<1>(content_); }

 private:
  std::variant<T, Error> content_;
};

/// Success without a value, or an Error.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Error error) : error_(std::move(error)), failed_(true) {}
  Result(ErrorNumber number) : error_{number}, failed_(true) {}

  [[nodiscard]] bool ok() const { return !failed_; }
  explicit operator bool() const { return ok(); }
  [[nodiscard]] const Error& error() const { return error_; }

 private:
  Error error_;
  bool failed_ = false;
};

using Status = Result<void>;

}  // namespace vel
