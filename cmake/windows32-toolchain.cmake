# Builds for 32-bit Windows on Debian; nothing of it can be run here.
set(compilers i686-w64-mingw32)
set(processor x86)
include(${CMAKE_CURRENT_LIST_DIR}/windows-toolchain.cmake)
