#include "adapters/odbc/handle.h"

#include "adapters/odbc/odbc_call.h"
#include "platform/database_error.h"

namespace qx::odbc {

Handle::Handle(short kind, void* parent) : kind_(kind) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(kind, parent, &handle_)))
    throw StoreError("the ODBC driver manager has no memory for another handle", 0);
}

Handle::~Handle() {
  if (handle_ != nullptr) SQLFreeHandle(kind_, handle_);
}

} // namespace qx::odbc

#if defined(__SANITIZE_ADDRESS__)
// PostgreSQL's driver gives some memory of each connection back only when the process ends.
extern "C" const char* __lsan_default_suppressions() { return "leak:psqlodbcw.so\n"; }
extern "C" const char* __lsan_default_options() { return "print_suppressions=0"; }
#endif
