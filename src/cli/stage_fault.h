// What can be wrong with the objects of a file of jobs.
#pragma once

#include "program/input_fault.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::cli {

enum class FaultKind : std::uint8_t {
  NotJson,
  NotAnObject,
  TypeMissing,
  TypeUnknown,
  PropertyUnknown,
  PropertyRepeated,
  PropertyMissing,
  WrongKind,
  OutOfRange,
  NotADate,
  ForbiddenCharacter,
  TooLong,
  WrongCode,
  KeyTooLong,
  KeyRepeated,
  KeyTaken,
  OtherJob,
  Unnumbered,
  ContentRepeated,
};

/// The kind as programs read it.
std::string_view codeOf(FaultKind kind);

struct FaultTerm {
  std::string_view code;
  std::string_view meaning;
  std::string_view remedy; ///< for whoever has written the file
};

/// Every kind, in their order.
std::span<const FaultTerm> faultTerms();

/// Why a value cannot be taken.
struct ValueFault {
  FaultKind kind = FaultKind::WrongKind;
  std::string message;
  std::string hint; ///< empty when there is nothing to say
};

/// Collects the faults of a file.
class StageFaults {
public:
  /// Collects the first `most` faults.
  explicit StageFaults(std::size_t most) : most_(most) {}

  void add(InputFault fault) {
    if (!full()) faults_.push_back(std::move(fault));
  }
  bool full() const { return faults_.size() >= most_; }
  bool empty() const { return faults_.empty(); }
  const std::vector<InputFault>& all() const { return faults_; }

private:
  std::size_t most_;
  std::vector<InputFault> faults_;
};

} // namespace qx::cli
