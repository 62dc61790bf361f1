// Order numbers from the number range of a booking circle.
#pragma once

#include "engine/job_row.h"
#include "engine/run_options.h"
#include "platform/environment.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace qx {

/// A drawn order number and the booking circle it came from.
struct OrderNumber {
  std::int32_t number = 0;
  std::int16_t circle = 0;
};

/// Draws order numbers and returns the pending one to its range when its order fails.
class OrderNumbers {
public:
  OrderNumbers(Environment& environment, const OrderOptions& options)
      : environment_(environment), options_(options) {}

  /// Raises `OrderFailure` when there is no number; nothing is then drawn.
  OrderNumber draw(const JobRow& job);
  /// The order was written; its number is no longer pending.
  void keep() { pending_.reset(); }
  /// The draw was rolled back. A number that belongs to another order is passed over all the same, or it
  /// would be drawn for ever.
  void forget();
  /// The drawn number belongs to another order, whose lines must be kept. It does not return to its range.
  void foreignNumber() { foreign_ = true; }
  /// Removes the lines of the order whose number is pending.
  void removeLines();
  /// Returns the pending number, if any, to its range.
  void giveBack();

private:
  std::optional<std::int16_t> bookingCircle(const JobRow& job);
  void requireRange(std::int16_t circle);

  Environment& environment_;
  const OrderOptions& options_;
  std::optional<std::int16_t> sessionCircle_;
  std::optional<OrderNumber> pending_;
  /// The circle and the epoch of the connection in which its range was drawn from.
  std::optional<std::pair<std::int16_t, std::uint64_t>> drawnFrom_;
  bool foreign_ = false; ///< the pending number belongs to another order
};

} // namespace qx
