// The dialogs' check of contract jobs, and how staged contracts stand against stored ones.
#pragma once

#include "engine/contract_line.h"
#include "engine/findings.h"
#include "model/entry_records.h"
#include "platform/environment.h"
#include "rules/master_data.h"
#include "store/state_feed.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

/// How a contract compares with the contract table.
enum class ContractState : std::int16_t { New = 0, Changed = 1, Done = 2, Deleted = 3 };

/// Checks contract jobs, either without writing or storing the result in the job.
class ContractCheck {
public:
  explicit ContractCheck(Environment& environment) : environment_(environment), masterData_(environment) {}

  /// The findings for these values. `single`: a contract that did not arrive with its customer; the two kinds
  /// spell one text differently on purpose.
  Findings check(const JobFields& job, bool single) const;
  /// @name The parts of it
  /// @{
  Findings kind(const JobFields& job) const;
  Findings object(const JobFields& job) const;
  /// Quantity, state and dates, which need no database.
  static Findings values(const JobFields& job, bool single);
  /// @}
  /// The findings of a staged job; `header` is positioned on its row. A single contract is checked with the
  /// values of its first position, which the run would copy to the header.
  Findings checkStaged(Recordset& header) const;
  /// Checks the contract job of this key if its code is 20 to 22 or 40 to 42, and stores the result in it:
  /// code, both severities and reasons.
  CheckStatus checkContract(std::string_view jobId);
  /// The same for all jobs 40 to 42 of a customer; returns the worst status.
  CheckStatus checkCustomerContracts(std::string_view customer);

private:
  CheckStatus checkRows(const Sql& query);
  CheckStatus checkRowsOnce(const Sql& query, StateFeed& feed);

  Environment& environment_;
  MasterData masterData_;
};

/// Compares staged contracts with the contract table.
class ContractComparison {
public:
  explicit ContractComparison(Environment& environment) : environment_(environment) {}

  /// True when processing the contract would change the stored line or add one.
  bool differs(const JobFields& job) const;
  /// The state of a line; `jobId` receives the key of the staged job for it, or "".
  ContractState state(const ContractKey& key, std::string& jobId) const;
  /// Marks the customer's stored lines for which there is no staged customer contract, with one job of code
  /// 44 each. Removes marks whose line has a contract again or is gone. Returns the number of marked lines.
  std::int32_t markUncarried(std::string_view customer);

private:
  std::unique_ptr<Recordset> stagedJobs(const ContractKey& key) const;
  std::int32_t markUncarriedOnce(std::string_view customer);
  void mark(Recordset& line, const ContractKey& key);

  Environment& environment_;
};

} // namespace qx
