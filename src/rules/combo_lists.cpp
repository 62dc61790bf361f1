#include "rules/combo_lists.h"

#include "rules/active_connection.h"
#include "rules/german_text.h"
#include "rules/payment_terms.h"

#include <algorithm>

namespace qx {
namespace {

/// Binds the rows, whose codes stand in column `key`, and selects the one of the current value.
bool bind(ComboTarget& combo, ComboRows source, std::size_t key, std::string_view current) {
  const auto found =
      std::ranges::find_if(source.rows, [&](const auto& row) { return equalCodes(row[key], current); });
  const bool known = found != source.rows.end();
  const auto position = static_cast<std::size_t>(found - source.rows.begin());
  combo.setRowSource(std::move(source));
  // Column 1 is hidden in every list, deliberately also where it holds the text instead of the code.
  combo.hideColumn(1);
  combo.setColumnHeaders(false);
  if (known) combo.setBookmark(position);
  return known;
}

} // namespace

bool ComboLists::fill(ComboTarget& combo, const Sql& statement, ColumnName key,
                      std::string_view current) const {
  const auto rows = activeConnection(environment_).open(statement);
  if (rows->eof()) return false;
  ComboRows source;
  source.columns = {std::string(rows->fieldName(0)), std::string(rows->fieldName(1))};
  for (; !rows->eof(); rows->moveNext())
    source.rows.push_back({rows->value(std::size_t{0}).text(), rows->value(std::size_t{1}).text()});
  const std::size_t keyIndex = ColumnName(source.columns[0]) == key ? 0 : 1;
  return bind(combo, std::move(source), keyIndex, current);
}

bool ComboLists::FillComboVersandart(ComboTarget& combo, std::string_view current) const {
  return fill(combo, sql("SELECT Kurztext, Versandart From Versandtexte"_sql), "Versandart", current);
}

bool ComboLists::FillComboZahlungsart(ComboTarget& combo, std::string_view current) const {
  return fill(combo, sql("SELECT Kurztext, Zahlungsart From Zahlungsarten"_sql), "Zahlungsart", current);
}

bool ComboLists::FillComboKundengruppe(ComboTarget& combo, std::string_view current) const {
  return fill(combo, sql("SELECT Langtext, Kundengruppe From Kundengruppen"_sql), "Kundengruppe", current);
}

bool ComboLists::FillComboPreisliste(ComboTarget& combo, std::string_view current) const {
  return fill(combo, sql("SELECT Langtext, Preisliste From PreislistenKopf"_sql), "Preisliste", current);
}

bool ComboLists::FillComboWährung(ComboTarget& combo, std::string_view current) const {
  return fill(combo, sql("SELECT Langtext, Währung From Währungen"_sql), "Währung", current);
}

bool ComboLists::FillComboVertragsart(ComboTarget& combo, std::string_view current) const {
  return fill(combo, sql("SELECT Vertragsart, Kurztext From Vertragsarten"_sql), "Vertragsart", current);
}

bool ComboLists::FillComboVertreter(ComboTarget& combo, std::string_view current) const {
  return fill(
      combo,
      sql("Select (isnull(Bez1,'') + ' ' + isnull(Bez2,'')) as Bezeichnung, VertreterNr from Vertreter order by vertreternr"_sql),
      "VertreterNr", current);
}

bool ComboLists::FillComboZahlungsbed(ComboTarget& combo, std::string_view current) const {
  const auto rows = activeConnection(environment_)
                        .open(sql("SELECT [ZahlbedSchl], "
                                  "[SkontoTage1],[SkontoProzent1],[SkontoTage2],[SkontoProzent2],"
                                  "[SkontoTage3],[SkontoProzent3],[NettoTage] FROM Zahlungsbedingungen "
                                  "ORDER BY [ZahlbedSchl]"_sql));
  if (rows->eof()) return false;
  ComboRows source;
  source.columns = {"Kurztext", "ZahlbedSchl"};
  for (; !rows->eof(); rows->moveNext())
    source.rows.push_back({paymentTermsText(PaymentTerms::read(*rows)), rows->text("ZahlbedSchl")});
  return bind(combo, std::move(source), 1, current);
}

} // namespace qx
