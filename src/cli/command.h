// The base classes of the program's commands.
#pragma once

#include "cli/output.h"
#include "engine/import_job_object2.h"
#include "program/installation.h"
#include "program/program_error.h"

namespace qx::cli {

/// One verb of the program. Its public members are its arguments.
class Command {
public:
  virtual ~Command() = default;
  /// Checks the arguments only. Raises `ProgramError`.
  virtual void prepare() {}
  virtual ExitCode run(Installation& installation, const Output& output) = 0;
};

/// The context of a command on an open database.
struct CommandContext {
  Environment& environment;
  ImportJobObject2& engine;
  const Output& output;

  Connection& connection() const { return *environment.connection; }
};

/// A verb that works on an existing database.
class DatabaseCommand : public Command {
public:
  ExitCode run(Installation& installation, const Output& output) final {
    Environment& environment = installation.open();
    ImportJobObject2 engine(environment);
    // Without it every option would count as not set and no order would get a number.
    if (!engine.Session()) refuseSession(*environment.connection);
    return work({environment, engine, output});
  }

protected:
  /// The database itself says best why it cannot be read, if that still holds.
  [[noreturn]] static void refuseSession(Connection& connection) {
    connection.open(sql("Select PersonalNr, Buchungskreis From Benutzer Where 0 = 1"_sql));
    throw ProgramError(ExitCode::Failure, "the session of the ERP cannot be used",
                       "The reason is given above; remedy it, then start the command again.");
  }
  virtual ExitCode work(const CommandContext& context) = 0;
};

} // namespace qx::cli
