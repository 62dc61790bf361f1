#include "engine/order_lines.h"

#include "engine/order_failure.h"
#include "engine/order_rules.h"
#include "model/text.h"
#include "rules/master_data.h"
#include "rules/rounding.h"

#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

namespace qx {
namespace {

constexpr std::array articleColumns{
    ColumnName("Erfassungsschema"), ColumnName("Gewicht"),        ColumnName("Provisionsgruppe"),
    ColumnName("Ind_Text1"),        ColumnName("Ind_Text2"),      ColumnName("Ind_Text3"),
    ColumnName("Ind_Text4"),        ColumnName("Ind_Zahl1"),      ColumnName("Ind_Zahl2"),
    ColumnName("Ind_Zahl3"),        ColumnName("Ind_Zahl4"),      ColumnName("Ind_Memo1"),
    ColumnName("Ind_Memo2"),        ColumnName("DurchschnittEK"), ColumnName("Hauptlager"),
    ColumnName("Rechenfeld1"),      ColumnName("Rechenfeld2"),    ColumnName("Rechenfeld3"),
    ColumnName("Rechenfeld4"),      ColumnName("Rechenfeld5"),    ColumnName("WertJN"),
    ColumnName("Rabattfähig")};

std::string firstText(Recordset& row, ColumnName first, ColumnName second) {
  std::string text = row.text(first);
  return text.empty() ? row.text(second) : text;
}

double numberOf(Recordset& row, ColumnName column) { return row.value(column).number().value_or(0); }

std::int32_t positionNumber(Recordset& position) {
  return wholeAs<std::int32_t>(position.value("intPos")).value_or(0);
}

/// The number after the last line, or the first free one if there is none.
std::int32_t nextPosition(const std::set<std::int32_t>& used) {
  constexpr auto most = std::numeric_limits<std::int32_t>::max();
  const std::int32_t last = used.empty() ? 0 : std::max(*used.rbegin(), 0);
  if (last < most) return last + 1;
  for (std::int32_t number = 1; number < most; ++number)
    if (!used.contains(number)) return number;
  throw OrderFailure(Rule::OrderNoPositionNumber);
}

/// Null when there is no component, or none can be created: the purchase columns then stay empty.
std::unique_ptr<Einkaufspreisfindung> purchasePricesOf(const Environment& environment) {
  try {
    return environment.components.createEinkaufspreisfindung(*environment.connection);
  } catch (const DatabaseError&) {
    throw;
  } catch (const std::exception& error) {
    environment.diagnostics.report({"purchase price component", error.what(), ""});
    return nullptr;
  }
}

/// Names the article.
class MissingConversion : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

Sql articleRow(std::string_view article) {
  return sql("Select * From Artikelstamm where Artikelnummer  = '"_sql, value(article), "'"_sql);
}

Sql stagedPositions(std::string_view jobId) {
  return sql("Select *, Cast(Positionsnummer as int) as intPos From ImportPos Where JobID ='"_sql,
             value(jobId), "' Order By intPos"_sql);
}

} // namespace

OrderLines::OrderLines(Environment& environment, const OrderOptions& options)
    : environment_(environment), options_(options), taxRules_(environment), costs_(environment),
      stock_(environment), purchasePrices_(purchasePricesOf(environment)) {}

WrittenLines OrderLines::writePositions(const OrderContext& order, OrderFacts& facts,
                                        std::string_view jobId) {
  const auto positions = environment_.connection->open(stagedPositions(jobId));
  if (positions->eof()) throw OrderFailure(Rule::OrderNoPositionsRefused);
  const auto lines =
      environment_.connection->open(sql("Select * From Auftragspos Where Auftragsnummer =0"_sql));
  WrittenLines written;
  const JobFields position = fieldsOf(*positions);
  for (; !positions->eof(); positions->moveNext()) {
    try {
      writePosition(*lines, *positions, facts.of(position), order, written);
    } catch (const OrderFailure& failure) {
      throw OrderFailure(Finding(failure.finding()).at(positionOf(position)));
    }
  }
  return written;
}

void OrderLines::foresee(OrderFacts& facts, std::string_view jobId, const Date& date) const {
  const auto positions = environment_.connection->open(stagedPositions(jobId));
  const JobFields position = fieldsOf(*positions);
  for (; !positions->eof(); positions->moveNext()) {
    const auto article = environment_.connection->open(articleRow(positions->text("Artikelnummer")));
    PositionFacts& known = facts.of(position);
    known.price();
    if (article->eof()) continue;
    try {
      purchasePrice(*article, date, known.unit(), numberOf(*positions, "Menge"));
    } catch (const MissingConversion&) {
      // Comes again when the position is written.
    }
  }
}

void OrderLines::writePosition(Recordset& lines, Recordset& position, PositionFacts& facts,
                               const OrderContext& order, WrittenLines& written) {
  const std::int32_t number = positionNumber(position);
  const std::string articleNumber = position.text("Artikelnummer");
  const auto article = openArticle(articleNumber);
  const std::string& unit = facts.unit();
  const FoundPrice& price = facts.price();
  const double quantity = numberOf(position, "Menge");
  lines.addNew();
  fillCommon(lines, order, number, "K");
  fillArticle(lines, *article, unit, quantity);
  fillQuantities(lines, position);
  const double charged = fillPrice(lines, position, price);
  if (auto hint = replacedPrice(fieldsOf(position), facts)) written.hints.add(std::move(*hint));
  fillPurchasePrice(lines, *article, order, unit, quantity);
  const std::string delivery = position.text("Liefertermin");
  fillFlags(lines, position.value("Lieferbereit"), position.value("Fakturierbereit"),
            delivery.empty() ? order.deliveryDate : delivery);
  fillTax(lines, *article, order);
  fillCostAssignment(lines, position, order);
  written.lines.push_back({articleNumber, lines.text("Bezeichnung"), quantity, charged});
  written.anyAccessory |= MasterData::isAccessoryScheme(article->text("Erfassungsschema"));
  written.numbers.insert(number);
  lines.update();
  if (!position.value("Artikellangtext").isEmpty()) writeText(lines, order, position);
}

std::unique_ptr<Recordset> OrderLines::openArticle(std::string_view article) const {
  auto found = environment_.connection->open(articleRow(article));
  if (found->eof()) throw OrderFailure(Rule::OrderArticleRefused, article);
  if (found->value("ArtikelGesperrt").truth().value_or(false))
    throw OrderFailure(Rule::OrderArticleBlocked, article);
  return found;
}

void OrderLines::fillCommon(Recordset& line, const OrderContext& order, std::int32_t position,
                            std::string_view type) {
  line.set("Auftragsnummer", Value(order.number));
  line.set("Zeilentyp", Value(type));
  line.set("Zustand", Value("0"));
  line.set("Import", Value(true));
  line.set("Positionsnummer", Value(position));
  line.set("ÄndUser", Value("Import"));
}

void OrderLines::fillArticle(Recordset& line, Recordset& article, std::string_view unit, double quantity) {
  for (const ColumnName column : articleColumns) line.set(column, article.value(column));
  // An article without that flag has an amount.
  if (article.value("WertJN").isNull()) line.set("WertJN", Value(true));
  const Value divers(article.value("KZDivers").truth().value_or(false));
  line.set("Artikelnummer", article.value("Artikelnummer"));
  line.set("KZDivers", divers);
  line.set("ArtikelDivers", divers);
  line.set("Mengeneinheit", emptyToNull(Value(unit)));
  line.set("Bezeichnung", emptyToNull(Value(firstText(article, "Bezeichnung", "Bez"))));
  line.set("PosGewicht", Value(throughDecimalText(numberOf(article, "Gewicht") * quantity)));
  line.set("Lagernummer", article.value("Hauptlager"));
  const Value purchaseUnit = emptyToNull(Value(firstText(article, "MengeneinheitEinkauf", "MEEinkauf")));
  line.set("MengeneinheitEinkauf", purchaseUnit);
  line.set("EKMengeneinheit", purchaseUnit);
}

void OrderLines::fillQuantities(Recordset& line, Recordset& position) {
  line.set("Menge", orderQuantity(position.value("Menge")));
  line.set("Auslieferungsmenge", orderQuantity(position.value("Auslieferungsmenge")));
  line.set("Liefermenge", position.value("Auslieferungsmenge"));
  line.set("Fakturiermenge", orderQuantity(position.value("Fakturiermenge")));
}

/// Writes the found price, or the staged one when none was found, and returns it.
double OrderLines::fillPrice(Recordset& line, Recordset& position, const FoundPrice& found) {
  if (found.failed()) throw OrderFailure(Rule::OrderPriceRefused);
  SalesPrice price = found.price;
  if (!found.found()) {
    price = SalesPrice();
    price.price = price.calculatedPrice = numberOf(position, "Preis");
    price.priceUnit = numberOf(position, "Preiseinheit");
    if (price.priceUnit == 0) price.priceUnit = 1;
    price.discount = numberOf(position, "Rabatt");
    if (price.discount != 0) {
      // The staged discount is a percentage; the totals deduct it as a first stage.
      price.discountKind = price.discounts.kind = "A";
      price.discounts.marks[0] = "P";
      price.discounts.values[0] = price.discount;
    }
  }
  line.set("Preis", orderAmount(price.price));
  line.set("KalkPreis", orderAmount(price.calculatedPrice));
  line.set("Preiseinheit", Value(orderPriceUnit(price.priceUnit)));
  line.set("Rabatt", Value(orderDiscount(price.discount)));
  line.set("Preisfindung", emptyToNull(Value(price.source)));
  line.set("Rabattart", emptyToNull(Value(price.discountKind)));
  line.set("KZRabattart", emptyToNull(Value(price.discounts.kind)));
  constexpr std::array marks{ColumnName("KZRabatt1"), ColumnName("KZRabatt2"), ColumnName("KZRabatt3")};
  constexpr std::array values{ColumnName("Rabatt1"), ColumnName("Rabatt2"), ColumnName("Rabatt3")};
  for (std::size_t i = 0; i < marks.size(); ++i) {
    line.set(marks[i], emptyToNull(Value(price.discounts.marks[i])));
    line.set(values[i], Value(orderDiscount(price.discounts.values[i])));
  }
  return price.price;
}

/// Scale quantities of purchase prices are in purchase units, so the quantity is converted first. Raises
/// `MissingConversion` when that is impossible.
std::optional<PurchasePrice> OrderLines::purchasePrice(Recordset& article, const Date& date,
                                                       std::string_view salesUnit, double quantity) const {
  const std::string supplier = article.text("Hauptlieferant");
  if (!purchasePrices_ || supplier.empty()) return std::nullopt;
  const std::string number = article.text("Artikelnummer");
  std::string unit = firstText(article, "MEEinkauf", "MengeneinheitEinkauf");
  if (unit.empty()) unit = article.text("Mengeneinheit");
  try {
    if (!unit.empty() && !salesUnit.empty() && !equalCodes(unit, salesUnit))
      quantity = throughDecimalText(quantity / stock_.conversionFactor(number, salesUnit, unit));
  } catch (const std::exception&) {
    throw MissingConversion(number);
  }
  const std::string group = article.text("Einkaufsgruppe");
  const auto method = wholeAs<std::int16_t>(article.value("PreisfindungEinkauf")).value_or(0);
  return purchasePrices_->find({supplier, number, quantity, unit, group, method, date});
}

/// Without a conversion the line gets no purchase price.
void OrderLines::fillPurchasePrice(Recordset& line, Recordset& article, const OrderContext& order,
                                   std::string_view salesUnit, double quantity) {
  std::optional<PurchasePrice> found;
  try {
    found = purchasePrice(article, order.date, salesUnit, quantity);
  } catch (const MissingConversion& missing) {
    environment_.diagnostics.report(
        {std::string("purchase price of article ") + missing.what(), missingConversion(), ""});
  }
  if (!found) return;
  line.set("EKPreis", orderAmount(found->price));
  line.set("EKPreiseinheit", Value(found->priceUnit));
  line.set("EKRabatt", Value(found->discount));
  line.set("EKRabattart", emptyToNull(Value(found->discountKind)));
  line.set("EKRabatt1", Value(found->discounts[0]));
  line.set("EKRabatt2", Value(found->discounts[1]));
  line.set("EKRabatt3", Value(found->discounts[2]));
}

void OrderLines::fillFlags(Recordset& line, const Value& delivery, const Value& invoice,
                           const std::string& date) {
  line.set("Lieferbereit", Value(options_.lineReadyForDelivery.value_or(delivery.truth().value_or(false))));
  line.set("Fakturierbereit", Value(options_.lineReadyForInvoice.value_or(invoice.truth().value_or(false))));
  line.set("Liefertermin", emptyToNull(Value(date)));
}

const OrderLines::Tax& OrderLines::taxOf(const OrderContext& order, const std::string& articleMark) {
  const auto [entry, isNew] =
      taxes_.try_emplace({order.customerTaxMark, articleMark, order.dateStamp.substr(0, 8)});
  if (!isNew) return entry->second;
  try {
    if (!options_.taxChangeDay) throw OrderFailure(Rule::OrderTaxChangeDay);
    const auto key =
        taxRules_.keyOf(order.customerTaxMark, articleMark, order.dateStamp, *options_.taxChangeDay);
    entry->second.key = std::to_string(key);
    entry->second.rate = taxRules_.GetSteuerSatz(entry->second.key);
    return entry->second;
  } catch (const MissingTaxKey&) {
    taxes_.erase(entry);
    throw OrderFailure(Rule::OrderTaxKey);
  } catch (const MissingTaxRate&) {
    const std::string key = entry->second.key;
    taxes_.erase(entry);
    throw OrderFailure(Rule::OrderTaxRate, key);
  } catch (...) {
    taxes_.erase(entry);
    throw;
  }
}

void OrderLines::fillTax(Recordset& line, Recordset& article, const OrderContext& order) {
  const std::string mark = article.text("MwSt_KZ");
  const Tax& tax = taxOf(order, mark);
  line.set("MwSt_KZ", emptyToNull(Value(mark)));
  line.set("MwSt_Konto", Value(tax.key));
  line.set("MwSt_Satz", Value(tax.rate));
  line.set("DZMwSt", Value(order.dateStamp));
}

/// Dimensions missing from the line are taken from the job, then from the customer.
void OrderLines::fillCostAssignment(Recordset& line, Recordset& position, const OrderContext& order) {
  const std::int32_t own = orderCost(position.value("KostID"));
  const Value kept = own == 0 ? Value::null() : Value(own);
  if (!options_.costAssignment) {
    line.set("KostID", kept);
    return;
  }
  CostPair pair = CostAssignment::trimmed(costs_.read(own));
  for (const std::int32_t source : {order.jobCost, order.customerCost}) {
    if (source == 0 || (!pair.Kostenstelle.empty() && !pair.Kostentraeger.empty())) continue;
    const CostPair other = CostAssignment::trimmed(costs_.read(source));
    if (pair.Kostenstelle.empty()) pair.Kostenstelle = other.Kostenstelle;
    if (pair.Kostentraeger.empty()) pair.Kostentraeger = other.Kostentraeger;
  }
  if (pair.Kostenstelle.empty() && pair.Kostentraeger.empty()) {
    line.set("KostID", Value::null());
  } else if (options_.createCosts) {
    line.set("KostID", Value(costs_.findOrCreate(pair)));
  } else {
    const auto found = costs_.find(pair);
    line.set("KostID", found ? Value(*found) : kept);
  }
}

void OrderLines::writeText(Recordset& lines, const OrderContext& order, Recordset& position) {
  lines.addNew();
  fillCommon(lines, order, positionNumber(position), "T");
  lines.set("Artikellangtext", position.value("Artikellangtext"));
  lines.set("Text", position.value("Artikellangtext"));
  lines.set("Schriftart", Value("Arial"));
  lines.set("Schriftstil", Value("Standard"));
  lines.set("Schriftgröße", Value(std::int16_t{10}));
  lines.set("WoDrucken", Value("NBLRG"));
  lines.set("WertJN", Value(false));
  lines.update();
}

double OrderLines::articlePrice(std::string_view article) {
  const auto found = openArticle(article);
  const double price = numberOf(*found, "Preis");
  return price != 0 ? price : numberOf(*found, "Ind_Zahl4");
}

void OrderLines::appendLine(const OrderContext& order, WrittenLines& written, std::string_view article,
                            double price) {
  const auto found = openArticle(article);
  const auto lines =
      environment_.connection->open(sql("Select * From Auftragspos Where Auftragsnummer =0"_sql));
  lines->addNew();
  const std::int32_t position = nextPosition(written.numbers);
  written.numbers.insert(position);
  fillCommon(*lines, order, position, "K");
  fillArticle(*lines, *found, found->text("Mengeneinheit"), 1);
  for (const ColumnName quantity :
       {ColumnName("Menge"), ColumnName("Auslieferungsmenge"), ColumnName("Liefermenge"),
        ColumnName("Fakturiermenge"), ColumnName("Preiseinheit")})
    lines->set(quantity, Value(1.0));
  lines->set("Preis", orderAmount(price));
  lines->set("KalkPreis", orderAmount(price));
  for (const ColumnName discount :
       {ColumnName("Rabatt"), ColumnName("Rabatt1"), ColumnName("Rabatt2"), ColumnName("Rabatt3")})
    lines->set(discount, Value(0.0));
  fillPurchasePrice(*lines, *found, order, found->text("Mengeneinheit"), 1);
  fillFlags(*lines, Value::null(), Value::null(), order.deliveryDate);
  fillTax(*lines, *found, order);
  written.lines.push_back({std::string(article), lines->text("Bezeichnung"), 1, price});
  lines->update();
}

} // namespace qx
