// Any bytes as a JSON file of jobs: the rows against the values that another reading of the file finds.
#include "adapters/sqlite/sqlite_database.h"
#include "cli/kept_row.h"
#include "cli/stage_reader.h"
#include "erp/schema.h"
#include "program/program_error.h"
#include "store/staging_writer.h"
#include "support/fake_session.h"
#include "support/temporary_folder.h"

#include "require.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace qx;
using namespace qx::cli;

namespace {

class MemoryText final : public TextSource {
public:
  explicit MemoryText(std::string_view text) : TextSource("input"), rest_(text) { fill(); }

private:
  std::string_view more() override { return std::exchange(rest_, {}); }
  std::string_view rest_;
};

struct Row final : RowValues {
  void set(ColumnName column, Value value) override { values[std::string(column.text())] = std::move(value); }

  std::map<std::string, Value> values;
};

struct Job {
  Row header;
  std::deque<Row> positions;
};

/// Keeps the jobs with their positions.
class KeptJobs final : public BulkStaging {
public:
  void begin() override {}
  RowValues& newPosition() override { return open().positions.emplace_back(); }
  void addPosition(std::int64_t line) override { require(line > 0, "every position stands on a line"); }
  RowValues& newJob() override { return open().header; }
  bool remembersContents() const override { return true; }
  void addJob(std::int64_t line, std::string_view content) override {
    require(content.empty() || content.size() == 32, "a content has 32 digits");
    require(line > 0, "every job stands on a line");
    require(!jobs.back().header.values["JobID"].text().empty(), "every job has a key");
    complete_ = true;
  }
  void dropPositions() override {
    if (!complete_ && !jobs.empty()) jobs.pop_back();
    complete_ = true;
  }
  void finish() override {}
  std::vector<KeyConflict> conflicts(std::int64_t /*most*/) override { return {}; }
  void leaveOut(const std::vector<std::int64_t>& /*jobs*/) override {}
  std::vector<KeyConflict> copy(BusyWait& /*wait*/, CopyOrder /*order*/, std::int64_t /*most*/) override {
    return {};
  }
  StageCounts counts() const override { return {}; }
  void forEach(const Visitor& /*visit*/) override {}
  void forEachRepetition(const RepetitionVisitor& /*visit*/) override {}

  std::deque<Job> jobs;

private:
  Job& open() {
    if (std::exchange(complete_, false)) jobs.emplace_back();
    return jobs.back();
  }

  bool complete_ = true;
};

using Json = nlohmann::json;

bool isValue(const Json& given, FieldKind kind, const Value& value) {
  if (kind == FieldKind::Boolean) return given.is_boolean() && value.truth() == given.get<bool>();
  if (kind == FieldKind::Text || kind == FieldKind::Date)
    return given.is_string() && value.text() == given.get<std::string>();
  return given.is_number() && value.number() == given.get<double>();
}

/// Every property of the object is the row's.
template <class Record, std::size_t fields>
void checkRow(const Json& object, const Row& row, const FieldTable<Record, fields>& table) {
  for (const auto& [name, value] : object.items()) {
    if (value.is_null() || name == "type" || name == "Positionen") continue;
    const std::size_t place = fieldIndex(table, name);
    require(place < fields, "a property that the type lacks is refused");
    // An empty key is the same as none.
    if ((name == "JobID" || name == "ChildID") && value == "") continue;
    // Null stands for a contract without an end.
    if (name == "Vertragsende" && value == openContractEnd) continue;
    const auto column = row.values.find(std::string(table[place].column));
    require(!table[place].stored() || column != row.values.end(), "every stored property is set");
    require(!table[place].stored() || isValue(value, table[place].kind, column->second),
            "a property has the value of the file");
  }
}

/// Every property of the object is the column of the same name; what was not given is null.
void checkKeptRow(const Json& object, const Row& row) {
  for (const auto& [name, value] : row.values) {
    const auto given = object.find(name);
    if (given == object.end() || given->is_null())
      require(value.isNull(), "a column that was not given is null");
    else if (given->is_boolean())
      require(value.truth() == given->get<bool>(), "a truth is kept as it is");
    else if (given->is_string())
      require(value.text() == given->get<std::string>(), "a text is kept as it is");
    else
      require(value.number() == given->get<double>(), "a number is kept as it is");
  }
  for (const auto& [name, value] : object.items())
    require(name == "type" || name == "Positionen" || row.values.contains(name), "no property is dropped");
}

void checkJob(const Json& object, const Job& job) {
  const Json& type = object.at("type");
  const bool kept = type == keptType;
  if (kept)
    checkKeptRow(object, job.header);
  else if (type == "Kunde")
    checkRow(object, job.header, kundeFields);
  else if (type == "Vertrag")
    checkRow(object, job.header, vertragFields);
  else
    checkRow(object, job.header, auftragFields);
  const auto positions = object.find("Positionen");
  const std::size_t given = positions == object.end() || positions->is_null() ? 0 : positions->size();
  require(job.positions.size() == given, "every position is there");
  for (std::size_t i = 0; i < given; ++i)
    if (kept)
      checkKeptRow((*positions)[i], job.positions[i]);
    else if (type == "Auftrag")
      checkRow((*positions)[i], job.positions[i], auftragsPosFields);
    else
      checkRow((*positions)[i], job.positions[i], importJobSubItemFields);
}

/// The objects of the file, read by the library alone.
std::vector<Json> objectsOf(const std::string& content) {
  std::vector<Json> objects;
  std::istringstream stream(content);
  while (stream >> std::ws && !stream.eof()) {
    Json read;
    stream >> read;
    if (read.is_array())
      objects.insert(objects.end(), read.begin(), read.end());
    else
      objects.push_back(std::move(read));
  }
  return objects;
}

/// The tables whose columns a kept row has.
class EmptyDatabase {
public:
  EmptyDatabase() : connection(SqliteDatabase().create((folder_.path() / "empty.db").string())) {
    WorkUnit unit(*connection);
    erp::createSchema(*connection);
    unit.commit();
  }

private:
  TemporaryFolder folder_;

public:
  const std::shared_ptr<Connection> connection;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  static const EmptyDatabase database;
  FakeWorld workstation;
  workstation.environment.connection = database.connection;
  KeptJobs kept;
  MemoryText source(content);
  StageFaults faults(100);
  JobAssembler assembler(workstation.environment, kept, faults, Completeness::Any);
  const std::int64_t lines = std::ranges::count(content, '\n') + 1;
  try {
    readJobs(source, assembler);
  } catch (const ProgramError& refused) {
    require(refused.code() == ExitCode::BadInput, "bad input is the only reason to refuse it");
    require(refused.location().line > 0 && refused.location().line <= lines,
            "a refusal names a line of the file");
    return 0;
  }
  for (const InputFault& fault : faults.all())
    require(fault.line > 0 && fault.line <= lines && fault.object > 0 &&
                fault.object <= assembler.jobNumber(),
            "a fault names a line and an object of the file");
  if (!faults.empty()) return 0;
  require(assembler.jobNumber() == static_cast<std::int64_t>(kept.jobs.size()), "every job is counted");
  const std::vector<Json> objects = objectsOf(content);
  require(objects.size() == kept.jobs.size(), "every object is a job");
  for (std::size_t i = 0; i < objects.size(); ++i) checkJob(objects[i], kept.jobs[i]);
  return 0;
}
