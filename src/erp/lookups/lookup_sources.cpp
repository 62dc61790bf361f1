#include "erp/lookups/lookup_sources.h"

#include "model/text.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace qx::erp {
namespace {

Sql everyRow() { return {}; }
// Rows without an address number cannot be chosen. A customer's own addresses precede the common ones.
Sql ownAddresses() { return sql("Kundennummer Is Not Null And Adressnummer Is Not Null"_sql); }
Sql commonAddresses() { return sql("Kundennummer Is Null And Adressnummer Is Not Null"_sql); }
Sql deliveryNotes() { return sql("Belegart = 'LS' And Belegnummer Is Not Null"_sql); }
Sql creditNotes() { return sql("Belegart = 'GS' And Belegnummer Is Not Null"_sql); }
Sql invoices() { return sql("Belegart = 'RG' And Belegnummer Is Not Null"_sql); }

using Name = std::string_view;
using Group = Sql (*)();

constexpr std::array<Group, 1> allRows{everyRow};

constexpr std::array customerColumns{LookupColumn{"Kundennummer", "Kundennummer", 14},
                                     LookupColumn{"Suchbegriff", "Suchbegriff", 16},
                                     LookupColumn{"Bez1", "Name", 30},
                                     LookupColumn{"Strasse", "Straße", 24},
                                     LookupColumn{"PLZ", "PLZ", 8},
                                     LookupColumn{"Ort", "Ort", 20}};
constexpr std::array<Name, 3> customerSearch{"Kundennummer", "Suchbegriff", "Bez1"};
constexpr std::array<Name, 1> customerOrder{"Kundennummer"};

constexpr std::array addressColumns{LookupColumn{"Kundennummer", "Kundennummer", 14},
                                    LookupColumn{"Adressnummer", "Adressnummer", 14},
                                    LookupColumn{"Bez1", "Name", 30},
                                    LookupColumn{"Strasse", "Straße", 24},
                                    LookupColumn{"PLZ", "PLZ", 8},
                                    LookupColumn{"Ort", "Ort", 20}};
constexpr std::array<Name, 4> addressSearch{"Adressnummer", "Bez1", "Ort", "PLZ"};
// Addresses of no customer may share a number.
constexpr std::array<Name, 2> addressOrder{"Adressnummer", rowKeyColumn};
constexpr std::array<Group, 2> addressGroups{ownAddresses, commonAddresses};

constexpr std::array supplierColumns{LookupColumn{"Lieferantennummer", "Lieferantennummer", 18},
                                     LookupColumn{"Bez1", "Name", 40}};
constexpr std::array<Name, 2> supplierSearch{"Lieferantennummer", "Bez1"};
constexpr std::array<Name, 1> supplierOrder{"Lieferantennummer"};

constexpr std::array bankColumns{LookupColumn{"Bankleitzahl", "Bankleitzahl", 14},
                                 LookupColumn{"Kreditinstitut", "Kreditinstitut", 44}};
constexpr std::array<Name, 2> bankSearch{"Bankleitzahl", "Kreditinstitut"};
constexpr std::array<Name, 1> bankOrder{"Bankleitzahl"};

constexpr std::array articleColumns{LookupColumn{"Artikelnummer", "Artikelnummer", 20},
                                    LookupColumn{"Bez", "Bezeichnung", 44},
                                    LookupColumn{"Mengeneinheit", "Einheit", 10}};
constexpr std::array<Name, 2> articleSearch{"Artikelnummer", "Bez"};
constexpr std::array<Name, 1> articleOrder{"Artikelnummer"};

constexpr std::array contractObjectColumns{LookupColumn{"VertrGegenstandsNr", "Nummer", 18},
                                           LookupColumn{"Bez", "Bezeichnung", 44}};
constexpr std::array<Name, 2> contractObjectSearch{"VertrGegenstandsNr", "Bez"};
constexpr std::array<Name, 1> contractObjectOrder{"VertrGegenstandsNr"};

constexpr std::array textBlockColumns{
    LookupColumn{"TextNummer", "Textnummer", 14}, LookupColumn{"ZusatztextNummer", "Zusatztext", 12},
    LookupColumn{"SprachKZ", "Sprache", 10}, LookupColumn{"Kurztext", "Kurztext", 44}};
constexpr std::array<Name, 2> textBlockSearch{"TextNummer", "Kurztext"};
constexpr std::array<Name, 4> textBlockOrder{"Textart", "TextNummer", "ZusatztextNummer", "SprachKZ"};

constexpr std::array documentColumns{LookupColumn{"Belegnummer", "Belegnummer", 14, LookupColumnKind::Number},
                                     LookupColumn{"Datum", "Datum", 12, LookupColumnKind::Stamp},
                                     LookupColumn{"Kundennummer", "Kundennummer", 14},
                                     LookupColumn{"Suchbegriff", "Suchbegriff", 24}};
constexpr std::array<Name, 2> documentSearch{"Belegnummer", "Suchbegriff"};
constexpr std::array<Name, 2> documentOrder{"Belegnummer", rowKeyColumn};
constexpr std::array<Group, 1> deliveryNoteGroup{deliveryNotes};
constexpr std::array<Group, 1> creditNoteGroup{creditNotes};
constexpr std::array<Group, 1> invoiceGroup{invoices};

// Offers, orders and purchase orders of a supplier have no tables here, hence no record source.
constexpr std::array lookupSourceList{
    LookupSource{"AUSK_KUNDENAUSKUNFT", "Kundenstamm", customerColumns, customerSearch, customerOrder,
                 allRows, true},
    LookupSource{"AUSK_ADRESSAUSKUNFT", "Adressenstamm", addressColumns, addressSearch, addressOrder,
                 addressGroups},
    LookupSource{"AUSK_LIEFERANTENAUSKUNFT", "Lieferanten", supplierColumns, supplierSearch, supplierOrder,
                 allRows},
    LookupSource{"AUSK_KREDITINSTITUTAUSKUNFT", "Kreditinstitute", bankColumns, bankSearch, bankOrder,
                 allRows},
    LookupSource{"AUSK_ARTIKELAUSKUNFT", "Artikelstamm", articleColumns, articleSearch, articleOrder, allRows,
                 true},
    LookupSource{"AUSK_VERTRAGSGEGENSTANDSAUSKUNFT", "Vertragsgegenstände", contractObjectColumns,
                 contractObjectSearch, contractObjectOrder, allRows},
    LookupSource{"AUSK_TEXTBAUSTEINAUSKUNFT", "Textbausteine", textBlockColumns, textBlockSearch,
                 textBlockOrder, allRows},
    LookupSource{"AUSK_LIEFERSCHEINAUSKUNFT", "Belegindex", documentColumns, documentSearch, documentOrder,
                 deliveryNoteGroup},
    LookupSource{"AUSK_GUTSCHRIFTSAUSKUNFT", "Belegindex", documentColumns, documentSearch, documentOrder,
                 creditNoteGroup},
    LookupSource{"AUSK_RECHNUNGSAUSKUNFT", "Belegindex", documentColumns, documentSearch, documentOrder,
                 invoiceGroup}};

enum class Case : std::uint8_t { AsTyped, Lower, Upper, Capitalised };

/// Converts the case of umlauts and accented letters; the tables ignore that of ASCII letters.
std::string withCase(std::string_view text, Case wanted) {
  std::string form(text);
  if (wanted == Case::AsTyped) return form;
  for (std::size_t i = 1; i < form.size(); ++i) {
    if (form[i - 1] != accentedLead) continue;
    const bool upper = wanted == Case::Upper || (wanted == Case::Capitalised && i == 1);
    form[i] = upper ? accentedUpper(form[i]) : accentedLower(form[i]);
  }
  return form;
}

/// The tables compare umlauts exactly, so each usual spelling of a text is searched separately.
std::vector<std::string> spellings(std::string_view text) {
  std::vector<std::string> all;
  for (const Case wanted : {Case::AsTyped, Case::Lower, Case::Upper, Case::Capitalised})
    if (std::string form = withCase(text, wanted); std::ranges::find(all, form) == all.end())
      all.push_back(std::move(form));
  return all;
}

/// What a search compares: the column, or the digits of a number.
Sql searchedText(const LookupSource& source, std::string_view column) {
  const auto shown = std::ranges::find(source.columns, column, &LookupColumn::name);
  const bool digits = shown != source.columns.end() && shown->kind == LookupColumnKind::Number;
  return digits ? sql("Cast("_sql, name(column), " As Text)"_sql) : sql(name(column));
}

/// What a section reads: a group of rows and, for a search by index, a column and a spelling.
struct Section {
  std::size_t group = 0;
  std::size_t column = 0;
  std::size_t spelling = 0;
};

/// The sections of a search: one per group and, by index, per column and spelling.
class Sections {
public:
  Sections(const LookupSource& source, std::string_view search, const Connection& connection)
      : source_(source), connection_(connection),
        spellings_(search.empty() ? std::vector<std::string>() : spellings(search)),
        byIndex_(source.indexed && !search.empty()) {}

  std::size_t count() const { return source_.groups.size() * perGroup(); }
  Section at(std::size_t index) const {
    if (!byIndex_) return {index, 0, 0};
    const std::size_t within = index % perGroup();
    return {index / perGroup(), within / spellings_.size(), within % spellings_.size()};
  }

  /// The sort columns of a section, the searched one first.
  std::vector<std::string_view> order(const Section& section) const {
    std::vector<std::string_view> columns;
    if (byIndex_) columns.push_back(source_.searched[section.column]);
    for (std::string_view column : source_.order) {
      if (column == rowKeyColumn) column = connection_.rowKey();
      if (std::ranges::find(columns, column) == columns.end()) columns.push_back(column);
    }
    return columns;
  }

  /// The conditions for a row of the section, each preceded by its And, excluding rows of earlier sections. A
  /// row after `after` cannot precede the prefix, so the index needs one lower bound only.
  Sql conditions(const Section& section, const LookupPosition& after) const {
    Sql all;
    if (!byIndex_)
      return spellings_.empty() ? all
                                : all.append(sql(" And ("_sql))
                                      .append(anyOf(source_.searched, spellings_))
                                      .append(sql(")"_sql));
    const std::string_view column = source_.searched[section.column];
    const std::string& spelling = spellings_[section.spelling];
    all.append(sql(" And "_sql))
        .append(connection_.beginsWith(sql(name(column)), spelling, !after.after.empty()));
    Sql earlier = anyOf(source_.searched.first(section.column), spellings_);
    // A database may find one spelling by another.
    if (section.spelling > 0) {
      if (section.column > 0) earlier.append(sql(" Or "_sql));
      earlier.append(anyOf({&column, 1}, std::span(spellings_).first(section.spelling)));
    }
    // Also true where one of the columns is null.
    if (!earlier.shapes().empty())
      all.append(sql(" And Case When "_sql)).append(earlier).append(sql(" Then 0 Else 1 End = 1"_sql));
    return all;
  }

private:
  std::size_t perGroup() const { return byIndex_ ? source_.searched.size() * spellings_.size() : 1; }

  /// The condition that one of the columns begins with one of the spellings.
  Sql anyOf(std::span<const std::string_view> columns, std::span<const std::string> spellings) const {
    Sql all;
    for (const std::string_view column : columns)
      for (const std::string& spelling : spellings)
        all.append(all.shapes().empty() ? Sql() : sql(" Or "_sql))
            .append(connection_.beginsWith(searchedText(source_, column), spelling, false));
    return all;
  }

  const LookupSource& source_;
  const Connection& connection_;
  std::vector<std::string> spellings_;
  bool byIndex_;
};

Sql listOf(std::span<const std::string_view> columns) {
  Sql list;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) list.append(sql(", "_sql));
    list.append(sql(name(columns[i])));
  }
  return list;
}

Sql selectOf(const Connection& connection, const LookupSource& source, const Sections& sections,
             const Sql& criteria, const LookupPosition& after, std::size_t limit) {
  const Section section = sections.at(after.section);
  const std::vector<std::string_view> order = sections.order(section);
  std::vector<std::string_view> list;
  for (const LookupColumn& column : source.columns) list.push_back(column.name);
  list.insert(list.end(), order.begin(), order.end());

  Sql statement = sql("Select "_sql).append(listOf(list));
  statement.append(sql(" From "_sql, name(source.table), " Where 1 = 1"_sql));
  if (const Sql group = source.groups[section.group](); !group.shapes().empty())
    statement.append(sql(" And "_sql)).append(group);
  if (!criteria.shapes().empty()) statement.append(sql(" And ("_sql)).append(criteria).append(sql(")"_sql));
  statement.append(sections.conditions(section, after));
  if (!after.after.empty()) {
    std::vector<ColumnValue> position;
    for (std::size_t i = 0; i < order.size(); ++i) position.push_back({order[i], after.after.at(i)});
    statement.append(sql(" And ("_sql)).append(connection.comesAfter(position)).append(sql(")"_sql));
  }
  return statement.append(sql(" Order By "_sql))
      .append(listOf(order))
      .append(
          sql(" Offset 0 Rows Fetch Next "_sql, number(static_cast<std::int64_t>(limit)), " Rows Only"_sql));
}

std::string shownText(const LookupColumn& column, const Value& content) {
  std::string text = content.text();
  if (column.kind != LookupColumnKind::Stamp || text.size() < 8) return text;
  return text.substr(6, 2) + "." + text.substr(4, 2) + "." + text.substr(0, 4);
}

} // namespace

std::span<const LookupSource> lookupSources() { return lookupSourceList; }

const LookupSource* findLookupSource(std::string_view recordSource) {
  const auto* const found = std::ranges::find_if(
      lookupSourceList, [&](const LookupSource& source) { return equalCodes(source.name, recordSource); });
  return found == lookupSourceList.end() ? nullptr : &*found;
}

std::vector<std::size_t> resultColumns(const LookupSource& source, std::span<const std::string> fields) {
  std::vector<std::size_t> indexes;
  for (const std::string& field : fields) {
    const auto found = std::ranges::find_if(
        source.columns, [&](const LookupColumn& column) { return equalCodes(column.name, field); });
    if (found == source.columns.end())
      throw std::runtime_error("Die Auskunft " + std::string(source.name) + " hat kein Feld " + field + ".");
    indexes.push_back(static_cast<std::size_t>(found - source.columns.begin()));
  }
  return indexes;
}

LookupPages::LookupPages(Connection& connection, const LookupSource& source, Sql criteria)
    : connection_(connection), source_(source), criteria_(std::move(criteria)) {}

LookupPage LookupPages::page(std::string_view search, const LookupPosition& after, std::size_t limit) const {
  const Sections sections(source_, trimBlanks(search), connection_);
  LookupPage page;
  LookupPosition position = after;
  while (position.section < sections.count() && page.rows.size() < limit) {
    const std::size_t wanted = limit - page.rows.size();
    const auto found =
        connection_.open(selectOf(connection_, source_, sections, criteria_, position, wanted));
    for (; !found->eof(); found->moveNext()) {
      LookupRow& row = page.rows.emplace_back();
      for (std::size_t i = 0; i < source_.columns.size(); ++i)
        row.push_back(shownText(source_.columns[i], found->value(i)));
      if (found->recordCount() < wanted || page.rows.size() < limit) continue;
      position.after.clear();
      for (std::size_t i = source_.columns.size(); i < found->fieldCount(); ++i)
        position.after.push_back(found->value(i));
    }
    if (found->recordCount() < wanted) position = {position.section + 1, {}};
  }
  if (position.section < sections.count()) page.next = std::move(position);
  return page;
}

Sql LookupPages::statement(std::string_view search, const LookupPosition& after, std::size_t limit) const {
  return selectOf(connection_, source_, Sections(source_, trimBlanks(search), connection_), criteria_, after,
                  limit);
}

} // namespace qx::erp
