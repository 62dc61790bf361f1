#include "adapters/odbc/handle.h"

#include "platform/database_error.h"

#include <sql.h>

namespace qx::odbc {

Handle::Handle(short kind, void* parent) : kind_(kind) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(kind, parent, &handle_)))
    throw StoreError("the ODBC driver manager has no memory for another handle", 0);
}

Handle::~Handle() {
  if (handle_ != nullptr) SQLFreeHandle(kind_, handle_);
}

} // namespace qx::odbc
