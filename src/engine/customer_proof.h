// The automatic check of a customer job.
#pragma once

#include "engine/findings.h"
#include "engine/job_fields.h"
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
  Findings ProveCustomerJob(std::string_view JobID) const;
  /// For these values, without the contracts.
  Findings prove(const JobFields& job) const;
  /// What the staged contracts of the customer make of it.
  Findings contracts(std::string_view customer) const;

private:
  void proveCodes(const JobFields& job, Findings& findings) const;
  void compareWithMaster(const JobFields& job, Findings& findings) const;
  void proveReferences(const JobFields& job, Findings& findings) const;

  Environment& environment_;
  bool compareAddresses_;
  MasterData masterData_;
  CustomerAddresses addresses_;
};

} // namespace qx
