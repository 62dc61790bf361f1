#include "adapters/system/program_entry.h"

namespace qx {

// Here all of it is UTF-8 already.
int withUtf8(int count, char** arguments, int (*program)(int count, char** arguments)) {
  return program(count, arguments);
}

bool hasStandardError() { return true; }

} // namespace qx
