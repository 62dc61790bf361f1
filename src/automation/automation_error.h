// The errors that a caller of an automation object meets, by the numbers that automation languages know.
#pragma once

#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qx::automation {

/// The numbers of `Err.Number`.
enum class ErrorNumber : std::int32_t {
  InvalidCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  NoSuchItem = 9,
  TypeMismatch = 13,
  Internal = 51,
  ObjectNotSet = 91,
  InvalidNull = 94,
  ReadOnly = 383,
  WriteOnly = 394,
  CannotCreate = 429,
  NoSuchMember = 438,
  Failed = 440, ///< the member itself failed; the description says why
  NoSuchArgument = 448,
  ArgumentNotOptional = 449,
  ArgumentCount = 450,
};

/// An error of a call. `what()` is German: hosts show it to their clerks.
class AutomationError : public std::runtime_error {
public:
  AutomationError(ErrorNumber number, const std::string& description, std::int32_t code = 0)
      : std::runtime_error(description), number_(number), code_(code) {}
  ErrorNumber number() const { return number_; }
  /// The result code of the object that has reported the error; 0 for none.
  std::int32_t code() const { return code_; }

private:
  ErrorNumber number_;
  std::int32_t code_;
};

/// An error as it reaches the caller.
struct Failure {
  ErrorNumber number = ErrorNumber::Internal;
  std::string description;
};

/// The one conversion of exceptions, of any type; never raises.
Failure failureOf(const std::exception_ptr& exception) noexcept;

} // namespace qx::automation
