// Moves the values of contract positions into their headers.
#pragma once

#include "engine/job_row.h"
#include "engine/stop_signal.h"
#include "platform/environment.h"
#include "store/work_group.h"

#include <exception>
#include <functional>
#include <map>
#include <string>

namespace qx {

/// The contract jobs whose position could not be taken over, by key, with the reason.
using UnpreparedContracts = std::map<std::string, std::string, std::less<>>;

/// A contract job may arrive with its values in a position instead of its header. The first position of each
/// waiting contract job is copied to the header, empty values too, and all its positions are deleted.
/// Customer contracts are not changed. A job that the database refuses to prepare must not be written with
/// the values of its header.
class ContractPreparation {
public:
  ContractPreparation(Environment& environment, MissingColumns& missing, WorkGroup& group,
                      const StopSignal& stop)
      : environment_(environment), missing_(missing), group_(group), stop_(stop) {}

  UnpreparedContracts run();

private:
  void prepare(Recordset& contracts);
  void refuse(Recordset& contracts, const std::exception& refusal);

  Environment& environment_;
  MissingColumns& missing_;
  WorkGroup& group_;
  const StopSignal& stop_;
  UnpreparedContracts unprepared_;
};

} // namespace qx
