#include "floor/orders.h"

#include "floor/customer_statements.h"
#include "floor/job_run.h"
#include "floor/order_statements.h"

#include <cmath>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qx::bench {
namespace {

constexpr double cent = 100;

std::int64_t cents(double amount) { return std::llround(amount * cent); }

/// The row that must be there; it stands until the statement is reset.
Statement& row(Statement& statement) {
  if (!statement.step()) throw std::runtime_error("a row of an order is missing");
  return statement;
}

void require(Statement& statement) { row(statement).reset(); }

/// Reads all rows; the values are not wanted here, but the program reads them.
void skim(Statement& statement) {
  while (statement.step())
    for (int i = 1; i < statement.columnCount(); ++i) statement.isNull(i);
  statement.reset();
}

void appendEntry(std::string& list, std::string_view entry) {
  if (!list.empty()) list += "\r\n";
  list += entry;
}

std::string germanAmount(std::int64_t amount) {
  return std::to_string(amount / 100) + "," + std::to_string(amount / 10 % 10) + std::to_string(amount % 10);
}

/// What the check finds out about a position.
struct FoundPrice {
  std::string unit;
  double price = 0;
};

struct Tax {
  std::string key;
  double rate = 0;
};

struct Totals {
  std::int64_t net = 0, tax = 0;
  double weight = 0;
};

/// The columns of the protocol line.
struct Articles {
  std::string numbers, texts, quantities, prices;
};

/// One run. The views of the job's row stand until the job is done.
class OrderRun {
public:
  explicit OrderRun(Database& database) : sql_(database), row_(sql_.job) {}

  void write(std::int64_t rowId) {
    row_.read(row(sql_.job.bind(1, rowId)));
    stamp_ = dayStamp(row_[date_]);
    check();
    const std::int64_t number = drawNumber();
    Statement& customer = row(sql_.customer.bind(1, row_[customer_]));
    writeHeader(number, customer);
    writeLines(number, customer.text(10));
    const std::string_view since = customer.text(11).empty() ? row_[date_] : customer.text(11);
    sql_.stampCustomer.bind(1, since).bind(2, row_[customer_]).run();
    writeTotals(number);
    sql_.insertIndex.bind(1, number)
        .bindColumn(2, customer, 1)
        .bind(3, row_[customer_])
        .bind(4, stamp_)
        .run();
    customer.reset();
    note_ = " Auftrag: " + std::to_string(number);
    sql_.finishJob.bind(1, note_).bind(2, rowId).run();
    require(sql_.paymentText.bind(1, row_[payment_]));
    addLine(number);
    sql_.job.reset();
  }

private:
  void check() {
    skim(sql_.jobByKey.bind(1, row_[key_]));
    require(sql_.repExists.bind(1, row_[rep_]));
    require(sql_.shippingExists.bind(1, row_[shipping_]));
    require(sql_.paymentExists.bind(1, row_[payment_]));
    require(sql_.bankExists.bind(1, row_[bank_]));
    require(sql_.customerExists.bind(1, row_[customer_]));
    found_.clear();
    Statement& positions = sql_.positions.bind(1, row_[key_]);
    while (positions.step()) {
      found_.push_back(findPrice(positions.text(1), positions.real(2), positions.text(3)));
      require(sql_.articleExists.bind(1, positions.text(1)));
    }
    positions.reset();
  }

  /// The highest step of the basic price that the quantity reaches.
  FoundPrice findPrice(std::string_view article, double quantity, std::string_view unit) {
    FoundPrice found;
    found.unit = row(sql_.articleUnit.bind(1, article)).text(1);
    sql_.articleUnit.reset();
    if (!unit.empty()) {
      found.unit = unit;
      if (sql_.otherUnit.bind(1, unit).step()) found.unit = sql_.otherUnit.text(1);
      sql_.otherUnit.reset();
    }
    const std::string list(row(sql_.customerList.bind(1, row_[customer_])).text(1));
    sql_.customerList.reset();
    double reached = 0;
    Statement& prices = sql_.salesPrices.bind(1, article).bind(2, row_[customer_]).bind(3, list);
    while (prices.step()) {
      if (prices.real(1) > quantity || prices.real(1) < reached) continue;
      reached = prices.real(1);
      found.price = prices.real(2);
    }
    prices.reset();
    return found;
  }

  std::int64_t drawNumber() {
    require(sql_.activeRange);
    const std::int64_t last = row(sql_.rangeState).integer(1);
    sql_.rangeState.reset();
    sql_.drawNumber.bind(1, last).bind(2, last + 1).run();
    return last + 1;
  }

  void writeHeader(std::int64_t number, const Statement& customer) {
    require(sql_.shippingExists.bind(1, row_[shipping_]));
    require(sql_.paymentExists.bind(1, row_[payment_]));
    require(sql_.rep.bind(1, row_[rep_]));
    skim(sql_.clerk);
    Statement& header = sql_.insertHeader;
    header.bind(1, number).bind(2, row_[customer_]);
    header.bindColumn(3, customer, 1).bindColumn(4, customer, 2);
    header.bindColumn(5, customer, 9).bindColumn(6, customer, 10);
    for (int i = 0; i < 6; ++i) header.bindColumn(7 + i, customer, 3 + i);
    header.bind(13, row_[shipping_]).bind(14, row_[payment_]).bind(15, row_[rep_]);
    header.bindOrNull(16, row_[account_]).bind(17, row_[bank_]);
    header.bindColumn(18, row(sql_.bank.bind(1, row_[bank_])), 1);
    header.bind(19, std::string_view("EUR")).bindColumn(20, row(sql_.currency), 1);
    header.bind(21, stamp_).bindOrNull(22, row_[subject_]).run();
    sql_.bank.reset();
    sql_.currency.reset();
  }

  void writeLines(std::int64_t number, std::string_view customerMark) {
    articles_ = {};
    std::size_t at = 0;
    Statement& positions = sql_.orderedPositions.bind(1, row_[key_]);
    while (positions.step()) writeLine(number, customerMark, positions, found_.at(at++));
    positions.reset();
  }

  void writeLine(std::int64_t number, std::string_view customerMark, const Statement& position,
                 const FoundPrice& found) {
    Statement& article = row(sql_.article.bind(1, position.text(2)));
    const Tax& tax = taxOf(customerMark, article.text(4));
    const double quantity = position.real(3);
    const bool purchased = !article.isNull(7);
    Statement& line = purchased ? sql_.insertPurchasedLine : sql_.insertLine;
    line.bind(1, number).bindColumn(2, position, 1).bindColumn(3, position, 3);
    line.bindColumn(4, position, 4).bindColumn(5, position, 5).bindColumn(6, article, 1);
    line.bind(7, found.unit).bindColumn(8, article, 2).bindColumn(9, article, 3);
    line.bind(10, article.real(3) * quantity).bind(11, found.price);
    line.bindOrNull(12, position.text(6).empty() ? row_[delivery_] : position.text(6));
    line.bindColumn(13, article, 4).bind(14, tax.key).bind(15, tax.rate).bind(16, stamp_);
    line.bindColumn(17, article, 5).bindColumn(18, article, 6);
    if (purchased) {
      line.bindColumn(19, row(sql_.purchasePrices.bind(1, article.text(1)).bind(2, article.text(7))), 1);
      skim(sql_.purchasePrices);
    }
    line.run();
    appendEntry(articles_.numbers, article.text(1));
    appendEntry(articles_.texts, article.text(2));
    appendEntry(articles_.quantities, std::to_string(std::llround(quantity)) + ",000");
    appendEntry(articles_.prices, germanAmount(cents(found.price)));
    article.reset();
  }

  /// Asked once for each pair of marks.
  const Tax& taxOf(std::string_view customerMark, std::string_view articleMark) {
    const auto [entry, isNew] = taxes_.try_emplace({std::string(customerMark), std::string(articleMark)});
    if (!isNew) return entry->second;
    entry->second.key = row(sql_.taxKey.bind(1, customerMark).bind(2, articleMark)).text(1);
    sql_.taxKey.reset();
    entry->second.rate = row(sql_.taxRate.bind(1, entry->second.key)).real(1);
    sql_.taxRate.reset();
    return entry->second;
  }

  Totals totalsOf(std::int64_t number) {
    Totals totals;
    std::map<std::string, std::pair<double, std::int64_t>> groups;
    Statement& lines = sql_.writtenLines.bind(1, number);
    while (lines.step()) {
      auto& [rate, sum] = groups[std::string(lines.text(1))];
      rate = lines.real(2);
      sum += cents(lines.real(3) * lines.real(4) / lines.real(5));
      totals.weight += lines.real(6);
    }
    lines.reset();
    for (const auto& [key, group] : groups) {
      totals.net += group.second;
      totals.tax += std::llround(static_cast<double>(group.second) * group.first / 100);
    }
    return totals;
  }

  void writeTotals(std::int64_t number) {
    const Totals totals = totalsOf(number);
    const auto amount = [](std::int64_t value) { return static_cast<double>(value) / cent; };
    sql_.setTotals.bind(1, amount(totals.net)).bind(2, amount(totals.tax));
    sql_.setTotals.bind(3, amount(totals.net + totals.tax)).bind(4, totals.weight).bind(5, number).run();
  }

  void addLine(std::int64_t number) {
    const std::string numberText = std::to_string(number);
    info_.assign("Kundennummer: ").append(row_[customer_]);
    info_.append("\r\nKunde: ").append(row_[name_]);
    info_.append("\r\nEingangsdatum: ").append(row_[date_]);
    Statement& add = sql_.addLine;
    add.bind(1, protocolId).bind(2, numberText).bind(3, row_[date_]).bind(4, articles_.numbers);
    add.bind(5, articles_.texts).bind(6, articles_.quantities).bind(7, articles_.prices);
    add.bind(8, info_).run();
  }

  OrderStatements sql_;
  RowView row_;
  std::size_t key_ = row_.place("JobID"), customer_ = row_.place("Kundennummer");
  std::size_t date_ = row_.place("Eingangsdatum"), delivery_ = row_.place("Liefertermin");
  std::size_t rep_ = row_.place("Vertreter1"), shipping_ = row_.place("Versandart");
  std::size_t payment_ = row_.place("Zahlungsart"), bank_ = row_.place("BLZ");
  std::size_t account_ = row_.place("Konto"), subject_ = row_.place("Betreff");
  std::size_t name_ = row_.place("Bez1");
  std::vector<FoundPrice> found_;
  std::map<std::pair<std::string, std::string>, Tax> taxes_;
  Articles articles_;
  std::string stamp_, note_, info_;
};

} // namespace

void processOrders(Database& database) {
  OrderRun run(database);
  runJobs(database,
          "SELECT rowid, JobID FROM ImportKopf WHERE JobType=30 ORDER BY substr(Eingangsdatum, 7, 4), "
          "substr(Eingangsdatum, 4, 2), substr(Eingangsdatum, 1, 2), rowid",
          [&run](std::int64_t rowId) { run.write(rowId); });
}

} // namespace qx::bench
