#include "ui/lookup_bridge.h"

#include "model/text.h"
#include "platform/failure.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <utility>

namespace qx {
namespace {

/// The restriction of the rows.
enum class Criteria : std::uint8_t { None, CustomerOrNone, TextKind, Supplier, Customer };

struct Lookup {
  std::string_view name;    ///< in upper case
  std::string_view caption; ///< empty: as the caller spelled the name
  std::string_view joint;   ///< between caption and context; empty when the caption stands alone
  Criteria criteria = Criteria::None;
  std::array<std::string_view, 2> fields;
};

constexpr std::string_view documentLookup = "BELEGAUSKUNFT";

constexpr std::array lookups{
    Lookup{"KUNDENAUSKUNFT", "Kundenauskunft", "", Criteria::None, {"Kundennummer"}},
    Lookup{"ADRESSAUSKUNFT",
           "Adressauskunft",
           " zu Kunde ",
           Criteria::CustomerOrNone,
           {"Kundennummer", "Adressnummer"}},
    Lookup{"LIEFERANTENAUSKUNFT", "Lieferantenauskunft", "", Criteria::None, {"Lieferantennummer"}},
    Lookup{"KREDITINSTITUTAUSKUNFT", "Kreditinstitutauskunft", "", Criteria::None, {"Bankleitzahl"}},
    Lookup{"ARTIKELAUSKUNFT", "Artikelauskunft", "", Criteria::None, {"Artikelnummer"}},
    Lookup{"VERTRAGSGEGENSTANDSAUSKUNFT",
           "Vertragsgegenstandsauskunft",
           "",
           Criteria::None,
           {"VertrGegenstandsNr"}},
    Lookup{
        "TEXTBAUSTEINAUSKUNFT", "Textbausteinauskunft", "", Criteria::TextKind, {"SprachKZ", "Textnummer"}},
    Lookup{"ANGEBOTSAUSKUNFT", "", " zu Lieferant ", Criteria::Supplier, {"Belegnummer"}},
    Lookup{"AUFTRAGSAUSKUNFT", "", " zu Lieferant ", Criteria::Supplier, {"Belegnummer"}},
    Lookup{"BESTELLAUSKUNFT", "", " zu Lieferant ", Criteria::Supplier, {"Belegnummer"}},
    Lookup{documentLookup, "", " zu Kunde ", Criteria::Customer, {"Belegnummer"}}};

std::string_view nameOf(LookupDocument document) {
  switch (document) {
  case LookupDocument::Gutschrift:
    return "Gutschriftsauskunft";
  case LookupDocument::Rechnung:
    return "Rechnungsauskunft";
  case LookupDocument::Lieferschein:
    break;
  }
  return "Lieferscheinauskunft";
}

Sql criteriaOf(Criteria criteria, std::string_view context) {
  switch (criteria) {
  case Criteria::CustomerOrNone:
    return context.empty() ? sql("Kundennummer is null"_sql)
                           : sql("Kundennummer='"_sql, value(context), "' or Kundennummer is null"_sql);
  case Criteria::TextKind:
    return sql("Textart='"_sql, value(context), "'"_sql);
  case Criteria::Supplier:
    return sql("Lieferantennummer='"_sql, value(context), "'"_sql);
  case Criteria::Customer:
    return sql("Kundennummer='"_sql, value(context), "'"_sql);
  case Criteria::None:
    break;
  }
  return {};
}

/// Null for an unknown name. The record source has the caller's spelling.
std::optional<LookupRequest> requestOf(std::string_view lookup, std::string_view context,
                                       LookupDocument document) {
  // The second lookup of text blocks is the first one.
  if (equalCodes(lookup, "TEXTBAUSTEINAUSKUNFT2")) lookup.remove_suffix(1);
  const auto* const known =
      std::ranges::find_if(lookups, [&](const Lookup& l) { return equalCodes(l.name, lookup); });
  if (known == lookups.end()) return std::nullopt;

  const std::string spelled(known->name == documentLookup ? nameOf(document) : lookup);
  LookupRequest request;
  request.recordSource = "AUSK_" + spelled;
  request.caption = known->caption.empty() ? spelled : std::string(known->caption);
  if (!known->joint.empty()) request.caption.append(known->joint).append(context);
  request.profile = known->name;
  request.acceptCaption = "Übernehmen";
  request.criteria = criteriaOf(known->criteria, context);
  for (const std::string_view field : known->fields)
    if (!field.empty()) request.resultFields.emplace_back(field);
  return request;
}

} // namespace

std::vector<std::string> LookupBridge::open(std::string_view lookup, std::string_view context,
                                            LookupDocument document) {
  const std::optional<LookupRequest> request = requestOf(lookup, context, document);
  if (!request) {
    showMessage(environment_, {"Diese Auskunft wird nicht unterstützt!"});
    return {};
  }
  std::vector<std::string> chosen;
  trapped(environment_.diagnostics, {request->recordSource}, [&] {
    const std::shared_ptr<Session> session = environment_.session;
    if (!session) throw std::runtime_error("there is no ERP session");
    std::vector<std::string> fields = environment_.components.createAuskunft()->show(*session, *request);
    if (!fields.empty() && fields.size() != request->resultFields.size())
      throw std::runtime_error("the lookup did not give all of its result fields");
    chosen = std::move(fields);
  });
  return chosen;
}

} // namespace qx
