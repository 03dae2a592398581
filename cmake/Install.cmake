# The library, its headers, and what find_package(qorutils) and pkg-config look for.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qorutils)

install(TARGETS qorutils
    EXPORT qorutilsTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT qorutilsTargets NAMESPACE qorutils:: DESTINATION ${package_dir})

configure_package_config_file(
    cmake/qorutilsConfig.cmake.in ${PROJECT_BINARY_DIR}/qorutilsConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/qorutilsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
    FILES ${PROJECT_BINARY_DIR}/qorutilsConfig.cmake
          ${PROJECT_BINARY_DIR}/qorutilsConfigVersion.cmake
    DESTINATION ${package_dir})

# Relative, so that an installed tree may be moved.
file(RELATIVE_PATH pc_to_include
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/qorutils.pc.in ${PROJECT_BINARY_DIR}/qorutils.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qorutils.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
