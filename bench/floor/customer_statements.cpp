#include "floor/customer_statements.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qx::bench {
namespace {

std::string customerInsertText() {
  std::string names = "\"ÄndUser\", \"ÄndDatum\", Kundennummer";
  std::string places = "?, ?, ?";
  for (const CopiedColumn& copied : copiedColumns) {
    names.append(", \"").append(copied.column).append("\"");
    places += ", ?";
  }
  return "INSERT INTO Kundenstamm (" + names + ") VALUES (" + places + ")";
}

std::string customerUpdateText() {
  std::string text = "UPDATE Kundenstamm SET \"ÄndUser\"=?, \"ÄndDatum\"=?";
  // What a job leaves out stays.
  for (const CopiedColumn& copied : copiedColumns)
    text.append(", \"").append(copied.column).append("\"=coalesce(?, \"").append(copied.column).append("\")");
  return text + " WHERE rowid=?";
}

std::vector<CodeLookup> codeLookups(Database& database) {
  std::vector<CodeLookup> lookups;
  const auto add = [&](std::string_view jobColumn, std::string_view text) {
    lookups.push_back({jobColumn, database.prepare(text)});
  };
  add("Kundengruppe", "SELECT rowid, Kundengruppe, Langtext FROM Kundengruppen WHERE Kundengruppe=?");
  for (const std::string_view rep : {"Vertreter1", "Vertreter2", "Vertreter3"})
    add(rep, "SELECT rowid, VertreterNr, Suchbegriff, Bez1 FROM Vertreter WHERE VertreterNr=?");
  add("Zahlungsart", "SELECT rowid, Zahlungsart, Kurztext FROM Zahlungsarten WHERE Zahlungsart=?");
  add("Währung", "SELECT rowid, \"Währung\" FROM \"Währungen\" WHERE \"Währung\"=?");
  add("BLZ", "SELECT rowid, Bankleitzahl, Kreditinstitut FROM Kreditinstitute WHERE Bankleitzahl=?");
  return lookups;
}

} // namespace

RowView::RowView(const Statement& statement) {
  for (int i = 0; i < statement.columnCount(); ++i) names_.push_back(statement.columnName(i));
  values_.resize(names_.size());
}

std::size_t RowView::place(std::string_view column) const {
  const auto found = std::ranges::find(names_, column);
  if (found == names_.end()) throw std::out_of_range("no column " + std::string(column));
  return static_cast<std::size_t>(found - names_.begin());
}

void RowView::read(const Statement& statement) {
  for (std::size_t i = 1; i < values_.size(); ++i) values_[i] = statement.text(static_cast<int>(i));
}

CustomerStatements::CustomerStatements(Database& database)
    : job(database.prepare("SELECT rowid, * FROM ImportKopf WHERE rowid=?")),
      customer(database.prepare("SELECT rowid, * FROM Kundenstamm WHERE Kundennummer=?")),
      codes(codeLookups(database)), insertCustomer(database.prepare(customerInsertText())),
      updateCustomer(database.prepare(customerUpdateText())),
      addAddress(database.prepare(
          "INSERT INTO Adressenstamm (Kundennummer, Adressnummer, Bez1, Bez2, Bez3, Strasse, Land, PLZ, Ort) "
          "SELECT ?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9 WHERE NOT EXISTS (SELECT Kundennummer FROM "
          "Adressenstamm WHERE Kundennummer=?1 AND Adressnummer=?2)")),
      setJobType(database.prepare("UPDATE ImportKopf SET JobType=13 WHERE rowid=?")),
      addLine(
          database.prepare("INSERT INTO Protokollpositionen (ID, Zeile, Text0, Text1, Text2, Text3, Text8, "
                           "Memo0) SELECT ?1, coalesce(max(Zeile),0)+1, 'Kunden', ?2, 'Erledigt', ?3, ?4, "
                           "?5 FROM Protokollpositionen WHERE ID=?1")),
      indexedNames(
          database.prepare("SELECT rowid, Kundennummer, Suchbegriff, Bez1, Bez2, Bez3, PLZ, Ort FROM "
                           "Kundenstamm WHERE Kundennummer=?")),
      writeIndex(database.prepare("INSERT INTO Adressindex (Kundennummer, Art, Suchtext) VALUES (?, 1, ?) ON "
                                  "CONFLICT (Kundennummer, Art) DO UPDATE SET Suchtext=excluded.Suchtext")) {}

} // namespace qx::bench
