// The read-only check of a staged job of any kind.
#pragma once

#include "engine/findings.h"
#include "engine/position_facts.h"
#include "engine/run_options.h"
#include "platform/environment.h"

#include <string>
#include <string_view>

namespace qx {

/// Determines what the automatic check and the dialogs would find, without writing anything. Reads the
/// settings when created, so that many jobs can be checked in a row.
class JobCheck {
public:
  /// `withComing`: a customer whom a waiting job creates counts as there, as it is when all jobs are
  /// processed together. A dialog judges its job alone.
  explicit JobCheck(Environment& environment, bool withComing = false);

  /// Clean for a job that is unknown or done. A failure of this job only, such as a refused statement, is an
  /// error among its findings; a failure of the whole database reaches the caller.
  Findings check(std::string_view jobId);

private:
  Findings findingsOf(std::string_view jobId);
  Findings customerToCome(Findings findings, std::string_view customer);

  Environment& environment_;
  bool compareAddresses_ = false;
  bool automatic_ = false;
  bool withComing_;
  std::string homeCurrency_;
  OrderOptions orderOptions_;
  PriceComponent prices_;
};

} // namespace qx
