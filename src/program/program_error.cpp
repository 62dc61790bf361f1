#include "program/program_error.h"

#include "platform/database_error.h"

#include <new>

namespace qx {

ExitCode exitCodeOf(const std::function<ExitCode()>& work,
                    const std::function<void(const ProgramError&)>& report) {
  const auto end = [&](const ProgramError& error) {
    report(error);
    return error.code();
  };
  try {
    return work();
  } catch (const ProgramError& error) {
    return end(error);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const BusyError& error) {
    return end(ProgramError(ExitCode::Failure, error.what(),
                            "Another program holds the database. Try again when it has finished.")
                   .of(ErrorCause::BusyDatabase));
  } catch (const StatementError& error) {
    // The class of SQLSTATE for tables and columns that are not there.
    const bool unknownName = error.sqlState().starts_with("42");
    return end(
        ProgramError(ExitCode::Failure, error.what(),
                     unknownName ? "Make sure that the tables are those of this version of the program." : "")
            .of(ErrorCause::Database));
  } catch (const WorkLostError& error) {
    return end(
        ProgramError(ExitCode::Failure, error.what(), "Nothing of it was written. Start the command again.")
            .of(ErrorCause::Database));
  } catch (const std::exception& error) {
    return end(ProgramError(ExitCode::Failure, error.what()).of(ErrorCause::Database));
  }
}

} // namespace qx
