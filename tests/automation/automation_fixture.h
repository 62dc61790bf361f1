// The public classes on a standalone ERP, called as a host calls them.
#pragma once

#include "order_fixture.h"
#include "script.h"

#include "adapters/sqlite/sqlite_database.h"
#include "automation/classes/component.h"
#include "support/fake_session.h"
#include "support/recording_connection.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx::automation {

/// A host whose objects "Datenbank" and "Sitzung" stand for its own connection and session.
class TestHost final : public HostObjects {
public:
  explicit TestHost(TestErp& erp) : erp_(erp) {}

  std::shared_ptr<Connection> connectionOf(const ObjectPointer& object) override {
    if (object->className() != "Datenbank")
      throw AutomationError(ErrorNumber::TypeMismatch, "Das Objekt ist keine Datenbankverbindung.");
    return std::make_shared<HostedConnection>(erp_.hostConnection(), object);
  }
  std::shared_ptr<Session> sessionOf(const ObjectPointer& object) override {
    if (object->className() != "Sitzung")
      throw AutomationError(ErrorNumber::TypeMismatch, "Das Objekt ist keine Sitzung.");
    return std::make_shared<HostedSession>(object);
  }
  ObjectPointer recordsetOf(const ComboRows& rows) override {
    auto recordset = ScriptObject::make("Recordset");
    for (const auto& [text, code] : rows.rows) shownRows += text + "=" + code + ";";
    recordset->holding("Bookmark")
        .with("MoveFirst",
              [set = recordset.get()](Access, Arguments&) -> Variant {
                set->values["Bookmark"] = 0.0;
                return {};
              })
        .with("Move", [set = recordset.get()](Access, Arguments& arguments) -> Variant {
          set->values["Bookmark"] = 100 + doubleOf(arguments.positional.front());
          return {};
        });
    return recordset;
  }

  std::unique_ptr<JobViewProgram> jobViewProgram(const std::function<void()>& look) override {
    look_ = look;
    return openJobView ? openJobView() : nullptr;
  }
  /// What the message loop does now and then.
  void look() const { look_(); }

  std::string shownRows;
  std::function<std::unique_ptr<JobViewProgram>()> openJobView;

private:
  /// The connection of a host, which remembers the host's object.
  class HostedConnection final : public RecordingConnection, public OfHost {
  public:
    HostedConnection(std::shared_ptr<Connection> inner, ObjectPointer object)
        : RecordingConnection(std::move(inner), true), object_(std::move(object)) {}
    const ObjectPointer& hostObject() const override { return object_; }

  private:
    ObjectPointer object_;
  };
  class HostedSession final : public FixedSession, public OfHost {
  public:
    explicit HostedSession(ObjectPointer object) : object_(std::move(object)) {}
    const ObjectPointer& hostObject() const override { return object_; }

  private:
    ObjectPointer object_;
  };

  TestErp& erp_;
  std::function<void()> look_;
};

class AutomationTest : public OrderTest {
protected:
  ObjectPointer create(std::string_view className) { return component->createObject(className); }
  /// A call with its arguments, as `outcome` shows it.
  static std::string called(const ObjectPointer& object, std::string_view member,
                            const std::vector<Variant>& arguments = {}) {
    return outcome([&] { return call(*object, member, arguments); });
  }
  static std::string read(const ObjectPointer& object, std::string_view property) {
    return outcome([&] { return get(*object, property); });
  }
  static std::string set(const ObjectPointer& object, std::string_view property, const Variant& value) {
    return outcome([&] { put(*object, property, value); });
  }
  static ObjectPointer objectIn(const ObjectPointer& object, std::string_view property) {
    return objectOf(get(*object, property));
  }

  SqliteDatabase database;
  TestHost host{erp};
  std::shared_ptr<Component> component = Component::create(erp.environment, database, host);
};

} // namespace qx::automation
