// The check of an order job.
#pragma once

#include "engine/credit_limit.h"
#include "engine/findings.h"
#include "engine/order_options.h"
#include "engine/order_prices.h"
#include "platform/environment.h"
#include "rules/cost_assignment.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"
#include "rules/stock.h"

#include <functional>
#include <string_view>

namespace qx {

/// Inspects a staged order, header and positions, against the master data. Each finding is a token. Writes
/// nothing.
class OrderCheck {
public:
  OrderCheck(Environment& environment, const OrderOptions& options);

  /// The findings of the job, header first. Clean for a job that is neither waiting nor parked. The prices
  /// that were found are left in `prices` for the writing of the same job. `stagedText`: whether a text that
  /// stands in `Fehlertext` counts as a warning.
  Findings CheckAuftrag(std::string_view JobID, OrderPrices& prices, bool stagedText = true) const;

  /// @name Parts of it that a dialog asks for with what it shows; an option that is off finds nothing
  /// @{
  Findings note(std::string_view remark) const;
  Findings individualFields(const std::function<std::string(ColumnName)>& job) const;
  /// The limits of this customer.
  Findings credit(std::string_view customer) const;
  /// @}

private:
  void checkSalesRep(Recordset& job, Findings& findings) const;
  void checkMethods(Recordset& job, Findings& findings) const;
  void checkPaymentTerms(Recordset& job, Findings& findings) const;
  void checkBank(Recordset& job, Findings& findings) const;
  void checkAddressKeys(Recordset& job, Findings& findings, Rule delivery, Rule invoice) const;
  void checkAccount(Recordset& job, Findings& findings, bool stagedText) const;
  void checkCustomer(Recordset& job, Findings& findings) const;
  void checkPositions(Recordset& job, Findings& findings, OrderPrices& prices) const;
  void checkPrice(Recordset& position, const FoundPrice& price, Findings& findings) const;
  void checkCostAssignment(Recordset& position, Findings& findings) const;
  void checkStock(Recordset& position, const FoundPrice& price, Findings& findings) const;
  void checkArticle(Recordset& position, Findings& findings) const;

  Environment& environment_;
  const OrderOptions& options_;
  MasterData masterData_;
  CustomerAddresses addresses_;
  CostAssignment costs_;
  Stock stock_;
  CreditLimit credit_;
};

} // namespace qx
