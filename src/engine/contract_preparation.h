// Moves the values of contract positions into their headers.
#pragma once

#include "engine/job_row.h"
#include "platform/environment.h"
#include "store/work_group.h"

namespace qx {

/// A contract job may arrive with its values in a position instead of its header. Of each waiting contract
/// job the first position is taken over, empty values too, and all its positions are deleted. Customer
/// contracts are not touched.
class ContractPreparation {
public:
  ContractPreparation(Environment& environment, MissingColumns& missing, WorkGroup& group)
      : environment_(environment), missing_(missing), group_(group) {}

  void run();

private:
  void prepare(Recordset& contracts);

  Environment& environment_;
  MissingColumns& missing_;
  WorkGroup& group_;
};

} // namespace qx
