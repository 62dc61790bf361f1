#include "com/surroundings.h"

#include "adapters/hosted/host_adapters.h"
#include "adapters/hosted/hosted_erp.h"
#include "automation/automation_error.h"
#include "com/message_boxes.h"
#include "com/watched_job_view.h"
#include "composition/composition.h"
#include "composition/database_drivers.h"
#include "program/version.h"

#include <functional>
#include <string>
#include <utility>

namespace qx::com {
namespace {

/// Every kind of database, told apart by the connection string.
class AnyDatabase final : public Database {
public:
  std::string displayed(std::string_view connectionString) const override {
    return drivers_.find(connectionString).displayed;
  }
  std::unique_ptr<Connection> open(std::string_view connectionString) override {
    const DatabaseTarget target = drivers_.find(connectionString);
    return target.database.open(target.connectionString);
  }
  std::unique_ptr<Connection> create(std::string_view connectionString) override {
    const DatabaseTarget target = drivers_.find(connectionString);
    return target.database.create(target.connectionString);
  }

private:
  DatabaseDrivers drivers_;
};

ProgramOptions named(std::string program) {
  ProgramOptions options;
  options.program = std::move(program);
  return options;
}

/// The ERP that is registered on this machine, whose session and connection the host brings along; without
/// one the standalone ERP on its own database.
class Installed final : public Surroundings {
public:
  explicit Installed(Apartment& apartment)
      : host_([&apartment](std::string_view progId) { return apartment.createForeign(progId); },
              [](const std::function<void()>& look) { return std::make_unique<WatchedJobView>(look); }),
        composition_(named("QXImportJob " + std::string(versionNumber)), diagnostics_, desktop_, jobView_),
        ports_(Apartment::isRegistered("Norvalis.Session") ? composition_.ports() : composition_.open()),
        erp_(host_, ports_.connection ? &ports_.components : nullptr), environment_{erp_,
                                                                                    ports_.desktop,
                                                                                    ports_.jobView,
                                                                                    ports_.clock,
                                                                                    ports_.guids,
                                                                                    ports_.localSettings,
                                                                                    ports_.iniFile,
                                                                                    ports_.diagnostics,
                                                                                    ports_.liveness,
                                                                                    ports_.connection,
                                                                                    ports_.session,
                                                                                    "",
                                                                                    ports_.program} {
    erp_.follow(environment_);
  }

  Environment& environment() override { return environment_; }
  Database& database() override { return database_; }
  automation::HostObjects& hostObjects() override { return host_; }

private:
  DebuggerDiagnostics diagnostics_;
  MessageBoxes desktop_;
  MissingJobView jobView_{desktop_};
  AnyDatabase database_;
  HostAdapters host_;
  Composition composition_;
  Environment& ports_;
  HostedErp erp_;
  Environment environment_;
};

} // namespace

std::unique_ptr<Surroundings> makeSurroundings(Apartment& apartment) {
  try {
    return std::make_unique<Installed>(apartment);
  } catch (const std::exception& failure) {
    throw automation::AutomationError(automation::ErrorNumber::CannotCreate, failure.what());
  }
}

} // namespace qx::com
