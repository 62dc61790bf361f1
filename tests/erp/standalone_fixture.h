// The standalone ERP with its base rows in a file of its own.
#pragma once

#include "erp/base_data.h"
#include "erp/standalone_erp.h"
#include "support/erp_file.h"

#include <gtest/gtest.h>

namespace qx::erp {

/// A machine on which just this program runs.
class OneProcess final : public ProcessTable {
public:
  std::optional<ProcessStart> self() const override { return ProcessStart{4711, 815}; }
  ProcessState find(std::uint64_t number) const override {
    return number == 4711 ? ProcessState{true, 815} : ProcessState();
  }
};

class StandaloneErpTest : public ::testing::Test {
protected:
  StandaloneErpTest() {
    WorkUnit unit(database());
    fillBaseData(database());
    unit.commit();
  }

  Connection& database() { return *file.environment.connection; }
  StandaloneErp erpOf(StandaloneOptions options) {
    return {file.environment.connection, file.clock, file.desktop, file.diagnostics, identity,
            std::move(options)};
  }
  std::shared_ptr<Session> sessionOf(StandaloneOptions options) {
    auto session = erpOf(std::move(options)).createSession();
    session->Connect("", "");
    return session;
  }
  std::shared_ptr<Session> session() { return sessionOf({"meier", {}, "/daten", "6.3.0"}); }

  ErpFile file;
  OneProcess processes;
  ProcessIdentity identity{{"rechner", "1234"}, processes};
};

} // namespace qx::erp
