#include "floor/contracts.h"

#include "floor/customer_statements.h"
#include "floor/job_run.h"

#include <array>
#include <stdexcept>
#include <string>

namespace qx::bench {
namespace {

constexpr std::array copied{
    CopiedColumn{"Vertragsdatum", "Vertragsdatum"}, CopiedColumn{"Vertragsbeginn", "Vertragsbeginn"},
    CopiedColumn{"Intervall", "Intervall", true}, CopiedColumn{"IntervallErstmals", "Intervall", true},
    CopiedColumn{"IntervallVerlängerung", "Intervall", true},
    // The samples have no `Info`, which would come first.
    CopiedColumn{"Bemerkung", "Bemerkung"}, CopiedColumn{"Kündigungsgrund", "Kündigungsgrund"},
    CopiedColumn{"Anzahl", "Menge", true}, CopiedColumn{"Betrag", "Preis", true},
    CopiedColumn{"PreisabweichungGrund", "IndFild1"},
    CopiedColumn{"PreisabweichungGenehmigender", "IndFild2"},
    CopiedColumn{"PreisabweichungDatum", "IndFild3"}, CopiedColumn{"PreisabweichungBemerkung", "IndFild4"},
    CopiedColumn{"VS_KdNr", "VS_KdNr"}, CopiedColumn{"GekuendigtAm", "GekuendigtAm"},
    CopiedColumn{"GrundVerlorenSchl", "GrundVerlorenSchl"}};
constexpr std::array keyColumns{"Kundennummer", "Vertragsnummer", "Artikelnummer", "Vertragsart"};

std::string insertText() {
  std::string names = "Kundennummer, Vertragsnummer, VertrGegenstandsNr, Vertragsart, Zahlungsweise, "
                      "\"ÄndUser\", \"ÄndDatum\", Vertragsende, Zustand, Vertragstext";
  std::string places = "?, ?, ?, ?, '0', 'Import', '20260101000000', ?, ?, ?";
  for (const CopiedColumn& column : copied) {
    names.append(", \"").append(column.column).append("\"");
    places += ", ?";
  }
  return "INSERT INTO \"Verträge\" (" + names + ") VALUES (" + places + ")";
}

std::string updateText() {
  std::string text = "UPDATE \"Verträge\" SET Zahlungsweise='0', \"ÄndUser\"='Import', "
                     "\"ÄndDatum\"='20260101000000', Vertragsende=?, Zustand=?, Vertragstext=?";
  for (const CopiedColumn& column : copied) text.append(", \"").append(column.column).append("\"=?");
  return text + " WHERE rowid=?";
}

/// One run. The views of the job's row stand until the job is done.
class ContractRun {
public:
  explicit ContractRun(Database& database)
      : job_(database.prepare("SELECT rowid, * FROM ImportKopf WHERE rowid=?")), row_(job_),
        contract_(database.prepare("SELECT rowid, * FROM \"Verträge\" WHERE Kundennummer=? AND "
                                   "Vertragsnummer=? AND VertrGegenstandsNr=? AND Vertragsart=?")),
        customer_(database.prepare("SELECT rowid, Kundennummer FROM Kundenstamm WHERE Kundennummer=?")),
        kind_(database.prepare("SELECT rowid, Vertragsart FROM Vertragsarten WHERE Vertragsart=?")),
        relation_(database.prepare("SELECT rowid, VertrGegenstandsNr FROM \"VertragsGegenständePos\" "
                                   "WHERE VertrGegenstandsNr=? AND Vertragsart=?")),
        object_(database.prepare("SELECT rowid, VertrGegenstandsNr FROM \"Vertragsgegenstände\" "
                                 "WHERE VertrGegenstandsNr=?")),
        objectText_(database.prepare("SELECT rowid, Bez FROM \"Vertragsgegenstände\" "
                                     "WHERE VertrGegenstandsNr=?")),
        insert_(database.prepare(insertText())), update_(database.prepare(updateText())),
        setJobType_(database.prepare("UPDATE ImportKopf SET JobType=43 WHERE rowid=?")),
        addLine_(database.prepare("INSERT INTO Protokollpositionen (ID, Zeile, Text0, Text1, Text2, Text3, "
                                  "Memo0) SELECT ?1, coalesce(max(Zeile),0)+1, 'Vertrag', ?2, 'Erledigt', "
                                  "?3, ?4 FROM Protokollpositionen WHERE ID=?1")) {
    for (std::size_t i = 0; i < copied.size(); ++i) copiedPlaces_[i] = row_.place(copied[i].jobColumn);
    for (std::size_t i = 0; i < keyColumns.size(); ++i) keyPlaces_[i] = row_.place(keyColumns[i]);
  }

  void write(std::int64_t rowId) {
    if (!job_.bind(1, rowId).step()) throw std::runtime_error("a job is gone");
    row_.read(job_);
    const std::int64_t contract = findContract();
    check();
    writeContract(contract);
    setJobType_.bind(1, rowId).run();
    addLine();
    job_.reset();
  }

private:
  std::string_view key(std::size_t i) const { return row_[keyPlaces_[i]]; }

  /// The row of the contract; 0 when there is none.
  std::int64_t findContract() {
    std::int64_t rowId = 0;
    for (std::size_t i = 0; i < keyColumns.size(); ++i) contract_.bind(static_cast<int>(i) + 1, key(i));
    if (contract_.step()) {
      rowId = contract_.integer(0);
      for (int i = 1; i < contract_.columnCount(); ++i) contract_.text(i);
    }
    contract_.reset();
    return rowId;
  }

  static void require(Statement& find) {
    if (!find.step()) throw std::runtime_error("what a contract refers to is missing");
    find.reset();
  }

  void check() {
    require(customer_.bind(1, key(0)));
    require(kind_.bind(1, key(3)));
    require(relation_.bind(1, key(2)).bind(2, key(3)));
    require(object_.bind(1, key(2)));
  }

  void writeContract(std::int64_t rowId) {
    Statement& write = rowId == 0 ? insert_ : update_;
    int place = 0;
    if (rowId == 0)
      for (std::size_t i = 0; i < keyColumns.size(); ++i) write.bind(++place, key(i));
    const std::string_view end = row_[end_];
    write.bind(++place, end.empty() ? std::string_view("999999") : end);
    const std::string_view state = row_[state_];
    write.bind(++place, state.empty() ? std::string_view("A") : state);
    if (!objectText_.bind(1, key(2)).step()) throw std::runtime_error("an object is gone");
    write.bindColumn(++place, objectText_, 1);
    objectText_.reset();
    for (std::size_t i = 0; i < copied.size(); ++i)
      if (copied[i].number)
        write.bindColumn(++place, job_, static_cast<int>(copiedPlaces_[i]));
      else
        write.bindOrNull(++place, row_[copiedPlaces_[i]]);
    if (rowId != 0) write.bind(++place, rowId);
    write.run();
  }

  void addLine() {
    info_.assign("Vertragsnummer: ").append(key(1));
    info_.append("\r\nVertragsdatum: ").append(row_[contractDate_]);
    info_.append("\r\nKundennummer: ").append(key(0));
    addLine_.bind(1, protocolId).bind(2, key(1)).bind(3, row_[date_]).bind(4, info_).run();
  }

  Statement job_;
  RowView row_;
  Statement contract_, customer_, kind_, relation_, object_, objectText_;
  Statement insert_, update_, setJobType_, addLine_;
  std::array<std::size_t, copied.size()> copiedPlaces_{};
  std::array<std::size_t, keyColumns.size()> keyPlaces_{};
  std::size_t end_ = row_.place("Vertragsende");
  std::size_t state_ = row_.place("Zustand");
  std::size_t date_ = row_.place("Eingangsdatum");
  std::size_t contractDate_ = row_.place("Vertragsdatum");
  std::string info_;
};

} // namespace

void processContracts(Database& database) {
  ContractRun run(database);
  runJobs(database,
          "SELECT rowid, JobID FROM ImportKopf WHERE JobType=40 OR JobType=20 ORDER BY Kundennummer, rowid",
          [&run](std::int64_t rowId) { run.write(rowId); });
}

} // namespace qx::bench
