// The start options of the standalone ERP.
#pragma once

#include "model/date.h"

#include <optional>
#include <string>

namespace qx::erp {

struct StandaloneOptions {
  std::string userName;            ///< a name without a row in the users table is accepted
  std::optional<Date> sessionDate; ///< the clock's day when empty
  std::string applicationDirectory;
  std::string version = "6.3.0"; ///< the answer of the version component
};

} // namespace qx::erp
