// What the program tells the standalone ERP at its start.
#pragma once

#include "model/date.h"

#include <optional>
#include <string>

namespace qx::erp {

struct StandaloneOptions {
  std::string userName;            ///< a name without a row in the users table is accepted
  std::optional<Date> sessionDate; ///< the clock's day when empty
  std::string applicationDirectory;
  std::string version = "6.3.0"; ///< what the version component answers
};

} // namespace qx::erp
