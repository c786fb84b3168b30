# What `cmake --install` puts down: both libraries, the public headers, and what find_package(Corvane) and pkg-config read.

if(NOT CORVANE_INSTALL)
    return()
endif()

include(CMakePackageConfigHelpers)
set(config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Corvane)

install(
    TARGETS Corvane CorvaneTesting
    EXPORT CorvaneTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(
    DIRECTORY Corvane
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING
    PATTERN "*.hpp"
    PATTERN "Private" EXCLUDE)
install(
    EXPORT CorvaneTargets
    NAMESPACE Corvane::
    DESTINATION ${config_dir})

get_target_property(library_type Corvane TYPE)
if(library_type STREQUAL "STATIC_LIBRARY")
    set(CORVANE_STATIC TRUE)
else()
    set(CORVANE_STATIC FALSE)
endif()
configure_package_config_file(cmake/CorvaneConfig.cmake.in ${PROJECT_BINARY_DIR}/CorvaneConfig.cmake
                              INSTALL_DESTINATION ${config_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/CorvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_file(cmake/corvane.pc.in ${PROJECT_BINARY_DIR}/corvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/CorvaneConfig.cmake ${PROJECT_BINARY_DIR}/CorvaneConfigVersion.cmake
        DESTINATION ${config_dir})
install(FILES ${PROJECT_BINARY_DIR}/corvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
