// What the component stands on inside a host.
#pragma once

#include "com/apartment.h"

#include <memory>

namespace qx::com {

/// The standalone ERP on the database that `QXIMPORTJOB_DB` names, else on that of the user. Raises
/// `AutomationError` when it cannot be opened.
std::unique_ptr<Surroundings> makeSurroundings(Apartment& apartment);

} // namespace qx::com
