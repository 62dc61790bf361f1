// What the properties of staged objects mean, for people and programs that write such objects.
#pragma once

#include "model/required_properties.h"

#include <string_view>

namespace qx::cli {

struct PropertyTerm {
  std::string_view name;
  std::string_view meaning; ///< one sentence
  std::string_view unit{};  ///< of a number; empty for none
  std::string_view codes{}; ///< the table of the ERP that has the codes; empty for no code
  std::string_view example{};
};

/// The terms of a property. A kind that gives the property a meaning of its own has its own terms.
const PropertyTerm& propertyTerm(ObjectKind kind, std::string_view property);

} // namespace qx::cli
