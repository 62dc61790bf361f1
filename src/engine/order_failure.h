// A reason for which an order is not written.
#pragma once

#include "engine/findings.h"

#include <stdexcept>
#include <string_view>
#include <utility>

namespace qx {

/// Ends the writing of one order; `what()` is the line added to the job's reasons.
class OrderFailure : public std::runtime_error {
public:
  explicit OrderFailure(Finding finding)
      : std::runtime_error(runLine(finding)), finding_(std::move(finding)) {}
  explicit OrderFailure(Rule rule, std::string_view value = {}, std::string_view stored = {})
      : OrderFailure(Finding(rule, value, stored)) {}

  const Finding& finding() const { return finding_; }

private:
  Finding finding_;
};

} // namespace qx
