# One interface target carries the flags that every target of ours is built with.
add_library(qx_flags INTERFACE)
target_compile_options(qx_flags INTERFACE -Wall -Wextra -Wpedantic -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 at -O3 warns of overlapping copies inside std::string where there are none.
  target_compile_options(qx_flags INTERFACE -Wno-restrict)
endif()
if(QXIMPORTJOB_SANITIZE)
  target_compile_options(qx_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                            -fno-omit-frame-pointer)
  target_link_options(qx_flags INTERFACE -fsanitize=address,undefined)
endif()
