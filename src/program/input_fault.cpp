#include "program/input_fault.h"

#include <unordered_set>

namespace qx {

std::string sentenceOf(const InputFault& fault) {
  std::string sentence;
  if (fault.object != 0) sentence = "object " + std::to_string(fault.object) + ": ";
  if (!fault.property.empty()) sentence += "property \"" + fault.property + "\": ";
  sentence += fault.message;
  if (!fault.hint.empty()) sentence += "; " + fault.hint;
  return sentence;
}

std::int64_t faultyObjects(const std::vector<InputFault>& faults) {
  std::unordered_set<std::int64_t> objects;
  for (const InputFault& fault : faults)
    if (fault.object != 0) objects.insert(fault.object);
  return static_cast<std::int64_t>(objects.size());
}

} // namespace qx
