# What the programs for Windows have in themselves. Nothing here does anything for other systems.

# Gives a program for Windows its icon, manifest and version.
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

# Draws the pictures of a resource file as bitmaps in the sizes of the windows, for a toolkit that cannot read drawings:
# a source file with the same resources, named NAME-SIZE.png.
#
#   qx_drawn_pictures(<variable> <resource file>)
function(qx_drawn_pictures variable resources)
  find_program(RSVG_CONVERT rsvg-convert REQUIRED)
  get_filename_component(folder ${resources} DIRECTORY)
  get_filename_component(name ${resources} NAME_WE)
  set(drawn ${CMAKE_CURRENT_BINARY_DIR}/${name})
  file(MAKE_DIRECTORY ${drawn})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${resources})
  file(STRINGS ${resources} lines REGEX "<file>")
  set(bitmaps "")
  set(entries "")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE ".*<file>(.*)[.]svg</file>.*" "\\1" picture "${line}")
    foreach(size 16 20 24 32 48 96)
      set(bitmap ${drawn}/${picture}-${size}.png)
      add_custom_command(OUTPUT ${bitmap}
        COMMAND ${RSVG_CONVERT} --width ${size} --height ${size} --output ${bitmap} ${folder}/${picture}.svg
        DEPENDS ${folder}/${picture}.svg)
      list(APPEND bitmaps ${bitmap})
      string(APPEND entries "<file>${picture}-${size}.png</file>")
    endforeach()
  endforeach()
  file(CONFIGURE OUTPUT ${drawn}/${name}.qrc @ONLY
    CONTENT "<RCC><qresource prefix=\"/${name}\">@entries@</qresource></RCC>\n")
  set(source ${drawn}/qrc_${name}.cpp)
  add_custom_command(OUTPUT ${source}
    COMMAND Qt6::rcc --name ${name} --output ${source} ${drawn}/${name}.qrc
    DEPENDS ${drawn}/${name}.qrc ${bitmaps})
  set_source_files_properties(${source} PROPERTIES SKIP_AUTOGEN ON SKIP_UNITY_BUILD_INCLUSION ON)
  set(${variable} ${source} PARENT_SCOPE)
endfunction()

# The toolkit's part that draws on this system, and its texts in German.
#
#   qx_toolkit_for_windows(<target>)
function(qx_toolkit_for_windows target)
  if(NOT WIN32)
    return()
  endif()
  find_file(QT_GERMAN_TEXTS qtbase_de.qm PATHS /usr/share/qt6/translations REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/translations.qrc)
  file(CONFIGURE OUTPUT ${resources} @ONLY CONTENT
    "<RCC><qresource prefix=\"/translations\"><file alias=\"qtbase_de.qm\">@QT_GERMAN_TEXTS@</file></qresource></RCC>\n")
  qt6_add_resources(source ${resources})
  set_source_files_properties(${source} PROPERTIES SKIP_AUTOGEN ON SKIP_UNITY_BUILD_INCLUSION ON)
  target_sources(${target} PRIVATE ${source})
  qt6_import_plugins(${target} INCLUDE Qt6::QWindowsIntegrationPlugin Qt6::QWindowsVistaStylePlugin)
endfunction()
