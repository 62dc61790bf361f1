// The delivery and the invoice address of a job: which columns hold them.
#pragma once

#include "platform/column_name.h"
#include "rules/customer_addresses.h"

#include <array>
#include <string>
#include <string_view>

namespace qx {

/// A line of an address and its column.
struct AddressLine {
  ColumnName column;
  std::string Adresse::*part;
};
using AddressLines = std::array<AddressLine, 7>;

/// One of the two addresses. An order's header has the same columns.
struct AddressFields {
  std::string_view name; ///< as the clerk calls it
  ColumnName customer;   ///< number of the customer whose address it is
  ColumnName number;     ///< number of the address among that customer's
  AddressLines lines;    ///< in the order in which they are shown and compared
};

inline constexpr AddressFields deliveryAddress{"Versandanschrift",
                                               "VS_KdNr",
                                               "VS_AdrNr",
                                               {{{"VS_Bez1", &Adresse::Bez1},
                                                 {"VS_Bez2", &Adresse::Bez2},
                                                 {"VS_Bez3", &Adresse::Bez3},
                                                 {"VS_Straße", &Adresse::Strasse},
                                                 {"VS_PLZ", &Adresse::PLZ},
                                                 {"VS_Ort", &Adresse::Ort},
                                                 {"VS_Land", &Adresse::Land}}}};
inline constexpr AddressFields invoiceAddress{"Rechnungsanschrift",
                                              "RG_KdNr",
                                              "RG_AdrNr",
                                              {{{"RG_Bez1", &Adresse::Bez1},
                                                {"RG_Bez2", &Adresse::Bez2},
                                                {"RG_Bez3", &Adresse::Bez3},
                                                {"RG_Straße", &Adresse::Strasse},
                                                {"RG_PLZ", &Adresse::PLZ},
                                                {"RG_Ort", &Adresse::Ort},
                                                {"RG_Land", &Adresse::Land}}}};
inline constexpr std::array jobAddresses{deliveryAddress, invoiceAddress};

/// The main address of a job or a customer.
inline constexpr AddressLines mainAddress{{{"Bez1", &Adresse::Bez1},
                                           {"Bez2", &Adresse::Bez2},
                                           {"Bez3", &Adresse::Bez3},
                                           {"Strasse", &Adresse::Strasse},
                                           {"Land", &Adresse::Land},
                                           {"PLZ", &Adresse::PLZ},
                                           {"Ort", &Adresse::Ort}}};

/// The address whose lines `textOf` gives by column.
template <class TextOf>
Adresse addressOf(const AddressLines& lines, const TextOf& textOf) {
  Adresse address;
  for (const AddressLine& line : lines) address.*line.part = textOf(line.column);
  return address;
}

} // namespace qx
