#include "floor/staging.h"

#include "samples/customers.h"

#include <charconv>
#include <stdexcept>
#include <string>

namespace qx::bench {
namespace {

constexpr std::int64_t stagedImportType = 10;

std::int64_t numberOf(const std::string& text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Statement prepareInsert(Database& database, const SampleJob& like) {
  std::string names = "ImportType";
  std::string places = "?";
  for (const SampleField& field : like) {
    names.append(", \"").append(field.column).append("\"");
    places += ", ?";
  }
  return database.prepare("INSERT INTO ImportKopf (" + names + ") VALUES (" + places + ")");
}

void insertJob(Statement& insert, const SampleJob& job) {
  int place = 1;
  insert.bind(place, stagedImportType);
  for (const SampleField& field : job)
    if (field.number)
      insert.bind(++place, numberOf(field.value));
    else
      insert.bind(++place, field.value);
  insert.run();
}

} // namespace

void stageCustomers(Database& database, std::uint32_t count) {
  Statement find = database.prepare("SELECT rowid FROM ImportKopf WHERE JobID=?");
  Statement insert = prepareInsert(database, sampleCustomer(0));
  database.execute("BEGIN IMMEDIATE");
  for (std::uint32_t i = 0; i < count; ++i) {
    const SampleJob job = sampleCustomer(i);
    const bool known = find.bind(1, valueOf(job, "JobID")).step();
    find.reset();
    if (known) throw std::runtime_error("the job is there already");
    insertJob(insert, job);
  }
  database.execute("COMMIT");
}

} // namespace qx::bench
