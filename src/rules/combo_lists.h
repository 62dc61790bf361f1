// The drop-down lists of codes, independent of any toolkit, and the master tables that fill them.
#pragma once

#include "platform/environment.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The rows of a drop-down list, each a text and a code.
struct ComboRows {
  std::array<std::string, 2> columns;
  std::vector<std::array<std::string, 2>> rows;
};

/// A drop-down list with two columns.
class ComboTarget {
public:
  virtual ~ComboTarget() = default;
  /// Replaces the rows and clears the selection.
  virtual void setRowSource(ComboRows rows) = 0;
  virtual void hideColumn(int index) = 0;
  virtual void setColumnHeaders(bool shown) = 0;
  /// Selects a row by its 0-based position.
  virtual void setBookmark(std::size_t row) = 0;
};

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
