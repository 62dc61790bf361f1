// A small database on which the program runs with faults, and the state of its rows afterwards.
#pragma once

#include "adapters/sqlite/sqlite_database.h"
#include "cli/program_fixture.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

using Rows = std::multiset<std::string>;

/// Two customers to be written, one that is known, one that is refused for a code, one released by a clerk;
/// contracts with and without a position; an order of the new customer, one that fails, one that follows it.
inline constexpr std::string_view sampleJobs = R"([
{"type":"Kunde","JobID":"KUNDE-NEU","Eingangsdatum":"23.11.2026","Kundennummer":"90001",
 "Bez1":"Takelwerk Nord","Ort":"Emden","VS_AdrNr":"1","VS_Bez1":"Lager Nord","VS_Ort":"Leer"},
{"type":"Kunde","JobID":"KUNDE-BEKANNT","Eingangsdatum":"23.11.2026","Kundennummer":"70181",
 "Bez1":"Ahlendorn Bauservice GmbH","Strasse":"Zum Steinbruch 3","Land":"DE","PLZ":"00101","Ort":"Erlenbrück",
 "Telefon":"04921 7"},
{"type":"Kunde","JobID":"KUNDE-CODE","Eingangsdatum":"23.11.2026","Kundennummer":"90002","Bez1":"Segelhaus",
 "ZahlungsbedSchl":"QQ"},
{"type":"Kunde","JobID":"KUNDE-FREI","Eingangsdatum":"23.11.2026","Kundennummer":"90003","Bez1":"Bootsbau",
 "Kundengruppe":"NEU1"},
{"type":"Vertrag","JobID":"VERTRAG","Eingangsdatum":"23.11.2026","Kundennummer":"70074",
 "Vertragsnummer":"V90001","Vertragsbeginn":"01.12.2026","Vertragsende":"999999","Intervall":12,
 "Positionen":[{"ChildID":"V1","Artikelnummer":"W-SAEGE","Vertragsart":"WV","Menge":1,"Preis":240}]},
{"type":"Vertrag","JobID":"KUNDENVERTRAG","JobType":40,"Eingangsdatum":"23.11.2026","Kundennummer":"90001",
 "Vertragsnummer":"V90002","Artikelnummer":"M-WASCH","Vertragsart":"MV","Zustand":"A",
 "Vertragsbeginn":"01.12.2026","Vertragsende":"999999","Intervall":12,"Menge":1,"Preis":120},
{"type":"Auftrag","JobID":"AUFTRAG-NEUKUNDE","Eingangsdatum":"23.11.2026","Kundennummer":"90001",
 "Bez1":"Takelwerk Nord","Positionen":[
 {"ChildID":"N1","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":2,"Mengeneinheit":"ST"},
 {"ChildID":"N2","Positionsnummer":2,"Artikelnummer":"HBU-014","Menge":3,"Mengeneinheit":"ST"}]},
{"type":"Auftrag","JobID":"AUFTRAG-FALSCH","Eingangsdatum":"23.11.2026","Kundennummer":"70181",
 "Bez1":"Ahlendorn Bauservice GmbH","Positionen":[
 {"ChildID":"F1","Positionsnummer":1,"Artikelnummer":"GIBTESNICHT","Menge":2,"Mengeneinheit":"ST"}]},
{"type":"Auftrag","JobID":"AUFTRAG","Eingangsdatum":"24.11.2026","Kundennummer":"70181",
 "Bez1":"Ahlendorn Bauservice GmbH","Positionen":[
 {"ChildID":"A1","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":1,"Mengeneinheit":"ST"},
 {"ChildID":"A2","Positionsnummer":2,"Artikelnummer":"HBU-014","Menge":1,"Mengeneinheit":"ST"}]}
])";

/// Replaces two of the sample's jobs, one with a position less, and adds one.
inline constexpr std::string_view furtherJobs = R"([
{"type":"Kunde","JobID":"KUNDE-NEU","Eingangsdatum":"23.11.2026","Kundennummer":"90001","Bez1":"Takelwerk Süd"},
{"type":"Auftrag","JobID":"AUFTRAG","Eingangsdatum":"24.11.2026","Kundennummer":"70181","Positionen":[
 {"ChildID":"A3","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":5,"Mengeneinheit":"ST"}]},
{"type":"Auftrag","JobID":"AUFTRAG-DAZU","Eingangsdatum":"24.11.2026","Kundennummer":"70181","Positionen":[
 {"ChildID":"D1","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":1,"Mengeneinheit":"ST"}]}
])";

/// Every row of every table without what differs from run to run: times, and the name of the day's protocol.
/// A run that dies before its first job leaves a protocol without lines.
Rows rowsOf(const std::filesystem::path& file);
/// What is missing and what is too much; empty when nothing is.
std::string difference(const Rows& expected, const Rows& found);

/// A database with the demo company and no jobs.
class FaultTest : public ::testing::Test {
protected:
  FaultTest();

  void stageSample();

  template <class Change>
  void edit(Change&& change) {
    const auto database = SqliteDatabase().open(file.string());
    WorkUnit unit(*database);
    change(*database);
    unit.commit();
  }

  /// Runs a command on the database; nothing when it hangs.
  std::optional<ProgramResult> run(const std::vector<std::string>& arguments, std::string_view input,
                                   const std::map<std::string, std::string>& fault = {}) const;
  void must(const std::vector<std::string>& arguments, std::string_view input = {}) const;

  /// Saves the database, or its absence, for `restore`.
  void keepStart();
  void restore() const;
  /// Looking at the database would complete or clear away what the fault left beside it.
  std::filesystem::path copyOfDatabase() const;

  TemporaryFolder folder;
  std::filesystem::path file = folder.path() / "faulty" / "faulty.db";

private:
  std::filesystem::path start_ = folder.path() / "start.db";
};

} // namespace qx
