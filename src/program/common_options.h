// The options that the program and its window have in common.
#pragma once

#include "program/program_options.h"

#include <string_view>

namespace CLI {
class App;
}

namespace qx {

/// Declares `--db`, `--user`, `--date` and `--verbose`, which fill in `options` when the arguments are
/// parsed. An invalid date then raises `ProgramError`. `options` must live until then.
void declareCommonOptions(CLI::App& app, ProgramOptions& options);

/// Raises `ProgramError` for an empty name after --db, which a script leaves whose variable is not set: it
/// must not mean the default.
void requireDatabaseName(int count, const char* const* arguments);

} // namespace qx
