// The content of the about box, without a toolkit.
#pragma once

#include "platform/environment.h"

#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// One line of the system information.
struct InformationLine {
  std::string name;
  std::string value;
};

/// The version of the ERP; "6.3.0" when the ERP does not give it.
std::string erpVersion(Environment& environment);

/// Database with its size, user and session date. Unavailable values are "nicht bekannt" and reported to the
/// diagnostics.
std::vector<InformationLine> workInformation(Environment& environment);

/// "name: value", one per line.
std::string informationText(const std::vector<InformationLine>& lines);

} // namespace qx
