#include "floor/staging.h"

#include "samples/orders.h"

#include <charconv>
#include <stdexcept>
#include <string>

namespace qx::bench {
namespace {

template <class Number>
Number numberOf(const std::string& text) {
  Number number{};
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

void bindField(Statement& insert, int place, const SampleField& field) {
  // The file leaves out what is empty.
  if (!field.number)
    insert.bindOrNull(place, field.value);
  else if (field.value.find('.') == std::string::npos)
    insert.bind(place, numberOf<std::int64_t>(field.value));
  else
    insert.bind(place, numberOf<double>(field.value));
}

/// An insert of the columns of a job, with further ones of fixed values.
Statement prepareInsert(Database& database, std::string_view table, const SampleJob& like,
                        std::string_view fixedNames, std::string_view fixedValues) {
  std::string names(fixedNames);
  std::string places(fixedValues);
  for (const SampleField& field : like) {
    names.append(", \"").append(field.column).append("\"");
    places += ", ?";
  }
  std::string text = "INSERT INTO ";
  text.append(table).append(" (").append(names).append(") VALUES (").append(places).append(")");
  return database.prepare(text);
}

Statement prepareHeadInsert(Database& database, const SampleJob& like) {
  return prepareInsert(database, "ImportKopf", like, "ImportType", "10");
}

void insertJob(Statement& insert, const SampleJob& job) {
  int place = 0;
  for (const SampleField& field : job) bindField(insert, ++place, field);
  insert.run();
}

void requireNew(Statement& find, const SampleJob& job, std::string_view key) {
  const bool known = find.bind(1, valueOf(job, key)).step();
  find.reset();
  if (known) throw std::runtime_error("the job is there already");
}

} // namespace

void stageCustomers(Database& database, std::uint32_t count) {
  Statement find = database.prepare("SELECT rowid FROM ImportKopf WHERE JobID=?");
  Statement insert = prepareHeadInsert(database, sampleCustomer(0));
  database.execute("BEGIN IMMEDIATE");
  for (std::uint32_t i = 0; i < count; ++i) {
    const SampleJob job = sampleCustomer(i);
    requireNew(find, job, "JobID");
    insertJob(insert, job);
  }
  database.execute("COMMIT");
}

void stageOrders(Database& database, std::uint32_t count, std::uint32_t customers) {
  const SampleOrder like = sampleOrder(0, customers);
  Statement find = database.prepare("SELECT rowid FROM ImportKopf WHERE JobID=?");
  Statement insert = prepareHeadInsert(database, like.head);
  Statement findPosition = database.prepare("SELECT JobID FROM ImportPos WHERE ChildID=?");
  Statement insertPosition =
      prepareInsert(database, "ImportPos", like.positions.front(), "Lieferbereit, Fakturierbereit", "0, 0");
  database.execute("BEGIN IMMEDIATE");
  for (std::uint32_t i = 0; i < count; ++i) {
    const SampleOrder order = sampleOrder(i, customers);
    requireNew(find, order.head, "JobID");
    insertJob(insert, order.head);
    for (const SampleJob& position : order.positions) {
      requireNew(findPosition, position, "ChildID");
      insertJob(insertPosition, position);
    }
  }
  database.execute("COMMIT");
}

} // namespace qx::bench
