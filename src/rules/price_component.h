// The ERP's pricing component, created when it is needed, and the total of staged discounts.
#pragma once

#include "platform/environment.h"

#include <memory>

namespace qx {

/// Creates and initialises the component at the first question. A run takes the two steps itself, before its
/// first job; a step that failed is taken again at the first question. Failures reach the caller.
class PriceComponent {
public:
  explicit PriceComponent(Environment& environment) : environment_(environment) {}

  void create();
  /// Initialises the component that `create` made, if it did.
  void init(Connection& connection);

  Preisfindung& get();

private:
  Environment& environment_;
  std::unique_ptr<Preisfindung> created_; ///< not initialised yet
  std::unique_ptr<Preisfindung> component_;
};

/// The total discount as combined by the pricing component: the amount off `Betrag` when `Param` is 1, else
/// the rate in percent. Creates a pricing component for the call; its exceptions reach the caller. Raises
/// `std::invalid_argument` for a `Param` that is not a number (null and "" count as 0).
double GetGRabatt(Environment& environment, const StagedDiscounts& discounts, const Value& Param,
                  double Betrag);

/// The same with an initialised pricing component; use this one in loops.
double GetGRabatt(Preisfindung& pricing, const StagedDiscounts& discounts, const Value& Param, double Betrag);

} // namespace qx
