// The rows required to process any job, and their tax marks and tax keys.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <string_view>

namespace qx::erp {

/// Fills a fresh schema with the home currency, the tax marks and keys and the number range of orders.
/// Options are left unset. Call it inside a unit of work.
void fillBaseData(Connection& connection);

// The mark of domestic customers is a column default: erp/schema.h.
inline constexpr std::string_view unionTaxMark = "EU";  ///< customers in the customs union
inline constexpr std::string_view exportTaxMark = "DR"; ///< customers elsewhere

inline constexpr std::string_view fullTaxArticle = "V";
inline constexpr std::string_view reducedTaxArticle = "E";
inline constexpr std::string_view taxFreeArticle = "F";

inline constexpr std::int16_t taxFree = 1;
inline constexpr std::int16_t reducedTax = 2;
inline constexpr std::int16_t fullTax = 3;

} // namespace qx::erp
