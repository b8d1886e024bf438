# How a folder becomes a library and a test folder becomes a test program.

# pelm_library(NAME SOURCES … [LINKS …]): a static library of the project. Headers are found from
# the root of the tree, from include/ and, for pelm/version.h, from the build folder; those who use
# an installed one see include/pelm alone.
function(pelm_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_include_directories(${name} PUBLIC
    "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
    "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>"
    "$<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
  target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS})
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON
                        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# pelm_test(NAME SOURCES … LINKS …): a GoogleTest program; each of its tests is a CTest test.
function(pelm_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
  find_package(GTest REQUIRED)
  include(GoogleTest)
  add_executable(${name} ${arg_SOURCES})
  target_compile_features(${name} PRIVATE cxx_std_20)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE ${arg_LINKS} GTest::gtest GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE "PELM_TESTS_DIR=\"${PROJECT_SOURCE_DIR}/tests\"")
  # The tests' own code need not be quick, and optimising it doubles the time of its build.
  target_compile_options(${name} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O1> $<$<CONFIG:RelWithDebInfo>:-g1>)
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 TEST_FILTER "-*/MariaDB*:*/H2:*/PostgreSql:*/OdbcSQLite"
                       PROPERTIES TIMEOUT 300)
endfunction()

# pelm_server_test(NAME): what a program of pelm_test tests on the engines behind drivers, for each
# kind of server all in one process and one CTest test: a server is started for it.
function(pelm_server_test name)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set(mariadb_engines "*/MariaDB*:*/OdbcSQLite")
  set(h2_engines "*/H2")
  set(postgresql_engines "*/PostgreSql")
  foreach(server mariadb h2 postgresql)
    add_test(NAME "Databases.${name}.${server}"
             COMMAND Python3::Interpreter -B "${PROJECT_SOURCE_DIR}/tests/databases/with_server.py" ${server}
                     $<TARGET_FILE:${name}> "--gtest_filter=${${server}_engines}" --gtest_brief=1)
    set_tests_properties("Databases.${name}.${server}" PROPERTIES TIMEOUT 600)
  endforeach()
endfunction()

# pelm_python_test(FILE [NAME=VALUE…]): each test method of a unittest file in this folder becomes a
# CTest test, run with the given environment.
function(pelm_python_test file)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
  cmake_path(GET file STEM module)
  file(STRINGS "${file}" lines REGEX "^(class [A-Za-z]+\\(|    def test_[a-z0-9_]+\\()")
  foreach(line IN LISTS lines)
    if(line MATCHES "^class ([A-Za-z]+)")
      set(suite "${CMAKE_MATCH_1}")
    elseif(line MATCHES "def (test_[a-z0-9_]+)")
      add_test(NAME "${suite}.${CMAKE_MATCH_1}"
               COMMAND Python3::Interpreter -B -m unittest "${module}.${suite}.${CMAKE_MATCH_1}"
               WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
      set_tests_properties("${suite}.${CMAKE_MATCH_1}" PROPERTIES TIMEOUT 300 ENVIRONMENT "${ARGN}")
    endif()
  endforeach()
endfunction()
