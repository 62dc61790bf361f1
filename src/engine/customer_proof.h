// The automatic check of a customer job.
#pragma once

#include "engine/findings.h"
#include "platform/environment.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"

#include <functional>
#include <string>
#include <string_view>

namespace qx {

/// The fields of a customer job by staging column; null for a column that it does not have.
using CustomerFields = std::function<Value(ColumnName)>;

/// Proves a staged customer job against the master data. Writes nothing.
class CustomerProof {
public:
  /// `compareAddresses`: whether the addresses are compared with the stored ones.
  CustomerProof(Environment& environment, bool compareAddresses);

  /// Clean for a job that is neither waiting nor parked.
  Findings prove(std::string_view jobId) const;
  /// For these values, without the contracts.
  Findings prove(const CustomerFields& job) const;
  /// What the staged contracts of the customer make of it.
  Findings contracts(std::string_view customer) const;

private:
  void proveCodes(const CustomerFields& job, Findings& findings) const;
  void compareWithMaster(const CustomerFields& job, Findings& findings) const;
  void proveReferences(const CustomerFields& job, Findings& findings) const;

  Environment& environment_;
  bool compareAddresses_;
  MasterData masterData_;
  CustomerAddresses addresses_;
};

} // namespace qx
