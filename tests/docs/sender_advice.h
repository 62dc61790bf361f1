// What the sender of a job is told to do about its findings, for the page about handing over jobs.
#pragma once

#include "engine/finding_terms.h"

#include <cstdint>
#include <string_view>

namespace qx {

enum class Advice : std::uint8_t { Mend, Codes, Customer, Prices, Contracts, Clerk, Erp, Nothing };

Advice adviceOn(Rule rule);
/// As the page names and explains it.
std::string_view wordOf(Advice advice);

} // namespace qx
