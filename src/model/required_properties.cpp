#include "model/required_properties.h"

namespace qx {
namespace {

constexpr std::array<std::string_view, 1> ofCustomer{"Kundennummer"};
constexpr std::array<std::string_view, 2> ofOrder{"Kundennummer", positionsProperty};
constexpr std::array<std::string_view, 2> ofOrderPosition{"Artikelnummer", "Menge"};

} // namespace

std::span<const std::string_view> requiredProperties(ObjectKind kind) {
  switch (kind) {
  case ObjectKind::Customer:
    return ofCustomer;
  case ObjectKind::Order:
    return ofOrder;
  case ObjectKind::OrderPosition:
    return ofOrderPosition;
  case ObjectKind::Contract:
  case ObjectKind::ContractPosition:
    break;
  }
  return {};
}

} // namespace qx
