// The findings of the contract check and the sentences of the contract processing.
#pragma once

#include <array>
#include <string_view>

namespace qx {

/// Findings of the check. Single contracts and those of a customer spell one of them differently on purpose.
namespace contract_findings {

inline constexpr std::string_view kind = "Vertragsart ist nicht angelegt";
inline constexpr std::string_view quantity = "Menge ist falsch";
inline constexpr std::string_view quantityOfSingle = "Menge ist faslch";
inline constexpr std::string_view state = "Zustand ist falsch";
inline constexpr std::string_view signedOn = "Vertragsdatum ist falsch";
inline constexpr std::string_view begin = "Vertragsbeginn ist falsch";
inline constexpr std::string_view object = "Vertragsgegenstand ist nicht angelegt";

/// All of them.
inline constexpr std::array all{kind, quantity, quantityOfSingle, state, signedOn, begin, object};

} // namespace contract_findings

/// Why a contract is not written: how each sentence begins. The customer number, the kind or the object
/// follows.
namespace contract_failures {

inline constexpr std::string_view customer = "Die Kundennummer: '";
inline constexpr std::string_view kind = "Die Vertragsart: '";
inline constexpr std::string_view relation = "Es konnte keine Beziehung zwischen Vertragsart: '";
inline constexpr std::string_view object = "Die Vertragsgegenstandsnummer: '";

/// Of a price or quantity that no amount can hold.
inline constexpr std::string_view price = "Der Preis: '";
inline constexpr std::string_view quantity = "Die Menge: '";

/// All but those of numbers beyond all sense.
inline constexpr std::array all{customer, kind, relation, object};

} // namespace contract_failures

} // namespace qx
