// Writes the type library that becomes part of the library: write_type_library FILE
#include "com/type_library.h"

#include <cstdio>
#include <exception>

int wmain(int count, wchar_t** arguments) {
  if (count != 2) {
    std::fputs("usage: write_type_library FILE\n", stderr);
    return 2;
  }
  try {
    qx::com::writeTypeLibrary(arguments[1]);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "the type library cannot be written: %s\n", failure.what());
    return 1;
  }
}
