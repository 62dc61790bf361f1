#include "floor/order_statements.h"

#include <string>

namespace qx::bench {
namespace {

/// The columns that the program leaves null are left out.
constexpr std::string_view insertHeaderText =
    "INSERT INTO Auftragskopf (Buchungskreis, KZDivers, KundeDivers, Kursbehandlung, Auftragsart, Zustand, "
    "Import, PrgVersion, \"ÄndUser\", Auftragsnummer, Kundennummer, Suchbegriff, Bez1, Preistyp, MwSt_KZ, "
    "VS_KdNr, VS_Bez1, VS_Bez2, VS_Bez3, VS_Strasse, VS_Land, VS_PLZ, VS_Ort, "
    "RG_KdNr, RG_Bez1, RG_Bez2, RG_Bez3, RG_Strasse, RG_Land, RG_PLZ, RG_Ort, "
    "Versandart, Zahlungsart, VertreterNr1, Konto, Bankleitzahl, Kreditinstitut, \"Währung\", Wechselkurs, "
    "Auftragsdatum, Betreff) VALUES (1, 0, 0, 0, 'AB', '0', 1, ' 6.3.0', 'Import', "
    "?1, ?2, ?3, ?4, ?5, ?6, ?2, ?4, ?7, ?8, ?9, ?10, ?11, ?12, ?2, ?4, ?7, ?8, ?9, ?10, ?11, ?12, "
    "?13, ?14, ?15, ?16, ?17, ?18, ?19, ?20, ?21, ?22)";

std::string insertLineText(bool purchased) {
  std::string text =
      "INSERT INTO Auftragspos (\"ÄndUser\", Zeilentyp, Zustand, Import, KZDivers, ArtikelDivers, KalkPreis, "
      "Preiseinheit, Rabatt, Preisfindung, Rabatt1, Rabatt2, Rabatt3, Lieferbereit, Fakturierbereit, ";
  if (purchased) text += "EKPreiseinheit, EKRabatt, EKRabatt1, EKRabatt2, EKRabatt3, ";
  text += "Auftragsnummer, Positionsnummer, Menge, Auslieferungsmenge, Liefermenge, Fakturiermenge, "
          "Artikelnummer, Mengeneinheit, Bezeichnung, Gewicht, PosGewicht, Preis, Liefertermin, MwSt_KZ, "
          "MwSt_Konto, MwSt_Satz, DZMwSt, WertJN, \"Rabattfähig\"";
  text += purchased ? ", EKPreis" : "";
  text += ") VALUES ('Import', 'K', '0', 1, 0, 0, 0, 1, 0, 'Grundpreis', 0, 0, 0, 0, 0, ";
  if (purchased) text += "1, 0, 0, 0, 0, ";
  text += "?1, ?2, ?3, ?4, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17, ?18";
  return text + (purchased ? ", ?19)" : ")");
}

} // namespace

OrderStatements::OrderStatements(Database& database)
    : job(database.prepare("SELECT rowid, * FROM ImportKopf WHERE rowid=?")),
      jobByKey(database.prepare("SELECT rowid, * FROM ImportKopf WHERE (JobType=30 OR JobType=31 OR "
                                "JobType=32) AND JobID=?")),
      repExists(database.prepare("SELECT rowid, VertreterNr FROM Vertreter WHERE VertreterNr=?")),
      shippingExists(database.prepare("SELECT rowid, Versandart FROM Versandtexte WHERE Versandart=?")),
      paymentExists(database.prepare("SELECT rowid, Zahlungsart FROM Zahlungsarten WHERE Zahlungsart=?")),
      bankExists(database.prepare("SELECT rowid, Bankleitzahl FROM Kreditinstitute WHERE Bankleitzahl=?")),
      customerExists(database.prepare("SELECT rowid, Kundennummer FROM Kundenstamm WHERE Kundennummer=?")),
      positions(database.prepare("SELECT rowid, Artikelnummer, Menge, Mengeneinheit, * FROM ImportPos "
                                 "WHERE JobID=? ORDER BY rowid")),
      articleUnit(database.prepare("SELECT rowid, Mengeneinheit FROM Artikelstamm WHERE Artikelnummer=?")),
      otherUnit(
          database.prepare("SELECT rowid, Mengeneinheit FROM MengeneinheitenAltern WHERE Alternativ=?")),
      customerList(database.prepare("SELECT rowid, Preisliste FROM Kundenstamm WHERE Kundennummer=?")),
      salesPrices(database.prepare("SELECT rowid, Menge, Preis, * FROM Verkaufspreise WHERE Artikelnummer=? "
                                   "AND (Kundennummer=? OR Kundennummer='') AND (Preisliste=? OR "
                                   "Preisliste='') ORDER BY rowid")),
      articleExists(database.prepare("SELECT rowid, Artikelnummer FROM Artikelstamm WHERE Artikelnummer=?")),
      activeRange(database.prepare("SELECT rowid, * FROM Nummernkreise WHERE NSchl='AB' AND Buchungskreis=1 "
                                   "AND Aktiviert=1")),
      rangeState(database.prepare("SELECT rowid, coalesce(aktuellerWert,0), UntererWert, ObererWert FROM "
                                  "Nummernkreise WHERE NSchl='AB' AND Buchungskreis=1 AND Aktiviert=1")),
      drawNumber(database.prepare("UPDATE Nummernkreise SET aktuellerWert=?2 WHERE NSchl='AB' AND "
                                  "Buchungskreis=1 AND Aktiviert=1 AND coalesce(aktuellerWert,0)=?1")),
      customer(database.prepare("SELECT rowid, Suchbegriff, Bez1, Bez2, Bez3, Strasse, Land, PLZ, Ort, "
                                "Preistyp, MwSt_KZ, KundeSeit, * FROM Kundenstamm WHERE Kundennummer=?")),
      rep(database.prepare("SELECT rowid, * FROM Vertreter WHERE VertreterNr=?")),
      bank(database.prepare("SELECT rowid, Kreditinstitut FROM Kreditinstitute WHERE Bankleitzahl=?")),
      currency(database.prepare("SELECT rowid, Wechselkurs, * FROM \"Währungen\" WHERE \"Währung\"='EUR'")),
      clerk(database.prepare("SELECT rowid, * FROM Personalstamm WHERE PersonalNr=''")),
      insertHeader(database.prepare(insertHeaderText)),
      orderedPositions(database.prepare(
          "SELECT rowid, CAST(Positionsnummer AS int) AS place, Artikelnummer, Menge, Auslieferungsmenge, "
          "Fakturiermenge, Liefertermin, * FROM ImportPos WHERE JobID=? ORDER BY place, rowid")),
      article(database.prepare("SELECT rowid, Artikelnummer, Bez, Gewicht, MwSt_KZ, WertJN, "
                               "\"Rabattfähig\", Hauptlieferant, * FROM Artikelstamm WHERE Artikelnummer=?")),
      purchasePrices(
          database.prepare("SELECT rowid, EKPreis, * FROM Einkaufspreise WHERE Artikelnummer=? AND "
                           "Lieferantennummer=? ORDER BY rowid")),
      taxKey(database.prepare("SELECT rowid, \"Steuerschlüssel\", * FROM \"Steuerschlüsselzuordnung\" WHERE "
                              "MwStKZKunde=? AND MwStKZArtikel=?")),
      taxRate(database.prepare("SELECT rowid, MwSt_Satz FROM \"Steuerschlüssel\" WHERE "
                               "\"Steuerschlüssel\"=?")),
      insertLine(database.prepare(insertLineText(false))),
      insertPurchasedLine(database.prepare(insertLineText(true))),
      stampCustomer(database.prepare("UPDATE Kundenstamm SET KundeSeit=?, Ind_Text2=NULL, Ind_Text3=NULL "
                                     "WHERE Kundennummer=?")),
      writtenLines(database.prepare(
          "SELECT rowid, MwSt_Konto, MwSt_Satz, Menge, Preis, Preiseinheit, PosGewicht, Zeilentyp, MwSt_KZ, "
          "WertJN, KZRabattart, Rabatt1, Rabatt2, Rabatt3, KZRabatt1, KZRabatt2, KZRabatt3, \"Rabattfähig\" "
          "FROM Auftragspos WHERE Auftragsnummer=? ORDER BY rowid")),
      setTotals(database.prepare("UPDATE Auftragskopf SET Gesamtnetto=?, GesamtMwSt=?, Gesamtbrutto=?, "
                                 "GesamtGewicht=? WHERE Auftragsnummer=?")),
      insertIndex(database.prepare("INSERT INTO Belegindex (Belegart, Belegnummer, Herkunft, Suchbegriff, "
                                   "Kundennummer, Datum) VALUES ('AB', ?, 'HAN', ?, ?, ?)")),
      finishJob(database.prepare("UPDATE ImportKopf SET JobType=33, Bemerkung=?, Fehler=0, Erledigt=1 "
                                 "WHERE rowid=?")),
      paymentText(database.prepare("SELECT rowid, Kurztext FROM Zahlungsarten WHERE Zahlungsart=?")),
      addLine(database.prepare(
          "INSERT INTO Protokollpositionen (ID, Zeile, Text0, Text1, Text2, Text3, Text4, Text5, Text6, "
          "Text7, "
          "Memo0) SELECT ?1, coalesce(max(Zeile),0)+1, 'Auftrag', ?2, 'Erledigt', ?3, ?4, ?5, ?6, ?7, ?8 "
          "FROM Protokollpositionen WHERE ID=?1")) {}

} // namespace qx::bench
