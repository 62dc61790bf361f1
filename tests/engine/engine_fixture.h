// A standalone ERP with an engine object, and staged jobs in a line each.
#pragma once

#include "engine/import_job_object2.h"
#include "store/entry_objects.h"
#include "store/staging_writer.h"
#include "support/fake_desktop.h"
#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <type_traits>
#include <vector>

namespace qx {

/// Properties of a job record, each by its name.
using Properties = std::vector<erp::Cell>;

inline Properties operator+(Properties first, const Properties& more) {
  first.insert(first.end(), more.begin(), more.end());
  return first;
}

template <class Record, std::size_t N>
void give(Record& record, const FieldTable<Record, N>& fields, const Properties& given) {
  for (const erp::Cell& each : given) {
    const std::size_t index = fieldIndex(fields, each.column.text());
    ASSERT_LT(index, N) << each.column.text();
    fields[index].visit(record, [&](auto& property) {
      using Property = std::remove_reference_t<decltype(property)>;
      if constexpr (std::is_same_v<Property, std::string>)
        property = each.value.text();
      else
        property = static_cast<Property>(each.value.number().value());
    });
  }
}

class EngineTest : public ::testing::Test, public DatabaseAccess {
protected:
  EngineTest() : engine(erp.environment), subscription(engine.subscribe(events)) {
    engine.setOutcomeSink([this](const JobOutcome& outcome) { outcomes.push_back(outcome); });
  }

  /// Stages a customer job of this key.
  void stageCustomer(std::string_view jobId, std::string_view number, const Properties& given = {}) {
    Kunde job(erp.environment);
    give<KundeFields>(job, kundeFields,
                      Properties{{"JobID", jobId},
                                 {"Kundennummer", number},
                                 {"Bez1", "Firma " + std::string(number)},
                                 {"PLZ", "20095"},
                                 {"Ort", "Hamburg"}} +
                          given);
    writeStaged(connection(), static_cast<const KundeFields&>(job));
  }
  void release(std::string_view jobId) {
    execute("Update ImportKopf Set ProcessWarning = 1 Where JobID = '"_sql, value(jobId), "'"_sql);
  }
  Connection& connection() override { return erp.connection(); }
  /// A connection of a host to the same database: its work is not the component's to begin and end.
  std::shared_ptr<Connection> hostConnection() { return erp.hostConnection(); }
  void becomeHost() { erp.environment.connection = hostConnection(); }
  /// As of `TestErp`.
  template <class... Parts>
  void refuse(const Parts&... parts) {
    erp.refuse(parts...);
  }
  template <class... Parts>
  void follow(const Parts&... parts) {
    erp.follow(parts...);
  }
  void allow() { erp.allow(); }
  Value field(std::string_view jobId, ColumnName column) {
    return open("Select * From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql)->value(column);
  }
  std::int16_t jobType(std::string_view jobId) {
    return static_cast<std::int16_t>(field(jobId, "JobType").integer().value_or(0));
  }
  std::string reasons(std::string_view jobId) { return field(jobId, "Fehlertext").text(); }
  /// "code|reasons" of a job.
  std::string outcomeOf(std::string_view jobId) { return fields(jobId, {"JobType", "Fehlertext"}); }
  /// The values of a job's columns joined by '|'.
  std::string fields(std::string_view jobId, std::initializer_list<ColumnName> columns) {
    std::string joined;
    for (const ColumnName& column : columns)
      joined += (&column == columns.begin() ? "" : "|") + field(jobId, column).text();
    return joined;
  }
  Value customer(std::string_view number, ColumnName column) {
    return open("Select * From Kundenstamm Where Kundennummer = '"_sql, value(number), "'"_sql)
        ->value(column);
  }
  std::int64_t protocolLines() { return count("Select Count(*) From Protokollpositionen"_sql); }
  /// "Text0|Text1|Text2" of each protocol line.
  std::vector<std::string> protocol() {
    std::vector<std::string> lines;
    const auto rows = open("Select * From Protokollpositionen"_sql);
    for (; !rows->eof(); rows->moveNext())
      lines.push_back(rows->text("Text0") + "|" + rows->text("Text1") + "|" + rows->text("Text2"));
    return lines;
  }
  /// Stages the customers 70001 to 70000 + count as J1, J2...
  void stageMany(int count) {
    WorkUnit unit(connection());
    for (int i = 1; i <= count; ++i) stageCustomer("J" + std::to_string(i), std::to_string(70000 + i));
    unit.commit();
  }
  /// How many customer jobs are done.
  std::int64_t done() { return count("Select Count(*) From ImportKopf Where JobType = 13"_sql); }
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
