// Whole rows of customer jobs: every property holds its own name or a number of its own.
#include "golden_fixture.h"

#include "store/entry_objects.h"
#include "store/staging_writer.h"

namespace qx {
namespace {

constexpr const char* customerJob = R"(
  JobID=C1 | Status:14 | Eingagsart:15 | Eingangsdatum=05.10.2026
  Kundennummer Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail
  Kundengruppe Vertreter1 Vertreter2 Vertreter3 Zahlungsart Konto BLZ Kreditinstitut Bemerkung
  Vertragsnummer Zahlungsweise
  Währung=EUR
  WährungEingabe Fehlertext Betreff Versandart ZahlungsbedSchl Provisionsgruppe UstIdentNr
  IndFild1 IndFild2 IndFild3 IndFild4 VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto
  VS_Bez1 VS_Bez2 VS_Bez3 VS_Strasse VS_Land VS_PLZ VS_Ort
  RG_Bez1 RG_Bez2 RG_Bez3 RG_Strasse RG_Land RG_PLZ RG_Ort Preisliste
  Preistyp:3 | KundeSeit=06.10.2020 | KundeVerlorenAm=07.10.2021
  GrundVerloren GrundVerlorenSchl
)";

constexpr const char* stagedDifferently = R"(
  JobType=13 | ImportType=10 | VS_Straße=VS_Strasse | RG_Straße=RG_Strasse
  ~ Eingagsart VS_Strasse RG_Strasse
)";

class CustomerRows : public GoldenTest {
protected:
  CustomerRows() {
    for (const char* option :
         {"KundenKundengruppe", "KundenVertreter", "KundenZahlungsart", "KundenBankleitzahl"})
      erp.setOption(option, "1");
  }
};

TEST_F(CustomerRows, ANewCustomerWithItsCodesAndAddresses) {
  stage("Kunde", customerJob);
  run();
  EXPECT_EQ(rows("ImportKopf"), expected(customerJob, "", stagedDifferently));
  EXPECT_EQ(rows("Kundenstamm"), expected(R"(
    Kundennummer
    ÄndUser=Import | ÄndDatum=20261005000000
    Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail Versandart Kundengruppe
    VertreterNr1=Vertreter1 | VertreterNr2=Vertreter2 | VertreterNr3=Vertreter3
    Zahlungsart Konto
    Bankleitzahl=BLZ
    VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto Preisliste
    Preistyp=3 | KundeSeit=06.10.2020 | KundeVerlorenAm=07.10.2021
    GrundVerloren GrundVerlorenSchl UstIdentNr
    MwSt_KZ=IN
  )"));
  EXPECT_EQ(rows("Adressenstamm"), expected(R"(
    Kundennummer=VS_KdNr | Adressnummer=VS_AdrNr | Bez1=VS_Bez1 | Bez2=VS_Bez2 | Bez3=VS_Bez3
    Strasse=VS_Strasse | Land=VS_Land | PLZ=VS_PLZ | Ort=VS_Ort
    --
    Kundennummer=RG_KdNr | Adressnummer=RG_AdrNr | Bez1=RG_Bez1 | Bez2=RG_Bez2 | Bez3=RG_Bez3
    Strasse=RG_Strasse | Land=RG_Land | PLZ=RG_PLZ | Ort=RG_Ort
  )"));
  EXPECT_EQ(rows("Kundengruppen"), expected(R"(
    Kundengruppe
    Langtext=Kundengruppe Kundengruppe
  )"));
  EXPECT_EQ(rows("Vertreter"), expected(R"(
    VertreterNr=Vertreter1 | Suchbegriff=Vertreter Vertreter1 | Bez1=Vertreter Vertreter1
    --
    VertreterNr=Vertreter2 | Suchbegriff=Vertreter Vertreter2 | Bez1=Vertreter Vertreter2
    --
    VertreterNr=Vertreter3 | Suchbegriff=Vertreter Vertreter3 | Bez1=Vertreter Vertreter3
  )"));
  EXPECT_EQ(rows("Zahlungsarten"), expected(R"(
    Zahlungsart
    Kurztext=Zahlungsart Zahlungsart
  )"));
  EXPECT_EQ(rows("Kreditinstitute"), expected(R"(
    Bankleitzahl=BLZ
    Kreditinstitut
  )"));
  EXPECT_EQ(rows("Protokolle"), expected(R"(
    Titel=Verarbeitungsprotokoll ImportJob | Art=Import | Liste=LST_ImportJob | Datum=20261124103000
  )"));
  EXPECT_EQ(rows("Protokollpositionen"), expected(R"(
    Zeile=1 | Text0=Kunden | Text1=Kundennummer | Text2=Erledigt | Text3=05.10.2026 | Text8=1
    Memo0=Neukunde angelegt. / Bez1: Bez1 / Bez2: Bez2 / Bez3: Bez3 / Hinweis: Nicht in den Kundenstamm übernommen: WährungEingabe 'WährungEingabe', ZahlungsbedSchl 'ZahlungsbedSchl', Zahlungsweise 'Zahlungsweise', Provisionsgruppe 'Provisionsgruppe', IndFild1 'IndFild1', IndFild2 'IndFild2', IndFild3 'IndFild3', IndFild4 'IndFild4' / Hinweis: Neukunde im Land 'Land' mit dem Steuermerkmal des Inlands (MwSt_KZ 'IN').
  )"));
  EXPECT_EQ(
      connection().open(sql("Select Kundennummer From Adressindex Where Art = 1"_sql))->text("Kundennummer"),
      "Kundennummer");
}

TEST_F(CustomerRows, AnExistingCustomerTakesWhatTheJobCarriesAndKeepsTheRest) {
  fill("Kundenstamm", storedCustomer, "M_");
  stage("Kunde", customerJob);
  setStaged("KontoNummer Bankleitzahl KundengruppenShop\nAendStatShop=4");
  run();
  EXPECT_EQ(rows("Kundenstamm"), expected(storedCustomer, "M_", R"(
    ÄndUser=Import | ÄndDatum=20261005000000
    Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail Versandart Kundengruppe
    VertreterNr1=Vertreter1 | VertreterNr2=Vertreter2 | VertreterNr3=Vertreter3
    Zahlungsart Konto KontoNummer Bankleitzahl KundengruppenShop
    AendStatShop=4
    VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto Preisliste
    Preistyp=3 | KundeSeit=06.10.2020 | KundeVerlorenAm=07.10.2021
    GrundVerloren GrundVerlorenSchl UstIdentNr
  )"));
  EXPECT_EQ(rows("Kreditinstitute"), expected("Bankleitzahl Kreditinstitut"));
  EXPECT_EQ(rows("Protokollpositionen"), expected(R"(
    Zeile=1 | Text0=Kunden | Text1=Kundennummer | Text2=Erledigt | Text3=05.10.2026
    Memo0=Kunde geändert. / Bez1: Bez1 / Bez2: Bez2 / Bez3: Bez3 / Hinweis: Nicht in den Kundenstamm übernommen: Währung 'EUR', WährungEingabe 'WährungEingabe', ZahlungsbedSchl 'ZahlungsbedSchl', Zahlungsweise 'Zahlungsweise', Provisionsgruppe 'Provisionsgruppe', IndFild1 'IndFild1', IndFild2 'IndFild2', IndFild3 'IndFild3', IndFild4 'IndFild4'
  )"));
}

TEST_F(CustomerRows, AJobKeepsAllOfWhichItDoesNotSpeak) {
  fill("Kundenstamm", storedCustomer, "M_");
  stage("Kunde", "JobID=C1\nKundennummer=kundenNUMMER\nStrasse\nTelefon=\nPreistyp:null\nBemerkung:null");
  run();
  EXPECT_EQ(rows("ImportKopf"), expected(R"(
    JobID=C1 | JobType=13 | ImportType=10 | Status=10 | Eingangsdatum=24.11.2026 | Kundennummer=kundenNUMMER
    Strasse
    - Telefon
  )"));
  EXPECT_EQ(rows("Kundenstamm"), expected(storedCustomer, "M_", R"(
    ÄndUser=Import | ÄndDatum=20261124000000
    Strasse
    ~ Telefon
  )"));
}

TEST_F(CustomerRows, AJobOfEmptyPropertiesEmptiesWhatItMayAndCreatesNothing) {
  fill("Kundenstamm", storedCustomer, "M_");
  KundeFields job;
  job.JobID = "C1";
  job.JobType = 10;
  job.Kundennummer = "Kundennummer";
  writeStaged(connection(), job);
  run();
  EXPECT_EQ(rows("ImportKopf"), expected(R"(
    JobID=C1 | JobType=13 | ImportType=10 | Status=0
    - Eingangsdatum
    Kundennummer
    - Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail
    - Kundengruppe Vertreter1 Vertreter2 Vertreter3 Zahlungsart Konto BLZ Kreditinstitut Bemerkung
    - Vertragsnummer Zahlungsweise Währung WährungEingabe Fehlertext Betreff Versandart
    - ZahlungsbedSchl Provisionsgruppe UstIdentNr VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto
    - VS_Bez1 VS_Bez2 VS_Bez3 VS_Straße VS_Land VS_PLZ VS_Ort
    - RG_Bez1 RG_Bez2 RG_Bez3 RG_Straße RG_Land RG_PLZ RG_Ort Preisliste
    Preistyp=0
    - IndFild1 IndFild2 IndFild3 IndFild4 KundeSeit KundeVerlorenAm GrundVerloren GrundVerlorenSchl
  )"));
  EXPECT_EQ(rows("Kundenstamm"), expected(storedCustomer, "M_", R"(
    ÄndUser=Import | ÄndDatum=20261124000000 | Preistyp=0
    ~ Suchbegriff Bez1 Bez2 Bez3 Strasse Land Telefon Telefax EMail Versandart Kundengruppe
    ~ VertreterNr1 VertreterNr2 VertreterNr3 Zahlungsart Konto Bankleitzahl
    ~ VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto Preisliste
    ~ KundeVerlorenAm GrundVerloren GrundVerlorenSchl UstIdentNr
  )"));
  for (const char* table :
       {"Adressenstamm", "Kundengruppen", "Vertreter", "Zahlungsarten", "Kreditinstitute"})
    EXPECT_EQ(rows(table), "") << table;
}

} // namespace
} // namespace qx
