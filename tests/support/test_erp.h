// A whole standalone ERP in a database of its own, with fakes for the rest of the outside.
#pragma once

#include "erp/process_identity.h"
#include "erp/standalone_erp.h"
#include "platform/environment.h"
#include "support/database_access.h"
#include "support/fake_desktop.h"
#include "support/fake_system.h"
#include "support/temporary_folder.h"
#include "support/test_database.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// One process whose numbers never change, so that the session identity does not either.
class FixedProcesses final : public ProcessTable {
public:
  std::optional<ProcessStart> self() const override { return ProcessStart{4711, 1000}; }
  ProcessState find(std::uint64_t) const override { return {}; }
};

/// Schema, base data and a connected session of the user "pruefer" on 24.11.2026; the clock stands at 10:30
/// of that day. Units of work are the component's own. Raises when the database cannot be created.
class TestErp : public DatabaseAccess {
public:
  TestErp();
  TestErp(const TestErp&) = delete;
  TestErp& operator=(const TestErp&) = delete;
  ~TestErp();

  /// For statements of the test.
  Connection& connection() override;
  /// Another program's connection to the same database.
  std::unique_ptr<Connection> secondConnection() const { return where.another(); }
  /// A host's connection to the same database.
  std::shared_ptr<Connection> hostConnection() const { return where.host(); }
  bool onServer() const { return where.onServer(); }

  /// Lets the database refuse an event, as in "INSERT ON Belegindex", for rows of which the condition holds,
  /// until `allow`; optionally giving up the unit of work.
  template <class Event, class Condition, class Reason>
  void refuse(Event event, Condition condition, Reason reason, bool takesTheUnitAlong = false) {
    const std::string& trigger = refused_.emplace_back("refused" + std::to_string(refused_.size()));
    const Sql head = sql("CREATE TRIGGER "_sql, name(trigger), " BEFORE "_sql, event,
                         " FOR EACH ROW WHEN ("_sql, condition, ")"_sql);
    if (!onServer()) {
      execute(Sql(head).append(takesTheUnitAlong
                                   ? sql(" BEGIN SELECT RAISE(ROLLBACK, "_sql, reason, "); END"_sql)
                                   : sql(" BEGIN SELECT RAISE(ABORT, "_sql, reason, "); END"_sql)));
      return;
    }
    // A conflict with another program is what makes a server give up a unit.
    execute(sql("CREATE FUNCTION "_sql, name(trigger),
                "() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE "_sql, reason)
                .append(takesTheUnitAlong ? sql(" USING ERRCODE = '40001'"_sql) : Sql())
                .append(sql("; END $$"_sql)));
    execute(Sql(head).append(sql(" EXECUTE FUNCTION "_sql, name(trigger), "()"_sql)));
  }
  template <class Event, class Reason>
  void refuse(Event event, Reason reason, bool takesTheUnitAlong = false) {
    refuse(event, "1 = 1"_sql, reason, takesTheUnitAlong);
  }
  /// Lets a statement follow every such event.
  template <class Event, class Statement>
  void follow(Event event, Statement statement) {
    if (!onServer()) {
      execute("CREATE TRIGGER follow AFTER "_sql, event, " BEGIN "_sql, statement, "; END"_sql);
      return;
    }
    execute("CREATE FUNCTION follow() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "_sql, statement,
            "; RETURN NULL; END $$"_sql);
    execute("CREATE TRIGGER follow AFTER "_sql, event, " FOR EACH ROW EXECUTE FUNCTION follow()"_sql);
  }
  void allow() {
    for (const std::string& trigger : refused_)
      execute(onServer() ? sql("DROP FUNCTION "_sql, name(trigger), " CASCADE"_sql)
                         : sql("DROP TRIGGER "_sql, name(trigger)));
    refused_.clear();
  }

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
  erp::ProcessIdentity identity{MachineName{"pruefstand", "0"}, processes};
  TestDatabase where{file};
  std::shared_ptr<Connection> database;
  erp::StandaloneErp components;
  Environment environment;

private:
  std::vector<std::string> refused_;
};

} // namespace qx
