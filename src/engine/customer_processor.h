// Writes one customer job into the customer master.
#pragma once

#include "engine/findings.h"
#include "engine/job_row.h"
#include "engine/run_context.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// Checks the codes of a customer job, creates the missing ones that the options allow, and adds or updates
/// the customer with its further addresses.
class CustomerProcessor {
public:
  enum class Result { Created, Changed, Failed };
  struct Outcome {
    Result result = Result::Failed;
    Findings findings; ///< hints of a written job, or the reasons of a failed one
  };

  explicit CustomerProcessor(RunContext& run);

  /// A failed job is marked with every reason found; nothing of the customer is written, but created codes
  /// stay. The customer, its addresses and the job's done code are written together or not at all; on a
  /// host's connection earlier writes are undone.
  Outcome process(JobRow& job);
  /// Reads what `process` will.
  void foresee(const JobRow& job) const;

private:
  struct Code;
  /// What has been written of a customer.
  struct Written {
    bool added = false;
    std::vector<std::pair<ColumnName, Value>> before;           ///< of a changed customer
    std::vector<std::pair<std::string, std::string>> addresses; ///< added ones: customer and number
  };

  void checkCodes(const JobRow& job, Findings& refused);
  void checkCode(const Code& code, Findings& refused);
  std::vector<Code> codesOf(const JobRow& job) const;
  std::unique_ptr<Recordset> openCustomer(const std::string& number) const;
  std::string receiptStamp(const JobRow& job, Findings& refused) const;
  void save(JobRow& job, Recordset& customer, bool isNew, const std::string& stamp);
  static void writeCustomer(const JobRow& job, Recordset& customer, bool isNew, const std::string& stamp,
                            Written& written);
  void addAddresses(const JobRow& job, Written& written);
  void undoOnHost(Recordset& customer, const std::string& number, const Written& written);

  Outcome failed(JobRow& job, Findings refused);

  Environment& environment_;
  RunContext& run_;
  CustomerAddresses addresses_;
};

} // namespace qx
