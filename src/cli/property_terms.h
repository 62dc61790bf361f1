// What the properties of staged objects mean, for people and programs that write such objects.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace qx::cli {

/// The objects that have properties.
enum class ObjectKind : unsigned char { Customer, Contract, Order, OrderPosition, ContractPosition };

struct PropertyTerm {
  std::string_view name;
  std::string_view meaning; ///< one sentence
  std::string_view unit{};  ///< of a number; empty for none
  std::string_view codes{}; ///< the table of the ERP that has the codes; empty for no code
  std::string_view example{};
};

/// The terms of a property. A kind that gives the property a meaning of its own has its own terms.
const PropertyTerm& propertyTerm(ObjectKind kind, std::string_view property);

/// A customer needs one of these.
inline constexpr std::array<std::string_view, 4> customerNames{"Bez1", "Bez2", "Bez3", "Suchbegriff"};

/// The properties that an object of the kind must have.
std::span<const std::string_view> requiredProperties(ObjectKind kind);

} // namespace qx::cli
