// A reason for which an order is not written.
#pragma once

#include <stdexcept>

namespace qx {

/// Ends the writing of one order; `what()` is the sentence that the clerk reads.
class OrderFailure : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace qx
