// The base classes of the program's commands, and where they write.
#pragma once

#include "cli/harmless_buffer.h"
#include "engine/import_job_object2.h"
#include "program/installation.h"
#include "program/program_error.h"

#include <cstddef>
#include <optional>
#include <ostream>

namespace qx::cli {

/// The result goes to standard output, messages to standard error; control characters are removed from both.
struct Output {
  HarmlessStream& result;
  HarmlessStream& messages;
  std::ostream& terminal; ///< standard error as it is, for a progress bar that moves the cursor
  std::ostream& data;     ///< standard output for data that must stay byte for byte; filtered on a terminal
  bool json = false;      ///< the result is one JSON document
  bool jsonLines = false; ///< or, for a command that offers it, one a line
  /// The width of the terminal to which the result goes; null when it goes elsewhere.
  std::optional<std::size_t> columns = std::nullopt;
};

/// One verb of the program.
class Command {
public:
  virtual ~Command() = default;
  /// Checks the arguments only. Raises `ProgramError`.
  virtual void prepare() {}
  /// Whether the result is text to read, for which a terminal's user may have a pager.
  virtual bool isForReading() const { return false; }
  /// Whether the result can be a document a line.
  virtual bool offersLines() const { return false; }
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
