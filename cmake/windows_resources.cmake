# Gives a program for Windows its icon, manifest and version. Does nothing for other systems.
#
#   qx_windows_resources(<target> <description>)
function(qx_windows_resources target description)
  if(NOT WIN32)
    return()
  endif()
  enable_language(RC)
  find_program(RSVG_CONVERT rsvg-convert REQUIRED)
  find_package(Python3 COMPONENTS Interpreter REQUIRED)
  set(source ${PROJECT_SOURCE_DIR}/src/resources)
  set(QX_ICON ${CMAKE_BINARY_DIR}/resources/qximportjob.ico)
  set(QX_MANIFEST ${source}/windows/program.manifest)
  set(QX_PROGRAM ${target})
  set(QX_DESCRIPTION ${description})
  if(NOT TARGET qx_icon)
    set(pictures "")
    foreach(size 16 24 32 48 256)
      set(picture ${CMAKE_BINARY_DIR}/resources/qximportjob-${size}.png)
      add_custom_command(OUTPUT ${picture}
        COMMAND ${RSVG_CONVERT} --width ${size} --height ${size} --output ${picture}
                ${source}/pictures/qximportjob.svg
        DEPENDS ${source}/pictures/qximportjob.svg)
      list(APPEND pictures ${picture})
    endforeach()
    add_custom_command(OUTPUT ${QX_ICON}
      COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/cmake/make_icon.py ${QX_ICON} ${pictures}
      DEPENDS ${pictures} ${PROJECT_SOURCE_DIR}/cmake/make_icon.py)
    add_custom_target(qx_icon DEPENDS ${QX_ICON})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/resources)
  endif()
  configure_file(${source}/windows/program.rc.in ${CMAKE_BINARY_DIR}/resources/${target}.rc @ONLY)
  set_source_files_properties(${CMAKE_BINARY_DIR}/resources/${target}.rc PROPERTIES
    OBJECT_DEPENDS "${QX_ICON};${QX_MANIFEST}")
  target_sources(${target} PRIVATE ${CMAKE_BINARY_DIR}/resources/${target}.rc)
  add_dependencies(${target} qx_icon)
endfunction()
