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

  /// `header` is a new row; `customer` is positioned on the customer's row.
  void fill(RowValues& header, const JobRow& job, Recordset& customer, const OrderNumber& number,
            const std::string& dateStamp);
  /// Reads what `fill` will. `header` gets what is known of the values.
  void foresee(RowValues& header, const JobRow& job, Recordset& customer);
  /// The code as the master spells it. Raises `OrderFailure` when the shipping method is unknown.
  std::string requireShippingMethod(std::string_view code) const;

private:
  template <class Take>
  void forEachStep(RowValues& header, const JobRow& job, Recordset& customer, const std::string& dateStamp,
                   Take&& take);
  void fillMasterData(RowValues& header, const JobRow& job, Recordset& customer) const;
  void fillAddress(RowValues& header, const JobRow& job, Recordset& customer, const AddressFields& fields);
  void fillBank(RowValues& header, const JobRow& job, Recordset& customer);
  void fillCurrency(RowValues& header, Recordset& customer);
  void fillBookkeeping(RowValues& header, const JobRow& job, const std::string& dateStamp);
  void fillClerk(RowValues& header);

  Environment& environment_;
  const RunContext& run_;
  MasterData masterData_;
  CustomerAddresses addresses_;
};

/// True for the numbers of one-time customers, whose orders carry the name of the job.
bool isDiversNumber(std::string_view customer);

} // namespace qx
