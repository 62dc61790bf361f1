// Writes one order job as an order of the ERP.
#pragma once

#include "engine/accessory_fees.h"
#include "engine/findings.h"
#include "engine/job_row.h"
#include "engine/order_context.h"
#include "engine/order_header.h"
#include "engine/order_lines.h"
#include "engine/order_number.h"
#include "engine/order_totals.h"
#include "engine/position_facts.h"
#include "engine/run_options.h"
#include "platform/environment.h"
#include "rules/master_data.h"

#include <optional>
#include <string>

namespace qx {

/// An order that was written.
struct WrittenOrder {
  std::int32_t number = 0;
  WrittenLines lines;
  double weight = 0; ///< kg
  bool cashOnDelivery = false;
  std::string customerName; ///< as written in the header
  Findings hints;
};

/// Writes a job as an order: header, lines, totals, index entry and customer stamp.
///
/// On a connection of our own everything is undone together when one step fails, the drawn number included;
/// on a host's connection the lines are deleted, the number is returned, the customer's stamp is restored and
/// index entry and header are deleted, each step even if another fails.
class OrderWriter {
public:
  OrderWriter(const RunContext& run, PriceComponent& prices);

  /// Raises `OrderFailure` with the sentence for the clerk, or what the database raises. The job's done code
  /// is written last. `facts` are those of this job.
  WrittenOrder WriteAuftrag(JobRow& job, OrderFacts& facts);
  /// Reads what `WriteAuftrag` will.
  void foresee(const JobRow& job, OrderFacts& facts);
  const AccessoryFees& fees() const { return fees_; }

private:
  /// What an order records in its customer's row.
  struct CustomerStamp {
    std::string customer;
    std::string since; ///< `KundeSeit`
    std::string text2, text3;
  };

  static std::string receiptStamp(const JobRow& job);
  std::unique_ptr<Recordset> openCustomer(const JobRow& job) const;
  WrittenOrder write(JobRow& job, OrderFacts& facts);
  static OrderContext contextOf(const JobRow& job, Recordset& customer, Recordset& header,
                                std::int32_t number, const std::string& stamp);
  /// Raises `OrderFailure` when the number is that of another order.
  void insertHeader(Recordset& header, const OrderNumber& drawn);
  void applyWeightLimit(Recordset& header, OrderContext& order);
  void appendFreightAndFees(const OrderContext& order, WrittenLines& written);
  double accessoryFee(const OrderContext& order);
  void stampCustomer(const JobRow& job, Recordset& customer);
  void writeStamp(const CustomerStamp& stamp);
  void insertIndexEntry(Recordset& header);
  static void finishJob(JobRow& job, std::int32_t number);
  void undoOnHost();
  bool isCashOnDelivery(const std::string& paymentMethod) const;

  Environment& environment_;
  const OrderOptions& options_;
  const std::string& homeCurrency_;
  OrderHeader header_;
  OrderNumbers numbers_;
  PriceComponent& prices_;
  OrderLines lines_;
  AccessoryFees fees_;
  MasterData masterData_;
  std::int32_t writing_ = 0;                 ///< number of the order whose header has been written, or 0
  std::optional<CustomerStamp> stampBefore_; ///< set once the current order has stamped its customer
};

} // namespace qx
