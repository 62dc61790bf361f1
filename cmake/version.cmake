# The program tells its version and the commit that it was built from.
find_package(Git QUIET)
set(QXIMPORTJOB_COMMIT "unknown")
if(Git_FOUND)
  execute_process(
    COMMAND ${GIT_EXECUTABLE} -C ${PROJECT_SOURCE_DIR} rev-parse --short=12 HEAD
    OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
  if(NOT failed)
    set(QXIMPORTJOB_COMMIT ${commit})
  endif()
endif()
