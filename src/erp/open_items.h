// Open items and currency conversion of the standalone ERP.
#pragma once

#include "platform/erp_components.h"

namespace qx::erp {

/// Adds up the table of open items.
class OpenItems final : public FibuUebergabe {
public:
  void setConnection(Connection& connection) override { connection_ = &connection; }
  /// In the items' currency when they all have the same, otherwise in the home currency.
  OpenItemsBalance GetOPSaldo(std::string_view customer) override;
  double convert(double amount, std::string_view from, std::string_view to) override;

private:
  Connection& database();
  double rateOf(std::string_view currency);

  Connection* connection_ = nullptr;
};

} // namespace qx::erp
