// The lines of an address in the order in which the windows show them.
#pragma once

#include "rules/customer_addresses.h"

#include <array>
#include <string>

namespace qx {

using AddressLine = std::string Adresse::*;
inline constexpr std::array<AddressLine, 7> addressLines{&Adresse::Bez1,    &Adresse::Bez2, &Adresse::Bez3,
                                                         &Adresse::Strasse, &Adresse::PLZ,  &Adresse::Ort,
                                                         &Adresse::Land};

/// The lines that are not empty, joined with commas.
inline std::string oneLine(const Adresse& address) {
  std::string text;
  for (const AddressLine line : addressLines) {
    const std::string& part = address.*line;
    if (!part.empty()) text += (text.empty() ? "" : ", ") + part;
  }
  return text;
}

} // namespace qx
