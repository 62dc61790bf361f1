// The lines of an order.
#pragma once

#include "engine/order_context.h"
#include "engine/position_facts.h"
#include "engine/run_options.h"
#include "platform/environment.h"
#include "rules/cost_assignment.h"
#include "rules/stock.h"
#include "rules/tax_rules.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace qx {

/// Writes order lines to `Auftragspos`: an article line per staged position, a text line after each one that
/// has a long text, and additional lines for freight and fees. Unknown or blocked articles, missing tax keys
/// and a pricing component that fails raise `OrderFailure`.
class OrderLines {
public:
  OrderLines(Environment& environment, const OrderOptions& options);

  /// The staged positions in the numeric order of their line numbers. Raises `OrderFailure` without any.
  WrittenLines writePositions(const OrderContext& order, OrderFacts& facts, std::string_view jobId);
  /// Reads what `writePositions` will.
  void foresee(OrderFacts& facts, std::string_view jobId, const Date& date) const;
  /// One line of quantity 1 for an article that the order itself does not name, at this price.
  void appendLine(const OrderContext& order, WrittenLines& written, std::string_view article, double price);
  /// The price of such an article: its own, else its fourth individual number.
  double articlePrice(std::string_view article);

private:
  void writePosition(Recordset& lines, Recordset& position, PositionFacts& facts, const OrderContext& order,
                     WrittenLines& written);
  struct Tax {
    std::string key;
    double rate = 0;
  };

  std::unique_ptr<Recordset> openArticle(std::string_view article) const;
  static void fillCommon(Recordset& line, const OrderContext& order, std::int32_t position,
                         std::string_view type);
  static void fillArticle(Recordset& line, Recordset& article, std::string_view unit, double quantity);
  static void fillQuantities(Recordset& line, Recordset& position);
  static double fillPrice(Recordset& line, Recordset& position, const FoundPrice& found);
  std::optional<PurchasePrice> purchasePrice(Recordset& article, const Date& date, std::string_view salesUnit,
                                             double quantity) const;
  void fillPurchasePrice(Recordset& line, Recordset& article, const OrderContext& order,
                         std::string_view salesUnit, double quantity);
  void fillFlags(Recordset& line, const Value& delivery, const Value& invoice, const std::string& date);
  void fillTax(Recordset& line, Recordset& article, const OrderContext& order);
  void fillCostAssignment(Recordset& line, Recordset& position, const OrderContext& order);
  static void writeText(Recordset& lines, const OrderContext& order, Recordset& position);
  const Tax& taxOf(const OrderContext& order, const std::string& articleMark);

  Environment& environment_;
  const OrderOptions& options_;
  TaxRules taxRules_;
  CostAssignment costs_;
  Stock stock_;
  std::unique_ptr<Einkaufspreisfindung> purchasePrices_;
  std::map<std::tuple<std::string, std::string, std::string>, Tax> taxes_; ///< unchanged throughout a run
};

} // namespace qx
