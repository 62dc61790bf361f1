// The check of a customer job.
#pragma once

#include "engine/findings.h"
#include "engine/job_fields.h"
#include "platform/environment.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"

#include <string>
#include <string_view>

namespace qx {

/// Where the main address of the job is not the stored one. A line of which the job does not speak is as it
/// is.
Findings mainAddressDifferences(const JobFields& job, const Adresse& stored);

/// Checks a customer job against the master data. Writes nothing.
class CustomerCheck {
public:
  /// `compareAddresses`: whether the addresses are compared with the stored ones.
  CustomerCheck(Environment& environment, bool compareAddresses);

  /// Clean for a job that is neither waiting nor parked.
  Findings ProveCustomerJob(std::string_view JobID) const;
  /// For these values, without the contracts.
  Findings check(const JobFields& job) const;
  /// The part of it that looks for the customers and addresses to which goods and invoices go.
  Findings addressKeys(const JobFields& job) const;
  /// What the staged contracts of the customer make of it.
  Findings contracts(std::string_view customer) const;

private:
  void compareWithMaster(const JobFields& job, Findings& findings) const;

  Environment& environment_;
  bool compareAddresses_;
  MasterData masterData_;
  CustomerAddresses addresses_;
};

} // namespace qx
