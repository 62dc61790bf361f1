// Why something failed, for a box or a message.
#pragma once

#include <exception>
#include <string>

namespace qx {

/// A German sentence for the clerk; texts of our own are German already and stay as they are. What a database
/// or the system says in its own language is for the diagnostics.
std::string germanCause(const std::exception& error);

/// In English and as it was raised, but with words where the language's own failure has none.
std::string plainCause(const std::exception& error);

} // namespace qx
