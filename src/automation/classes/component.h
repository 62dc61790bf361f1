// The component as a host sees it: creates its classes by name and knows the host's objects.
#pragma once

#include "automation/class_object.h"
#include "automation/classes/class_tables.h"
#include "platform/environment.h"
#include "rules/combo_lists.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace qx::automation {

/// The window of the staged jobs as a program of its own, which takes the single-user lock itself.
class JobViewProgram {
public:
  JobViewProgram() = default;
  JobViewProgram(const JobViewProgram&) = delete;
  JobViewProgram& operator=(const JobViewProgram&) = delete;
  virtual ~JobViewProgram() = default;

  /// Starts it on the database of a connection and waits until it can be used. Its exit status when it has
  /// ended already, as it does when the lock is refused. Raises `std::runtime_error`, in German, when it
  /// cannot be started.
  virtual std::optional<int> start(Connection& connection) = 0;
  /// Its exit status; null while it runs.
  virtual std::optional<int> ended() = 0;
};

/// Ports on objects of the host. Raises `AutomationError` for an object that cannot serve as one.
class HostObjects {
public:
  virtual ~HostObjects() = default;
  /// A connection whose transactions are the host's; it gives the object back as `OfHost`.
  virtual std::shared_ptr<Connection> connectionOf(const ObjectPointer& object) = 0;
  virtual std::shared_ptr<Session> sessionOf(const ObjectPointer& object) = 0;
  /// A record set that a drop-down list of the host can show.
  virtual ObjectPointer recordsetOf(const ComboRows& rows) = 0;
  /// The window as a program; null where the port `JobView` opens it. `look` is called now and then, on this
  /// thread, while the program runs.
  virtual std::unique_ptr<JobViewProgram> jobViewProgram(const std::function<void()>& /*look*/) {
    return nullptr;
  }
};

/// All its objects share one environment, as those of a program that links the classes do. Environment,
/// database and host objects must outlive the component and every object that it has created.
class Component final : public ObjectContext {
public:
  /// `database` opens the connections of `ImportJobObject`.
  static std::shared_ptr<Component> create(Environment& environment, Database& database, HostObjects& host);

  /// A new object of a public class. Raises `AutomationError` 429 for any other.
  ObjectPointer createObject(std::string_view className);

  Environment& environment() { return environment_; }
  HostObjects& hostObjects() { return host_; }
  std::shared_ptr<Connection> connectionOf(const ObjectPointer& object);
  std::shared_ptr<Session> sessionOf(const ObjectPointer& object);
  std::unique_ptr<ComboTarget> comboOf(const ObjectPointer& object);
  /// The host's own object where the port stands on one.
  template <class Port>
  ObjectPointer objectOfPort(const std::shared_ptr<Port>& port) {
    if (const auto* const ofHost = dynamic_cast<const OfHost*>(port.get())) return ofHost->hostObject();
    return objectFor(port);
  }

protected:
  ObjectPointer make(const ClassTable& table, std::shared_ptr<void> target) override;

private:
  Component(Environment& environment, Database& database, HostObjects& host)
      : environment_(environment), database_(database), host_(host) {}

  std::shared_ptr<ImportJobObject2> newEngine();

  Environment& environment_;
  Database& database_;
  HostObjects& host_;
  std::size_t engines_ = 0; ///< that are alive
};

/// The component behind the context of a call to one of its classes.
inline Component& componentOf(ObjectContext& context) { return dynamic_cast<Component&>(context); }

} // namespace qx::automation
