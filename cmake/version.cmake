# The program tells its version and the commit that it was built from: -DQXIMPORTJOB_COMMIT=... names it, else that of
# the archive that "git archive" has made of the sources, else that of the clone.
if(NOT QXIMPORTJOB_COMMIT)
  file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/commit.txt commit LIMIT_COUNT 1)
  if(commit MATCHES "^[0-9a-f]+$")
    string(SUBSTRING ${commit} 0 12 QXIMPORTJOB_COMMIT)
  else()
    set(QXIMPORTJOB_COMMIT "unknown")
    find_package(Git QUIET)
    # An archive may have been unpacked in a clone of something else.
    if(Git_FOUND AND EXISTS ${PROJECT_SOURCE_DIR}/.git)
      execute_process(
        COMMAND ${GIT_EXECUTABLE} -C ${PROJECT_SOURCE_DIR} rev-parse --short=12 HEAD
        OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
      if(NOT failed)
        set(QXIMPORTJOB_COMMIT ${commit})
      endif()
    endif()
  endif()
endif()
