// The options that the programs have in common.
#pragma once

#include "model/date.h"

#include <optional>
#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace qx {

struct ProgramOptions {
  std::string database; ///< empty when it was not given
  std::string user;     ///< empty for the login name
  std::optional<Date> sessionDate;
  bool json = false;
  bool verbose = false;
  std::string program; ///< the program's name and version, for the book of runs
};

/// A day as it is typed: dd.mm.yyyy, or yyyy-mm-dd as scripts have it. Raises `ProgramError` for another
/// text.
Date typedDate(std::string_view text);

/// Declares `--db`, `--user`, `--date` and `--verbose`, which fill in `options` when the arguments are
/// parsed. An invalid date then raises `ProgramError`. `options` must live until then.
void declareCommonOptions(CLI::App& app, ProgramOptions& options);

/// Raises `ProgramError` for an empty name after --db, which a script leaves whose variable is not set: it
/// must not mean the default.
void requireDatabaseName(int count, const char* const* arguments);

} // namespace qx
