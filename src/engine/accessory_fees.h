// The fees of accessory orders.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Reads the fee tables of "\Zubehoer.ini" in the application directory, once per run. A missing file or
/// section means no fee; a malformed entry is skipped with a diagnostics entry.
class AccessoryFees {
public:
  explicit AccessoryFees(Environment& environment) : environment_(environment) {}

  /// The fee of an order below the minimum order value.
  double minimumOrderFee(double orderValue);
  /// The graded fee: that of the first bound above the value; beyond the last bound that of the last.
  double gradedFee(double accessoryValue);
  /// The keys of the malformed entries, separated by commas; "" if none or before the file is read.
  const std::string& malformedEntries() const { return malformed_; }

private:
  struct Row {
    double bound = 0;
    double fee = 0;
  };

  void load();
  std::optional<Row> parse(std::string_view key, const std::string& entry);

  Environment& environment_;
  bool loaded_ = false;
  std::optional<Row> minimum_;
  std::vector<Row> graded_;
  std::string malformed_;
};

} // namespace qx
