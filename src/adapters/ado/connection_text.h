// The text with which a host has opened its connection.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qx::ado {

/// Without the terms that hold a password.
std::string withoutPasswords(std::string_view connectionString);

/// The same database as the programs of this component name it ("odbc:..."), with the password where the text
/// holds one; null when its provider reaches none that they can.
std::optional<std::string> programTarget(std::string_view connectionString);

} // namespace qx::ado
