// Lets the ERP of a test lie on the server, behind a way that can break.
#pragma once

#include "support/server_proxy.h"
#include "support/test_server.h"

#include <chrono>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <thread>

namespace qx {

/// A base of the test's class, before the one that has the ERP.
class BreakableWay {
public:
  BreakableWay(const BreakableWay&) = delete;
  BreakableWay& operator=(const BreakableWay&) = delete;

protected:
  BreakableWay() {
    give("QXIMPORTJOB_TEST_ERP", "server");
    give("QXIMPORTJOB_TEST_ODBC", proxy.connectionString());
  }
  ~BreakableWay() {
    for (const auto& [name, value] : before_)
      if (value)
        setenv(name.c_str(), value->c_str(), 1);
      else
        unsetenv(name.c_str());
  }
  /// Runs a step during which the server comes back.
  template <class Step>
  void whileItComesBack(Step&& step) {
    std::thread back([this] {
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      proxy.set(ServerProxy::State::Open);
    });
    step();
    back.join();
  }
  /// Ends the sessions alone: the server can be reached again at once.
  void cut() {
    proxy.set(ServerProxy::State::Gone);
    proxy.set(ServerProxy::State::Open);
  }

  ServerProxy proxy{testServer()};

private:
  void give(const std::string& name, const std::string& value) {
    const char* const before = std::getenv(name.c_str());
    before_[name] = before == nullptr ? std::nullopt : std::optional<std::string>(before);
    setenv(name.c_str(), value.c_str(), 1);
  }

  std::map<std::string, std::optional<std::string>> before_;
};

} // namespace qx
