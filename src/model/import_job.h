// The version-1 records: a job header with its positions.
#pragma once

#include "model/collection.h"
#include "model/field_table.h"

#include <cstdint>
#include <memory>
#include <string>

namespace qx {

/// One position of a version-1 job. Plain properties without validation; dates are texts "dd.mm.yyyy".
class ImportJobSubItem {
public:
  std::string JobID;   ///< key of the owning job
  std::string ChildID; ///< key of this position
  std::int16_t JobType = 0;
  std::int32_t Positionsnummer = 0;
  std::string Artikelnummer;
  double Menge = 0;
  std::string Vertragsart;
  bool ChkAbwBetrag = false;
  double Wartungspreis = 0;
  double Preis = 0;
  std::string Vertragsende;
  std::string Artikellangtext;
  double Auslieferungsmenge = 0;
  double Fakturiermenge = 0;
  bool Lieferbereit = false;
  bool Fakturierbereit = false;
  std::string Mengeneinheit;
  std::string Vertragstext;
};

/// Every property of `ImportJobSubItem` in interface order; `ImportPos` stores those that have a column.
inline constexpr auto importJobSubItemFields = [] {
  using R = ImportJobSubItem;
  using F = Field<R>;
  return fieldTable<R>(
      F{"JobID", &R::JobID}, F{"ChildID", &R::ChildID}, F{"JobType", &R::JobType},
      F{"Positionsnummer", &R::Positionsnummer}, F{"Artikelnummer", &R::Artikelnummer}, F{"Menge", &R::Menge},
      F{"Vertragsart", &R::Vertragsart}, F{"ChkAbwBetrag", &R::ChkAbwBetrag}.notStored(),
      F{"Wartungspreis", &R::Wartungspreis}.notStored(), F{"Preis", &R::Preis},
      F{"Vertragsende", &R::Vertragsende}.date(), F{"Artikellangtext", &R::Artikellangtext},
      F{"Auslieferungsmenge", &R::Auslieferungsmenge}, F{"Fakturiermenge", &R::Fakturiermenge},
      F{"Lieferbereit", &R::Lieferbereit}, F{"Fakturierbereit", &R::Fakturierbereit},
      F{"Mengeneinheit", &R::Mengeneinheit}, F{"Vertragstext", &R::Vertragstext});
}();

/// Positions under their `ChildID`.
class ImportJobSubItems : public KeyedCollection<ImportJobSubItem, &ImportJobSubItem::ChildID> {};

/// One version-1 job header with its positions and a position cursor.
///
/// The cursor starts at 0, before the first position. `SubItem` is the current position object; it keeps the
/// last position when the cursor runs past the end.
class ImportJob {
public:
  std::shared_ptr<ImportJobSubItem> SubItem = std::make_shared<ImportJobSubItem>();

  std::string JobID;
  std::int16_t JobType = 0;
  std::int16_t Status = 0;
  std::int16_t Eingagsart = 0; ///< kind of receipt; spelled so in the interface
  std::string Eingagsdatum;    ///< date of receipt; spelled so, stored as `Eingangsdatum`
  std::string Kundennummer;
  bool AdresseAendernJN = false;
  std::string Suchbegriff;
  std::string Bez1, Bez2, Bez3;
  std::string Strasse, Land, PLZ, Ort;
  std::string Telefon, Telefax, EMail;
  std::string Kundengruppe;
  std::string Vertreter1, Vertreter2, Vertreter3;
  bool ZahlungsartAendernJN = false;
  std::string Zahlungsart;
  std::string Konto, BLZ, Kreditinstitut;
  std::string Bemerkung;
  bool NeukundeJN = false;
  std::string Vertragsnummer, Vertragsdatum, Vertragsbeginn;
  std::string Zahlungsweise;
  std::string Währung, WährungEingabe;
  std::string Fehlertext;
  std::string Betreff;
  std::string Versandart;
  std::string ZahlungsbedSchl;
  std::string Provisionsgruppe;
  std::string UstIdentNr;
  std::string IndFild1;
  std::string VS_KdNr, VS_AdrNr;
  std::string RG_KdNr, RG_AdrNr;
  std::string Hauptkonto;
  std::string VS_Bez1, VS_Bez2, VS_Bez3, VS_Strasse, VS_Land, VS_PLZ, VS_Ort;
  std::string RG_Bez1, RG_Bez2, RG_Bez3, RG_Strasse, RG_Land, RG_PLZ, RG_Ort;
  std::string Preisliste;
  std::string Kündigungsgrund;
  std::int16_t Intervall = 0;
  std::string Zustand;
  std::string VertrGegenstandsNr;

  /// Replaces `SubItem` with a new, empty position.
  void NewSubItem() { SubItem = std::make_shared<ImportJobSubItem>(); }
  /// Adds the current `SubItem` under its `ChildID`; false when that key is already present.
  bool AddSubItem() { return items_.Add(SubItem); }
  /// Moves to position 1 if there is one; otherwise does nothing.
  void SubItemMoveFirst();
  /// Always advances by one; `SubItem` follows while the cursor is within the collection.
  void SubItemMoveNext();
  /// Moves back by one when the cursor is above 0. Raises `std::out_of_range`, with the cursor already moved,
  /// when there is no such position.
  void SubItemMovePrev();
  std::int32_t SubItemCount() const { return items_.Count(); }
  bool SubItemEof() const { return items_.Count() == 0 || cursor_ > items_.Count(); }
  const ImportJobSubItems& SubItems() const { return items_; }

private:
  ImportJobSubItems items_;
  std::int32_t cursor_ = 0;
};

/// Every property of `ImportJob` in interface order; `ImportKopf` stores those that have a column.
inline constexpr auto importJobFields = [] {
  using R = ImportJob;
  using F = Field<R>;
  return fieldTable<R>(
      F{"JobID", &R::JobID}, F{"JobType", &R::JobType}, F{"Status", &R::Status},
      F{"Eingagsart", &R::Eingagsart}.notStored(),
      F{"Eingagsdatum", &R::Eingagsdatum}.date().in("Eingangsdatum"), F{"Kundennummer", &R::Kundennummer},
      F{"AdresseAendernJN", &R::AdresseAendernJN}, F{"Suchbegriff", &R::Suchbegriff}, F{"Bez1", &R::Bez1},
      F{"Bez2", &R::Bez2}, F{"Bez3", &R::Bez3}, F{"Strasse", &R::Strasse}, F{"Land", &R::Land},
      F{"PLZ", &R::PLZ}, F{"Ort", &R::Ort}, F{"Telefon", &R::Telefon}, F{"Telefax", &R::Telefax},
      F{"EMail", &R::EMail}, F{"Kundengruppe", &R::Kundengruppe}, F{"Vertreter1", &R::Vertreter1},
      F{"Vertreter2", &R::Vertreter2}, F{"Vertreter3", &R::Vertreter3},
      F{"ZahlungsartAendernJN", &R::ZahlungsartAendernJN}, F{"Zahlungsart", &R::Zahlungsart},
      F{"Konto", &R::Konto}, F{"BLZ", &R::BLZ}, F{"Kreditinstitut", &R::Kreditinstitut},
      F{"Bemerkung", &R::Bemerkung}, F{"NeukundeJN", &R::NeukundeJN}.notStored(),
      F{"Vertragsnummer", &R::Vertragsnummer}, F{"Vertragsdatum", &R::Vertragsdatum}.date(),
      F{"Vertragsbeginn", &R::Vertragsbeginn}.date(), F{"Zahlungsweise", &R::Zahlungsweise},
      F{"Währung", &R::Währung}, F{"WährungEingabe", &R::WährungEingabe}, F{"Fehlertext", &R::Fehlertext},
      F{"Betreff", &R::Betreff}, F{"Versandart", &R::Versandart}, F{"ZahlungsbedSchl", &R::ZahlungsbedSchl},
      F{"Provisionsgruppe", &R::Provisionsgruppe}, F{"UstIdentNr", &R::UstIdentNr},
      F{"IndFild1", &R::IndFild1}, F{"VS_KdNr", &R::VS_KdNr}, F{"VS_AdrNr", &R::VS_AdrNr},
      F{"RG_KdNr", &R::RG_KdNr}, F{"RG_AdrNr", &R::RG_AdrNr}, F{"Hauptkonto", &R::Hauptkonto},
      F{"VS_Bez1", &R::VS_Bez1}, F{"VS_Bez2", &R::VS_Bez2}, F{"VS_Bez3", &R::VS_Bez3},
      F{"VS_Strasse", &R::VS_Strasse}.in("VS_Straße"), F{"VS_Land", &R::VS_Land}, F{"VS_PLZ", &R::VS_PLZ},
      F{"VS_Ort", &R::VS_Ort}, F{"RG_Bez1", &R::RG_Bez1}, F{"RG_Bez2", &R::RG_Bez2},
      F{"RG_Bez3", &R::RG_Bez3}, F{"RG_Strasse", &R::RG_Strasse}.in("RG_Straße"), F{"RG_Land", &R::RG_Land},
      F{"RG_PLZ", &R::RG_PLZ}, F{"RG_Ort", &R::RG_Ort}, F{"Preisliste", &R::Preisliste},
      F{"Kündigungsgrund", &R::Kündigungsgrund}, F{"Intervall", &R::Intervall}, F{"Zustand", &R::Zustand},
      F{"VertrGegenstandsNr", &R::VertrGegenstandsNr}.notStored());
}();

/// Jobs under their `JobID`.
class ImportJobs : public KeyedCollection<ImportJob, &ImportJob::JobID> {};

} // namespace qx
