# What is installed: the programs, their data, and the library for programs that hand over jobs themselves.
include(CMakePackageConfigHelpers)

install(TARGETS qximportjob RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
install(FILES src/resources/demo/jobs.json DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT program)
install(DIRECTORY share/convert DESTINATION ${CMAKE_INSTALL_DATADIR}/qximportjob COMPONENT program)
install(DIRECTORY examples/convert DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT program)
if(TARGET qximportjob-view)
  install(TARGETS qximportjob-view RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT view)
endif()

# The layers that a host program needs: those that stage and process, the standalone ERP, all kinds of databases.
set(published model platform settings rules store engine system_adapters local_settings sql sqlite odbc erp program
    composition)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/qximportjob)
foreach(layer IN LISTS published)
  set_target_properties(qx_${layer} PROPERTIES EXPORT_NAME ${layer})
  install(TARGETS qx_${layer} EXPORT qximportjob
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/qximportjob COMPONENT development)
  get_property(folder GLOBAL PROPERTY QX_FOLDER_${layer})
  cmake_path(GET folder PARENT_PATH parent)
  # A folder below that of a layer is a layer of its own.
  install(DIRECTORY src/${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qximportjob/${parent} COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN lookups EXCLUDE)
endforeach()
install(EXPORT qximportjob FILE qximportjobTargets.cmake NAMESPACE qximportjob:: DESTINATION ${package}
  COMPONENT development)
configure_package_config_file(cmake/qximportjobConfig.cmake.in ${CMAKE_BINARY_DIR}/qximportjobConfig.cmake
  INSTALL_DESTINATION ${package})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/qximportjobConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/qximportjobConfig.cmake ${CMAKE_BINARY_DIR}/qximportjobConfigVersion.cmake
  DESTINATION ${package} COMPONENT development)
install(DIRECTORY examples/host DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT development)

# Everything else is for this kind of system.
if(WIN32)
  return()
endif()
find_package(Python3 COMPONENTS Interpreter REQUIRED)

set(pages "")
file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md)
foreach(name qximportjob.1 qximportjob-view.1 qximportjob.db.5)
  set(template ${PROJECT_SOURCE_DIR}/docs/man/${name}.md)
  set(page ${CMAKE_BINARY_DIR}/man/${name})
  add_custom_command(OUTPUT ${page}
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/cmake/make_man_page.py ${PROJECT_VERSION} ${template} ${page}
    DEPENDS ${PROJECT_SOURCE_DIR}/cmake/make_man_page.py ${template} ${sources})
  list(APPEND pages ${page})
  cmake_path(GET name EXTENSION LAST_ONLY section)
  string(SUBSTRING ${section} 1 1 section)
  set(component program)
  if(name STREQUAL qximportjob-view.1)
    set(component view)
  endif()
  if(component STREQUAL program OR TARGET qximportjob-view)
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
  endif()
endforeach()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/man)

set(scripts "")
foreach(shell bash zsh fish)
  set(script ${CMAKE_BINARY_DIR}/completion/${shell})
  add_custom_command(OUTPUT ${script}
    COMMAND qximportjob completion ${shell} > ${script}
    DEPENDS qximportjob)
  list(APPEND scripts ${script})
endforeach()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/completion)
add_custom_target(pages_and_scripts ALL DEPENDS ${pages} ${scripts})
set(data ${CMAKE_INSTALL_DATADIR})
install(FILES ${CMAKE_BINARY_DIR}/completion/bash DESTINATION ${data}/bash-completion/completions
  RENAME qximportjob COMPONENT program)
install(FILES ${CMAKE_BINARY_DIR}/completion/zsh DESTINATION ${data}/zsh/vendor-completions
  RENAME _qximportjob COMPONENT program)
install(FILES ${CMAKE_BINARY_DIR}/completion/fish DESTINATION ${data}/fish/vendor_completions.d
  RENAME qximportjob.fish COMPONENT program)

# The documents that the program and its pages name.
foreach(page cli convert integration job-files operation servers standalone-erp befunde)
  install(FILES docs/${page}.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)
endforeach()
install(FILES docs/schema-sqlserver.sql DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)

# The timer, its user and folder; scripts/package.sh makes packages of it. The system reads them below /usr/lib.
install(FILES packaging/systemd/qximportjob.service packaging/systemd/qximportjob.timer
  DESTINATION lib/systemd/system COMPONENT program)
install(FILES packaging/systemd/qximportjob.sysusers DESTINATION lib/sysusers.d RENAME qximportjob.conf
  COMPONENT program)
install(FILES packaging/systemd/qximportjob.tmpfiles DESTINATION lib/tmpfiles.d RENAME qximportjob.conf
  COMPONENT program)
install(FILES packaging/systemd/qximportjob.default DESTINATION ${CMAKE_INSTALL_FULL_SYSCONFDIR}/default
  RENAME qximportjob COMPONENT program)
install(FILES packaging/systemd/qximportjob-failure@.service packaging/systemd/qximportjob-watch.service DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
  COMPONENT program)

# The window's place in menus, and the type of job files.
if(TARGET qximportjob-view)
  install(FILES packaging/desktop/qximportjob-view.desktop DESTINATION ${data}/applications COMPONENT view)
  install(FILES src/resources/pictures/qximportjob.svg DESTINATION ${data}/icons/hicolor/scalable/apps COMPONENT view)
  install(FILES packaging/desktop/qximportjob.xml DESTINATION ${data}/mime/packages COMPONENT view)
  install(FILES packaging/desktop/local.qximportjob.view.metainfo.xml DESTINATION ${data}/metainfo COMPONENT view)
  install(FILES docs/handbuch.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT view)
  install(DIRECTORY docs/images DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT view PATTERN "windows-*" EXCLUDE)
endif()
