// What the objects of a file of jobs cannot do without, whoever makes or reads them.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace qx {

/// The objects that have properties.
enum class ObjectKind : std::uint8_t { Customer, Contract, Order, OrderPosition, ContractPosition };

/// The list of the positions of a job, of which one that must have it needs at least one.
inline constexpr std::string_view positionsProperty = "Positionen";

/// A customer needs one of these.
inline constexpr std::array<std::string_view, 4> customerNames{"Bez1", "Bez2", "Bez3", "Suchbegriff"};

/// The properties that an object of the kind must have.
std::span<const std::string_view> requiredProperties(ObjectKind kind);

} // namespace qx
