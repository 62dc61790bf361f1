# One interface target carries the flags that every target of ours is built with.
add_library(qx_flags INTERFACE)
target_compile_options(qx_flags INTERFACE -Wall -Wextra -Wpedantic $<$<BOOL:${QXIMPORTJOB_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 at -O3 warns of overlapping copies inside std::string where there are none.
  # When it optimises, it also takes the storage of an empty std::optional for an uninitialised read; clang and
  # the sanitizers look for the real ones.
  target_compile_options(qx_flags INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
if(WIN32)
  # The wide functions of Windows 10, and no macros in place of the names of the standard library.
  target_compile_definitions(qx_flags INTERFACE _WIN32_WINNT=0x0A00 UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()
if(QXIMPORTJOB_SANITIZE)
  target_compile_options(qx_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                            -fno-omit-frame-pointer)
  target_link_options(qx_flags INTERFACE -fsanitize=address,undefined)
endif()
if(QXIMPORTJOB_FUZZ)
  target_compile_options(qx_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
