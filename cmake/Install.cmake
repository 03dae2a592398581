# The library, its headers, and what find_package(qorutils), pkg-config and gdb look for.
# Components: runtime is what a program needs to run, development what it takes to build one.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qorutils)

install(TARGETS qorutils
    EXPORT qorutilsTargets
    LIBRARY
        DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT runtime
        NAMELINK_COMPONENT development
    FILE_SET HEADERS
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        COMPONENT development)
install(EXPORT qorutilsTargets
    NAMESPACE qorutils::
    DESTINATION ${package_dir}
    COMPONENT development)

configure_package_config_file(
    cmake/qorutilsConfig.cmake.in ${PROJECT_BINARY_DIR}/qorutilsConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/qorutilsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
    FILES ${PROJECT_BINARY_DIR}/qorutilsConfig.cmake
          ${PROJECT_BINARY_DIR}/qorutilsConfigVersion.cmake
    DESTINATION ${package_dir}
    COMPONENT development)

# Relative, so that an installed tree may be moved. Not in /usr, where nothing moves: old versions
# of pkg-config put a sysroot in front of every path, also of one that begins with it.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(pc_libdir ${CMAKE_INSTALL_FULL_LIBDIR})
    set(pc_includedir ${CMAKE_INSTALL_FULL_INCLUDEDIR})
else()
    file(RELATIVE_PATH pc_to_include
        ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
    set(pc_libdir "\${pcfiledir}/..")
    set(pc_includedir "\${pcfiledir}/${pc_to_include}")
endif()
configure_file(cmake/qorutils.pc.in ${PROJECT_BINARY_DIR}/qorutils.pc @ONLY)
install(
    FILES ${PROJECT_BINARY_DIR}/qorutils.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

# gdb finds its scripts by the full path of the library; the prefix may be given as a relative one.
install(
    CODE "get_filename_component(full_prefix \"\${CMAKE_INSTALL_PREFIX}\" ABSOLUTE)"
    COMPONENT development)
set(printers_dir ${CMAKE_INSTALL_DATADIR}/gdb/auto-load/\${full_prefix}/${CMAKE_INSTALL_LIBDIR})
install(
    FILES gdb/libqorutils-gdb.py
    DESTINATION ${printers_dir}
    RENAME libqorutils.so.${PROJECT_VERSION}-gdb.py
    COMPONENT development)
install(FILES gdb/qorutils_printers.py DESTINATION ${printers_dir} COMPONENT development)
