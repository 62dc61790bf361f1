// An invented company for trying out the program.
#pragma once

#include "platform/database.h"

#include <string_view>

namespace qx::erp {

/// Fills a schema that holds the base rows with the master data and options of an invented company. Call it
/// inside a unit of work.
void fillDemoData(Connection& connection);

/// The content of the company's file of accessory fees, "Zubehoer.ini" in the application directory.
std::string_view demoAccessoryFees();

} // namespace qx::erp
