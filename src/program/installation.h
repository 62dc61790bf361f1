// The database and the ERP that a command works on.
#pragma once

#include "platform/environment.h"

#include <cstddef>

namespace qx {

struct InstallationReport {
  bool created = false;
  bool demo = false;
  std::size_t staged = 0; ///< demo jobs
};

/// Implemented where concrete adapters are known.
class Installation {
public:
  virtual ~Installation() = default;
  /// Opens the database, which must hold our schema, and connects the ERP's session. Raises `ProgramError`
  /// that says how to make one, or what the database raises.
  virtual Environment& open() = 0;
  /// Creates the database when there is none. An existing one is left as it is.
  virtual InstallationReport create(bool demo) = 0;
};

} // namespace qx
