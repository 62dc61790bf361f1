// The credit limits of a customer against the open items.
#pragma once

#include "engine/findings.h"
#include "model/german_text.h"
#include "platform/environment.h"

#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace qx {

enum class CreditResult : std::int16_t { WithinLimits = 0, Limit1Reached = 1, Limit2Reached = 2 };

/// Raised for a limit whose text can mean two amounts; it has to be corrected.
class AmbiguousLimit : public std::runtime_error {
public:
  AmbiguousLimit(std::string_view limit, const NumberReadings& readings);

  const Finding& finding() const { return finding_; }

private:
  Finding finding_;
};

/// Compares the balance of a customer's open items with the two limits. The current order is not added.
class CreditLimit {
public:
  explicit CreditLimit(Environment& environment) : environment_(environment) {}

  /// Reaching a limit counts; 0 means no limit. An unknown customer is within the limits. Raises
  /// `AmbiguousLimit`; exceptions of the accounting component reach the caller.
  CreditResult query(std::string_view customer) const;

private:
  Environment& environment_;
};

} // namespace qx
