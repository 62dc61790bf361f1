// The port to the database and the ERP that a command works on.
#pragma once

#include "platform/environment.h"

#include <cstddef>

namespace qx {

struct InstallationReport {
  bool created = false;
  bool demo = false;
  std::size_t staged = 0; ///< demo jobs
};

/// Implemented in the composition.
class Installation {
public:
  virtual ~Installation() = default;
  /// Opens the database, which must hold our schema, and connects the ERP's session. Raises `ProgramError`,
  /// which says how to create one, or a database error.
  virtual Environment& open() = 0;
  /// Creates the database unless it exists.
  virtual InstallationReport create(bool demo) = 0;
};

} // namespace qx
