#include "floor/processing.h"

#include "floor/customer_statements.h"
#include "floor/job_run.h"

#include <charconv>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace qx::bench {
namespace {

std::int64_t numberOf(std::string_view text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Lower case, the German capitals included.
void appendLowered(std::string& text, std::string_view word) {
  for (std::size_t i = 0; i < word.size(); ++i) {
    const auto byte = static_cast<unsigned char>(word[i]);
    const bool afterC3 = i > 0 && static_cast<unsigned char>(word[i - 1]) == 0xC3;
    const bool capital = afterC3 ? byte >= 0x80 && byte <= 0x9E && byte != 0x97 : byte >= 'A' && byte <= 'Z';
    text += capital ? static_cast<char>(byte + 0x20) : word[i];
  }
}

/// One run. The views of the job's row stand until the job is done.
class CustomerRun {
public:
  explicit CustomerRun(Database& database) : statements_(database), row_(statements_.job) {
    for (const CopiedColumn& copied : copiedColumns) copiedPlaces_.push_back(row_.place(copied.jobColumn));
    for (const CodeLookup& lookup : statements_.codes) codePlaces_.push_back(row_.place(lookup.jobColumn));
  }

  void write(std::int64_t rowId) {
    Statement& job = statements_.job;
    if (!job.bind(1, rowId).step()) throw std::runtime_error("a job is gone");
    row_.read(job);
    const std::int64_t customer = findCustomer();
    checkCodes();
    writeCustomer(customer);
    addShippingAddress();
    statements_.setJobType.bind(1, rowId).run();
    addLine(customer == 0);
    writeIndex();
    job.reset();
  }

private:
  /// The row of the customer; 0 when there is none.
  std::int64_t findCustomer() {
    Statement& find = statements_.customer;
    std::int64_t rowId = 0;
    if (find.bind(1, row_[number_]).step()) {
      rowId = find.integer(0);
      for (int i = 1; i < find.columnCount(); ++i) find.text(i);
    }
    find.reset();
    return rowId;
  }

  void checkCodes() {
    for (std::size_t i = 0; i < codePlaces_.size(); ++i) {
      const std::string_view code = row_[codePlaces_[i]];
      if (code.empty()) continue;
      Statement& find = statements_.codes[i].statement;
      if (!find.bind(1, code).step()) throw std::runtime_error("unknown code " + std::string(code));
      find.reset();
    }
  }

  void writeCustomer(std::int64_t rowId) {
    Statement& write = rowId == 0 ? statements_.insertCustomer : statements_.updateCustomer;
    const std::string stamp = dayStamp(row_[date_]);
    int place = 0;
    write.bind(++place, std::string_view("Import"));
    write.bind(++place, stamp);
    if (rowId == 0) write.bind(++place, row_[number_]);
    for (std::size_t i = 0; i < copiedColumns.size(); ++i) {
      const std::string_view copied = row_[copiedPlaces_[i]];
      if (!copied.empty() && copiedColumns[i].number)
        write.bind(++place, numberOf(copied));
      else
        write.bindOrNull(++place, copied);
    }
    if (rowId != 0) write.bind(++place, rowId);
    write.run();
  }

  void addShippingAddress() {
    if (row_[shipping_[0]].empty()) return;
    Statement& add = statements_.addAddress;
    add.bind(1, row_[number_]);
    for (std::size_t i = 0; i < shipping_.size(); ++i)
      add.bindOrNull(static_cast<int>(i) + 2, row_[shipping_[i]]);
    add.run();
  }

  void addLine(bool isNew) {
    info_ = isNew ? "Neukunde angelegt." : "Kunde geändert.";
    info_.append("\r\nBez1: ").append(row_[names_[0]]);
    info_.append("\r\nBez2: ").append(row_[names_[1]]);
    info_.append("\r\nBez3: ").append(row_[names_[2]]);
    Statement& add = statements_.addLine;
    add.bind(1, protocolId).bind(2, row_[number_]).bind(3, row_[date_]);
    add.bindOrNull(4, isNew ? "1" : "").bind(5, info_).run();
  }

  void writeIndex() {
    Statement& read = statements_.indexedNames;
    if (!read.bind(1, row_[number_]).step()) throw std::runtime_error("a customer is gone");
    words_.clear();
    for (int i = 2; i < read.columnCount(); ++i) {
      const std::string_view word = read.text(i);
      if (word.empty()) continue;
      if (!words_.empty()) words_ += ' ';
      appendLowered(words_, word);
    }
    statements_.writeIndex.bind(1, read.text(1)).bind(2, words_).run();
    read.reset();
  }

  CustomerStatements statements_;
  RowView row_;
  std::vector<std::size_t> copiedPlaces_, codePlaces_;
  std::size_t number_ = row_.place("Kundennummer");
  std::size_t date_ = row_.place("Eingangsdatum");
  std::array<std::size_t, 3> names_{row_.place("Bez1"), row_.place("Bez2"), row_.place("Bez3")};
  std::array<std::size_t, 8> shipping_{row_.place("VS_AdrNr"), row_.place("VS_Bez1"),   row_.place("VS_Bez2"),
                                       row_.place("VS_Bez3"),  row_.place("VS_Straße"), row_.place("VS_Land"),
                                       row_.place("VS_PLZ"),   row_.place("VS_Ort")};
  std::string info_, words_;
};

} // namespace

void processCustomers(Database& database) {
  CustomerRun run(database);
  runJobs(database, "SELECT rowid, JobID FROM ImportKopf WHERE JobType=10 ORDER BY Kundennummer, rowid",
          [&run](std::int64_t rowId) { run.write(rowId); });
}

} // namespace qx::bench
