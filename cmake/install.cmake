# What is installed: the programs, their data, and the library for programs that hand over jobs themselves.
include(CMakePackageConfigHelpers)

install(TARGETS qximportjob RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
install(FILES src/resources/demo/jobs.json DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT program)
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
