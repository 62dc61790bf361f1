// The ERP's components inside a host.
#pragma once

#include "adapters/late_bound/late_bound_erp.h"
#include "platform/environment.h"
#include "platform/erp_components.h"

#include <memory>

namespace qx {

/// As long as the session in use is one of the host's, or there is no standalone ERP, its components are
/// those of the host's ERP, created by their ProgIDs; else the standalone ones, also on a host's connection.
class HostedErp final : public ErpComponents {
public:
  /// `standalone` is null where there is none. Both must outlive the object.
  HostedErp(AutomationHost& host, ErpComponents* standalone) : lateBound_(host), standalone_(standalone) {}

  /// The environment whose session decides; it must outlive the object.
  void follow(const Environment& environment) { environment_ = &environment; }

  std::shared_ptr<Session> createSession() override { return current().createSession(); }
  /// Decides when a protocol is opened or created, since the engine keeps the component.
  std::unique_ptr<Protokoll> createProtokoll() override;
  std::unique_ptr<Preisfindung> createPreisfindung() override { return current().createPreisfindung(); }
  std::unique_ptr<Einkaufspreisfindung> createEinkaufspreisfindung(Connection& connection) override {
    return current().createEinkaufspreisfindung(connection);
  }
  std::unique_ptr<Version> createVersion() override { return current().createVersion(); }
  std::unique_ptr<Profile> createProfile() override { return current().createProfile(); }
  std::unique_ptr<Adressindex> createAdressindex(Connection& connection) override {
    return current().createAdressindex(connection);
  }
  std::unique_ptr<FibuUebergabe> createFibuUebergabe() override { return current().createFibuUebergabe(); }
  std::unique_ptr<Auskunft> createAuskunft() override { return current().createAuskunft(); }

private:
  class ChosenProtokoll;
  ErpComponents& current();

  LateBoundErp lateBound_;
  ErpComponents* standalone_;
  const Environment* environment_ = nullptr;
};

} // namespace qx
