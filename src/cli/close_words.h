// The word that was probably meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// The known word that differs least from the typed one, case apart; empty when none is close.
std::string closestWord(std::string_view typed, const std::vector<std::string>& known);

} // namespace qx::cli
