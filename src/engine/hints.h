// What a user should know about a job that is no fault of it.
#pragma once

#include "engine/customer_columns.h"
#include "platform/database.h"
#include "settings/settings.h"

#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Sentences for the clerk. They change neither status nor code of a job.
using Hints = std::vector<std::string>;

/// What a hint begins with among findings and in the protocol.
inline constexpr std::string_view hintMark = "Hinweis: ";
/// How it stands there: one line, whatever the values that it quotes.
std::string hintLine(std::string_view hint);

/// The currency of an installation that names none.
inline constexpr std::string_view defaultHomeCurrency = "DM";
/// The currency of the installation.
std::string homeCurrencyOf(const Settings& settings);

/// What becomes of a customer's data that its sender may not expect. `master` is the customer's row, null for
/// a new customer.
Hints customerHints(const JobFields& job, Recordset* master, std::string_view homeCurrency);

/// Which currency and tax an order gets that its sender may not expect. `customer` stands on the order's
/// customer.
Hints orderHints(const JobFields& job, Recordset& customer, Connection& connection,
                 std::string_view homeCurrency);

} // namespace qx
