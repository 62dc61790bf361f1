# A layer is a folder below src/ and a library of the same name. Its headers are reached as
# "<layer>/<header>.h" through a directory that holds this one layer only, so an include of a layer
# that is not linked does not compile. What a layer links privately by path goes by $<BUILD_INTERFACE:...> and
# $<INSTALL_INTERFACE:...>, so that the installed library names no file of this machine.
#
#   qx_layer(<name> [FOLDER <folder>] SOURCES <files...> [USES <layers...>] [PRIVATE <libraries...>])
function(qx_layer name)
  cmake_parse_arguments(LAYER "" "FOLDER" "SOURCES;USES;PRIVATE" ${ARGN})
  if(NOT LAYER_FOLDER)
    set(LAYER_FOLDER ${name})
  endif()
  set(root ${CMAKE_BINARY_DIR}/layers/${name})
  # Nothing of an earlier configuration may stay reachable.
  file(REMOVE_RECURSE ${root})
  get_filename_component(parent ${root}/${LAYER_FOLDER} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${LAYER_FOLDER} ${root}/${LAYER_FOLDER} SYMBOLIC)
  set_property(GLOBAL APPEND PROPERTY QX_LAYERS ${name})
  set_property(GLOBAL PROPERTY QX_FOLDER_${name} ${LAYER_FOLDER})
  if(LAYER_SOURCES)
    add_library(qx_${name} STATIC ${LAYER_SOURCES})
    # Installed headers lie in one folder: the walls are for those who build the layers.
    target_include_directories(qx_${name} PUBLIC $<BUILD_INTERFACE:${root}>
                                                 $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/qximportjob>)
    target_compile_features(qx_${name} INTERFACE cxx_std_20)
    target_link_libraries(qx_${name} PRIVATE $<BUILD_INTERFACE:qx_flags> ${LAYER_PRIVATE})
    foreach(used IN LISTS LAYER_USES)
      target_link_libraries(qx_${name} PUBLIC qx_${used})
    endforeach()
  else()
    add_library(qx_${name} INTERFACE)
    target_include_directories(qx_${name} INTERFACE ${root})
    foreach(used IN LISTS LAYER_USES)
      target_link_libraries(qx_${name} INTERFACE qx_${used})
    endforeach()
  endif()
endfunction()

# A test program per folder of tests/; each test case is known to ctest by its name. Those that the filter
# SERVER_TESTS selects need a database server, which ctest starts once for all of them.
#
#   qx_test(<name> SOURCES <files...> USES <layers...> [PRIVATE <libraries...>] [SERVER_TESTS <filter>])
function(qx_test name)
  cmake_parse_arguments(TEST "" "SERVER_TESTS" "SOURCES;USES;PRIVATE" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES})
  target_link_libraries(test_${name} PRIVATE qx_flags GTest::gtest_main GTest::gmock ${TEST_PRIVATE})
  # A fixture of an anonymous namespace is used by its own file only, joined with others or not.
  target_compile_options(test_${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  foreach(used IN LISTS TEST_USES)
    target_link_libraries(test_${name} PRIVATE qx_${used})
  endforeach()
  if(CMAKE_CROSSCOMPILING)
    # Each start costs half a second there, and there is no server.
    add_test(NAME ${name} COMMAND test_${name} --gtest_brief=1 "--gtest_filter=-${TEST_SERVER_TESTS}")
  elseif(TEST_SERVER_TESTS)
    gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST TEST_FILTER "-${TEST_SERVER_TESTS}")
    gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST TEST_FILTER "${TEST_SERVER_TESTS}"
      TEST_LIST test_${name}_SERVER_TESTS
      PROPERTIES FIXTURES_REQUIRED postgres ENVIRONMENT QXIMPORTJOB_TEST_SERVER=${CMAKE_BINARY_DIR}/postgres)
  else()
    gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST)
  endif()
endfunction()
