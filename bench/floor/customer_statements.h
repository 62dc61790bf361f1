// The statements that writing one customer job takes.
#pragma once

#include "floor/database.h"

#include <array>
#include <string_view>
#include <vector>

namespace qx::bench {

/// A row as it was read: one view a column, valid while its statement stands.
class RowView {
public:
  explicit RowView(const Statement& statement);

  /// The place of a column; the row's own number is column 0.
  std::size_t place(std::string_view column) const;
  void read(const Statement& statement);
  std::string_view operator[](std::size_t place) const { return values_[place]; }

private:
  std::vector<std::string_view> names_;
  std::vector<std::string_view> values_;
};

/// A column of the customer master and the job column that fills it.
struct CopiedColumn {
  std::string_view column;
  std::string_view jobColumn;
  bool number = false;
};

/// Without the stamps, which come first, and the customer's number, which is the key.
inline constexpr std::array copiedColumns{CopiedColumn{"Suchbegriff", "Suchbegriff"},
                                          CopiedColumn{"Bez1", "Bez1"},
                                          CopiedColumn{"Bez2", "Bez2"},
                                          CopiedColumn{"Bez3", "Bez3"},
                                          CopiedColumn{"Strasse", "Strasse"},
                                          CopiedColumn{"Land", "Land"},
                                          CopiedColumn{"PLZ", "PLZ"},
                                          CopiedColumn{"Ort", "Ort"},
                                          CopiedColumn{"Telefon", "Telefon"},
                                          CopiedColumn{"Telefax", "Telefax"},
                                          CopiedColumn{"EMail", "EMail"},
                                          CopiedColumn{"Versandart", "Versandart"},
                                          CopiedColumn{"Kundengruppe", "Kundengruppe"},
                                          CopiedColumn{"VertreterNr1", "Vertreter1"},
                                          CopiedColumn{"VertreterNr2", "Vertreter2"},
                                          CopiedColumn{"VertreterNr3", "Vertreter3"},
                                          CopiedColumn{"Zahlungsart", "Zahlungsart"},
                                          CopiedColumn{"Konto", "Konto"},
                                          CopiedColumn{"KontoNummer", "KontoNummer"},
                                          CopiedColumn{"Bankleitzahl", "BLZ"},
                                          CopiedColumn{"KundengruppenShop", "KundengruppenShop"},
                                          CopiedColumn{"AendStatShop", "AendStatShop", true},
                                          CopiedColumn{"VS_KdNr", "VS_KdNr"},
                                          CopiedColumn{"VS_AdrNr", "VS_AdrNr"},
                                          CopiedColumn{"RG_KdNr", "RG_KdNr"},
                                          CopiedColumn{"RG_AdrNr", "RG_AdrNr"},
                                          CopiedColumn{"Hauptkonto", "Hauptkonto"},
                                          CopiedColumn{"Preisliste", "Preisliste"},
                                          CopiedColumn{"Preistyp", "Preistyp", true},
                                          CopiedColumn{"KundeSeit", "KundeSeit"},
                                          CopiedColumn{"KundeVerlorenAm", "KundeVerlorenAm"},
                                          CopiedColumn{"GrundVerloren", "GrundVerloren"},
                                          CopiedColumn{"GrundVerlorenSchl", "GrundVerlorenSchl"},
                                          CopiedColumn{"UstIdentNr", "UstIdentNr"}};

/// One look-up of a code.
struct CodeLookup {
  std::string_view jobColumn;
  Statement statement;
};

/// Prepared once, used for every job.
struct CustomerStatements {
  explicit CustomerStatements(Database& database);

  Statement job;
  Statement customer;
  std::vector<CodeLookup> codes;
  Statement insertCustomer;
  Statement updateCustomer;
  Statement addAddress;
  Statement setJobType;
  Statement addLine;
  Statement indexedNames;
  Statement writeIndex;
};

} // namespace qx::bench
