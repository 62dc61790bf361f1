#include "com/surroundings.h"

#include "automation/automation_error.h"
#include "com/message_boxes.h"
#include "composition/composition.h"
#include "composition/database_drivers.h"

#include <string>

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

class Standalone final : public Surroundings {
public:
  Standalone() : composition_({}, diagnostics_, desktop_, jobView_), environment_(composition_.open()) {}

  Environment& environment() override { return environment_; }
  Database& database() override { return database_; }

private:
  DebuggerDiagnostics diagnostics_;
  MessageBoxes desktop_;
  MissingJobView jobView_{desktop_};
  AnyDatabase database_;
  Composition composition_;
  Environment& environment_;
};

} // namespace

std::unique_ptr<Surroundings> makeSurroundings(Apartment& /*apartment*/) {
  try {
    return std::make_unique<Standalone>();
  } catch (const std::exception& failure) {
    throw automation::AutomationError(automation::ErrorNumber::CannotCreate, failure.what());
  }
}

} // namespace qx::com
