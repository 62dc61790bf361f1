#include "rules/price_component.h"

#include "rules/active_connection.h"

#include <utility>

namespace qx {

void PriceComponent::create() { created_ = environment_.components.createPreisfindung(); }

void PriceComponent::init(Connection& connection) {
  auto created = std::exchange(created_, nullptr);
  if (!created) return;
  created->Init(connection);
  component_ = std::move(created);
}

Preisfindung& PriceComponent::get() {
  if (!component_) {
    auto created = environment_.components.createPreisfindung();
    created->setConnection(activeConnection(environment_));
    created->Init();
    component_ = std::move(created);
  }
  return *component_;
}

} // namespace qx
