#include "engine/order_writer.h"

#include "engine/erp_number.h"
#include "engine/hints.h"
#include "engine/order_failure.h"
#include "model/text.h"
#include "platform/failure.h"
#include "rules/dates.h"
#include "rules/rounding.h"

#include <exception>
#include <stdexcept>
#include <utility>

namespace qx {
namespace {

Sql customerRow(std::string_view number) {
  return sql("Select * From Kundenstamm where Kundennummer  = '"_sql, value(number), "'"_sql);
}

class PaymentMethodOnly final : public RowValues {
public:
  void set(ColumnName column, Value value) override {
    if (column == ColumnName("Zahlungsart")) method = value.text();
  }
  std::string method;
};

} // namespace

OrderWriter::OrderWriter(const RunContext& run, PriceComponent& prices)
    : environment_(run.environment), options_(run.orderOptions), homeCurrency_(run.homeCurrency),
      header_(run), numbers_(environment_, options_), prices_(prices), lines_(environment_, options_),
      fees_(environment_), masterData_(environment_) {}

WrittenOrder OrderWriter::WriteAuftrag(JobRow& job, OrderFacts& facts) {
  writing_ = 0;
  stampBefore_.reset();
  try {
    Savepoint part(*environment_.connection);
    WrittenOrder order = write(job, facts);
    part.release();
    numbers_.keep();
    return order;
  } catch (const std::exception&) {
    job.cancelUpdate();
    if (environment_.connection->ownsWork())
      numbers_.forget();
    else
      undoOnHost();
    throw;
  }
}

WrittenOrder OrderWriter::write(JobRow& job, OrderFacts& facts) {
  const std::string stamp = receiptStamp(job);
  const auto header =
      environment_.connection->open(sql("Select * From Auftragskopf Where Auftragsnummer = 0"_sql));
  const OrderNumber number = numbers_.draw(job);
  const auto customer = openCustomer(job);
  header->addNew();
  header_.fill(*header, job, *customer, number, stamp);
  // Only after every check of the header: a number must not be returned while a header uses it.
  insertHeader(*header, number);
  writing_ = number.number;

  OrderContext order = contextOf(job, *customer, *header, number.number, stamp);
  if (options_.costAssignment) {
    order.jobCost = orderCost(job.value("KostID"));
    order.customerCost = orderCost(customer->value("KostID"));
  }
  WrittenOrder written;
  written.number = number.number;
  written.lines = lines_.writePositions(order, facts, job.text("JobID"));
  if (options_.customerSpecific) {
    applyWeightLimit(*header, order);
    appendFreightAndFees(order, written.lines);
  }
  const OrderTotals totals = orderTotals(environment_, prices_, number.number,
                                         customer->value("Auftragsrabatt").number().value_or(0),
                                         header->value("Preistyp").integer() == std::int64_t{1});
  header->set("Gesamtnetto", Value(totals.net));
  header->set("GesamtMwSt", Value(totals.tax));
  header->set("Gesamtbrutto", Value(totals.gross));
  header->set("GesamtGewicht", Value(totals.weight));
  header->update();
  insertIndexEntry(*header);
  written.weight = totals.weight;
  written.cashOnDelivery = isCashOnDelivery(order.paymentMethod);
  written.customerName = header->text("Bez1");
  written.hints = orderHints(fieldsOf(job.row()), *customer, *environment_.connection, homeCurrency_);
  written.hints.append(std::move(written.lines.hints));
  stampCustomer(job, *customer);
  // Last, so that a done job always has its complete order.
  finishJob(job, number.number);
  return written;
}

void OrderWriter::insertHeader(Recordset& header, const OrderNumber& drawn) {
  try {
    header.update();
  } catch (const StatementError&) {
    const auto other = environment_.connection->open(
        sql("Select Auftragsnummer From Auftragskopf Where Auftragsnummer = "_sql, number(drawn.number)));
    if (other->eof()) throw;
    numbers_.foreignNumber();
    throw OrderFailure(Rule::OrderNumberInUse, std::to_string(drawn.number), std::to_string(drawn.circle));
  }
}

std::string OrderWriter::receiptStamp(const JobRow& job) {
  try {
    return intdat(job.value("Eingangsdatum"));
  } catch (const std::invalid_argument&) {
    throw OrderFailure(Rule::OrderReceiptDate, job.text("Eingangsdatum"));
  }
}

void OrderWriter::foresee(const JobRow& job, OrderFacts& facts) {
  const auto customer = environment_.connection->open(customerRow(job.text("Kundennummer")));
  if (!customer->eof()) {
    PaymentMethodOnly header;
    header_.foresee(header, job, *customer);
    isCashOnDelivery(header.method);
  }
  lines_.foresee(facts, job.text("JobID"), parseGermanDate(job.text("Eingangsdatum")).value_or(Date()));
}

std::unique_ptr<Recordset> OrderWriter::openCustomer(const JobRow& job) const {
  const std::string number = job.text("Kundennummer");
  auto customer = environment_.connection->open(customerRow(number));
  if (customer->eof()) throw OrderFailure(Rule::OrderCustomerRefused, number);
  if (customer->value("Liefersperre").truth().value_or(false))
    throw OrderFailure(Rule::OrderDeliveryStop, number);
  return customer;
}

OrderContext OrderWriter::contextOf(const JobRow& job, Recordset& customer, Recordset& header,
                                    std::int32_t number, const std::string& stamp) {
  OrderContext order;
  order.number = number;
  order.customer = job.text("Kundennummer");
  order.customerTaxMark = customer.text("MwSt_KZ");
  order.dateStamp = stamp;
  order.date = parseGermanDate(job.text("Eingangsdatum")).value_or(Date());
  order.deliveryDate = job.text("Liefertermin");
  order.shippingMethod = header.text("Versandart");
  order.paymentMethod = header.text("Zahlungsart");
  return order;
}

/// Heavy orders get another shipping method, which also decides about the freight lines.
void OrderWriter::applyWeightLimit(Recordset& header, OrderContext& order) {
  if (options_.abGewicht <= 0 || options_.VSabGewicht.empty()) return;
  if (throughDecimalText(masterData_.orderWeight(order.number)) < options_.abGewicht) return;
  order.shippingMethod = header_.requireShippingMethod(options_.VSabGewicht);
  header.set("Versandart", Value(order.shippingMethod));
  header.update();
}

/// The fee line holds the freight fee, if shipping or payment method require it, and the accessory fees.
void OrderWriter::appendFreightAndFees(const OrderContext& order, WrittenLines& written) {
  const auto callsFor = [](const std::string& setting, const std::string& method) {
    return !setting.empty() && equalCodes(setting, method);
  };
  const bool freight =
      callsFor(options_.VAKunde, order.shippingMethod) || callsFor(options_.ZAKunde, order.paymentMethod);
  const double fee = written.anyAccessory ? accessoryFee(order) : 0;
  if (freight && !options_.FrachtTransport.empty())
    lines_.appendLine(order, written, options_.FrachtTransport,
                      lines_.articlePrice(options_.FrachtTransport));
  if (!freight && fee <= 0) return;
  if (options_.FrachtGebuehr.empty()) {
    if (fee > 0)
      environment_.diagnostics.report(
          {"accessory fees",
           "order " + std::to_string(order.number) + ": a fee of " + plainNumber(fee) + " has no article",
           ""});
    return;
  }
  double price = fee;
  if (freight) price += std::max(lines_.articlePrice(options_.FrachtGebuehr), options_.MinGebuehr);
  lines_.appendLine(order, written, options_.FrachtGebuehr, price);
}

double OrderWriter::accessoryFee(const OrderContext& order) {
  return fees_.minimumOrderFee(throughDecimalText(masterData_.orderValue(order.number))) +
         fees_.gradedFee(throughDecimalText(masterData_.accessoryValue(order.number)));
}

/// The first order sets the customer's date; an existing date is kept.
void OrderWriter::stampCustomer(const JobRow& job, Recordset& customer) {
  const auto jobOrCustomer = [&](ColumnName jobField, ColumnName column) {
    std::string text = job.text(jobField);
    return text.empty() ? customer.text(column) : text;
  };
  const Value& own = customer.value("KundeSeit");
  CustomerStamp stamp{job.text("Kundennummer"), own.text(), customer.text("Ind_Text2"),
                      customer.text("Ind_Text3")};
  writeStamp({stamp.customer, germanDay(own.isEmpty() ? job.value("Eingangsdatum") : own),
              jobOrCustomer("IndFild2", "Ind_Text2"), jobOrCustomer("IndFild3", "Ind_Text3")});
  stampBefore_ = std::move(stamp);
}

void OrderWriter::writeStamp(const CustomerStamp& stamp) {
  environment_.connection->changeOne("Kundenstamm",
                                     sql("UPDATE Kundenstamm SET KundeSeit = '"_sql, nullable(stamp.since),
                                         "', Ind_Text2 = '"_sql, nullable(stamp.text2),
                                         "', Ind_Text3 = '"_sql, nullable(stamp.text3),
                                         "' WHERE Kundennummer  = '"_sql, value(stamp.customer), "'"_sql));
}

void OrderWriter::insertIndexEntry(Recordset& header) {
  const auto index = environment_.connection->open(
      sql("Select * From Belegindex Where Belegart = 'AB' And Belegnummer = 0"_sql));
  index->addNew();
  index->set("Belegart", Value("AB"));
  index->set("Belegnummer", header.value("Auftragsnummer"));
  index->set("Herkunft", Value("HAN"));
  index->set("Suchbegriff", header.value("Suchbegriff"));
  index->set("Kundennummer", header.value("Kundennummer"));
  index->set("Datum", header.value("Auftragsdatum"));
  index->update();
}

void OrderWriter::finishJob(JobRow& job, std::int32_t number) {
  job.set("JobType", Value(std::int16_t{qxtJobAufträgeDone}));
  job.set("Bemerkung", Value(remarkWithOrder(job.text("Bemerkung"), number)));
  job.set("Erledigt", Value(true));
  job.set("Fehler", Value(false));
  job.update();
}

/// Undoes what the host's transaction may not.
void OrderWriter::undoOnHost() {
  const auto undo = [&](const std::function<void()>& step) {
    trapped(environment_.diagnostics, {"undoing an order"}, step);
  };
  undo([&] { numbers_.removeLines(); });
  undo([&] { numbers_.giveBack(); });
  if (stampBefore_) undo([&] { writeStamp(*stampBefore_); });
  if (writing_ == 0) return;
  undo([&] {
    environment_.connection->execute(
        sql("Delete From Belegindex Where Belegart = 'AB' And Belegnummer = "_sql, number(writing_)));
  });
  undo([&] {
    environment_.connection->execute(
        sql("Delete From Auftragskopf Where Auftragsnummer = "_sql, number(writing_)));
  });
}

bool OrderWriter::isCashOnDelivery(const std::string& paymentMethod) const {
  if (paymentMethod.empty()) return false;
  const auto method = environment_.connection->open(
      sql("Select Kurztext From Zahlungsarten Where Zahlungsart = '"_sql, value(paymentMethod), "'"_sql));
  return !method->eof() && asciiLower(method->text("Kurztext")).find("nachnahme") != std::string::npos;
}

} // namespace qx
