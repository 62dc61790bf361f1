#include "rules/cost_assignment.h"

#include "model/text.h"
#include "settings/settings.h"

#include <array>
#include <stdexcept>

namespace qx {
namespace {

struct DocumentKind {
  std::string_view code;
  const WholeOption* option;
};
constexpr std::array documentKinds{
    DocumentKind{"AN", &option::costsOfQuotes}, DocumentKind{"AB", &option::costsOfOrders},
    DocumentKind{"BS", &option::costsOfPurchases}, DocumentKind{"AF", &option::costsOfInquiries}};

/// The mandatory dimensions of a document kind, by the number in its setting.
constexpr bool demandsCentre(std::int16_t rule) { return rule == 1 || rule == 3; }
constexpr bool demandsUnit(std::int16_t rule) { return rule == 2 || rule == 3; }

std::int32_t numberOf(Recordset& row) {
  const auto number = wholeAs<std::int32_t>(row.value("KostID"));
  if (!number) throw std::runtime_error("a cost assignment has no usable number");
  return *number;
}

} // namespace

CostPair CostAssignment::trimmed(const CostPair& pair) {
  return {std::string(trimBlanks(pair.Kostenstelle)), std::string(trimBlanks(pair.Kostentraeger))};
}

std::int32_t CostAssignment::CheckKostzuord(std::string_view Belegart, std::int32_t KostID,
                                            bool ShowMessage) const {
  const CostPair pair = trimmed(read(KostID));
  const std::int16_t rule = ruleOf(Belegart);
  if (demandsCentre(rule) && pair.Kostenstelle.empty()) {
    if (ShowMessage) showMissing(option::costCentreLabel);
    return -1;
  }
  if (demandsUnit(rule) && pair.Kostentraeger.empty()) {
    if (ShowMessage) showMissing(option::costUnitLabel);
    return -1;
  }
  return 0;
}

std::int16_t CostAssignment::ruleOf(std::string_view documentKind) const {
  for (const DocumentKind& kind : documentKinds)
    if (equalCodes(kind.code, documentKind))
      return Settings(environment_, SettingTrap::Refusals)[*kind.option].value_or(0);
  return 0; // of an unknown kind
}

void CostAssignment::showMissing(const TextOption& labelOption) const {
  const std::string label = Settings(environment_, SettingTrap::Refusals)[labelOption];
  environment_.desktop.show(
      {"Fehlende Zuordnung für " + label + "!", "Kostenzuordnung fehlt!", MessageIcon::Exclamation});
}

CostPair CostAssignment::read(std::int32_t KostID) const {
  const auto rows = activeConnection(environment_)
                        .open(sql("Select * FROM Kostenzuordnung WHERE KostID="_sql, number(KostID)));
  if (rows->eof()) return {};
  return {rows->text("Kostenstelle"), rows->text("Kostentraeger")};
}

std::unique_ptr<Recordset> CostAssignment::openPair(const CostPair& pair) const {
  Sql statement = sql("Select * FROM Kostenzuordnung WHERE "_sql);
  statement.append(pair.Kostenstelle.empty()
                       ? sql("Kostenstelle Is Null AND "_sql)
                       : sql("Kostenstelle='"_sql, value(pair.Kostenstelle), "' AND "_sql));
  statement.append(pair.Kostentraeger.empty()
                       ? sql("Kostentraeger Is Null"_sql)
                       : sql("Kostentraeger='"_sql, value(pair.Kostentraeger), "'"_sql));
  return activeConnection(environment_).open(statement);
}

std::optional<std::int32_t> CostAssignment::find(const CostPair& pair) const {
  const auto rows = openPair(trimmed(pair));
  if (rows->eof()) return std::nullopt;
  return numberOf(*rows);
}

std::int32_t CostAssignment::findOrCreate(const CostPair& pair) const {
  const CostPair wanted = trimmed(pair);
  const auto rows = openPair(wanted);
  if (rows->eof()) {
    rows->addNew();
    rows->set("Kostenstelle", emptyToNull(wanted.Kostenstelle));
    rows->set("Kostentraeger", emptyToNull(wanted.Kostentraeger));
    rows->update();
  }
  return numberOf(*rows);
}

} // namespace qx
