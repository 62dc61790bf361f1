#include "erp/demo_data.h"

#include "erp/demo_staging.h"

#include "model/job_codes.h"

namespace qx::erp {
namespace demo {
namespace {

/// 32 hexadecimal digits that a generated key is most unlikely to have.
std::string fixedKey(std::string_view prefix, std::size_t number) {
  constexpr std::size_t keyLength = 32;
  return std::string(prefix) + padded(number, keyLength - prefix.size());
}

} // namespace

Staging::Staging(Connection& connection, const Date& today)
    : heads_(connection, "ImportKopf"), positions_(connection, "ImportPos"), today_(today) {}

void Staging::begin(std::int16_t jobType, int daysAgo, std::initializer_list<Cell> cells) {
  heads_.begin({{"JobID", fixedKey("DE", ++jobs_)},
                {"JobType", jobType},
                {"ImportType", stagedImportType},
                {"Status", static_cast<std::int16_t>(CheckStatus::Clean)},
                {"Eingangsdatum", day(daysAgo)}});
  heads_.set(cells);
}

void Staging::setCustomer(const Customer& c, bool withCodes) {
  set({{"Kundennummer", c.number},
       {"Suchbegriff", c.searchTerm},
       {"Bez1", c.name},
       {"Bez2", c.department},
       {"Strasse", c.street},
       {"Land", c.country},
       {"PLZ", c.postcode},
       {"Ort", c.town},
       {"Telefon", c.phone},
       {"EMail", c.email}});
  if (!withCodes) return;
  set({{"Kundengruppe", c.group},
       {"Vertreter1", c.rep},
       {"Zahlungsart", c.payment},
       {"ZahlungsbedSchl", c.terms},
       {"Versandart", c.shipping},
       {"Preisliste", c.priceList},
       {"BLZ", c.bankCode},
       {"Konto", c.account},
       {"Währung", "EUR"}});
}

void Staging::addPosition(std::int16_t jobType, std::initializer_list<Cell> cells) {
  positions_.begin({{"JobID", fixedKey("DE", jobs_)},
                    {"ChildID", fixedKey("DF", ++positionsInAll_)},
                    {"JobType", jobType}});
  positions_.set(cells);
  positions_.finish();
}

std::string Staging::day(int daysAgo) const {
  return germanDate(std::chrono::sys_days(today_) - std::chrono::days(daysAgo));
}

} // namespace demo

std::size_t stageDemoJobs(Connection& connection, const Date& today) {
  demo::Staging staging(connection, today);
  demo::stageCustomers(staging);
  demo::stageContracts(staging);
  demo::stageOrders(staging);
  return staging.count();
}

} // namespace qx::erp
