// Why something failed, as a text for a box or a message.
#pragma once

#include <exception>
#include <string>

namespace qx {

/// A German sentence for the clerk; the component's own texts are German already and stay as they are. The
/// database's or system's own words are for the diagnostics.
std::string germanCause(const std::exception& error);

/// In English and as raised, but readable also for failures of the C++ runtime.
std::string plainCause(const std::exception& error);

} // namespace qx
