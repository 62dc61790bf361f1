// The ERP's pricing component, created when it is needed.
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

} // namespace qx
