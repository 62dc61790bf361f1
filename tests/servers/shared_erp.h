// One database that several programs use at the same time.
#pragma once

#include "cli/program_fixture.h"

#include "adapters/odbc/odbc_database.h"
#include "adapters/sqlite/sqlite_database.h"
#include "erp/base_data.h"
#include "erp/demo_data.h"
#include "erp/schema.h"
#include "support/database_access.h"
#include "support/temporary_folder.h"
#include "support/test_server.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace qx {

enum class Kept : std::uint8_t { InAFile, OnTheServer };

inline std::ostream& operator<<(std::ostream& stream, Kept kept) {
  return stream << (kept == Kept::InAFile ? "sqlite" : "odbc");
}

/// A database with the demo company and without jobs, and the program on it.
class SharedErp : public DatabaseAccess {
public:
  explicit SharedErp(Kept kept)
      : schema(kept == Kept::OnTheServer ? std::make_unique<TestSchema>() : nullptr),
        target(schema ? "odbc:" + schema->connectionString() : (folder.path() / "erp.db").string()) {
    own_ = schema ? OdbcDatabase(erp::schemaNames()).create(schema->connectionString())
                  : SqliteDatabase().create(target);
    WorkUnit unit(*own_);
    erp::createSchema(*own_);
    erp::fillBaseData(*own_);
    erp::fillDemoData(*own_);
    unit.commit();
  }

  Connection& connection() override { return *own_; }
  std::unique_ptr<Connection> another() const {
    return schema ? OdbcDatabase(erp::schemaNames()).open(schema->connectionString())
                  : SqliteDatabase().open(target);
  }
  /// Starts the program, on another way to the database if one is given.
  ProgramRun start(std::vector<std::string> arguments, std::string_view input = {},
                   std::string_view way = {}) const {
    arguments.insert(arguments.begin(), {"--db", way.empty() ? target : std::string(way), "--user", "pruefer",
                                         "--date", "24.11.2026"});
    return {folder, arguments, variables_, input};
  }
  ProgramResult run(std::vector<std::string> arguments, std::string_view input = {},
                    std::string_view way = {}) const {
    return start(std::move(arguments), input, way).wait();
  }

  void stageCustomers(const std::string& prefix, int count) const {
    std::string jobs;
    for (int i = 0; i < count; ++i) {
      const std::string key = prefix + std::to_string(i);
      jobs.append(R"({"type":"Kunde","JobID":")").append(key).append(R"(","Kundennummer":")").append(key);
      jobs += "\",\"Bez1\":\"Firma\"}\n";
    }
    const ProgramResult result = run({"stage", "-"}, jobs);
    EXPECT_EQ(result.status, 0) << result.messages;
  }
  std::int64_t lines() { return count("Select Count(*) From Protokollpositionen"_sql); }
  std::int64_t locks() { return count("Select Count(*) From LockControl"_sql); }
  /// Jobs that every run has written once and logged once, and nothing else.
  void expectWrittenOnce(std::int64_t customers) {
    EXPECT_EQ(count("Select Count(*) From ImportKopf Where JobType = 13"_sql), customers);
    EXPECT_EQ(count("Select Count(*) From Kundenstamm Where Bez1 = 'Firma'"_sql), customers);
    EXPECT_EQ(lines(), customers);
    EXPECT_EQ(count("Select Count(Distinct Text1) From Protokollpositionen"_sql), customers);
    EXPECT_EQ(locks(), 0);
  }
  /// Waits until a program waits for the unit of this connection and returns the number of its session. Other
  /// tests may use the same server.
  std::int64_t awaitWaiting() {
    const auto holder = count("Select pg_backend_pid()"_sql);
    const auto watching = another();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < end) {
      const auto waiting = watching->open(sql("Select pid From pg_stat_activity Where "_sql, number(holder),
                                              " = Any (pg_blocking_pids(pid))"_sql));
      if (!waiting->eof()) return waiting->value("pid").integer().value_or(0);
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ADD_FAILURE() << "no program waits";
    return 0;
  }

  TemporaryFolder folder;
  std::unique_ptr<TestSchema> schema;
  std::string target;

private:
  std::map<std::string, std::string> variables_{
      {"HOME", folder.path().string()}, {"PATH", "/usr/bin:/bin"}, {"TZ", "Europe/Berlin"}};
  std::unique_ptr<Connection> own_;
};

} // namespace qx
