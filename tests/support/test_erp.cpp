#include "support/test_erp.h"

#include "erp/base_data.h"
#include "support/server_texts.h"

namespace qx {
namespace {

std::shared_ptr<Connection> withBaseData(std::shared_ptr<Connection> database) {
  Connection& plain = withoutServerTexts(*database);
  WorkUnit unit(plain);
  erp::fillBaseData(plain);
  unit.commit();
  return database;
}

} // namespace

TestErp::TestErp()
    : database(withBaseData(where.create())),
      components(database, sessionClock, desktop, diagnostics, identity,
                 {"pruefer", std::nullopt, folder.path().string()}),
      environment{components,  desktop,  jobView,  clock,   guids, localSettings,  iniFile,
                  diagnostics, liveness, database, nullptr, "",    "Prüfstand 1.0"} {
  environment.session = components.createSession();
  environment.session->Connect("", "");
}

TestErp::~TestErp() = default;

Connection& TestErp::connection() { return withoutServerTexts(*environment.connection); }

} // namespace qx
