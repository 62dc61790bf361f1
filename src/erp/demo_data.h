// An invented company for trying out the program, and its staged jobs.
#pragma once

#include "platform/database.h"

#include <string_view>

namespace qx::erp {

/// Fills a schema that holds the base rows with the master data and options of an invented company. Call it
/// inside a unit of work.
void fillDemoData(Connection& connection);

/// The content of the company's file of accessory fees, "Zubehoer.ini" in the application directory.
std::string_view demoAccessoryFees();

/// Stages the jobs, received in the days up to `today`, and returns how many there are, positions not
/// counted. They are meant for the demo data and have fixed keys: a second call raises `StatementError`. Call
/// it inside a unit of work.
std::size_t stageDemoJobs(Connection& connection, const Date& today);

} // namespace qx::erp
