// What a run says at its end about orders.
#pragma once

#include <string_view>

namespace qx {

/// Followed by the keys of the entries.
inline constexpr std::string_view malformedFees =
    "Die Datei Zubehoer.ini enthält fehlerhafte Einträge. Ihre Gebühren wurden nicht berechnet: ";

/// Followed by the numbers of the heavy cash-on-delivery orders.
inline constexpr std::string_view heavyCashOnDelivery =
    "Folgende Aufträge enthalten Zahlungsart Nachnahme und wiegen mehr als 28 KG: ";

} // namespace qx
