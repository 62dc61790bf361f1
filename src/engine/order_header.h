// The header of an order: what it takes from the job and what from the customer.
#pragma once

#include "engine/finding_terms.h"
#include "engine/job_row.h"
#include "engine/order_number.h"
#include "engine/run_context.h"
#include "rules/address_fields.h"
#include "rules/master_data.h"

#include <string>
#include <string_view>

namespace qx {

/// Fills the pending row of `Auftragskopf`.
///
/// A field that job and customer both have is taken from the job, else from the customer; when both are empty
/// the column is null and the code is not looked up. Unknown codes raise `OrderFailure`.
class OrderHeader {
public:
  explicit OrderHeader(const RunContext& run);

  /// `header` is in `addNew`; `customer` is positioned on the customer's row.
  void fill(Recordset& header, const JobRow& job, Recordset& customer, const OrderNumber& number,
            const std::string& dateStamp);
  /// The code as the master spells it. Raises `OrderFailure` when the shipping method is unknown.
  std::string requireShippingMethod(std::string_view code) const;

private:
  void fillMasterData(Recordset& header, const JobRow& job, Recordset& customer) const;
  void fillAddress(Recordset& header, const JobRow& job, Recordset& customer, const AddressFields& fields);
  void fillCodes(Recordset& header, const JobRow& job, Recordset& customer);
  void fillSalesReps(Recordset& header, const JobRow& job, Recordset& customer);
  void fillBank(Recordset& header, const JobRow& job, Recordset& customer);
  void fillCurrency(Recordset& header, Recordset& customer);
  void fillBookkeeping(Recordset& header, const JobRow& job, const std::string& dateStamp);
  void fillClerk(Recordset& header);
  std::string requireCode(const Sql& lookup, Rule rule, std::string_view code) const;

  Environment& environment_;
  const RunContext& run_;
  MasterData masterData_;
  CustomerAddresses addresses_;
};

/// True for the numbers of one-time customers, whose orders carry the name of the job.
bool isDiversNumber(std::string_view customer);

} // namespace qx
