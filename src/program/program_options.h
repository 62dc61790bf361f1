// The options that all commands share.
#pragma once

#include "model/date.h"

#include <optional>
#include <string>

namespace qx {

struct ProgramOptions {
  std::string database; ///< empty when it was not given
  std::string user;     ///< empty for the login name
  std::optional<Date> sessionDate;
  bool json = false;
  bool verbose = false;
};

} // namespace qx
