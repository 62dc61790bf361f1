#include "floor/codes.h"

#include "samples/customers.h"

#include <string>

namespace qx::bench {

void addCodes(Database& database) {
  database.execute("BEGIN IMMEDIATE");
  for (const SampleCode& code : sampleCodes()) {
    std::string text = "INSERT INTO \"";
    text.append(code.table).append("\" (\"").append(code.column).append("\", \"");
    text.append(code.textColumn).append("\") VALUES (?, ?) ON CONFLICT DO NOTHING");
    database.prepare(text).bind(1, code.value).bind(2, code.text).run();
  }
  database.execute("COMMIT");
}

void addHalfOfCustomers(Database& database, std::uint32_t count) {
  Statement insert = database.prepare(
      "INSERT INTO Kundenstamm (Kundennummer, Bez1, Strasse, Land, PLZ, Ort) VALUES (?, ?, ?, ?, ?, ?)");
  database.execute("BEGIN IMMEDIATE");
  for (std::uint32_t i = 0; i < count; i += 2) {
    const SampleJob job = sampleCustomer(i);
    int place = 0;
    for (const std::string_view column : {"Kundennummer", "Bez1", "Strasse", "Land", "PLZ", "Ort"})
      insert.bind(++place, valueOf(job, column));
    insert.run();
  }
  database.execute("COMMIT");
}

} // namespace qx::bench
