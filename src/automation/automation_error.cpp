#include "automation/automation_error.h"

#include "platform/failure.h"

#include <new>

namespace qx::automation {
namespace {

ErrorNumber numberOf(const std::exception& exception) {
  if (const auto* const error = dynamic_cast<const AutomationError*>(&exception)) return error->number();
  if (isOutOfMemory(exception)) return ErrorNumber::OutOfMemory;
  if (dynamic_cast<const DatabaseError*>(&exception) != nullptr) return ErrorNumber::Failed;
  if (dynamic_cast<const std::out_of_range*>(&exception) != nullptr) return ErrorNumber::NoSuchItem;
  if (dynamic_cast<const std::overflow_error*>(&exception) != nullptr) return ErrorNumber::Overflow;
  if (dynamic_cast<const std::invalid_argument*>(&exception) != nullptr) return ErrorNumber::InvalidCall;
  if (dynamic_cast<const std::logic_error*>(&exception) != nullptr) return ErrorNumber::Internal;
  return ErrorNumber::Failed;
}

/// The words of an exception are for programmers where they are not the component's own German ones.
std::string described(const std::exception& exception, ErrorNumber number) {
  if (dynamic_cast<const AutomationError*>(&exception) != nullptr) return exception.what();
  if (number == ErrorNumber::NoSuchItem)
    return std::string("Diesen Eintrag gibt es nicht (") + exception.what() + ").";
  if (number == ErrorNumber::InvalidCall)
    return std::string("Das Argument ist ungültig (") + exception.what() + ").";
  return germanCause(exception);
}

/// Without the text when there is no memory for one.
Failure described(const std::exception& exception) noexcept {
  Failure failure{numberOf(exception), {}};
  try {
    failure.description = described(exception, failure.number);
  } catch (const std::exception&) {
    failure.number = ErrorNumber::OutOfMemory;
  }
  return failure;
}

} // namespace

Failure failureOf(const std::exception_ptr& exception) noexcept {
  try {
    std::rethrow_exception(exception);
  } catch (const std::exception& known) {
    return described(known);
  } catch (...) {
    return {};
  }
}

} // namespace qx::automation
