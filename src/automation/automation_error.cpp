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

/// Without the text when there is no memory for one.
Failure described(const std::exception& exception) noexcept {
  Failure failure{numberOf(exception), {}};
  try {
    failure.description = dynamic_cast<const AutomationError*>(&exception) != nullptr
                              ? exception.what()
                              : germanCause(exception);
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
