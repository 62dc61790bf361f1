// Fills the dialogs' drop-down lists with the codes of the master tables.
#pragma once

#include "platform/environment.h"
#include "rules/combo_target.h"

#include <string_view>

namespace qx {

/// Each member fills a list, selects the row of the current value (codes compare without regard to ASCII
/// case) and returns whether there was one. An empty table leaves the list unchanged. Database errors reach
/// the caller.
class ComboLists {
public:
  explicit ComboLists(Environment& environment) : environment_(environment) {}

  bool FillComboVersandart(ComboTarget& combo, std::string_view current) const;
  bool FillComboZahlungsart(ComboTarget& combo, std::string_view current) const;
  bool FillComboKundengruppe(ComboTarget& combo, std::string_view current) const;
  bool FillComboPreisliste(ComboTarget& combo, std::string_view current) const;
  bool FillComboWährung(ComboTarget& combo, std::string_view current) const;
  bool FillComboVertragsart(ComboTarget& combo, std::string_view current) const;
  bool FillComboVertreter(ComboTarget& combo, std::string_view current) const;
  /// Shows the generated sentence of each term of payment.
  bool FillComboZahlungsbed(ComboTarget& combo, std::string_view current) const;

private:
  bool fill(ComboTarget& combo, const Sql& statement, ColumnName key, std::string_view current) const;

  Environment& environment_;
};

} // namespace qx
