#include "rules/combo_lists.h"

#include "model/text.h"
#include "rules/payment_terms.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace qx {
namespace {

/// The row of the current value: the first in its exact spelling, else the first in any case. Null matches
/// nothing.
class Selection {
public:
  explicit Selection(std::string_view current) : current_(current) {}
  void offer(const Value& key, std::size_t row) {
    if (key.isNull()) return;
    const std::string text = key.text();
    if (!exact_ && text == current_) exact_ = row;
    if (!any_ && equalCodes(text, current_)) any_ = row;
  }
  std::optional<std::size_t> row() const { return exact_ ? exact_ : any_; }

private:
  std::string_view current_;
  std::optional<std::size_t> exact_;
  std::optional<std::size_t> any_;
};

/// Binds the rows and selects the one of the current value, if there is one.
bool bind(ComboTarget& combo, ComboRows source, std::optional<std::size_t> selected) {
  combo.setRowSource(std::move(source));
  // Column 1 is hidden in every list, deliberately also where it holds the text instead of the code.
  combo.hideColumn(1);
  combo.setColumnHeaders(false);
  if (selected) combo.setBookmark(*selected);
  return selected.has_value();
}

} // namespace

bool ComboLists::fill(ComboTarget& combo, const Sql& statement, ColumnName key,
                      std::string_view current) const {
  const auto rows = activeConnection(environment_).open(statement);
  if (rows->eof()) return false;
  ComboRows source;
  source.columns = {std::string(rows->fieldName(0)), std::string(rows->fieldName(1))};
  const std::size_t keyIndex = ColumnName(source.columns[0]) == key ? 0 : 1;
  Selection selection(current);
  for (; !rows->eof(); rows->moveNext()) {
    selection.offer(rows->value(keyIndex), source.rows.size());
    source.rows.push_back({rows->value(std::size_t{0}).text(), rows->value(std::size_t{1}).text()});
  }
  return bind(combo, std::move(source), selection.row());
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
  Selection selection(current);
  for (; !rows->eof(); rows->moveNext()) {
    selection.offer(rows->value("ZahlbedSchl"), source.rows.size());
    source.rows.push_back({paymentTermsText(PaymentTerms::read(*rows)), rows->text("ZahlbedSchl")});
  }
  return bind(combo, std::move(source), selection.row());
}

} // namespace qx
