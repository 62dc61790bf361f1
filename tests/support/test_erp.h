// A whole standalone ERP in a database of its own, with fakes for the rest of the outside.
#pragma once

#include "erp/process_identity.h"
#include "erp/standalone_erp.h"
#include "platform/environment.h"
#include "support/database_access.h"
#include "support/fake_desktop.h"
#include "support/fake_system.h"
#include "support/temporary_folder.h"
#include "support/test_server.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// One process whose numbers never change, so that the session identity does not either.
class FixedProcesses final : public erp::ProcessTable {
public:
  std::optional<erp::ProcessStart> self() const override { return erp::ProcessStart{4711, 1000}; }
  std::optional<erp::ProcessStart> find(std::uint64_t) const override { return std::nullopt; }
};

/// Schema, base data and a connected session of the user "pruefer" on 24.11.2026; the clock stands at 10:30
/// of that day. Units of work are the component's own. Raises when the database cannot be created.
///
/// The database is a file, or with $QXIMPORTJOB_TEST_ERP = "server" a schema on the server of the tests, so
/// that every suite built on this class can be run on either.
class TestErp : public DatabaseAccess {
public:
  TestErp();
  TestErp(const TestErp&) = delete;
  TestErp& operator=(const TestErp&) = delete;
  ~TestErp();

  Connection& connection() override { return *environment.connection; }
  /// Another program's connection to the same database.
  std::unique_ptr<Connection> secondConnection() const;

  /// An option of the section `ImportJob2` of the shared store.
  void setOption(std::string_view key, std::string_view value) { setSetting("ImportJob2", key, value); }
  void setSetting(std::string_view section, std::string_view key, std::string_view value) {
    environment.session->SaveSetting(section, key, value);
  }
  /// The clock keeps its own date.
  void setSessionDate(const Date& date) { sessionClock.moment.date = date; }

  TemporaryFolder folder; ///< also the ERP's application directory
  std::string file = (folder.path() / "erp.db").string();
  FixedClock sessionClock; ///< whose day is the session date
  RecordingDesktop desktop;
  RecordingJobView jobView;
  FixedClock clock;
  SequentialGuids guids;
  MemoryLocalSettings localSettings;
  FixedIniFile iniFile;
  RecordingDiagnostics diagnostics;
  FixedLiveness liveness;
  FixedProcesses processes;
  erp::ProcessIdentity identity{erp::MachineName{"pruefstand", "0"}, processes};
  std::unique_ptr<TestSchema> schema; ///< null for a file
  std::shared_ptr<Connection> database;
  erp::StandaloneErp components;
  Environment environment;
};

} // namespace qx
