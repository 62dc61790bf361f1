// The properties of the entry objects: customer, contract and order jobs and order positions.
#pragma once

#include "model/field_table.h"

#include <cstdint>
#include <string>

namespace qx {

/// What a customer job and an order job have in common, and the `ImportKopf` columns behind it. Texts are
/// UTF-8, dates "dd.mm.yyyy". Nothing is validated.
struct HeaderFields {
  std::string JobID;
  std::int16_t JobType = 0;
  std::int16_t Status = 0;
  std::int16_t Eingagsart = 0; ///< kind of receipt; spelled so in the interface, not stored
  std::string Eingangsdatum;
  std::string Kundennummer;
  std::string Suchbegriff;
  std::string Bez1, Bez2, Bez3;
  std::string Strasse, Land, PLZ, Ort;
  std::string Telefon, Telefax, EMail;
  std::string Kundengruppe;
  std::string Vertreter1, Vertreter2, Vertreter3;
  std::string Zahlungsart;
  std::string Konto, BLZ, Kreditinstitut;
  std::string Bemerkung;
  std::string Vertragsnummer;
  std::string Zahlungsweise;
  std::string Währung, WährungEingabe;
  std::string Fehlertext;
  std::string Betreff;
  std::string Versandart;
  std::string ZahlungsbedSchl;
  std::string Provisionsgruppe;
  std::string UstIdentNr;
  std::string IndFild1, IndFild2, IndFild3;
  std::string VS_KdNr, VS_AdrNr;
  std::string RG_KdNr, RG_AdrNr;
  std::string Hauptkonto;
  std::string VS_Bez1, VS_Bez2, VS_Bez3, VS_Strasse, VS_Land, VS_PLZ, VS_Ort;
  std::string RG_Bez1, RG_Bez2, RG_Bez3, RG_Strasse, RG_Land, RG_PLZ, RG_Ort;
};

/// The properties of a customer job.
struct KundeFields : HeaderFields {
  std::string IndFild4;
  std::string Preisliste;
  std::int16_t Preistyp = 0;
  std::string KundeSeit, KundeVerlorenAm;
  std::string GrundVerloren, GrundVerlorenSchl;
};

/// The properties of an order job header.
struct AuftragFields : HeaderFields {
  bool NeukundeJN = false; ///< not stored
  std::string Liefertermin;
  std::int32_t KostID = 0;
};

/// The properties of a contract job.
struct VertragFields {
  std::string JobID;
  std::int16_t JobType = 0;
  std::int16_t Status = 0;
  std::int16_t Eingagsart = 0; ///< not stored
  std::string Eingangsdatum;
  std::string Kundennummer;
  std::string Vertragsnummer;
  std::string Artikelnummer; ///< the number of the contract object
  std::string Vertragsart;
  std::string Zustand;
  std::string Vertragstext;
  std::string Vertragsdatum, Vertragsbeginn;
  std::string Vertragsende; ///< "" and "999999" are stored as null: no end
  std::string Kündigungsgrund;
  std::int16_t Intervall = 0;
  double Menge = 0;
  double Preis = 0;
  std::string Fehlertext;
  std::string Bemerkung;
  std::string IndFild1;
  std::string IndFild2, IndFild3, IndFild4; ///< C++ only: stored, but not among the automation properties
  std::string Wartungspreis;
  std::int16_t PreisabweichungGrund = 0;
  std::string PreisabweichungGenehmigender, PreisabweichungDatum, PreisabweichungBemerkung;
  std::string VS_KdNr;
  std::string GekuendigtAm;
  std::string GrundVerlorenSchl;
};

/// The properties of an order position.
struct AuftragsPosFields {
  std::string JobID;
  std::string ChildID;
  std::int16_t JobType = 0;
  std::int32_t Positionsnummer = 0;
  std::string Artikelnummer;
  double Menge = 0;
  double Wartungspreis = 0; ///< not stored
  double Preis = 0;
  std::string Artikellangtext;
  double Auslieferungsmenge = 0;
  double Fakturiermenge = 0;
  bool Lieferbereit = false;
  bool Fakturierbereit = false;
  std::string Mengeneinheit;
  double Rabatt = 0; ///< percent
  double Preiseinheit = 0;
  std::string Liefertermin;
  std::int32_t KostID = 0;
};

namespace detail {

template <class R>
constexpr auto headerFieldsToRemark() {
  using F = Field<R>;
  return fieldTable<R>(
      F{"JobID", &R::JobID}, F{"JobType", &R::JobType}, F{"Status", &R::Status},
      F{"Eingagsart", &R::Eingagsart}.notStored(), F{"Eingangsdatum", &R::Eingangsdatum}.date(),
      F{"Kundennummer", &R::Kundennummer}, F{"Suchbegriff", &R::Suchbegriff}, F{"Bez1", &R::Bez1},
      F{"Bez2", &R::Bez2}, F{"Bez3", &R::Bez3}, F{"Strasse", &R::Strasse}, F{"Land", &R::Land},
      F{"PLZ", &R::PLZ}, F{"Ort", &R::Ort}, F{"Telefon", &R::Telefon}, F{"Telefax", &R::Telefax},
      F{"EMail", &R::EMail}, F{"Kundengruppe", &R::Kundengruppe}, F{"Vertreter1", &R::Vertreter1},
      F{"Vertreter2", &R::Vertreter2}, F{"Vertreter3", &R::Vertreter3}, F{"Zahlungsart", &R::Zahlungsart},
      F{"Konto", &R::Konto}, F{"BLZ", &R::BLZ}, F{"Kreditinstitut", &R::Kreditinstitut},
      F{"Bemerkung", &R::Bemerkung});
}

template <class R>
constexpr auto headerFieldsFromContractNumber() {
  using F = Field<R>;
  return fieldTable<R>(F{"Vertragsnummer", &R::Vertragsnummer}, F{"Zahlungsweise", &R::Zahlungsweise},
                       F{"Währung", &R::Währung}, F{"WährungEingabe", &R::WährungEingabe},
                       F{"Fehlertext", &R::Fehlertext}, F{"Betreff", &R::Betreff},
                       F{"Versandart", &R::Versandart}, F{"ZahlungsbedSchl", &R::ZahlungsbedSchl},
                       F{"Provisionsgruppe", &R::Provisionsgruppe}, F{"UstIdentNr", &R::UstIdentNr},
                       F{"IndFild1", &R::IndFild1}, F{"IndFild2", &R::IndFild2}, F{"IndFild3", &R::IndFild3});
}

template <class R>
constexpr auto headerAddressFields() {
  using F = Field<R>;
  return fieldTable<R>(
      F{"VS_KdNr", &R::VS_KdNr}, F{"VS_AdrNr", &R::VS_AdrNr}, F{"RG_KdNr", &R::RG_KdNr},
      F{"RG_AdrNr", &R::RG_AdrNr}, F{"Hauptkonto", &R::Hauptkonto}, F{"VS_Bez1", &R::VS_Bez1},
      F{"VS_Bez2", &R::VS_Bez2}, F{"VS_Bez3", &R::VS_Bez3}, F{"VS_Strasse", &R::VS_Strasse}.in("VS_Straße"),
      F{"VS_Land", &R::VS_Land}, F{"VS_PLZ", &R::VS_PLZ}, F{"VS_Ort", &R::VS_Ort}, F{"RG_Bez1", &R::RG_Bez1},
      F{"RG_Bez2", &R::RG_Bez2}, F{"RG_Bez3", &R::RG_Bez3}, F{"RG_Strasse", &R::RG_Strasse}.in("RG_Straße"),
      F{"RG_Land", &R::RG_Land}, F{"RG_PLZ", &R::RG_PLZ}, F{"RG_Ort", &R::RG_Ort});
}

} // namespace detail

/// Every property of `Kunde` in interface order.
inline constexpr auto kundeFields = [] {
  using R = KundeFields;
  using F = Field<R>;
  return joinTables(
      detail::headerFieldsToRemark<R>(), detail::headerFieldsFromContractNumber<R>(),
      fieldTable<R>(F{"IndFild4", &R::IndFild4}), detail::headerAddressFields<R>(),
      fieldTable<R>(F{"Preisliste", &R::Preisliste}, F{"Preistyp", &R::Preistyp},
                    F{"KundeSeit", &R::KundeSeit}.date(), F{"KundeVerlorenAm", &R::KundeVerlorenAm}.date(),
                    F{"GrundVerloren", &R::GrundVerloren}, F{"GrundVerlorenSchl", &R::GrundVerlorenSchl}));
}();

/// Every property of `Auftrag` in interface order.
inline constexpr auto auftragFields = [] {
  using R = AuftragFields;
  using F = Field<R>;
  return joinTables(detail::headerFieldsToRemark<R>(),
                    fieldTable<R>(F{"NeukundeJN", &R::NeukundeJN}.notStored()),
                    detail::headerFieldsFromContractNumber<R>(), detail::headerAddressFields<R>(),
                    fieldTable<R>(F{"Liefertermin", &R::Liefertermin}.date(), F{"KostID", &R::KostID}));
}();

/// Every property of `Vertrag` in interface order.
inline constexpr auto vertragFields = [] {
  using R = VertragFields;
  using F = Field<R>;
  return fieldTable<R>(
      F{"JobID", &R::JobID}, F{"JobType", &R::JobType}, F{"Status", &R::Status},
      F{"Eingagsart", &R::Eingagsart}.notStored(), F{"Eingangsdatum", &R::Eingangsdatum}.date(),
      F{"Kundennummer", &R::Kundennummer}, F{"Vertragsnummer", &R::Vertragsnummer},
      F{"Artikelnummer", &R::Artikelnummer}, F{"Vertragsart", &R::Vertragsart}, F{"Zustand", &R::Zustand},
      F{"Vertragstext", &R::Vertragstext}, F{"Vertragsdatum", &R::Vertragsdatum}.date(),
      F{"Vertragsbeginn", &R::Vertragsbeginn}.date(), F{"Vertragsende", &R::Vertragsende}.date(),
      F{"Kündigungsgrund", &R::Kündigungsgrund}.notStored(), F{"Intervall", &R::Intervall},
      F{"Menge", &R::Menge}, F{"Preis", &R::Preis}, F{"Fehlertext", &R::Fehlertext},
      F{"Bemerkung", &R::Bemerkung}, F{"IndFild1", &R::IndFild1}, F{"IndFild2", &R::IndFild2}.undocumented(),
      F{"IndFild3", &R::IndFild3}.undocumented(), F{"IndFild4", &R::IndFild4}.undocumented(),
      F{"Wartungspreis", &R::Wartungspreis}.notStored(),
      F{"PreisabweichungGrund", &R::PreisabweichungGrund}.notStored(),
      F{"PreisabweichungGenehmigender", &R::PreisabweichungGenehmigender}.notStored(),
      F{"PreisabweichungDatum", &R::PreisabweichungDatum}.date().notStored(),
      F{"PreisabweichungBemerkung", &R::PreisabweichungBemerkung}.notStored(), F{"VS_KdNr", &R::VS_KdNr},
      F{"GekuendigtAm", &R::GekuendigtAm}.date(), F{"GrundVerlorenSchl", &R::GrundVerlorenSchl});
}();

/// Every property of `AuftragsPos` in interface order; the columns are those of `ImportPos`.
inline constexpr auto auftragsPosFields = [] {
  using R = AuftragsPosFields;
  using F = Field<R>;
  return fieldTable<R>(F{"JobID", &R::JobID}, F{"ChildID", &R::ChildID}, F{"JobType", &R::JobType},
                       F{"Positionsnummer", &R::Positionsnummer}, F{"Artikelnummer", &R::Artikelnummer},
                       F{"Menge", &R::Menge}, F{"Wartungspreis", &R::Wartungspreis}.notStored(),
                       F{"Preis", &R::Preis}, F{"Artikellangtext", &R::Artikellangtext},
                       F{"Auslieferungsmenge", &R::Auslieferungsmenge},
                       F{"Fakturiermenge", &R::Fakturiermenge}, F{"Lieferbereit", &R::Lieferbereit},
                       F{"Fakturierbereit", &R::Fakturierbereit}, F{"Mengeneinheit", &R::Mengeneinheit},
                       F{"Rabatt", &R::Rabatt}, F{"Preiseinheit", &R::Preiseinheit},
                       F{"Liefertermin", &R::Liefertermin}.date(), F{"KostID", &R::KostID});
}();

} // namespace qx
