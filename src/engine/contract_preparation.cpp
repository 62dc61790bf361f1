#include "engine/contract_preparation.h"

#include "engine/contract_line.h"

namespace qx {

void ContractPreparation::run() {
  const auto contracts = environment_.connection->openKeyset(
      sql("SELECT * FROM ImportKopf Where JobType ="_sql, number(qxtjobverträge)));
  for (; !contracts->eof(); contracts->moveNext()) {
    group_.begin();
    try {
      if (contracts->resync()) prepare(*contracts);
    } catch (const StatementError& error) {
      contracts->cancelUpdate();
      environment_.diagnostics.report({"contract preparation", error.what(), ""});
    }
    group_.endJob();
  }
  group_.finish();
}

void ContractPreparation::prepare(Recordset& contracts) {
  JobRow job(contracts, missing_);
  if (job.jobType() != qxtjobverträge) return;
  const std::string jobId = job.text("JobID");
  const auto positions = environment_.connection->open(
      sql("Select * From ImportPos   Where JobID = '"_sql, value(jobId), "'"_sql));
  if (positions->eof()) return;
  Savepoint part(*environment_.connection);
  for (const ColumnName column : contractPositionColumns)
    if (positions->hasField(column)) job.set(column, positions->value(column));
  job.update();
  environment_.connection->execute(sql("Delete From ImportPos where JobID = '"_sql, value(jobId), "'"_sql));
  part.release();
}

} // namespace qx
