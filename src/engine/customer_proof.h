// The automatic check of a customer job.
#pragma once

#include "engine/findings.h"
#include "platform/environment.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"

#include <string>
#include <string_view>

namespace qx {

/// Proves a staged customer job against the master data. Writes nothing.
class CustomerProof {
public:
  /// `compareAddresses`: whether the addresses are compared with the stored ones.
  CustomerProof(Environment& environment, bool compareAddresses);

  /// Clean for a job that is neither waiting nor parked.
  Findings prove(std::string_view jobId) const;

private:
  void proveCodes(Recordset& job, Findings& findings) const;
  void compareWithMaster(Recordset& job, Findings& findings) const;
  void proveReferences(Recordset& job, Findings& findings) const;
  void proveContracts(std::string_view customer, Findings& findings) const;

  Environment& environment_;
  bool compareAddresses_;
  MasterData masterData_;
  CustomerAddresses addresses_;
};

} // namespace qx
