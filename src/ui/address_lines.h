// An address as a single line.
#pragma once

#include "rules/address_fields.h"

#include <string>

namespace qx {

/// The lines that are not empty, joined with commas, in the order in which the windows show them.
inline std::string oneLine(const Adresse& address) {
  std::string text;
  for (const AddressLine& line : deliveryAddress.lines) {
    const std::string& part = address.*line.part;
    if (!part.empty()) text += (text.empty() ? "" : ", ") + part;
  }
  return text;
}

} // namespace qx
