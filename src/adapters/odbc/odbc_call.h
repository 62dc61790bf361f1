// What the functions of ODBC take in place of texts and numbers. For source files only.
#pragma once

#ifdef _WIN32
#include <windows.h> // needed by those below, which do not include it
#endif
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <cstddef>
#include <string>

namespace qx::odbc {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "wide texts of ODBC are UTF-16");

/// A buffer of UTF-16 units.
inline SQLWCHAR* wideText(std::u16string& text) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the same units under another name
  return reinterpret_cast<SQLWCHAR*>(text.data());
}

/// A number as attributes take it: in place of a pointer.
inline SQLPOINTER attributeNumber(std::size_t number) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast,performance-no-int-to-ptr)
  return reinterpret_cast<SQLPOINTER>(number);
}

} // namespace qx::odbc
