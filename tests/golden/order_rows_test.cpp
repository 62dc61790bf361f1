// Whole rows of orders: every property holds its own name or a number of its own.
#include "golden_fixture.h"

#include "store/entry_objects.h"
#include "store/staging_writer.h"

namespace qx {
namespace {

constexpr const char* orderJob = R"(
  JobID=O1 | Status:14 | Eingagsart:15 | Eingangsdatum=12.10.2026 | Kundennummer=20001
  Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail
  Kundengruppe Vertreter1 Vertreter2 Vertreter3 Zahlungsart Konto BLZ Kreditinstitut Bemerkung
  NeukundeJN:true
  Vertragsnummer Zahlungsweise Währung WährungEingabe Fehlertext Betreff Versandart
  ZahlungsbedSchl Provisionsgruppe UstIdentNr IndFild1 IndFild2 IndFild3 VS_KdNr VS_AdrNr
  RG_KdNr RG_AdrNr Hauptkonto VS_Bez1 VS_Bez2 VS_Bez3 VS_Strasse VS_Land VS_PLZ VS_Ort
  RG_Bez1 RG_Bez2 RG_Bez3 RG_Strasse RG_Land RG_PLZ RG_Ort
  Liefertermin=14.10.2026 | KostID:61
)";

constexpr const char* positionWithText = R"(
  ChildID=O1a | Positionsnummer:10 | Artikelnummer=A100 | Menge:4 | Wartungspreis:16.5 | Preis:11
  Artikellangtext
  Auslieferungsmenge:3 | Fakturiermenge:2 | Lieferbereit:true | Fakturierbereit:false | Mengeneinheit=PAK
  Rabatt:12 | Preiseinheit:13 | Liefertermin=13.10.2026 | KostID:62
)";

constexpr const char* positionWithPrice = R"(
  ChildID=O1b | Positionsnummer:9 | Artikelnummer=B200 | Menge:8 | Wartungspreis:0 | Preis:20
  Artikellangtext= | Auslieferungsmenge:6 | Fakturiermenge:5 | Lieferbereit:false | Fakturierbereit:true
  Mengeneinheit=ST | Rabatt:0 | Preiseinheit:0 | Liefertermin= | KostID:0
)";

// What both orders of the customer 20001 have of the customer, of the installation and of the day.
constexpr const char* headerOfTheCustomer = R"(
  Auftragsnummer=501 | Buchungskreis=3 | Kundennummer=20001 | Suchbegriff=M_Suchbegriff | Bez1=M_Bez1
  KZDivers=0 | KundeDivers=0 | Klassifizierung=M_Klassifizierung | Auftragsrabatt=10
  Preisliste=M_Preisliste | Preistyp=25 | FremdLiefNr=M_FremdLiefNr | Valutabehandlung=28 | Valutatage=29
  MwSt_KZ=IN | Ind_Text1=M_Ind_Text1 | Ind_Text2=M_Ind_Text2 | Ind_Text3=M_Ind_Text3 | Ind_Text4=M_Ind_Text4
  Ind_Zahl1=31 | Ind_Zahl2=32 | Ind_Zahl3=33 | Ind_Zahl4=34 | Ind_Memo1=M_Ind_Memo1 | Ind_Memo2=M_Ind_Memo2
  SprachKZ=M_SprachKZ | AnzAN=41 | AnzAB=42 | AnzLS=43 | AnzVE=44 | AnzRG=45 | AnzGS=46
  KopftextAN=M_KopftextAN | KopftextAB=M_KopftextAB | KopftextLS=M_KopftextLS | KopftextRG=M_KopftextRG
  KopftextGS=M_KopftextGS | Währung=CHF | Wechselkurs=1.25 | Kursbehandlung=2 | Auftragsart=AB
  Auftragsdatum=20261012000000 | Zustand=0 | Import=1 | PrgVersion= 6.3.0 | UnsereZeichen=P_Kurzzeichen
  Sachbearbeiter=Frau P_Titel P_Vorname P_Nachname | ÄndUser=Import
)";

constexpr const char* lineOfB200 = R"(
  Auftragsnummer=501 | Zeilentyp=K | Zustand=0 | Import=1 | Positionsnummer=9 | Menge=8
  Auslieferungsmenge=6 | Liefermenge=6 | Fakturiermenge=5 | Artikelnummer=B200 | KZDivers=0
  ArtikelDivers=0 | Mengeneinheit=ST | Bezeichnung=Artikel B200 | Gewicht=0.25 | PosGewicht=2
  MengeneinheitEinkauf=ST | EKMengeneinheit=ST | Preis=20 | KalkPreis=18 | Preiseinheit=2 | Rabatt=8.8
  Preisfindung=Preisliste | Rabattart=A | KZRabattart=A | KZRabatt1=P | KZRabatt2=P | KZRabatt3=B
  Rabatt1=5 | Rabatt2=4 | Rabatt3=1.5 | EKPreis=9.5 | EKPreiseinheit=3 | EKRabatt=21 | EKRabattart=S
  EKRabatt1=6 | EKRabatt2=7 | EKRabatt3=8 | Liefertermin=14.10.2026 | MwSt_KZ=E | MwSt_Konto=2 | MwSt_Satz=7
  DZMwSt=20261012000000 | WertJN=1 | Rabattfähig=0 | ÄndUser=Import
)";

// A line of freight or fee.
constexpr const char* appendedLine = R"(
  Auftragsnummer=501 | Zeilentyp=K | Zustand=0 | Import=1 | Menge=1 | Auslieferungsmenge=1 | Liefermenge=1
  Fakturiermenge=1 | KZDivers=0 | ArtikelDivers=0 | Mengeneinheit=ST | Preiseinheit=1 | Rabatt=0 | Rabatt1=0
  Rabatt2=0 | Rabatt3=0 | Lieferbereit=1 | Fakturierbereit=0 | Liefertermin=14.10.2026 | MwSt_KZ=V
  MwSt_Konto=3 | MwSt_Satz=19 | DZMwSt=20261012000000 | WertJN=1 | Rabattfähig=0 | ÄndUser=Import
)";

class OrderRows : public GoldenTest {
protected:
  OrderRows() {
    fill("Währungen", "Währung=CHF\nWechselkurs=1.25\nKursbehandlung=2");
    fill("Kundenstamm", customer, "M_");
    fill("Kundenstamm", "Kundennummer=20002");
    fillArticles();
    fillPrices();
    for (const char* prefix : {"", "M_"}) {
      fill("Versandtexte", "Versandart", prefix);
      fill("Zahlungsarten", "Zahlungsart", prefix);
    }
    fill("Zahlungsbedingungen", "ZahlbedSchl=ZahlungsbedSchl\n--\nZahlbedSchl=M_ZahlungsbedSchl");
    fill("Vertreter", R"(
      VertreterNr=Vertreter1 | AnteilVertreter=31
      --
      VertreterNr=Vertreter2 | AnteilVertreter=32
      --
      VertreterNr=Vertreter3 | AnteilVertreter=33
      --
      VertreterNr=M_VertreterNr1
      --
      VertreterNr=M_VertreterNr2
      --
      VertreterNr=M_VertreterNr3)");
    fill("Kreditinstitute", "Bankleitzahl=BLZ\nKreditinstitut=Bank zur BLZ");
    fill("Adressenstamm", "Kundennummer=VS_KdNr\nAdressnummer=VS_AdrNr\nBez1 Ort", "S_");
    fill("Adressenstamm", "Kundennummer=RG_KdNr\nAdressnummer=RG_AdrNr\nBez1 Ort", "R_");
    fill("Adressenstamm",
         "Kundennummer=20001\nAdressnummer=7\nBez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail",
         "S_");
  }

  void fillArticles() {
    fill("Artikelstamm", R"(
      Artikelnummer=A100
      Bez Bezeichnung
      Mengeneinheit=ST | MwSt_KZ=V
      Erfassungsschema
      ArtikelGesperrt=0 | KZDivers=1 | Gewicht=1.5
      Provisionsgruppe Ind_Text1 Ind_Text2 Ind_Text3 Ind_Text4
      Ind_Zahl1=81 | Ind_Zahl2=82 | Ind_Zahl3=83 | Ind_Zahl4=84
      Ind_Memo1 Ind_Memo2
      DurchschnittEK=85.5
      Hauptlager
      Rechenfeld1=91 | Rechenfeld2=92 | Rechenfeld3=93 | Rechenfeld4=94 | Rechenfeld5=95
      MengeneinheitEinkauf MEEinkauf Einkaufsgruppe
      PreisfindungEinkauf=5 | WertJN=1 | Rabattfähig=1 | Preis=96 | KalkPreis=97
      Artikellangtext DZMwSt)",
         "A_");
    fill("Artikelstamm", R"(
      Artikelnummer=B200 | Bez=Artikel B200 | Mengeneinheit=ST | MwSt_KZ=E | Gewicht=0.25 | MEEinkauf=ST
      Hauptlieferant=L1 | WertJN=1 | Rabattfähig=0
      --
      Artikelnummer=C300 | MwSt_KZ=V | WertJN=1
      --
      Artikelnummer=FRACHT | Bez=Fracht | Mengeneinheit=ST | MwSt_KZ=V | Gewicht=0.5 | Ind_Zahl4=99
      WertJN=1 | Rabattfähig=0 | Preis=6.9
      --
      Artikelnummer=GEBUEHR | Bez=Gebühr | Mengeneinheit=ST | MwSt_KZ=V | Ind_Zahl4=2.5 | WertJN=1
      Rabattfähig=0)");
    fill("MengeneinheitenAltern", "Alternativ=PAK\nMengeneinheit=KT");
  }

  void fillPrices() {
    fill("Verkaufspreise", R"(
      Preisliste=M_Preisliste | Artikelnummer=B200 | Mengeneinheit=ST | Menge=1 | Preis=20 | KalkPreis=18
      Preiseinheit=2 | KZRabattart=A | KZRabatt1=P | KZRabatt2=P | KZRabatt3=B | Rabatt1=5 | Rabatt2=4
      Rabatt3=1.5)");
    fill("Einkaufspreise", R"(
      Lieferantennummer=L1 | Artikelnummer=B200 | Mengeneinheit=ST | Menge=1 | EKPreis=9.5
      EKPreiseinheit=3 | EKRabattart=S | EKRabatt1=6 | EKRabatt2=7 | EKRabatt3=8)");
  }

  const std::string customer =
      std::string(storedCustomer) +
      "Kundennummer=20001\nAuftragsrabatt=10\nMwSt_KZ=IN\nKZDivers=0\nLiefersperre=0\nWährung=CHF\n";
};

// B200: 8 at 20.00 for 2 is 80.00; less 5 % (4.00), 4 % of 76.00 (3.04) and 1.50 is 71.46, tax 7 % 5.00.
// A100: 4 at 11.00 for 13 is 3.3846; less 12 % is 2.98, less the order's 10 % is 2.68, tax 19 % 0.51.
TEST_F(OrderRows, AnOrderWithATextLineAddressesAndCostAssignment) {
  fill("Kostenzuordnung", R"(
    KostID=27 | Kostenstelle=KS der Kundschaft | Kostentraeger=KT der Kundschaft
    --
    KostID=61 | Kostenstelle=KS des Auftrags
    --
    KostID=62 | Kostentraeger=KT der Position)");
  erp.setOption("KostenzuordnungAuftrag", "1");
  erp.setOption("KostAutomatischAnlegen", "1");
  stage("Auftrag", orderJob, {positionWithText, positionWithPrice});
  run(true);
  EXPECT_EQ(rows("ImportKopf"), expected(orderJob, "", R"(
    JobType=33 | ImportType=10 | Bemerkung=Bemerkung Auftrag: 501 | VS_Straße=VS_Strasse
    RG_Straße=RG_Strasse | Fehler=0 | Erledigt=1
    ~ Eingagsart NeukundeJN VS_Strasse RG_Strasse
  )"));
  EXPECT_EQ(rows("ImportPos"), expected(positionWithText, "", R"(
    JobID=O1 | JobType=50 | Lieferbereit=1 | Fakturierbereit=0
    ~ Wartungspreis
  )") + "--\n" + expected(positionWithPrice, "", R"(
    JobID=O1 | JobType=50
    - Artikellangtext Liefertermin
    Lieferbereit=0 | Fakturierbereit=1
    ~ Wartungspreis
  )"));
  EXPECT_EQ(rows("Auftragskopf"), expected(headerOfTheCustomer, "", R"(
    KostID=61 | Ind_Text2=IndFild2 | Ind_Text3=IndFild3
    VS_KdNr VS_AdrNr VS_Bez1 VS_Bez2 VS_Bez3 VS_Strasse VS_Land VS_PLZ VS_Ort
    RG_KdNr RG_AdrNr RG_Bez1 RG_Bez2 RG_Bez3 RG_Strasse RG_Land RG_PLZ RG_Ort
    Telefon Telefax Hauptkonto Versandart Zahlungsart ZahlungsbedSchl
    VertreterNr1=Vertreter1 | VertreterNr2=Vertreter2 | VertreterNr3=Vertreter3 | AnteilVertreter1=31
    AnteilVertreter2=32 | AnteilVertreter3=33
    Provisionsgruppe UstIdentNr Konto
    Bankleitzahl=BLZ | Kreditinstitut=Bank zur BLZ
    Bemerkung Betreff
    Gesamtnetto=74.14 | GesamtMwSt=5.51 | Gesamtbrutto=79.65 | GesamtGewicht=8
  )"));
  EXPECT_EQ(rows("Auftragspos"),
            expected(lineOfB200, "", "Lieferbereit=0\nFakturierbereit=1\nKostID=63") + "--\n" + expected(R"(
    Auftragsnummer=501 | Zeilentyp=K | Zustand=0 | Import=1 | Positionsnummer=10 | Menge=4
    Auslieferungsmenge=3 | Liefermenge=3 | Fakturiermenge=2 | Artikelnummer=A100
    Erfassungsschema=A_Erfassungsschema | KZDivers=1 | ArtikelDivers=1 | Mengeneinheit=KT
    Bezeichnung=A_Bezeichnung | Gewicht=1.5 | PosGewicht=6 | Provisionsgruppe=A_Provisionsgruppe
    Ind_Text1=A_Ind_Text1 | Ind_Text2=A_Ind_Text2 | Ind_Text3=A_Ind_Text3 | Ind_Text4=A_Ind_Text4
    Ind_Zahl1=81 | Ind_Zahl2=82 | Ind_Zahl3=83 | Ind_Zahl4=84 | Ind_Memo1=A_Ind_Memo1
    Ind_Memo2=A_Ind_Memo2 | DurchschnittEK=85.5 | Hauptlager=A_Hauptlager | Lagernummer=A_Hauptlager
    Rechenfeld1=91 | Rechenfeld2=92 | Rechenfeld3=93 | Rechenfeld4=94 | Rechenfeld5=95
    MengeneinheitEinkauf=A_MengeneinheitEinkauf | EKMengeneinheit=A_MengeneinheitEinkauf | Preis=11
    KalkPreis=11 | Preiseinheit=13 | Rabatt=12 | Rabattart=A | KZRabattart=A | KZRabatt1=P | Rabatt1=12
    Rabatt2=0 | Rabatt3=0 | Lieferbereit=1 | Fakturierbereit=0 | Liefertermin=13.10.2026 | MwSt_KZ=V
    MwSt_Konto=3 | MwSt_Satz=19 | DZMwSt=20261012000000 | WertJN=1 | Rabattfähig=1 | KostID=64
    ÄndUser=Import
    --
    Auftragsnummer=501 | Zeilentyp=T | Zustand=0 | Import=1 | Positionsnummer=10
    Artikellangtext
    Text=Artikellangtext | Schriftart=Arial | Schriftstil=Standard | Schriftgröße=10 | WoDrucken=NBLRG
    WertJN=0 | ÄndUser=Import
  )"));
  EXPECT_EQ(rows("Belegindex"), expected(R"(
    Belegart=AB | Belegnummer=501 | Herkunft=HAN | Suchbegriff=M_Suchbegriff | Kundennummer=20001
    Datum=20261012000000
  )"));
  EXPECT_EQ(rows("Kundenstamm"), expected(customer, "M_", "Ind_Text2=IndFild2\nInd_Text3=IndFild3") + "--\n" +
                                     expected("Kundennummer=20002\nPreistyp=0\nMwSt_KZ=IN"));
  EXPECT_EQ(rows("Kostenzuordnung"), expected(R"(
    KostID=27 | Kostenstelle=KS der Kundschaft | Kostentraeger=KT der Kundschaft
    --
    KostID=61 | Kostenstelle=KS des Auftrags
    --
    KostID=62 | Kostentraeger=KT der Position
    --
    KostID=63 | Kostenstelle=KS des Auftrags | Kostentraeger=KT der Kundschaft
    --
    KostID=64 | Kostenstelle=KS des Auftrags | Kostentraeger=KT der Position
  )"));
  EXPECT_EQ(rows("Protokollpositionen"), expected(R"(
    Zeile=1 | Text0=Auftrag | Text1=501 | Text2=Erledigt | Text3=12.10.2026 | Text4=B200 / A100
    Text5=Artikel B200 / A_Bezeichnung | Text6=8,000 / 4,000 | Text7=20,00 / 11,00
    Memo0=Kundennummer: 20001 / Kunde: M_Bez1 / Eingangsdatum: 12.10.2026 / Hinweis: Die Währung 'Währung' des Auftrags gilt nicht, der Kunde hat 'CHF'.
  )"));
}

// B200 as above without the order's discount, 71.46 with 5.00 tax; freight 6.90 and the least fee 3.50 with
// 19 % of 10.40, 1.98.
TEST_F(OrderRows, AnOrderOfTheInstallationsOwnModeTakesTheCustomersDataAndPaysFreight) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  for (const auto& [key, value] : {std::pair{"VAKunde", "M_Versandart"},
                                   {"FrachtTransport", "FRACHT"},
                                   {"FrachtGebuehr", "GEBUEHR"},
                                   {"MinGebuehr", "3,5"},
                                   {"SWAuftLieferbereit", "1"},
                                   {"SWAuftFakturierbereit", "0"}})
    erp.setOption(key, value);
  stage("Auftrag", R"(
    JobID=O1 | Eingangsdatum=12.10.2026 | Kundennummer=20001 | VS_KdNr=20001 | VS_AdrNr=7
    Liefertermin=14.10.2026)",
        {std::string(positionWithPrice) + "KostID:65"});
  run();
  EXPECT_EQ(rows("Auftragskopf"), expected(headerOfTheCustomer, "", R"(
    VS_KdNr=20001 | VS_AdrNr=7 | VS_Bez1=S_Bez1 | VS_Bez2=S_Bez2 | VS_Bez3=S_Bez3 | VS_Strasse=S_Strasse
    VS_Land=S_Land | VS_PLZ=S_PLZ | VS_Ort=S_Ort | RG_KdNr=20001 | RG_Bez1=M_Bez1 | RG_Bez2=M_Bez2
    RG_Bez3=M_Bez3 | RG_Strasse=M_Strasse | RG_Land=M_Land | RG_PLZ=M_PLZ | RG_Ort=M_Ort | Telefon=M_Telefon
    Telefax=M_Telefax | Hauptkonto=M_Hauptkonto | Versandart=M_Versandart | Zahlungsart=M_Zahlungsart
    ZahlungsbedSchl=M_ZahlungsbedSchl | VertreterNr1=M_VertreterNr1 | VertreterNr2=M_VertreterNr2
    VertreterNr3=M_VertreterNr3 | AnteilVertreter1=21 | AnteilVertreter2=22 | AnteilVertreter3=23
    Provisionsgruppe=M_Provisionsgruppe | UstIdentNr=M_UstIdentNr | Konto=M_Konto
    KontoNummer=M_KontoNummer | Bankleitzahl=M_Bankleitzahl | Kreditinstitut=M_Kreditinstitut
    Gesamtnetto=81.86 | GesamtMwSt=6.98 | Gesamtbrutto=88.84 | GesamtGewicht=2.5
  )"));
  EXPECT_EQ(rows("Auftragspos"), expected(lineOfB200, "", "Lieferbereit=1\nFakturierbereit=0\nKostID=65") +
                                     "--\n" + expected(appendedLine, "", R"(
    Positionsnummer=10 | Artikelnummer=FRACHT | Bezeichnung=Fracht | Gewicht=0.5 | PosGewicht=0.5
    Ind_Zahl4=99 | Preis=6.9 | KalkPreis=6.9
  )") + "--\n" + expected(appendedLine, "", R"(
    Positionsnummer=11 | Artikelnummer=GEBUEHR | Bezeichnung=Gebühr | PosGewicht=0 | Ind_Zahl4=2.5
    Preis=3.5 | KalkPreis=3.5
  )"));
  EXPECT_EQ(rows("Protokollpositionen"), expected(R"(
    Zeile=1 | Text0=Auftrag | Text1=501 | Text2=Erledigt | Text3=12.10.2026 | Text4=B200 / FRACHT / GEBUEHR
    Text5=Artikel B200 / Fracht / Gebühr | Text6=8,000 / 1,000 / 1,000 | Text7=20,00 / 6,90 / 3,50
    Memo0=Kundennummer: 20001 / Kunde: M_Bez1 / Eingangsdatum: 12.10.2026
  )"));
}

TEST_F(OrderRows, AnOrderOfEmptyPropertiesHoldsOnlyWhatTheRunAdds) {
  AuftragFields job;
  job.JobID = "O1";
  job.JobType = 30;
  job.Kundennummer = "20002";
  job.Eingangsdatum = "12.10.2026 09:30:00";
  writeStaged(connection(), job);
  AuftragsPosFields position;
  position.JobID = "O1";
  position.ChildID = "O1a";
  position.JobType = 50;
  position.Artikelnummer = "C300";
  writeStaged(connection(), position);
  run(true);
  EXPECT_EQ(rows("Auftragskopf"), expected(R"(
    Auftragsnummer=501 | Buchungskreis=3 | Kundennummer=20002 | KZDivers=0 | KundeDivers=0 | Preistyp=0
    MwSt_KZ=IN | VS_KdNr=20002 | RG_KdNr=20002 | Währung=EUR | Wechselkurs=1 | Kursbehandlung=0
    Auftragsart=AB | Auftragsdatum=20261012000000 | Zustand=0 | Import=1 | PrgVersion= 6.3.0
    UnsereZeichen=P_Kurzzeichen | Sachbearbeiter=Frau P_Titel P_Vorname P_Nachname | Gesamtnetto=0
    GesamtMwSt=0 | Gesamtbrutto=0 | GesamtGewicht=0 | ÄndUser=Import
  )"));
  EXPECT_EQ(rows("Auftragspos"), expected(R"(
    Auftragsnummer=501 | Zeilentyp=K | Zustand=0 | Import=1 | Positionsnummer=0 | Menge=0
    Auslieferungsmenge=0 | Liefermenge=0 | Fakturiermenge=0 | Artikelnummer=C300 | KZDivers=0
    ArtikelDivers=0 | PosGewicht=0 | Preis=0 | KalkPreis=0 | Preiseinheit=1 | Rabatt=0 | Rabatt1=0
    Rabatt2=0 | Rabatt3=0 | Lieferbereit=0 | Fakturierbereit=0 | MwSt_KZ=V | MwSt_Konto=3 | MwSt_Satz=19
    DZMwSt=20261012000000 | WertJN=1 | ÄndUser=Import
  )"));
  EXPECT_EQ(rows("Kundenstamm"), expected(customer, "M_") + "--\n" + expected(R"(
    Kundennummer=20002 | Preistyp=0 | KundeSeit=12.10.2026 | MwSt_KZ=IN)"));
  EXPECT_EQ(rows("Belegindex"), expected(R"(
    Belegart=AB | Belegnummer=501 | Herkunft=HAN | Kundennummer=20002 | Datum=20261012000000
  )"));
  EXPECT_EQ(erp.text("Select Text3 From Protokollpositionen"_sql), "12.10.2026");
}

TEST_F(OrderRows, AFileMayLeaveOutNumbersAndFurtherQuantitiesOfItsPositions) {
  stage("Auftrag", "JobID=O1\nKundennummer=20001",
        {"Artikelnummer=B200\nMenge:8", "Artikelnummer=C300\nMenge:3"});
  EXPECT_EQ(
      erp.rows("Select Positionsnummer, Artikelnummer, Menge, Auslieferungsmenge, Fakturiermenge "
               "From ImportPos Order By Positionsnummer"_sql),
      (std::vector<std::vector<Value>>{{Value("1"), Value("B200"), Value(8.0), Value(8.0), Value(8.0)},
                                       {Value("2"), Value("C300"), Value(3.0), Value(3.0), Value(3.0)}}));
}

} // namespace
} // namespace qx
