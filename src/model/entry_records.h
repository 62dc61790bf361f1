// The properties of the entry objects: customer, contract and order jobs and order positions.
#pragma once

#include "model/field_table.h"

#include <cstdint>
#include <string>

namespace qx {

// Unless a property says otherwise it is filled by the sender and may be left empty. Texts are UTF-8, dates
// "dd.mm.yyyy", numbers 0 for none. Nothing is validated here: codes are compared with the ERP's tables when
// the job is checked.

/// What a customer job and an order job have in common, and the `ImportKopf` columns behind it. A customer
/// job writes its values to the customer master; an order takes its own and, where it has none, those of its
/// customer.
struct HeaderFields {
  std::string JobID;        ///< key of 32 hexadecimal digits; filled when an entry object is created
  std::int16_t JobType = 0; ///< kind and state (`JobConstants2`); waiting when created, then set by the run
  std::int16_t Status = 0;  ///< severity of the last check (`CheckStatus`); 10 when created
  std::int16_t Eingagsart = 0; ///< kind of receipt; spelled so in the interface, not stored
  std::string Eingangsdatum; ///< date of receipt, today when created; the date of the order and of its prices
  std::string Kundennummer;  ///< required
  std::string Suchbegriff;   ///< search term
  std::string Bez1, Bez2, Bez3; ///< name lines
  std::string Strasse, Land, PLZ, Ort;
  std::string Telefon, Telefax, EMail;
  std::string Kundengruppe;                       ///< code
  std::string Vertreter1, Vertreter2, Vertreter3; ///< numbers of the sales representatives
  std::string Zahlungsart;                        ///< code of the payment method
  std::string Konto, BLZ, Kreditinstitut;         ///< account number, bank code and name of the bank
  std::string Bemerkung;                          ///< remark; processing appends the number of the order
  std::string Vertragsnummer;                     ///< stored, not used by customers and orders
  std::string Zahlungsweise; ///< payment interval; stored, not used by customers and orders
  /// Codes. A customer's must be known but are not written; an order is in the currency of its customer.
  std::string Währung, WährungEingabe;
  std::string Fehlertext;       ///< filled by checks and runs: why the job is parked, a reason a line
  std::string Betreff;          ///< subject of an order
  std::string Versandart;       ///< code of the shipping method
  std::string ZahlungsbedSchl;  ///< code of the payment terms
  std::string Provisionsgruppe; ///< code of the commission group
  std::string UstIdentNr;       ///< VAT identification number
  /// Free texts. In customer-specific mode marks in 1 and 3 of an order demand a payment method. An order
  /// leaves its 2 and 3 with the customer.
  std::string IndFild1, IndFild2, IndFild3;
  /// Customer and address number of the delivery (VS) and of the invoice address (RG). An empty customer is
  /// the job's own, an empty number its main address.
  std::string VS_KdNr, VS_AdrNr;
  std::string RG_KdNr, RG_AdrNr;
  std::string Hauptkonto; ///< main account: the number of a customer
  /// The lines of the two addresses. With an address number a customer job stores them under it; an order
  /// uses them in place of the stored ones.
  std::string VS_Bez1, VS_Bez2, VS_Bez3, VS_Strasse, VS_Land, VS_PLZ, VS_Ort;
  std::string RG_Bez1, RG_Bez2, RG_Bez3, RG_Strasse, RG_Land, RG_PLZ, RG_Ort;
};

/// The properties of a customer job.
struct KundeFields : HeaderFields {
  std::string IndFild4;                         ///< free text
  std::string Preisliste;                       ///< code
  std::int16_t Preistyp = 0;                    ///< 0: prices are net; 1: they contain the tax
  std::string KundeSeit, KundeVerlorenAm;       ///< dates: customer since, lost on
  std::string GrundVerloren, GrundVerlorenSchl; ///< why the customer was lost, as a text and as a code
};

/// The properties of an order job header.
struct AuftragFields : HeaderFields {
  bool NeukundeJN = false;  ///< new customer; not stored
  std::string Liefertermin; ///< date of delivery of the positions that have none
  std::int32_t KostID = 0;  ///< number of the cost assignment
};

/// The properties of a contract job.
struct VertragFields {
  std::string JobID; ///< as in `HeaderFields`, and so the next four
  std::int16_t JobType = 0;
  std::int16_t Status = 0;
  std::int16_t Eingagsart = 0; ///< not stored
  std::string Eingangsdatum;
  std::string Kundennummer;
  std::string Vertragsnummer;
  std::string Artikelnummer;                 ///< number of the contract object
  std::string Vertragsart;                   ///< code of the contract type
  std::string Zustand;                       ///< A active (also when empty), I for information only, E done
  std::string Vertragstext;                  ///< empty: the name of the contract object
  std::string Vertragsdatum, Vertragsbeginn; ///< dates of signature and of the first day; required
  std::string Vertragsende;                  ///< date; "" and "999999" are stored as null: no end
  std::string Kündigungsgrund;               ///< why it was terminated; not stored
  std::int16_t Intervall = 0;                ///< months from invoice to invoice: 1, 3, 6 or 12
  double Menge = 0;                          ///< number of contract objects; more than 0
  double Preis = 0;       ///< `Betrag` of the contract, rounded to four decimals; no currency goes with it
  std::string Fehlertext; ///< filled by checks and runs
  std::string Bemerkung;  ///< remark
  std::string IndFild1;   ///< why the price differs from the usual one
  /// Who approved that price, on which date, and a remark on it. C++ only: stored, but not among the
  /// automation properties.
  std::string IndFild2, IndFild3, IndFild4;
  std::string Wartungspreis; ///< maintenance price as a text; not stored
  /// The price difference again, not stored: `IndFild1` to `IndFild4` carry it.
  std::int16_t PreisabweichungGrund = 0;
  std::string PreisabweichungGenehmigender, PreisabweichungDatum, PreisabweichungBemerkung;
  std::string VS_KdNr;           ///< number of the customer who is supplied
  std::string GekuendigtAm;      ///< date of the termination
  std::string GrundVerlorenSchl; ///< code of its reason
};

/// The properties of an order position.
struct AuftragsPosFields {
  std::string JobID;        ///< of the order; that of the order created last when an entry object is created
  std::string ChildID;      ///< key of 32 hexadecimal digits; filled when an entry object is created
  std::int16_t JobType = 0; ///< 50
  std::int32_t Positionsnummer = 0; ///< lines are written in this order
  std::string Artikelnummer;
  double Menge = 0;         ///< in `Mengeneinheit`; negative for a return
  double Wartungspreis = 0; ///< maintenance price; not stored
  /// For `Preiseinheit` units of quantity, in the customer's currency, net or with tax as the customer's
  /// `Preistyp` says. Used when the ERP finds no price; else the ERP's counts.
  double Preis = 0;
  std::string Artikellangtext;   ///< a text line below the position
  double Auslieferungsmenge = 0; ///< to deliver, in `Mengeneinheit`
  double Fakturiermenge = 0;     ///< to invoice, in `Mengeneinheit`
  bool Lieferbereit = false;     ///< ready for delivery; from an option when an entry object is created
  bool Fakturierbereit = false;  ///< ready for invoicing; the same
  std::string Mengeneinheit;     ///< code of the unit; empty: that of the article
  double Rabatt = 0;             ///< percent (20 is 20 %); goes with `Preis`
  double Preiseinheit = 0;       ///< how many units `Preis` is for; 0 is 1
  std::string Liefertermin;      ///< date of delivery; empty: that of the order
  std::int32_t KostID = 0;       ///< number of the cost assignment
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
      F{"Bemerkung", &R::Bemerkung}, F{"IndFild1", &R::IndFild1}, F{"IndFild2", &R::IndFild2},
      F{"IndFild3", &R::IndFild3}, F{"IndFild4", &R::IndFild4},
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
