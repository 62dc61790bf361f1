// What is wrong in a file of jobs, for people and for programs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// One fault of a file. Unknown parts are empty or 0.
struct InputFault {
  std::int64_t line = 0;
  std::int64_t object = 0; ///< the number of the object in the file
  std::string property;    ///< as "Kundennummer" or "Positionen[2].Menge"
  std::string_view code;   ///< for programs; never changes
  std::string message;     ///< what is wrong
  std::string hint;        ///< what to write instead, if that is known
};

/// The fault in one line, without the number of its own line.
std::string sentenceOf(const InputFault& fault);

/// How many objects the faults belong to.
std::int64_t faultyObjects(const std::vector<InputFault>& faults);

} // namespace qx
