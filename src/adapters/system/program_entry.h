// Where a program begins.
#pragma once

namespace qx {

/// Runs `program` with its arguments in UTF-8 and its standard streams as bytes, a console's in UTF-8. The
/// names stay valid until it returns.
int withUtf8(int count, char** arguments, int (*program)(int count, char** arguments));

/// Whether somebody can read standard error: a program of windows may have none.
bool hasStandardError();

} // namespace qx
