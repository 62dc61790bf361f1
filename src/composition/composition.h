// The composition root of the program and its window: the only place that knows the adapters of both.
#pragma once

#include "adapters/local_settings/profile_ini_file.h"
#include "adapters/local_settings/user_settings.h"
#include "adapters/system/processes.h"
#include "adapters/system/system_sources.h"
#include "composition/database_drivers.h"
#include "erp/process_identity.h"
#include "erp/standalone_erp.h"
#include "program/common_options.h"
#include "program/installation.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// The standalone ERP on a database. The environment lives as long as the composition.
class Composition final : public Installation {
public:
  /// The ports must outlive the composition.
  Composition(ProgramOptions options, Diagnostics& diagnostics, Desktop& desktop, JobView& jobView);

  /// The version of the tables that the program works with and that every open database has.
  static std::string schemaVersion();

  Environment& open() override;
  /// For a component inside another ERP: what the system offers, without a connection, a session and a
  /// database for the components.
  Environment& ports();
  InstallationReport create(bool demo, DatabaseUsers users) override;
  UpgradeReport upgrade(bool backupMade) override;
  /// For a program with windows, once the database is open: creates the ERP's lookup windows.
  void offerLookups(std::function<std::unique_ptr<Auskunft>()> factory);

private:
  /// "qximportjob --db FILE VERB", as one types it for the same database.
  std::string callOf(std::string_view verb) const;
  std::string initLine() const;
  DatabaseTarget target() const;
  std::shared_ptr<Connection> openExisting(const DatabaseTarget& target) const;
  std::optional<std::size_t> fill(Connection& connection, bool demo, const std::filesystem::path& folder);
  void requireBackup(const Maintenance& maintenance, bool made) const;
  void refuseWhileProcessed(Connection& connection, bool fromOtherMachines);
  std::filesystem::path backUp(Maintenance& maintenance, const DatabaseTarget& target, int version);
  void connect(const std::shared_ptr<Connection>& connection, const DatabaseTarget& target);
  void requireSchema(Connection& connection, const std::string& target) const;

  ProgramOptions options_;
  Diagnostics& diagnostics_;
  Desktop& desktop_;
  JobView& jobView_;
  SystemClock clock_;
  SystemGuidSource guids_;
  UserSettings localSettings_;
  ProfileIniFile iniFile_;
  SystemProcesses processes_;
  erp::ProcessIdentity identity_;
  DatabaseDrivers drivers_;
  std::optional<erp::StandaloneErp> erp_;
  std::optional<Environment> environment_;
};

} // namespace qx
