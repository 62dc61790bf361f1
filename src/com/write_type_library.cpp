// Writes the type library that becomes part of the library: write_type_library FILE 32|64
#include "com/type_library.h"

#include <cstdio>
#include <exception>
#include <string_view>

int wmain(int count, wchar_t** arguments) {
  const std::wstring_view bits = count == 3 ? arguments[2] : L"";
  if (bits != L"32" && bits != L"64") {
    std::fputs("usage: write_type_library FILE 32|64\n", stderr);
    return 2;
  }
  try {
    qx::com::writeTypeLibrary(arguments[1], bits == L"64" ? SYS_WIN64 : SYS_WIN32);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "the type library cannot be written: %s\n", failure.what());
    return 1;
  }
}
