// The read-only check of a staged job of any kind.
#pragma once

#include "engine/findings.h"
#include "engine/order_options.h"
#include "engine/position_facts.h"
#include "platform/environment.h"

#include <string>
#include <string_view>

namespace qx {

/// Tells what the automatic check and the dialogs would find, without writing anything. The settings are read
/// when it is created, so that many jobs can be checked in a row.
class JobCheck {
public:
  explicit JobCheck(Environment& environment);

  /// Clean for a job that is unknown or done. What fails for this job alone, a refused statement included, is
  /// an error among its findings; a store that cannot go on reaches the caller.
  Findings check(std::string_view jobId);

private:
  Findings findingsOf(std::string_view jobId);

  Environment& environment_;
  bool compareAddresses_ = false;
  std::string homeCurrency_;
  OrderOptions orderOptions_;
  PriceComponent prices_;
};

} // namespace qx
