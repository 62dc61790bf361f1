#include "engine/contract_preparation.h"

#include "engine/contract_line.h"

#include <utility>

namespace qx {

UnpreparedContracts ContractPreparation::run() {
  const auto contracts = environment_.connection->openKeyset(
      sql("SELECT * FROM ImportKopf Where JobType ="_sql, number(qxtjobverträge)));
  group_.takeAll(contracts->recordCount(), {[&](std::size_t at) {
                                              contracts->moveTo(at);
                                              if (!contracts->resync()) return;
                                              try {
                                                prepare(*contracts);
                                              } catch (const StatementError& refusal) {
                                                refuse(*contracts, refusal);
                                              }
                                            },
                                            [&](std::size_t at, const WorkLostError& loss) {
                                              contracts->moveTo(at);
                                              refuse(*contracts, loss);
                                              return false;
                                            },
                                            [this] { return stop_.requested(); }});
  return std::move(unprepared_);
}

void ContractPreparation::refuse(Recordset& contracts, const std::exception& refusal) {
  contracts.cancelUpdate();
  if (!contracts.resync()) return;
  const std::string jobId = JobRow(contracts, missing_).text("JobID");
  environment_.diagnostics.report({"contract preparation", refusal.what(), jobId});
  unprepared_.insert_or_assign(jobId, refusal.what());
}

void ContractPreparation::prepare(Recordset& contracts) {
  JobRow job(contracts, missing_);
  if (job.jobType() != qxtjobverträge) return;
  const std::string jobId = job.text("JobID");
  // A lost group is prepared again.
  unprepared_.erase(jobId);
  const auto positions = openContractPositions(*environment_.connection, jobId);
  if (positions->eof()) return;
  Savepoint part(*environment_.connection);
  for (const ColumnName column : contractPositionColumns)
    if (positions->hasField(column)) job.set(column, positions->value(column));
  job.update();
  environment_.connection->execute(sql("Delete From ImportPos where JobID = '"_sql, value(jobId), "'"_sql));
  part.release();
}

} // namespace qx
