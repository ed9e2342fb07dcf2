# The installed tree: lib/, include/orvcl/{orv,platform,compat}/, a CMake package and a pkg-config
# file, none of which knows where it was installed.

include(CMakePackageConfigHelpers)

install(TARGETS orvcore orvcl EXPORT orvclTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvcl)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/orvcl)
install(EXPORT orvclTargets NAMESPACE orv:: DESTINATION ${package_folder})
configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/orvclConfig.cmake.in ${PROJECT_BINARY_DIR}/orvclConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/orvclConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/orvclConfig.cmake ${PROJECT_BINARY_DIR}/orvclConfigVersion.cmake
    DESTINATION ${package_folder})

set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pc /${pkgconfig_folder} /)
string(REGEX REPLACE "/$" "" prefix_from_pc "${prefix_from_pc}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/orvcl.pc.in ${PROJECT_BINARY_DIR}/orvcl.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvcl.pc DESTINATION ${pkgconfig_folder})
