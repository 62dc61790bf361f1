// The objects of a host as ports.
#pragma once

#include "adapters/ado/ado_connection.h"
#include "adapters/late_bound/host.h"
#include "automation/classes/component.h"

#include <functional>
#include <memory>
#include <string_view>

namespace qx {

/// Makes a connection of the host's connection object and a session of its session object, and reaches the
/// ERP's components by their ProgIDs. It must outlive all of them.
class HostAdapters final : public automation::HostObjects, public AutomationHost {
public:
  /// Opens the window of the staged jobs as a program.
  using OpenJobView =
      std::function<std::unique_ptr<automation::JobViewProgram>(const std::function<void()>& look)>;

  explicit HostAdapters(ado::CreateObject create, OpenJobView openJobView = {})
      : create_(std::move(create)), openJobView_(std::move(openJobView)) {}

  automation::ObjectPointer create(std::string_view progId) override { return create_(progId); }
  /// The same connection for as long as the one of this object is in use; null for `Nothing`. Raises
  /// `AutomationError` 13 for another object.
  std::shared_ptr<Connection> connectionOf(const automation::ObjectPointer& object) override;
  std::shared_ptr<Session> sessionOf(const automation::ObjectPointer& object) override;
  automation::ObjectPointer recordsetOf(const ComboRows& rows) override;
  std::unique_ptr<automation::JobViewProgram> jobViewProgram(const std::function<void()>& look) override {
    return openJobView_ ? openJobView_(look) : nullptr;
  }
  /// Raises `AutomationError` 13 for a connection of the component's own.
  automation::ObjectPointer objectOf(Connection& connection) override;

private:
  ado::CreateObject create_;
  OpenJobView openJobView_;
  std::weak_ptr<AdoConnection> connection_; ///< the one that was made last
};

} // namespace qx
