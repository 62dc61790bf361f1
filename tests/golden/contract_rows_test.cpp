// Whole rows of contract jobs: every property holds its own name or a number of its own.
#include "golden_fixture.h"

#include "store/entry_objects.h"
#include "store/staging_writer.h"

namespace qx {
namespace {

constexpr const char* contractJob = R"(
  JobID=V1 | Status:14 | Eingagsart:15 | Eingangsdatum=08.10.2026
  Kundennummer Vertragsnummer Artikelnummer Vertragsart
  Zustand=B
  Vertragstext
  Vertragsdatum=01.02.2026 | Vertragsbeginn=02.03.2026 | Vertragsende=03.04.2027
  Kündigungsgrund
  Intervall:5 | Menge:16.5 | Preis:17.25
  Fehlertext Bemerkung IndFild1 IndFild2 IndFild3 IndFild4 Wartungspreis
  PreisabweichungGrund:18
  PreisabweichungGenehmigender
  PreisabweichungDatum=04.05.2026
  PreisabweichungBemerkung VS_KdNr
  GekuendigtAm=09.10.2026
  GrundVerlorenSchl
)";

constexpr const char* writtenContract = R"(
  Kundennummer Vertragsnummer
  Vertragsdatum=01.02.2026 | Vertragsbeginn=02.03.2026 | Vertragsende=04.05.2028 | Zahlungsweise=2
  Intervall=5 | IntervallErstmals=5 | IntervallVerlängerung=5 | Bemerkung=Info
  Kündigungsgrund
  Zustand=B | ÄndUser=Import | ÄndDatum=20261124103000 | Vertragsart=P_Vertragsart
  VertrGegenstandsNr=P_Artikelnummer | Anzahl=6.5 | Betrag=7.25 | PreisabweichungGrund=IndFild1
  PreisabweichungGenehmigender=IndFild2 | PreisabweichungDatum=IndFild3 | PreisabweichungBemerkung=IndFild4
  VS_KdNr
  GekuendigtAm=09.10.2026
  GrundVerlorenSchl
  Vertragstext=P_Vertragstext
)";

class ContractRows : public GoldenTest {
protected:
  ContractRows() {
    fill("Kundenstamm", "Kundennummer");
    fill("Vertragsarten", "Vertragsart=P_Vertragsart\n--\nVertragsart");
    fill("VertragsGegenständePos", R"(
      VertrGegenstandsNr=P_Artikelnummer | Vertragsart=P_Vertragsart
      --
      VertrGegenstandsNr=Artikelnummer
      Vertragsart)");
    fill("Vertragsgegenstände", R"(
      VertrGegenstandsNr=P_Artikelnummer | Bez=Gegenstand der Position
      --
      VertrGegenstandsNr=Artikelnummer | Bez=Gegenstand des Kopfes)");
  }
};

TEST_F(ContractRows, ASingleContractWithTheValuesOfItsFirstPosition) {
  stage("Vertrag", contractJob,
        {R"(
    ChildID=V1a | Positionsnummer:1 | Vertragsart=P_Vertragsart | Artikelnummer=P_Artikelnummer | Menge:6.5
    Preis:7.25 | Vertragsende=04.05.2028 | Vertragstext=P_Vertragstext)",
         R"(
    ChildID=V1b | Positionsnummer:2 | Vertragsart=Q_Vertragsart | Artikelnummer=Q_Artikelnummer | Menge:8.5
    Preis:9.25)"});
  setStaged("Info Kündigungsgrund\nZahlungsweise=2");
  run();
  EXPECT_EQ(rows("ImportKopf"), expected(R"(
    JobID=V1 | JobType=23 | ImportType=10 | Status=14 | Eingangsdatum=08.10.2026
    Kundennummer Bemerkung Vertragsnummer
    Vertragsdatum=01.02.2026 | Vertragsbeginn=02.03.2026 | Vertragsende=04.05.2028 | Zahlungsweise=2
    Fehlertext VS_KdNr IndFild1 IndFild2 IndFild3 IndFild4 GrundVerlorenSchl
    Artikelnummer=P_Artikelnummer | Vertragsart=P_Vertragsart | Zustand=B | Vertragstext=P_Vertragstext
    Intervall=5 | Menge=6.5 | Preis=7.25 | GekuendigtAm=09.10.2026
    Info Kündigungsgrund
  )"));
  EXPECT_EQ(rows("ImportPos"), "");
  EXPECT_EQ(rows("Verträge"), expected(writtenContract));
  EXPECT_EQ(rows("Protokollpositionen"), expected(R"(
    Zeile=1 | Text0=Vertrag | Text1=Vertragsnummer | Text2=Erledigt | Text3=08.10.2026
    Memo0=Vertragsnummer: Vertragsnummer / Vertragsdatum: 01.02.2026 / Kundennummer: Kundennummer
  )"));
}

TEST_F(ContractRows, AContractOfACustomerReplacesTheStoredLineAndLeavesItsPositionsAlone) {
  fill("Verträge", R"(
    Kundennummer Vertragsnummer
    Vertragsdatum=01.01.2001 | Vertragsbeginn=02.01.2001 | Vertragsende=03.01.2001 | Zahlungsweise=9
    Intervall=91 | IntervallErstmals=92 | IntervallVerlängerung=93 | Bemerkung=alt | Kündigungsgrund=alt
    Zustand=I | ÄndUser=Anna | ÄndDatum=20010101000000
    Vertragsart
    VertrGegenstandsNr=Artikelnummer | Anzahl=94 | Betrag=95 | PreisabweichungGrund=alt
    PreisabweichungGenehmigender=alt | PreisabweichungDatum=alt | PreisabweichungBemerkung=alt | VS_KdNr=alt
    GekuendigtAm=04.01.2001 | GrundVerlorenSchl=alt | Vertragstext=alt)");
  stage("Vertrag", std::string(contractJob) + "Zustand=\nVertragsende=999999\nIntervall:null", {R"(
    ChildID=V1a | Positionsnummer:11 | Vertragsart=P_Vertragsart | Artikelnummer=P_Artikelnummer
    ChkAbwBetrag:true | Menge:6.5 | Wartungspreis:12.5 | Preis:7.25 | Vertragsende=04.05.2028
    Artikellangtext
    Auslieferungsmenge:13.5 | Fakturiermenge:14.5 | Lieferbereit:true | Fakturierbereit:false
    Mengeneinheit
    Vertragstext=P_Vertragstext)"});
  setStaged("JobType=40\nKündigungsgrund");
  run();
  EXPECT_EQ(rows("ImportPos"), expected(R"(
    JobID=V1 | ChildID=V1a | JobType=1001 | Positionsnummer=11 | Vertragsart=P_Vertragsart
    Artikelnummer=P_Artikelnummer | Menge=6.5 | Preis=7.25
    Artikellangtext
    Auslieferungsmenge=13.5 | Fakturiermenge=14.5 | Lieferbereit=1 | Fakturierbereit=0
    Mengeneinheit
    Vertragsende=04.05.2028 | Vertragstext=P_Vertragstext)"));
  EXPECT_EQ(rows("ImportKopf"), expected(R"(
    JobID=V1 | JobType=43 | ImportType=10 | Status=14 | Eingangsdatum=08.10.2026
    Kundennummer Bemerkung Vertragsnummer
    Vertragsdatum=01.02.2026 | Vertragsbeginn=02.03.2026
    Fehlertext VS_KdNr IndFild1 IndFild2 IndFild3 IndFild4 GrundVerlorenSchl Artikelnummer Vertragsart
    - Zustand
    Vertragstext
    Menge=16.5 | Preis=17.25 | GekuendigtAm=09.10.2026
    Kündigungsgrund
  )"));
  EXPECT_EQ(rows("Verträge"), expected(writtenContract, "", R"(
    Vertragsende=999999 | Zahlungsweise=0 | Intervall=12 | IntervallErstmals=12 | IntervallVerlängerung=12
    Bemerkung
    Zustand=A
    Vertragsart
    VertrGegenstandsNr=Artikelnummer | Anzahl=16.5 | Betrag=17.25
    Vertragstext
  )"));
}

TEST_F(ContractRows, AContractOfEmptyPropertiesTakesTheDefaults) {
  fill("VertragsGegenständePos", "VertrGegenstandsNr=Artikelnummer\nVertragsart=P_Vertragsart");
  VertragFields job;
  job.JobID = "V1";
  job.JobType = 20;
  job.Kundennummer = "Kundennummer";
  job.Artikelnummer = "Artikelnummer";
  job.Vertragsart = "P_Vertragsart";
  writeStaged(connection(), job);
  run();
  EXPECT_EQ(rows("ImportKopf"), expected(R"(
    JobID=V1 | JobType=23 | ImportType=10 | Status=0
    - Eingangsdatum
    Kundennummer
    - Bemerkung Vertragsnummer Vertragsdatum Vertragsbeginn Fehlertext VS_KdNr
    - IndFild1 IndFild2 IndFild3 IndFild4 GrundVerlorenSchl
    Artikelnummer
    Vertragsart=P_Vertragsart
    - Zustand Vertragstext
    Intervall=0 | Menge=0 | Preis=0
    - GekuendigtAm
  )"));
  EXPECT_EQ(rows("Verträge"), expected(R"(
    Kundennummer
    - Vertragsnummer
    Vertragsende=999999 | Zahlungsweise=0 | Intervall=0 | IntervallErstmals=0 | IntervallVerlängerung=0
    Zustand=A | ÄndUser=Import | ÄndDatum=20261124103000 | Vertragsart=P_Vertragsart
    VertrGegenstandsNr=Artikelnummer | Anzahl=0 | Betrag=0 | Vertragstext=Gegenstand des Kopfes
  )"));
}

} // namespace
} // namespace qx
