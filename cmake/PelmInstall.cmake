# What `cmake --install` puts where, and how others find it: find_package(pelm) and pkg-config.
# The program and the sample are installed by their own folders.
include(CMakePackageConfigHelpers)

# The C++ library: the component and its database engines, as one name for who links it.
set(libraries pelm_component pelm_page pelm_ado pelm_value pelm_sqlite)
set(dependencies SQLite3)
set(required sqlite3)
if(TARGET pelm_odbc)
  list(APPEND libraries pelm_odbc)
  list(APPEND dependencies ODBC)
  list(APPEND required odbc)
endif()
add_library(pelm_cpp INTERFACE)
target_link_libraries(pelm_cpp INTERFACE ${libraries})
add_library(pelm::pelm ALIAS pelm_cpp)
add_library(pelm::c ALIAS pelm_c)

set_target_properties(pelm_cpp PROPERTIES EXPORT_NAME pelm)
set_target_properties(pelm_c PROPERTIES EXPORT_NAME c)
install(TARGETS ${libraries} pelm_cpp EXPORT pelm-targets COMPONENT development)
install(TARGETS pelm_c EXPORT pelm-targets
        LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/pelm" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        COMPONENT development FILES_MATCHING PATTERN "*.h")
install(FILES "${PROJECT_BINARY_DIR}/generated/pelm/version.h"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/pelm" COMPONENT development)

# find_package(pelm): pelm::pelm and pelm::c.
set(cmake_folder "${CMAKE_INSTALL_LIBDIR}/cmake/pelm")
set(generated "${PROJECT_BINARY_DIR}/packaging")
configure_package_config_file(cmake/pelm-config.cmake.in "${generated}/pelm-config.cmake"
                              INSTALL_DESTINATION "${cmake_folder}")
write_basic_package_version_file("${generated}/pelm-config-version.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(EXPORT pelm-targets NAMESPACE pelm:: DESTINATION "${cmake_folder}" COMPONENT development)
install(FILES "${generated}/pelm-config.cmake" "${generated}/pelm-config-version.cmake"
        DESTINATION "${cmake_folder}" COMPONENT development)

# pkg-config: pelm (C++) and pelm-c. The prefix is found from where the file lies.
set(pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
           BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder}" OUTPUT_VARIABLE up_to_prefix)
list(TRANSFORM libraries REPLACE "^(.+)$" "-l\\1" OUTPUT_VARIABLE flags)
list(JOIN flags " " flags)
list(JOIN required ", " required)
foreach(name pelm pelm-c)
  configure_file(cmake/${name}.pc.in "${generated}/${name}.pc" @ONLY)
  install(FILES "${generated}/${name}.pc" DESTINATION "${pkgconfig_folder}" COMPONENT development)
endforeach()
