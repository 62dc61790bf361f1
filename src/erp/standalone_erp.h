// The ERP components of the standalone installation.
#pragma once

#include "erp/process_identity.h"
#include "erp/standalone_session.h"
#include "platform/desktop.h"
#include "platform/erp_components.h"

#include <functional>
#include <memory>
#include <utility>

namespace qx::erp {

/// Creates real components that all work on one database connection.
class StandaloneErp final : public ErpComponents {
public:
  /// `clock`, `desktop`, `diagnostics` and `identity` must outlive the components and everything they create.
  StandaloneErp(std::shared_ptr<Connection> connection, Clock& clock, Desktop& desktop,
                Diagnostics& diagnostics, const ProcessIdentity& identity, StandaloneOptions options);

  /// Not yet connected: `Connect` uses the shared connection, whatever its arguments.
  std::shared_ptr<Session> createSession() override;
  std::unique_ptr<Protokoll> createProtokoll() override;
  std::unique_ptr<Preisfindung> createPreisfindung() override;
  std::unique_ptr<Einkaufspreisfindung> createEinkaufspreisfindung(Connection& connection) override;
  std::unique_ptr<Version> createVersion() override;
  std::unique_ptr<Profile> createProfile() override;
  std::unique_ptr<Adressindex> createAdressindex(Connection& connection) override;
  std::unique_ptr<FibuUebergabe> createFibuUebergabe() override;
  /// A window of the factory; raises `std::runtime_error` without a factory.
  std::unique_ptr<Auskunft> createAuskunft() override;

  /// Sets the factory of lookup windows, for programs with windows.
  void setAuskunftFactory(std::function<std::unique_ptr<Auskunft>()> factory) {
    auskunftFactory_ = std::move(factory);
  }

private:
  std::shared_ptr<Connection> connection_;
  Clock& clock_;
  Desktop& desktop_;
  Diagnostics& diagnostics_;
  const ProcessIdentity& identity_;
  StandaloneOptions options_;
  std::function<std::unique_ptr<Auskunft>()> auskunftFactory_;
};

} // namespace qx::erp
