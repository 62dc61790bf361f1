// Moves the values of contract positions into their headers.
#pragma once

#include "engine/run_context.h"

#include <exception>
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
  explicit ContractPreparation(RunContext& run) : run_(run) {}

  UnpreparedContracts run();

private:
  void prepare(Recordset& contracts);
  void refuse(Recordset& contracts, const std::exception& refusal);

  RunContext& run_;
  UnpreparedContracts unprepared_;
};

} // namespace qx
