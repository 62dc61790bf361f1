#include "floor/comparison.h"

#include <array>
#include <string>

namespace qx::bench {
namespace {

struct ComparedTable {
  std::string_view name;
  std::string_view query;
};

constexpr std::array compared{
    ComparedTable{"ImportKopf", "SELECT * FROM ImportKopf ORDER BY JobID"},
    ComparedTable{"Kundenstamm", "SELECT * FROM Kundenstamm ORDER BY Kundennummer"},
    ComparedTable{"Adressenstamm", "SELECT * FROM Adressenstamm ORDER BY Kundennummer, Adressnummer"},
    ComparedTable{"Adressindex", "SELECT * FROM Adressindex ORDER BY Kundennummer, Art"},
    ComparedTable{"ImportPos", "SELECT * FROM ImportPos ORDER BY ChildID"},
    ComparedTable{
        "Verträge",
        "SELECT Kundennummer, Vertragsnummer, Vertragsdatum, Vertragsbeginn, Vertragsende, "
        "Zahlungsweise, Intervall, IntervallErstmals, \"IntervallVerlängerung\", Bemerkung, "
        "\"Kündigungsgrund\", Zustand, \"ÄndUser\", Vertragsart, VertrGegenstandsNr, Anzahl, Betrag, "
        "PreisabweichungGrund, PreisabweichungGenehmigender, PreisabweichungDatum, "
        "PreisabweichungBemerkung, VS_KdNr, GekuendigtAm, GrundVerlorenSchl, Vertragstext "
        "FROM \"Verträge\" ORDER BY Kundennummer, Vertragsnummer, Vertragsart, VertrGegenstandsNr"},
    ComparedTable{"Auftragskopf", "SELECT * FROM Auftragskopf ORDER BY Auftragsnummer"},
    ComparedTable{"Auftragspos", "SELECT * FROM Auftragspos ORDER BY Auftragsnummer, Positionsnummer, rowid"},
    ComparedTable{"Belegindex", "SELECT * FROM Belegindex ORDER BY Belegart, Belegnummer"},
    ComparedTable{"Nummernkreise", "SELECT * FROM Nummernkreise ORDER BY NSchl, Buchungskreis"},
    ComparedTable{"Protokollpositionen",
                  "SELECT Zeile, Text0, Text1, Text2, Text3, Text4, Text5, Text6, Text7, Text8, Memo0 "
                  "FROM Protokollpositionen ORDER BY ID, Zeile"}};

bool sameRow(const Statement& first, const Statement& second, std::string& column) {
  for (int i = 0; i < first.columnCount(); ++i)
    if (first.isNull(i) != second.isNull(i) || first.text(i) != second.text(i)) {
      column = first.columnName(i);
      return false;
    }
  return true;
}

bool sameTable(const ComparedTable& table, Database& first, Database& second, std::ostream& differences) {
  Statement left = first.prepare(table.query);
  Statement right = second.prepare(table.query);
  std::string column;
  for (std::int64_t row = 1;; ++row) {
    const bool more = left.step();
    if (right.step() != more) {
      differences << table.name << ": one side has only " << row - 1 << " rows\n";
      return false;
    }
    if (!more) return true;
    if (sameRow(left, right, column)) continue;
    differences << table.name << ": row " << row << " differs in " << column << '\n';
    return false;
  }
}

} // namespace

bool sameWork(Database& first, Database& second, std::ostream& differences) {
  bool same = true;
  for (const ComparedTable& table : compared) same = sameTable(table, first, second, differences) && same;
  return same;
}

} // namespace qx::bench
