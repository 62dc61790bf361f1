# Builds for Windows on Debian. scripts/windows_libraries.sh makes the libraries, scripts/windows_qt.sh the toolkit.
if(NOT compilers)
  set(compilers x86_64-w64-mingw32)
  set(processor x86_64)
endif()
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${processor})
# The other variant has no threads of the standard library.
set(CMAKE_C_COMPILER ${compilers}-gcc-posix)
set(CMAKE_CXX_COMPILER ${compilers}-g++-posix)
set(CMAKE_RC_COMPILER ${compilers}-windres)

get_filename_component(libraries ${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${libraries}/${compilers} ${libraries}/qt /usr/${compilers})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CXX_FLAGS_INIT "-isystem ${libraries}/${compilers}/include -DUTF8PROC_STATIC")
# One file that runs without the compiler's libraries beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

if(processor STREQUAL x86_64)
  find_program(wine wine64 PATHS /usr/lib/wine)
endif()
if(wine)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${wine})
endif()
