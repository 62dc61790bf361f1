// Writes the demo jobs into the staging tables.
#pragma once

#include "erp/demo_company.h"
#include "erp/table_filler.h"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace qx::erp::demo {

class Staging {
public:
  Staging(Connection& connection, const Date& today);

  /// Begins a job received this many days ago.
  void begin(std::int16_t jobType, int daysAgo, std::initializer_list<Cell> cells);
  void set(std::initializer_list<Cell> cells) { heads_.set(cells); }
  /// Name, address and contact of a customer; with `withCodes` also the codes of the master data.
  void setCustomer(const Customer& customer, bool withCodes);
  void finish() { heads_.finish(); }
  void add(std::int16_t jobType, int daysAgo, std::initializer_list<Cell> cells) {
    begin(jobType, daysAgo, cells);
    finish();
  }
  /// Adds a position to the job begun last.
  void addPosition(std::int16_t jobType, std::initializer_list<Cell> cells);

  /// A day in the jobs' text form; negative numbers are in the future.
  std::string day(int daysAgo) const;
  std::size_t count() const { return jobs_; }

private:
  TableFiller heads_;
  TableFiller positions_;
  Date today_;
  std::size_t jobs_ = 0;
  std::size_t positionsInAll_ = 0;
};

void stageCustomers(Staging& staging);
void stageContracts(Staging& staging);
void stageOrders(Staging& staging);

} // namespace qx::erp::demo
