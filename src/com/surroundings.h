// What the component stands on inside a host.
#pragma once

#include "com/apartment.h"

#include <memory>

namespace qx::com {

/// The ERP whose session is registered on this machine. Without one the standalone ERP on the database that
/// `QXIMPORTJOB_DB` names, else on that of the user; raises `AutomationError` when it cannot be opened.
std::unique_ptr<Surroundings> makeSurroundings(Apartment& apartment);

} // namespace qx::com
