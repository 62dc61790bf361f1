#include "engine/contract_preparation.h"

#include "engine/contract_line.h"

#include <utility>

namespace qx {

UnpreparedContracts ContractPreparation::run() {
  const auto contracts = run_.environment.connection->openKeyset(
      sql("SELECT * FROM ImportKopf Where JobType ="_sql, number(qxtjobverträge)));
  run_.group.takeAll(contracts->recordCount(), {[&](std::size_t at) {
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
                                                [this] { return run_.stop.requested(); }});
  return std::move(unprepared_);
}

void ContractPreparation::refuse(Recordset& contracts, const std::exception& refusal) {
  contracts.cancelUpdate();
  if (!contracts.resync()) return;
  const std::string jobId = JobRow(contracts, run_.missing).text("JobID");
  run_.environment.diagnostics.report({"contract preparation", refusal.what(), jobId});
  unprepared_.insert_or_assign(jobId, refusal.what());
}

void ContractPreparation::prepare(Recordset& contracts) {
  JobRow job(contracts, run_.missing);
  if (job.jobType() != qxtjobverträge) return;
  const std::string jobId = job.text("JobID");
  // A lost group is prepared again.
  unprepared_.erase(jobId);
  const auto positions = openContractPositions(*run_.environment.connection, jobId);
  if (positions->eof()) return;
  Savepoint part(*run_.environment.connection);
  for (const ColumnName column : contractPositionColumns)
    if (positions->hasField(column)) job.set(column, positions->value(column));
  job.update();
  run_.environment.connection->execute(
      sql("Delete From ImportPos where JobID = '"_sql, value(jobId), "'"_sql));
  part.release();
}

} // namespace qx
