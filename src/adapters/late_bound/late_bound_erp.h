// The ERP's components by their ProgIDs.
#pragma once

#include "adapters/late_bound/host.h"
#include "platform/erp_components.h"

#include <memory>

namespace qx {

/// Creates a component by its ProgID at each call. Its members are called by name; what a component raises
/// reaches the caller as `automation::AutomationError`. The host must outlive the components.
class LateBoundErp final : public ErpComponents {
public:
  explicit LateBoundErp(AutomationHost& host) : host_(host) {}

  std::shared_ptr<Session> createSession() override;
  std::unique_ptr<Protokoll> createProtokoll() override;
  std::unique_ptr<Preisfindung> createPreisfindung() override;
  /// The ERP has none: null.
  std::unique_ptr<Einkaufspreisfindung> createEinkaufspreisfindung(Connection& connection) override;
  std::unique_ptr<Version> createVersion() override;
  std::unique_ptr<Profile> createProfile() override;
  std::unique_ptr<Adressindex> createAdressindex(Connection& connection) override;
  std::unique_ptr<FibuUebergabe> createFibuUebergabe() override;
  std::unique_ptr<Auskunft> createAuskunft() override;

private:
  AutomationHost& host_;
};

} // namespace qx
