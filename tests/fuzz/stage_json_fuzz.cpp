// Any bytes as a JSON file of jobs: the records against the values that another reading of the file finds.
#include "cli/stage_reader.h"
#include "program/program_error.h"
#include "support/fake_session.h"

#include "require.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <type_traits>
#include <variant>
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

struct Job {
  std::variant<KundeFields, VertragFields, AuftragFields> header;
  std::vector<std::variant<AuftragsPosFields, ImportJobSubItem>> positions;
};

/// Keeps the jobs with their positions.
class KeptRecords final : public StagedRecords {
public:
  void add(const AuftragsPosFields& position, std::int64_t line, const Unspoken& /*unspoken*/) override {
    keep(position, line);
  }
  void add(const ImportJobSubItem& position, std::int64_t line, const Unspoken& /*unspoken*/) override {
    keep(position, line);
  }
  void add(const KundeFields& job, std::int64_t line, const Unspoken& /*unspoken*/) override {
    finish(job, line);
  }
  void add(const VertragFields& job, std::int64_t line, const Unspoken& /*unspoken*/) override {
    finish(job, line);
  }
  void add(const AuftragFields& job, std::int64_t line, const Unspoken& /*unspoken*/) override {
    finish(job, line);
  }

  std::vector<Job> jobs;

private:
  template <class Position>
  void keep(const Position& position, std::int64_t line) {
    require(line > 0, "every position stands on a line");
    open_.positions.emplace_back(position);
  }
  template <class Header>
  void finish(const Header& header, std::int64_t line) {
    require(line > 0, "every job stands on a line");
    require(!header.JobID.empty(), "every job has a key");
    open_.header = header;
    jobs.push_back(std::move(open_));
    open_ = {};
  }

  Job open_;
};

using Json = nlohmann::json;

template <class Property>
bool isValue(const Json& value, const Property& property) {
  if constexpr (std::is_same_v<Property, bool>)
    return value.is_boolean() && value.get<bool>() == property;
  else if constexpr (std::is_same_v<Property, std::string>)
    return value.is_string() && value.get<std::string>() == property;
  else
    return value.is_number() && value.get<double>() == static_cast<double>(property);
}

/// Every property of the object is the record's.
template <class Record, std::size_t fields>
void checkRecord(const Json& object, const Record& record, const FieldTable<Record, fields>& table) {
  for (const auto& [name, value] : object.items()) {
    if (value.is_null() || name == "type" || name == "Positionen") continue;
    const std::size_t place = fieldIndex(table, name);
    require(place < fields, "a property that the type lacks is refused");
    // An empty key is the same as none.
    if ((name == "JobID" || name == "ChildID") && value == "") continue;
    require(table[place].visit(
                record, [&, &given = value](const auto& property) { return isValue(given, property); }),
            "a property has the value of the file");
  }
}

void check(const Json& object, const KundeFields& record) { checkRecord(object, record, kundeFields); }
void check(const Json& object, const VertragFields& record) { checkRecord(object, record, vertragFields); }
void check(const Json& object, const AuftragFields& record) { checkRecord(object, record, auftragFields); }
void check(const Json& object, const AuftragsPosFields& record) {
  checkRecord(object, record, auftragsPosFields);
}
void check(const Json& object, const ImportJobSubItem& record) {
  checkRecord(object, record, importJobSubItemFields);
}

void checkJob(const Json& object, const Job& job) {
  constexpr std::array<std::string_view, 3> types{"Kunde", "Vertrag", "Auftrag"};
  require(object.at("type") == types.at(job.header.index()), "a job has the type of the file");
  std::visit([&](const auto& record) { check(object, record); }, job.header);
  const auto positions = object.find("Positionen");
  const std::size_t given = positions == object.end() || positions->is_null() ? 0 : positions->size();
  require(job.positions.size() == given, "every position is there");
  for (std::size_t i = 0; i < given; ++i)
    std::visit([&](const auto& record) { check((*positions)[i], record); }, job.positions[i]);
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  FakeWorld workstation;
  KeptRecords kept;
  MemoryText source(content);
  JobAssembler assembler(workstation.environment, kept, source.name());
  try {
    readJobs(source, assembler);
  } catch (const ProgramError& refused) {
    require(refused.code() == ExitCode::BadInput, "bad input is the only reason to refuse it");
    require(refused.location().line > 0 && refused.location().line <= std::ranges::count(content, '\n') + 1,
            "a refusal names a line of the file");
    return 0;
  }
  require(assembler.jobNumber() == static_cast<std::int64_t>(kept.jobs.size()), "every job is counted");
  const std::vector<Json> objects = objectsOf(content);
  require(objects.size() == kept.jobs.size(), "every object is a job");
  for (std::size_t i = 0; i < objects.size(); ++i) checkJob(objects[i], kept.jobs[i]);
  return 0;
}
