// A standalone ERP with an engine object, and staged jobs in a line each.
#pragma once

#include "engine/import_job_object2.h"
#include "store/entry_objects.h"
#include "store/staging_writer.h"
#include "support/fake_desktop.h"
#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace qx {

class EngineTest : public ::testing::Test {
protected:
  EngineTest() : engine(erp.environment), subscription(engine.subscribe(events)) {
    engine.setOutcomeSink([this](const JobOutcome& outcome) { outcomes.push_back(outcome); });
  }

  /// Stages a customer job of this key.
  void stageCustomer(std::string_view jobId, std::string_view number,
                     const std::function<void(KundeFields&)>& change = {}) {
    Kunde job(erp.environment);
    job.JobID = jobId;
    job.Kundennummer = number;
    job.Bez1 = "Firma " + std::string(number);
    job.PLZ = "20095";
    job.Ort = "Hamburg";
    if (change) change(job);
    writeStaged(connection(), static_cast<const KundeFields&>(job));
  }
  void release(std::string_view jobId) {
    connection().execute(
        sql("Update ImportKopf Set ProcessWarning = 1 Where JobID = '"_sql, value(jobId), "'"_sql));
  }
  Connection& connection() { return *erp.environment.connection; }
  Value field(std::string_view jobId, ColumnName column) {
    return connection()
        .open(sql("Select * From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql))
        ->value(column);
  }
  std::int16_t jobType(std::string_view jobId) {
    return static_cast<std::int16_t>(field(jobId, "JobType").integer().value_or(0));
  }
  std::string reasons(std::string_view jobId) { return field(jobId, "Fehlertext").text(); }
  Value customer(std::string_view number, ColumnName column) {
    return connection()
        .open(sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(number), "'"_sql))
        ->value(column);
  }
  std::int64_t count(const Sql& statement) {
    return connection().open(statement)->value(0).integer().value_or(-1);
  }
  std::int64_t protocolLines() { return count(sql("Select Count(*) From Protokollpositionen"_sql)); }
  /// "Text0|Text1|Text2" of each protocol line.
  std::vector<std::string> protocol() {
    std::vector<std::string> lines;
    const auto rows = connection().open(sql("Select * From Protokollpositionen"_sql));
    for (; !rows->eof(); rows->moveNext())
      lines.push_back(rows->text("Text0") + "|" + rows->text("Text1") + "|" + rows->text("Text2"));
    return lines;
  }
  bool run(qxProcessState selection = qxProcessState::ProcessAll, bool unevaluated = false) {
    outcomes.clear();
    return engine.ProcessJobs(unevaluated, selection);
  }

  TestErp erp;
  RecordingEvents events;
  ImportJobObject2 engine;
  Subscription subscription;
  std::vector<JobOutcome> outcomes;
};

} // namespace qx
