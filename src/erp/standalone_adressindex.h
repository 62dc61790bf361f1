// The address index of the standalone ERP.
#pragma once

#include "platform/erp_components.h"

#include <cstdint>
#include <string_view>

namespace qx::erp {

/// Keeps one row per customer and kind with the customer's search words: search term, names, postcode and
/// town in lower case. The row of a customer who no longer exists is removed.
class StandaloneAdressindex final : public Adressindex {
public:
  /// `connection` must outlive the object.
  explicit StandaloneAdressindex(Connection& connection) : connection_(connection) {}

  void CreateIndex(std::string_view customer, std::int16_t kind) override;

private:
  Connection& connection_;
};

} // namespace qx::erp
